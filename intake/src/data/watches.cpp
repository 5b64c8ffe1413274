#include "data/watches.h"

#include "data/Stamps.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <numeric>

namespace OrvComtradeIntake {

namespace {

/// The difference, whatever the numbers are.
std::int64_t stepBetween(std::int64_t from, std::int64_t to) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(to) - static_cast<std::uint64_t>(from));
}

/// Counters of 16 and 32 bits begin again behind these, and those of columns with five, six or ten digits.
bool isEndOfCount(std::int64_t number) {
    constexpr std::array<std::int64_t, 5> ends = {65535, 99999, 999999, 4294967295, 9999999999};
    return std::find(ends.begin(), ends.end(), number) != ends.end();
}

constexpr std::size_t kStepsToKnow = 64; // enough for a median that a gap or two among the first do not move
constexpr std::size_t kFewestSteps = 3;  // that show a unit
constexpr double kRoundedStep = 10.0;    // shorter ones are too much rounded for each to count

std::int64_t inRecord(std::int64_t stamp) {
    return static_cast<std::uint32_t>(stamp);
}

/// To three digits.
std::string shortText(double number) {
    std::array<char, 32> text{};
    const auto result = std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::general, 3);
    return {text.data(), result.ptr};
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
        _otherStep.reset();
        return;
    }
    if (_otherStep == step && samples == 1) { // twice the same: the recorder's way to count from here on
        _jumps -= _jumps == 1 && _firstJump.sample + 1 == place.sample && place.sample <= 2 ? 1 : 0;
        _step = step;
        _otherStep.reset();
        return;
    }
    _otherStep = step;
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
    _otherStep.reset();
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
    const std::string where = _firstJump.line == 0 ? " in record " + std::to_string(_firstJump.sample + 1) : "";
    findings.add(Kind::NumberJump, source.place(_firstJump.line, "n", _firstJump.position),
                 {std::to_string(_after) + " after " + std::to_string(_before) + where, "", "", _jumps});
}

/// From one stamp to the next, which may have wrapped in between.
double StampWatch::_lengthOf(std::int64_t from, std::int64_t to) {
    const double length = static_cast<double>(to) - static_cast<double>(from);
    const bool hasWrapped = length < -static_cast<double>(kStampRange) / 2.0 && from < kStampRange;
    return hasWrapped ? length + static_cast<double>(kStampRange) : length;
}

void StampWatch::_measure(std::int64_t stamp) {
    _isWide = _isWide || stamp < 0 || stamp >= std::int64_t{kMissingStamp};
    _isOtherInRecords = _isOtherInRecords || inRecord(stamp) == std::int64_t{kMissingStamp};
}

void StampWatch::add(std::optional<std::int64_t> stamp, const SamplePlace& place) {
    if (!stamp) {
        return;
    }
    _measure(*stamp);
    const std::optional<std::int64_t> before = std::exchange(_last, stamp);
    const bool isNext = place.sample == std::exchange(_lastSample, place.sample) + 1;
    if (!before || !isNext) {
        return;
    }
    const double length = _lengthOf(*before, *stamp);
    _isOtherInRecords = _isOtherInRecords || length != _lengthOf(inRecord(*before), inRecord(*stamp));
    ++_steps;
    _rising += length > 0.0 ? 1U : 0U;
    _falling += length < 0.0 ? 1U : 0U;
    if (_segments.empty()) {
        return;
    }
    const Step step = _stepTo(length, place);
    if (_isLearnt) {
        _check(step);
        return;
    }
    _first.push_back(step);
    if (_first.size() == kStepsToKnow) {
        _learn();
    }
}

StampWatch::Step StampWatch::_stepTo(double length, const SamplePlace& place) {
    while (_segment + 1 < _segments.size() && _segments[_segment + 1].begin <= place.sample) {
        ++_segment;
    }
    const bool isFirstOfSegment = _segment != 0 && _segments[_segment].begin == place.sample;
    const double whole = kMicrosecondsPerSecond / _timeMultiplier;
    return {length, whole / _segments[_segment].rate, whole / _segments[_segment - (isFirstOfSegment ? 1 : 0)].rate,
            place};
}

/// Which unit the stamps have, by the first steps.
void StampWatch::_learn() {
    _isLearnt = true;
    if (_first.empty()) {
        return;
    }
    std::vector<double> ratios;
    double sum = 0.0;
    double expected = 0.0;
    for (const Step& step : _first) {
        if (step.expected != step.otherwise) { // from one rate to the next: either may be meant
            continue;
        }
        ratios.push_back(step.length / step.expected);
        sum += step.length;
        expected += step.expected;
        if (step.length > 0.0 && step.length < 1e15) {
            _granularity = static_cast<double>(
                std::gcd(static_cast<std::int64_t>(_granularity), static_cast<std::int64_t>(step.length)));
        }
    }
    const bool hasRepeats =
        std::any_of(_first.begin(), _first.end(), [](const Step& step) { return step.length == 0.0; });
    const bool areAllTheSame =
        std::all_of(_first.begin(), _first.end(), [](const Step& step) { return step.length == 0.0; });
    if (areAllTheSame || ratios.size() < kFewestSteps) {
        return;
    }
    const auto middle = ratios.begin() + static_cast<std::ptrdiff_t>(ratios.size() / 2);
    std::nth_element(ratios.begin(), middle, ratios.end());
    // Of a coarse clock the steps are nothing or a whole tick: only their mean is near the truth.
    const bool isRounded = hasRepeats || _first.front().expected < kRoundedStep;
    const double ratio = isRounded ? sum / expected : *middle;
    _granularity = hasRepeats ? _granularity : 0.0;
    const double usualStep = ratio * _first.front().expected;
    const double tick = isRounded ? std::max(1.0, _granularity) : 0.0;
    _unit = _unitOf(ratio, usualStep, tick / expected);
    if (_unit == 0.0 && std::abs(usualStep - 1.0) > 1e-9) {
        _contradiction = _first.front();
        _contradiction->length = usualStep;
    }
    for (const Step& step : _first) {
        _check(step);
    }
    _first.clear();
}

/// 0 where stamps and rate contradict each other, or the stamps count samples. `tick` is a tick of a coarse clock, by
/// which the first stamps may be off altogether.
double StampWatch::_unitOf(double ratio, double usualStep, double tick) const {
    constexpr double tolerance = 0.1;
    if (std::abs(usualStep - 1.0) < 1e-9 && std::abs(ratio - 1.0) > tolerance) {
        return 0.0;
    }
    // Microseconds as the standard says, nanoseconds, milliseconds, or microseconds without the multiplier.
    const std::array units = {1.0, 1000.0, 0.001, _timeMultiplier};
    const auto isNear = [&](double unit) { return std::abs(ratio / unit - 1.0) < tolerance; };
    const auto isWithinATick = [&](double unit) { return std::abs(ratio - unit) < tick; };
    const auto* const near = std::find_if(units.begin(), units.end(), isNear);
    const auto* const unit = near != units.end() ? near : std::find_if(units.begin(), units.end(), isWithinATick);
    return unit != units.end() ? *unit : 0.0;
}

/// How far a step may be off: both stamps may be rounded; half a sample is not a sample lost; a coarse clock is off by
/// a tick.
double StampWatch::_limitOf(double expected) const {
    return std::max({2.0, 0.5 * expected * _unit, 1.01 * _granularity});
}

StampWatch::Band StampWatch::bandAt(std::uint64_t sample) const {
    constexpr std::int64_t anything = std::int64_t{1} << 62U;
    if (_segments.empty() || (_isLearnt && _contradiction)) {
        return {-anything, anything, UINT64_MAX};
    }
    if (_isLearnt && _unit == 0.0) { // they count samples, or are all the same: no other is passed without a look
        return {0, 1, UINT64_MAX};
    }
    if (!_isLearnt || _segment >= _segments.size() || _lastSample + 1 != sample) {
        return {};
    }
    const double expected = kMicrosecondsPerSecond / _timeMultiplier / _segments[_segment].rate;
    const double least = std::ceil(expected * _unit - _limitOf(expected));
    const double most = std::floor(expected * _unit + _limitOf(expected));
    const bool isUsable = most < static_cast<double>(anything);
    const std::uint64_t end = _segment + 1 < _segments.size() ? _segments[_segment + 1].begin : UINT64_MAX;
    return isUsable ? Band{static_cast<std::int64_t>(least), static_cast<std::int64_t>(most), end} : Band();
}

void StampWatch::pass(std::uint64_t samples, std::int64_t lastStamp) {
    _measure(lastStamp); // where there is no rate to tell, none of them falls
    _last = lastStamp;
    _lastSample += samples;
    _steps += samples;
    _rising += samples;
}

void StampWatch::_check(const Step& step) {
    if (_unit == 0.0) {
        return;
    }
    const auto isOff = [&](double expected) { return std::abs(step.length - expected * _unit) > _limitOf(expected); };
    if (!isOff(step.expected) || !isOff(step.otherwise)) {
        return;
    }
    if (_jumps++ == 0) {
        _firstJump = step;
    }
}

void StampWatch::report(const ByteSource& source, Findings& findings) {
    if (!_isLearnt) {
        _learn();
    }
    const auto place = [&source](const Step& step) {
        return source.place(step.place.line, "timestamp", step.place.position);
    };
    if (_contradiction) {
        findings.add(
            Kind::StampsDisagree, place(*_contradiction),
            {"steps of " + shortText(_contradiction->length) + " instead of " + shortText(_contradiction->expected),
             "times taken from the sampling rate"});
    }
    if (_jumps == 0) {
        return;
    }
    const double off = _firstJump.length / _unit - _firstJump.expected;
    const double seconds = off * _timeMultiplier / kMicrosecondsPerSecond;
    findings.add(Kind::StampsDisagree, place(_firstJump),
                 {"a step " + shortText(std::abs(seconds)) + " s too " + (seconds < 0.0 ? "short" : "long") +
                      " at sample " + std::to_string(_firstJump.place.sample + 1),
                  "times taken from the sampling rate", "", _jumps});
}

} // namespace OrvComtradeIntake
