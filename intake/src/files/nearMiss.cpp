#include "files/nearMiss.h"

#include "base/characters.h"
#include "files/FileName.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace OrvComtradeIntake {

namespace {

bool isArchive(std::string_view extension) {
    constexpr std::array<std::string_view, 4> known = {".zip", ".gz", ".7z", ".rar"};
    return std::find(known.begin(), known.end(), extension) != known.end();
}

/// ".d00" or ".da_" for ".dat"; both in lower case.
bool isLike(std::string_view found, std::string_view extension) {
    if (found.size() < 3 || found[1] != extension[1]) {
        return false;
    }
    return found[2] == extension[2] || std::all_of(found.begin() + 2, found.end(), isDigit);
}

} // namespace

std::string_view originalStem(std::string_view stem) {
    constexpr std::string_view copy = " - copy";
    if (!stem.empty() && stem.back() == ')') {
        const std::size_t open = stem.rfind('(');
        const std::string_view number = stem.substr(std::min(open, stem.size() - 1) + 1);
        const bool isNumber = number.size() > 1 && std::all_of(number.begin(), number.end() - 1, isDigit);
        stem = isNumber ? trimmed(stem.substr(0, open)) : stem;
    }
    const std::size_t kept = stem.size() - std::min(stem.size(), copy.size());
    return lowerCase(stem.substr(kept)) == copy ? stem.substr(0, kept) : stem;
}

bool isNearMiss(const std::string& name, const std::string& stem, const std::string& extension) {
    if (name == stem + extension) {
        return false; // no file, or that of another recording
    }
    const FileName parts = FileName::of(name);
    if (parts.extension == extension && originalStem(parts.stem) == originalStem(stem)) {
        return true;
    }
    if (name.compare(0, stem.size() + 1, stem + '.') != 0) {
        return false;
    }
    const std::string rest = name.substr(stem.size());
    const bool isOneExtension = rest.rfind('.') == 0;
    return rest.compare(0, extension.size(), extension) == 0 ||
           (isOneExtension && (isLike(rest, extension) || isArchive(rest)));
}

} // namespace OrvComtradeIntake
