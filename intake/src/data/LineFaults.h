#pragma once

#include "data/DataLayout.h"
#include "data/LineParser.h"
#include "files/ByteSource.h"
#include "report/Findings.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace OrvComtradeIntake {

/// Counts the faults of lines by kind, with the place of the first of each.
class LineFaults {
public:
    /// `position` is the line's, in the data.
    void add(const FieldFault& fault, std::size_t line, std::uint64_t position);
    void add(const LineFaults& other);
    void clear();
    LineFaults only(LineFault fault) const; ///< the faults of one kind
    std::uint64_t count(LineFault fault) const { return _places[static_cast<std::size_t>(fault)].count; }

    /// Adds a finding for each kind. With `allowsDecimals` (revision 2013), values with a point are not a fault.
    void report(const ByteSource& source, const DataLayout& layout, bool allowsDecimals, Findings& findings) const;

private:
    struct Places {
        std::uint64_t count = 0;
        std::size_t line = 0;
        std::size_t field = 0;
        std::uint64_t position = 0; ///< in the data
    };

    std::array<Places, static_cast<std::size_t>(LineFault::Count)> _places{};
    bool _any = false; ///< some fault was added
};

} // namespace OrvComtradeIntake
