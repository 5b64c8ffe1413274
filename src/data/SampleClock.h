#pragma once

#include "../config/segmentDuration.h"
#include "Cfg.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace OrvComtradeLib {

/// Seconds of the time stamp of a line or record, which counts microseconds before the multiplier is applied.
inline double stampTime(std::uint32_t timestamp, double timeMultiplier) {
    return static_cast<double>(timestamp) * timeMultiplier * 0.000001;
}

/// `Cfg::timeFromSampleIndex` for indexes that only grow: it goes on from the sampling rate reached before, so that a
/// file of many rates costs no search per sample. Adds the same durations in the same order, hence to the same bits.
class SampleClock {
public:
    explicit SampleClock(const Cfg& configuration) : _cfg(configuration) {}

    double timeOf(unsigned long sampleIndex) {
        if (_cfg.samplingRates.empty() || _beyondUnknownRate) {
            return -1.0;
        }
        unsigned long remaining = sampleIndex - _passed;
        const SamplingRate* current = &_cfg.samplingRates[_segment];
        while (current->endSample <= remaining) {
            const double duration = _durationOf(*current, current->endSample);
            if (duration < 0.0) {
                _beyondUnknownRate = true;
                return -1.0;
            }
            if (_segment + 1 == _cfg.samplingRates.size()) {
                remaining -= current->endSample;
                return (_durationOf(*current, remaining) + (_accumulated + duration)) * _cfg.timeMultiplier;
            }
            _accumulated += duration;
            _passed += current->endSample;
            remaining -= current->endSample;
            current = &_cfg.samplingRates[++_segment];
        }
        return (_durationOf(*current, remaining) + _accumulated) * _cfg.timeMultiplier;
    }

    /// The same for `count` indexes from `first` on: within a rate without a search or a branch, for vector units.
    void timesOf(unsigned long first, std::size_t count, double* times) {
        constexpr std::size_t most = 1U << 20U; // an `int` counts them
        for (std::size_t done = 0; done < count;) {
            times[done] = timeOf(first + done);
            ++done;
            const std::size_t more = std::min({_leftBehind(first + done - 1), count - done, most});
            if (more == 0) {
                continue;
            }
            const SamplingRate& current = _cfg.samplingRates[_segment];
            const auto begin = static_cast<double>(first + done - _passed); // sums below are exact: below 2^53
            double* const following = times + done;
            for (int i = 0; i < static_cast<int>(more); ++i) {
                following[i] = ((begin + static_cast<double>(i)) / current.rate + _accumulated) * _cfg.timeMultiplier;
            }
            done += more;
        }
    }

private:
    /// Indexes behind this one, whose time was given last, that are surely of the same rate.
    std::size_t _leftBehind(unsigned long sampleIndex) const {
        constexpr unsigned long exact = 1UL << 52U;
        if (_cfg.samplingRates.empty() || _beyondUnknownRate || sampleIndex >= exact) {
            return 0;
        }
        const SamplingRate& current = _cfg.samplingRates[_segment];
        const unsigned long reached = sampleIndex - _passed;
        return current.rate > 0.0 && reached < current.endSample ? current.endSample - reached - 1 : 0;
    }

    static double _durationOf(const SamplingRate& segment, unsigned long sampleCount) {
        return segmentDuration(segment.rate, segment.endSample, sampleCount);
    }

    const Cfg& _cfg;
    std::size_t _segment = 0;        ///< the rate reached
    unsigned long _passed = 0;       ///< samples of the rates before it
    double _accumulated = 0.0;       ///< seconds of the rates before it
    bool _beyondUnknownRate = false; ///< a rate without a duration lies behind
};

} // namespace OrvComtradeLib
