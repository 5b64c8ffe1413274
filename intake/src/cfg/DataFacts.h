#pragma once

#include <OrvComtradeIntake/Columns.h>
#include <OrvComtradeIntake/Header.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace OrvComtradeIntake {

/// Consecutive samples without a stamp, and the stamps that stand in for them: `base + first`, then `step` more each.
/// In the unit of stamps after StampPlan::exponent is applied.
struct StampFill {
    std::uint64_t sample = 0; ///< 0-based
    std::uint64_t count = 0;  ///< samples
    std::int64_t base = 0;    ///< a stamp next to them: a `double` would not have all its digits
    double first = 0.0;
    double step = 0.0;
};

/// How the time stamps of a file become what the standard and the library require: whole numbers from 0 to 2^32 - 2
/// that do not wrap. The steps are applied in this order.
struct StampPlan {
    int exponent = 0;             ///< stamps are multiplied by ten to this power, since some have decimals
    std::int64_t origin = 0;      ///< the lowest stamp, which is subtracted if some are negative
    std::uint64_t divisor = 1;    ///< then they are divided by this, if they wrapped or take more than 32 bits
    double unit = 1.0;            ///< the time multiplier is multiplied by this to match
    double factor = 1.0;          ///< the time multiplier is divided by this; `unit` or `factor` is 1
    std::uint64_t greatest = 0;   ///< the greatest resulting stamp
    std::vector<StampFill> fills; ///< stamps that are missing and are interpolated, by sample
};

/// How the data are to be read, as one walk over them found.
struct DataFacts {
    DataType type = DataType::Ascii;        ///< how the data really are encoded
    std::uint64_t samples = 0;              ///< number of whole samples
    std::size_t recordStride = 0;           ///< bytes from one binary record to the next
    bool libraryReads = true;               ///< the library reads these bytes correctly, given the right configuration
    DataType libraryType = DataType::Ascii; ///< encoding in which they are written for the library
    bool hasUnusedBits = false;             ///< bits of status words that belong to no channel are set
    std::vector<int> exponents;      ///< per analog channel: raw values are multiplied by ten to this power; empty: 0
    StampPlan stamps;                ///< used if times come from the stamps
    bool areStampsSound = true;      ///< if times come from the rates: the stamps do not contradict them
    bool doStampsFitRecords = true;  ///< the same, once they are in records
    bool areNumbersAlike = false;    ///< those of records: they say nothing of the order of the samples
    std::vector<MissingRun> missing; ///< by channel, then sample
};

} // namespace OrvComtradeIntake
