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

/// What a finding says in addition to its kind.
struct Detail {
    std::string found;         ///< what is in the file; put through `escaped` if it is text of the file
    std::string repair = {};   ///< how it was read anyway, or empty
    std::string expected = {}; ///< empty: as the catalogue says
    std::uint64_t places = 1;
    std::string advice = {}; ///< empty: as the catalogue says
};

/// Collects findings. Those of the same kind, file and field become one that counts its places, so a file with a
/// million bad lines has one finding. Beyond a limit, only findings of severity Error are kept, and one that counts the
/// others.
class Findings {
public:
    explicit Findings(std::uint64_t most = Limits().findings) : _most(most) {}

    void add(Kind kind, const Place& place, Detail detail);

    /// Appends those of another collection.
    void add(const Findings& others);

    bool has(Kind kind) const; ///< also true if that finding was left out

    /// If a file has findings of this kind, which must be an error, removes all its other findings.
    void keepOnly(Kind kind, const std::string& file);

    const std::vector<Finding>& all() const { return _all; } ///< in the order in which each was first added
    std::vector<Finding> take();                             ///< all; the collection is empty afterwards

private:
    void _add(Finding finding);

    std::vector<Finding> _all;
    std::unordered_map<std::string, std::size_t> _places;      ///< index in `_all` by kind, file and field
    std::bitset<static_cast<std::size_t>(Kind::Count)> _kinds; ///< of all that were added
    std::uint64_t _most;
    std::uint64_t _leftOut = 0;
    Place _firstLeftOut;
};

/// Text of a file in the form for a finding: well-formed UTF-8 is unchanged, other bytes and control characters become
/// \xHH. After `most` bytes, "..." replaces the rest.
std::string escaped(std::string_view bytes, std::size_t most = 60);

} // namespace OrvComtradeIntake
