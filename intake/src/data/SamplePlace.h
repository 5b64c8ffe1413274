#pragma once

#include <cstddef>
#include <cstdint>

namespace OrvComtradeIntake {

/// Where a sample stands, for findings.
struct SamplePlace {
    std::uint64_t sample = 0;   ///< 0-based
    std::size_t line = 0;       ///< 1-based, or 0: a binary record
    std::uint64_t position = 0; ///< of the line or record, in the data
};

} // namespace OrvComtradeIntake
