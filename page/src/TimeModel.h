#pragma once

#include "RecordedColumns.h"
#include "ValueColumn.h"

#include <OrvComtradeIntake/Header.h>

#include <cstdint>
#include <vector>

namespace OrvComtradePage {

/// How a page computes the times of its samples, exact to the last bit: from sampling rates, from time stamps, or from
/// a list of the times themselves.
struct TimeModel {
    enum class Kind { Rates, Stamps, Times };

    /// Consecutive samples at one rate.
    struct Segment {
        double rate = 0.0; ///< samples per second
        std::uint64_t count = 0;
    };

    Kind kind = Kind::Times;
    std::vector<Segment> segments; ///< for Rates: time = (samples within / rate + sum of (count / rate) before)
    double multiplier = 1.0;       ///< for Stamps: time = stamp * multiplier * 0.000001
    ValueColumn numbers;           ///< stamps or times; empty for Rates
};

/// The first of the three kinds that gives exactly the times of the columns.
TimeModel timeModelOf(const OrvComtradeIntake::Header& header, const RecordedColumns& columns);

} // namespace OrvComtradePage
