#pragma once

#include "data/NumberWatch.h"
#include "data/StampWatch.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace OrvComtradeIntake {

/// What watches whether samples follow one another. Those that surely do are only counted.
class Watches {
public:
    Watches(const std::vector<Segment>& segments, double timeMultiplier)
        : _numbers(_beginsOf(segments)), _stamps(segments, timeMultiplier) {}

    void add(std::optional<std::int64_t> number, std::optional<std::int64_t> stamp, const SamplePlace& place) {
        if (number && stamp && _goesOn(*number, *stamp, place.sample)) {
            return;
        }
        _flush();
        _numbers.add(number, place);
        _stamps.add(stamp, place);
        _next = _numbers.expected();
        _band = number ? _stamps.bandAt(place.sample + 1) : StampWatch::Band();
        _lastStamp = stamp && _isBounded(*stamp) ? stamp : std::nullopt;
    }

    /// The number that should come next, once one has come.
    std::optional<std::int64_t> expectedNumber() const { return _next; }

    /// Both, once all samples are added.
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

    bool _goesOn(std::int64_t number, std::int64_t stamp, std::uint64_t sample) {
        if (number != _next || !_lastStamp || sample >= _band.end || !_isBounded(stamp) ||
            stamp < *_lastStamp + _band.least || stamp > *_lastStamp + _band.most) {
            return false;
        }
        _next = _numbers.expected(static_cast<std::int64_t>(++_passed));
        _lastStamp = stamp;
        return true;
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
    std::uint64_t _passed = 0; ///< samples that are only counted yet
};

} // namespace OrvComtradeIntake
