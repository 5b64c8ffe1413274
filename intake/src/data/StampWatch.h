#pragma once

#include "data/SamplePlace.h"
#include "files/ByteSource.h"
#include "report/Findings.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace OrvComtradeIntake {

/// A stretch of samples at one rate, up to the next one.
struct Segment {
    std::uint64_t begin = 0; ///< 0-based first sample
    double rate = 0.0;       ///< samples per second
};

/// Watches whether the time stamps go on as the sampling rates say. Times then come from the rates (7.4.7), so that a
/// contradiction is for a person to judge. Tolerated, since recorders do so: no stamps, or the same in every sample;
/// any first stamp; stamps that wrap at 32 bits, count samples, count milliseconds or nanoseconds, or leave the time
/// multiplier out; clocks coarser than a sample; steps that are off by less than half a sample.
class StampWatch {
public:
    /// `segments` is empty where times come from the stamps: then there is nothing to compare with.
    StampWatch(std::vector<Segment> segments, double timeMultiplier)
        : _segments(std::move(segments)), _timeMultiplier(timeMultiplier) {}

    /// Steps that are as they should be.
    struct Band {
        std::int64_t least = 0;
        std::int64_t most = 0;
        std::uint64_t end = 0; ///< for samples before this one
    };

    void add(std::optional<std::int64_t> stamp, const SamplePlace& place);

    /// For the sample behind those that were added; before any sample if nothing is known yet.
    Band bandAt(std::uint64_t sample) const;

    /// So many samples had such steps, the last of them this stamp.
    void pass(std::uint64_t samples, std::int64_t lastStamp);

    /// Whether the stamps do not tell the order of the samples.
    bool areSenseless() const { return _steps < 2 || _rising == 0 || 4 * _falling > _steps; }

    void report(const ByteSource& source, Findings& findings);

    /// Whether nothing contradicts the rates, once that is reported.
    bool areSound() const { return _jumps == 0 && !_contradiction; }

private:
    struct Step {
        double length = 0.0;
        double expected = 0.0;  ///< microseconds, times the multiplier
        double otherwise = 0.0; ///< the same by the rate before
        SamplePlace place;
    };

    Step _stepTo(double length, const SamplePlace& place);
    void _learn();
    double _unitOf(double ratio, double usualStep, double tick) const;
    double _limitOf(double expected) const;
    void _check(const Step& step);

    std::vector<Segment> _segments;
    double _timeMultiplier;
    std::size_t _segment = 0;
    std::optional<std::int64_t> _last;
    std::uint64_t _lastSample = 0;
    std::uint64_t _steps = 0;
    std::uint64_t _rising = 0;
    std::uint64_t _falling = 0;
    std::vector<Step> _first; ///< until there are enough to know the unit
    bool _isLearnt = false;
    double _unit = 0.0; ///< of a stamp, in microseconds: 1000 stamps of it make a millisecond; 0: nothing to compare
    double _granularity = 0.0; ///< of a clock coarser than a sample
    std::uint64_t _jumps = 0;
    Step _firstJump;
    std::optional<Step> _contradiction; ///< an ordinary step, where all are others than the rate says
};

} // namespace OrvComtradeIntake
