#pragma once

#include "../config/segmentDuration.h"
#include "Cfg.h"

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

private:
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
