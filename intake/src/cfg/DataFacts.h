#pragma once

#include <OrvComtradeIntake/Columns.h>
#include <OrvComtradeIntake/Header.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace OrvComtradeIntake {

/// Consecutive samples without a stamp, and the stamps that stand in for them: `first`, `first + step`, ...
struct StampFill {
    std::uint64_t sample = 0; ///< 0-based
    std::uint64_t count = 0;  ///< samples
    double first = 0.0;       ///< as what is read times ten to the power of StampPlan::exponent
    double step = 0.0;
};

/// How time stamps are made whole numbers from 0 to 2^32 - 2 that go on, as the standard and the library have them.
struct StampPlan {
    int exponent = 0;             ///< stamps are taken times ten to this power: some have decimals
    std::int64_t origin = 0;      ///< then counted from this, the lowest: some are negative
    std::uint64_t divisor = 1;    ///< then divided by this: they wrapped, or take more than 32 bits
    double unit = 1.0;            ///< what the time multiplier is multiplied by for it
    double factor = 1.0;          ///< what it is divided by; the one or the other is 1
    std::uint64_t greatest = 0;   ///< of the stamps that come of it
    std::vector<StampFill> fills; ///< stamps that are missing and are interpolated, by sample
};

/// What one walk over the data found: how they are to be read.
struct DataFacts {
    DataType type = DataType::Ascii;        ///< of the data as they are
    std::uint64_t samples = 0;              ///< whole samples that there are
    std::size_t recordStride = 0;           ///< bytes from one binary record to the next
    bool libraryReads = true;               ///< the library reads these bytes rightly, given the right configuration
    DataType libraryType = DataType::Ascii; ///< in which they are written for the library
    bool hasUnusedBits = false;             ///< of status words, some are set
    std::vector<int> exponents;      ///< per analog channel: raw values are taken times ten to this power; empty: all 0
    StampPlan stamps;                ///< where times come from the stamps
    bool areStampsSound = true;      ///< where times come from the rates: the stamps do not contradict them
    std::vector<MissingRun> missing; ///< by channel, then sample
};

} // namespace OrvComtradeIntake
