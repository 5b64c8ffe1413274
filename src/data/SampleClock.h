#pragma once

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
    explicit SampleClock(const Cfg& configuration) : cfg(configuration) {}

    double timeOf(unsigned long sampleIndex) {
        if (cfg.samplingRates.empty() || beyondUnknownRate) {
            return -1.0;
        }
        unsigned long remaining = sampleIndex - passed;
        const SamplingRate* current = &cfg.samplingRates[segment];
        while (current->endSample <= remaining) {
            const double duration = current->getDuration(current->endSample);
            if (duration < 0.0) {
                beyondUnknownRate = true;
                return -1.0;
            }
            if (segment + 1 == cfg.samplingRates.size()) {
                remaining -= current->endSample;
                return (current->getDuration(remaining) + (accumulated + duration)) * cfg.timeMultiplier;
            }
            accumulated += duration;
            passed += current->endSample;
            remaining -= current->endSample;
            current = &cfg.samplingRates[++segment];
        }
        return (current->getDuration(remaining) + accumulated) * cfg.timeMultiplier;
    }

private:
    const Cfg& cfg;
    std::size_t segment = 0;        ///< the rate reached
    unsigned long passed = 0;       ///< samples of the rates before it
    double accumulated = 0.0;       ///< seconds of the rates before it
    bool beyondUnknownRate = false; ///< a rate without a duration lies behind
};

} // namespace OrvComtradeLib
