#include "data/NumberWatch.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace OrvComtradeIntake {

namespace {

constexpr std::size_t kShownNumbers = 3;

/// The difference, whatever the numbers are.
std::int64_t stepBetween(std::int64_t from, std::int64_t to) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(to) - static_cast<std::uint64_t>(from));
}

bool isEndOfCount(std::int64_t number) {
    constexpr std::array<std::int64_t, 5> ends = {65535, 99999, 999999, 4294967295, 9999999999};
    return std::find(ends.begin(), ends.end(), number) != ends.end();
}

} // namespace

void NumberWatch::add(std::optional<std::int64_t> number, const SamplePlace& place) {
    if (!number) {
        return;
    }
    ++_known;
    if (_firstNumbers.size() < kShownNumbers) {
        _firstNumbers.push_back(*number);
    }
    const std::optional<std::int64_t> before = std::exchange(_last, number);
    const std::uint64_t samples = place.sample - std::exchange(_lastSample, place.sample);
    if (!before) {
        return;
    }
    const std::int64_t step = stepBetween(*before, *number);
    const bool goesOn = *number == _behind(*before, static_cast<std::int64_t>(samples));
    if (goesOn || _isTolerated(*before, *number, place.sample)) {
        _oddStep.reset();
        return;
    }
    if (_oddStep == step && samples == 1) { // twice the same: the recorder's way to count from here on
        _jumps -= _jumps == 1 && _firstJump.sample + 1 == place.sample && place.sample <= 2 ? 1 : 0;
        _step = step;
        _oddStep.reset();
        return;
    }
    _oddStep = step;
    if (_jumps++ == 0) {
        _firstJump = place;
        _before = *before;
        _after = *number;
    }
}

bool NumberWatch::_isTolerated(std::int64_t before, std::int64_t number, std::uint64_t sample) {
    while (_segment < _segments.size() && _segments[_segment] < sample) {
        ++_segment;
    }
    const bool beginsSegment = _segment < _segments.size() && _segments[_segment] == sample;
    const bool beginsAgain = number == 0 || number == 1 || number == _firstNumbers.front();
    return beginsAgain && (beginsSegment || isEndOfCount(before));
}

void NumberWatch::pass(std::uint64_t samples) {
    *_last = _behind(*_last, static_cast<std::int64_t>(samples));
    _lastSample += samples;
    _known += samples;
    _oddStep.reset();
}

std::string NumberWatch::firstNumbers() const {
    std::string text;
    for (const std::int64_t number : _firstNumbers) {
        text += (text.empty() ? "" : ", ") + std::to_string(number);
    }
    return text;
}

void NumberWatch::report(const ByteSource& source, Findings& findings) const {
    if (_jumps == 0) {
        return;
    }
    const std::string which = _firstJump.line == 0 ? "record " + std::to_string(_firstJump.sample + 1) + ", " : "";
    findings.add(Kind::NumberJump, {source.name(), _firstJump.line, "n", source.offsetInFile(_firstJump.position)},
                 {which + std::to_string(_after) + " behind " + std::to_string(_before), "", "", _jumps});
}

} // namespace OrvComtradeIntake
