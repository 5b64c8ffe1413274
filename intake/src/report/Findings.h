#pragma once

#include "report/catalogue.h"

#include <OrvComtradeIntake/Finding.h>
#include <OrvComtradeIntake/Options.h>

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace OrvComtradeIntake {

/// What one place adds to what its kind says.
struct Detail {
    std::string found;         ///< what stands there, made with `escaped` if it comes from the file
    std::string repair = {};   ///< how it was read nevertheless, or empty
    std::string expected = {}; ///< empty: as the catalogue says
    std::uint64_t places = 1;
    std::string advice = {}; ///< empty: as the catalogue says
};

/// Collects findings. Those alike (kind, file, field) become one that counts its places, so that a file of a million
/// odd lines has one finding and not a million. Beyond a limit only those of severity Error are kept, and one that
/// counts the others.
class Findings {
public:
    explicit Findings(std::uint64_t most = Limits().findings) : _most(most) {}

    void add(Kind kind, const Place& place, Detail detail);

    /// Adds those of another collection behind these.
    void add(const Findings& others);

    bool has(Kind kind) const; ///< also where it was left out

    /// Where a file has findings of this kind, which is an error, removes its others; those of other files stay.
    void keepOnly(Kind kind, const std::string& file);

    const std::vector<Finding>& all() const { return _all; } ///< in the order in which each was first added
    std::vector<Finding> take();                             ///< all; none are left

private:
    void _add(Finding finding);

    std::vector<Finding> _all;
    std::unordered_map<std::string, std::size_t> _places;      ///< index in `_all` by what makes findings alike
    std::bitset<static_cast<std::size_t>(Kind::Count)> _kinds; ///< of all that were added
    std::uint64_t _most;
    std::uint64_t _leftOut = 0;
    Place _firstLeftOut;
};

/// The text for a finding: well-formed UTF-8 as it stands, other bytes and control characters as \xHH, and at most
/// `most` bytes of it, "..." for the rest.
std::string escaped(std::string_view bytes, std::size_t most = 60);

} // namespace OrvComtradeIntake
