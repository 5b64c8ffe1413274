#pragma once

#include "data/DataLayout.h"
#include "files/ByteSource.h"
#include "report/Findings.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace OrvComtradeIntake {

constexpr std::size_t kShownNumbers = 3; ///< sample numbers shown in a finding about their order

/// Watches whether the numbers of the samples are consecutive. Some deviations are tolerated, since recorders write
/// them: a first number other than 1; another step than 1 throughout, including 0; a new start where the sampling rate
/// changes; a count that starts again after 65535, 99999, 999999, 2^32 - 1 or 9999999999; missing numbers.
class NumberWatch {
public:
    /// `segments` has the 0-based samples at which another sampling rate begins, in order.
    explicit NumberWatch(std::vector<std::uint64_t> segments) : _segments(std::move(segments)) {}

    void add(std::optional<std::int64_t> number, const SamplePlace& place);

    /// The number that should come next, or `further` places after that. Nothing before the first number.
    std::optional<std::int64_t> expected(std::int64_t further = 0) const {
        return _last ? std::optional(_behind(*_last, 1 + further)) : std::nullopt;
    }

    /// The difference between consecutive numbers, as far as it is known.
    std::int64_t step() const { return _step; }

    /// Counts `samples` samples that had the expected numbers.
    void pass(std::uint64_t samples);

    /// Whether most numbers follow no rule.
    bool areSenseless() const { return _known > 2 && 2 * _jumps > _known; }

    /// Whether all numbers are the same.
    bool areAlike() const { return _known == 1 || (_step == 0 && _jumps == 0); }

    /// The first numbers, for a finding: "1, 1179569, 65534".
    std::string firstNumbers() const;

    void report(const ByteSource& source, Findings& findings) const;

private:
    /// The number `steps` steps after another. Wraps instead of overflowing.
    std::int64_t _behind(std::int64_t number, std::int64_t steps) const {
        return static_cast<std::int64_t>(static_cast<std::uint64_t>(number) +
                                         static_cast<std::uint64_t>(_step) * static_cast<std::uint64_t>(steps));
    }

    bool _isTolerated(std::int64_t before, std::int64_t number, std::uint64_t sample);

    std::vector<std::uint64_t> _segments;
    std::size_t _segment = 0;
    std::vector<std::int64_t> _firstNumbers;
    std::optional<std::int64_t> _last;
    std::uint64_t _lastSample = 0;
    std::int64_t _step = 1;
    std::optional<std::int64_t> _otherStep; ///< the step before, if it was not `_step`
    std::uint64_t _known = 0;
    std::uint64_t _jumps = 0;
    SamplePlace _firstJump;
    std::int64_t _before = 0; ///< numbers at the first jump
    std::int64_t _after = 0;
};

/// A stretch of samples at one rate, up to the next one.
struct Segment {
    std::uint64_t begin = 0; ///< 0-based first sample
    double rate = 0.0;       ///< samples per second

    bool operator==(const Segment& other) const { return begin == other.begin && rate == other.rate; }
};

/// Watches whether the time stamps agree with the sampling rates. Times come from the rates (IEEE C37.111-2013, 7.4.7),
/// so a person has to judge a contradiction. Some deviations are tolerated, since recorders write them: no stamps, or
/// the same in every sample; any first stamp; stamps that wrap at 32 bits, count samples, count milliseconds or
/// nanoseconds, or ignore the time multiplier; clocks coarser than a sample; steps that are off by less than half a
/// sample.
class StampWatch {
public:
    /// `segments` is empty if times come from the stamps: then there is nothing to compare with.
    StampWatch(std::vector<Segment> segments, double timeMultiplier)
        : _segments(std::move(segments)), _timeMultiplier(timeMultiplier) {}

    /// Steps between stamps that agree with the rates.
    struct Band {
        std::int64_t least = 0;
        std::int64_t most = 0;
        std::uint64_t end = 0; ///< it applies to samples before this one
    };

    void add(std::optional<std::int64_t> stamp, const SamplePlace& place);

    /// The band for the sample after those that were added. It applies to no sample if nothing is known yet.
    Band bandAt(std::uint64_t sample) const;

    /// Counts `samples` samples whose steps were within the band. The last of them had `lastStamp`.
    void pass(std::uint64_t samples, std::int64_t lastStamp);

    /// Whether the stamps do not show the order of the samples.
    bool areSenseless() const { return _steps < 2 || _rising == 0 || 4 * _falling > _steps; }

    void report(const ByteSource& source, Findings& findings);

    /// Whether nothing contradicts the rates. To be called after `report`.
    bool areSound() const { return _jumps == 0 && !_contradiction; }

    /// Whether records can have the stamps: they count modulo 2^32, which says the same unless there is no rate to tell
    /// a step from a wrap, or a step becomes another. To be called after `report`.
    bool fitRecords() const { return !_isWide || (_unit != 0.0 && !_isOtherInRecords); }

private:
    struct Step {
        double length = 0.0;
        double expected = 0.0;  ///< microseconds, times the multiplier
        double otherwise = 0.0; ///< the same by the rate before
        SamplePlace place;
    };

    static double _lengthOf(std::int64_t from, std::int64_t to);
    Step _stepTo(double length, const SamplePlace& place);
    void _learn();
    double _unitOf(double ratio, double usualStep, double tick) const;
    double _limitOf(double expected) const;
    void _check(const Step& step);
    void _measure(std::int64_t stamp);

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
    double _unit = 0.0;             ///< stamps per microsecond of the expected step; 0: nothing to compare
    double _granularity = 0.0;      ///< of a clock coarser than a sample
    bool _isWide = false;           ///< some stamp has no place in a record
    bool _isOtherInRecords = false; ///< some step, modulo 2^32
    std::uint64_t _jumps = 0;
    Step _firstJump;
    std::optional<Step> _contradiction; ///< a typical step, if all steps contradict the rate
};

/// Watches numbers and stamps together. Samples that certainly follow the one before are only counted, which is fast.
class Watches {
public:
    static constexpr std::size_t kAtOnce = 32; ///< samples that are checked together

    Watches(const std::vector<Segment>& segments, double timeMultiplier)
        : _numbers(_beginsOf(segments)), _stamps(segments, timeMultiplier) {}

    void add(std::optional<std::int64_t> number, std::optional<std::int64_t> stamp, const SamplePlace& place) {
        if (number && stamp && pass(*number, *stamp, place.sample)) {
            return;
        }
        _flush();
        _numbers.add(number, place);
        _stamps.add(stamp, place);
        _next = _numbers.expected();
        _band = number ? _stamps.bandAt(place.sample + 1) : StampWatch::Band();
        _lastStamp = stamp && _isBounded(*stamp) ? stamp : std::nullopt;
    }

    /// Counts a sample that certainly follows the one before. Returns false for any other, which is left to `add`.
    bool pass(std::int64_t number, std::int64_t stamp, std::uint64_t sample) {
        if (number != _next || !_lastStamp || sample >= _band.end || !_isBounded(stamp) ||
            stamp < *_lastStamp + _band.least || stamp > *_lastStamp + _band.most) {
            return false;
        }
        _next = _numbers.expected(static_cast<std::int64_t>(++_passed));
        _lastStamp = stamp;
        return true;
    }

    /// The same for up to `count` samples from `sample` on, many at a time. `numberAt(n)` and `stampAt(n)` give number
    /// and stamp of the n-th; stamps must be above -2^61. Returns how many samples were counted.
    template <class NumberAt, class StampAt>
    std::size_t passMany(std::uint64_t sample, std::size_t count, NumberAt numberAt, StampAt stampAt) {
        std::size_t passed = 0;
        while (_lastStamp && _next && passed + kAtOnce <= count && sample + passed + kAtOnce <= _band.end) {
            const auto next = static_cast<std::uint64_t>(*_next); // whatever the numbers are, no sum overflows
            const auto step = static_cast<std::uint64_t>(_numbers.step());
            std::int64_t before = *_lastStamp;
            bool isIrregular = false;
            for (std::size_t i = 0; i < kAtOnce; ++i) { // without a branch, so that vector units do it
                const std::int64_t stamp = stampAt(passed + i);
                const std::int64_t length = stamp - before;
                isIrregular |= static_cast<std::uint64_t>(numberAt(passed + i)) != next + i * step;
                isIrregular |= (length < _band.least) | (length > _band.most) | (stamp >= kMostStamp);
                before = stamp;
            }
            if (isIrregular) {
                break;
            }
            _passed += kAtOnce;
            _next = _numbers.expected(static_cast<std::int64_t>(_passed));
            _lastStamp = before;
            passed += kAtOnce;
        }
        return passed;
    }

    /// The number that should come next. Nothing before the first number.
    std::optional<std::int64_t> expectedNumber() const { return _next; }

    // To be called after all samples are added.
    NumberWatch& numbers() {
        _flush();
        return _numbers;
    }
    StampWatch& stamps() {
        _flush();
        return _stamps;
    }

    /// Whether most samples have neither a number nor a stamp that makes sense.
    bool areSenseless() { return numbers().areSenseless() && stamps().areSenseless(); }

private:
    static constexpr std::int64_t kMostStamp = std::int64_t{1} << 61U; // keeps sums within 64 bits

    static bool _isBounded(std::int64_t stamp) { return stamp > -kMostStamp && stamp < kMostStamp; }

    static std::vector<std::uint64_t> _beginsOf(const std::vector<Segment>& segments) {
        std::vector<std::uint64_t> begins;
        begins.reserve(segments.size());
        for (const Segment& segment : segments) {
            begins.push_back(segment.begin);
        }
        return begins;
    }

    void _flush() {
        if (_passed != 0) {
            _numbers.pass(_passed);
            _stamps.pass(_passed, *_lastStamp);
            _passed = 0;
        }
    }

    NumberWatch _numbers;
    StampWatch _stamps;
    std::optional<std::int64_t> _next;
    std::optional<std::int64_t> _lastStamp;
    StampWatch::Band _band;
    std::uint64_t _passed = 0; ///< samples that are counted here but not in `_numbers` and `_stamps` yet
};

} // namespace OrvComtradeIntake
