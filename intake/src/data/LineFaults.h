#pragma once

#include "asciiLine.h"
#include "dataSurvey.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace OrvComtradeIntake {

/// Counts the faults of lines by kind, with the place of the first of each.
class LineFaults {
public:
    /// `position` is the line's, in the data.
    void add(const FieldFault& fault, std::size_t line, std::uint64_t position);
    void add(const LineFaults& other);
    void remove(LineFault fault) { _places[static_cast<std::size_t>(fault)] = Places(); }
    void clear() {
        if (_any) {
            *this = LineFaults();
        }
    }
    std::uint64_t count(LineFault fault) const { return _places[static_cast<std::size_t>(fault)].count; }
    bool any(LineFault fault) const { return count(fault) != 0; }

    /// Puts into the finding where the first such fault is.
    void putPlace(LineFault fault, const DataSource& source, Finding& finding) const;

    /// A finding for each kind; `mended` says whether the data are written anew because of them, and `doneToStamps`
    /// what is then done to stamps with decimals if times come from the stamps.
    void tell(bool mended, const DataSource& source, const DataLayout& layout, Findings& findings,
              const std::string& doneToStamps = "") const;

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
