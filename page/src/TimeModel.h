#pragma once

#include "RecordedColumns.h"
#include "ValueColumn.h"

#include <OrvComtradeIntake/Header.h>

#include <cstdint>
#include <vector>

namespace OrvComtradePage {

/// How a page gets the times of its samples, each to the last bit: by sampling rates, of time stamps, or as they are.
struct TimeModel {
    enum class Kind { Rates, Stamps, Times };

    /// So many samples at one rate.
    struct Segment {
        double rate = 0.0; ///< samples per second
        std::uint64_t count = 0;
    };

    Kind kind = Kind::Times;
    std::vector<Segment> segments; ///< of Rates: time = (samples within / rate + sum of (count / rate) before)
    double multiplier = 1.0;       ///< of Stamps: time = stamp * multiplier * 0.000001
    ValueColumn numbers;           ///< stamps or times; none of Rates
};

/// The first of the three that gives exactly the times of the columns.
TimeModel timeModelOf(const OrvComtradeIntake::Header& header, const RecordedColumns& columns);

} // namespace OrvComtradePage
