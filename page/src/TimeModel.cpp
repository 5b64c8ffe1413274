#include "TimeModel.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <optional>

namespace OrvComtradePage {

using OrvComtradeIntake::Header;
using OrvComtradeIntake::RateInfo;

namespace {

constexpr double kSecondsPerStamp = 0.000001;

/// The samples by rate; neighbours of the same rate are one if they are `merged`.
std::vector<TimeModel::Segment> segmentsOf(const Header& header, bool merged) {
    std::vector<TimeModel::Segment> segments;
    std::uint64_t begin = 0;
    for (const RateInfo& rate : header.rates) {
        const bool isLast = &rate == &header.rates.back();
        const std::uint64_t end = isLast ? header.samples : std::min(rate.endSample, header.samples);
        if (end <= begin) {
            continue;
        }
        if (merged && !segments.empty() && segments.back().rate == rate.rate) {
            segments.back().count += end - begin;
        } else {
            segments.push_back({rate.rate, end - begin});
        }
        begin = end;
    }
    return segments;
}

/// Times of samples in ascending order, as the library computes them.
class RateClock {
public:
    explicit RateClock(const std::vector<TimeModel::Segment>& segments) : _segments(segments) {}

    double timeOf(std::uint64_t sample) {
        while (_segment + 1 < _segments.size() && sample - _begin >= _segments[_segment].count) {
            const TimeModel::Segment& segment = _segments[_segment++];
            _before += static_cast<double>(segment.count) / segment.rate;
            _begin += segment.count;
        }
        return static_cast<double>(sample - _begin) / _segments[_segment].rate + _before;
    }

private:
    const std::vector<TimeModel::Segment>& _segments;
    std::size_t _segment = 0;
    std::uint64_t _begin = 0; ///< of the segment
    double _before = 0.0;     ///< seconds of those before
};

bool areTimesOf(const std::vector<TimeModel::Segment>& segments, const RecordedColumns& columns,
                std::uint64_t samples) {
    if (segments.empty()) {
        return false;
    }
    RateClock clock(segments);
    std::size_t at = 0;
    for (const Piece& piece : columns.pieces) {
        for (std::uint64_t i = 0; i < piece.count; ++i) {
            const std::uint64_t sample = std::min(piece.first + i * piece.step, samples - 1);
            if (clock.timeOf(sample) != columns.time[at++]) {
                return false;
            }
        }
    }
    return true;
}

/// The whole numbers that times are of, with this multiplier.
std::optional<ValueColumn> stampsOf(const std::vector<double>& times, double multiplier) {
    std::vector<double> stamps;
    stamps.reserve(times.size());
    for (const double time : times) {
        const double stamp = std::round(time / (multiplier * kSecondsPerStamp));
        if (stamp * multiplier * kSecondsPerStamp != time) {
            return std::nullopt;
        }
        stamps.push_back(stamp);
    }
    ValueColumn column;
    column.append(stamps.data(), stamps.size());
    return column;
}

} // namespace

TimeModel timeModelOf(const Header& header, const RecordedColumns& columns) {
    TimeModel model;
    if (!header.timesAreStamped()) {
        for (const bool merged : {true, false}) {
            model.segments = segmentsOf(header, merged);
            if (areTimesOf(model.segments, columns, header.samples)) {
                model.kind = TimeModel::Kind::Rates;
                return model;
            }
        }
    }
    model.segments.clear();
    for (const double multiplier : {header.timeMultiplier, header.timeMultiplier / 1000.0, 1.0, 0.001}) {
        std::optional<ValueColumn> stamps = multiplier > 0.0 ? stampsOf(columns.time, multiplier) : std::nullopt;
        if (stamps) {
            model.kind = TimeModel::Kind::Stamps;
            model.multiplier = multiplier;
            model.numbers = std::move(*stamps);
            return model;
        }
    }
    model.numbers.append(columns.time.data(), columns.time.size());
    return model;
}

} // namespace OrvComtradePage
