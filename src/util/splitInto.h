#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace OrvComtradeLib {

/// StringHelper::split into a list whose texts keep their room from one call to the next; no more than the first `most`
/// fields, since nobody looks at the others and a line may hold millions.
inline void splitInto(std::string_view text, char separator, std::size_t most, std::vector<std::string>& fields) {
    std::size_t count = 0;
    for (std::size_t begin = 0; begin < text.size() && count < most; ++count) {
        const std::size_t end = std::min(text.find(separator, begin), text.size());
        if (count == fields.size()) {
            fields.emplace_back();
        }
        fields[count].assign(text.data() + begin, end - begin);
        begin = end + 1;
    }
    fields.resize(count);
}

/// The first `most` comma-separated fields of a `.cfg` line.
inline std::vector<std::string> firstFields(std::string_view line, std::size_t most) {
    std::vector<std::string> fields;
    splitInto(line, ',', most, fields);
    return fields;
}

} // namespace OrvComtradeLib
