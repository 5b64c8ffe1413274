#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

namespace OrvComtradeLib {

/// StringHelper::split into views of `text`, in a list that keeps its room from one call to the next; no more than the
/// first `most` fields, since nobody looks at the others and a line may hold millions.
inline void splitInto(std::string_view text, char separator, std::size_t most, std::vector<std::string_view>& fields) {
    fields.clear();
    for (std::size_t begin = 0; begin < text.size() && fields.size() < most;) {
        const std::size_t end = std::min(text.find(separator, begin), text.size());
        fields.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
}

/// The first `most` comma-separated fields of a `.cfg` line, as views of it.
inline std::vector<std::string_view> firstFields(std::string_view line, std::size_t most) {
    std::vector<std::string_view> fields;
    splitInto(line, ',', most, fields);
    return fields;
}

} // namespace OrvComtradeLib
