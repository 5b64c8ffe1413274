#pragma once

#include "Finding.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace OrvComtradeIntake {

/// Collects findings; alike ones (code, severity, file and field) become one that counts its places, so that a file of
/// a million odd lines has one finding and not a million.
class Findings {
public:
    /// Adds the finding, or its places to the alike one that is there (which is mended if either is).
    void add(Finding finding);

    std::vector<Finding> take(); ///< all, in the order in which each was first added; none are left
    bool anyMended() const;
    bool anyError() const;

private:
    std::vector<Finding> _all;
    std::unordered_map<std::string, std::size_t> _places; ///< index in `_all` by what makes findings alike
};

/// The text for a finding: well-formed UTF-8 as it stands, other bytes and control characters as \xHH, and at most
/// `most` bytes of it, "..." for the rest.
std::string shown(std::string_view bytes, std::size_t most = 60);

} // namespace OrvComtradeIntake
