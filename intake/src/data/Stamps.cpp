#include "data/Stamps.h"

#include "base/numbers.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>
#include <utility>

namespace OrvComtradeIntake {

namespace {

constexpr std::int64_t kHalfStampRange = kStampRange / 2;
constexpr std::int64_t kGreatest = std::int64_t{1} << 61U; // keeps sums and differences within 64 bits
constexpr std::size_t kStepsToKnowStamps = 1024;
constexpr std::uint64_t kGapFactor = 10;
constexpr int kDigitsOfTime = 18;

std::int64_t clamped(std::int64_t stamp) {
    return std::clamp(stamp, -kGreatest, kGreatest);
}

std::int64_t rounded(double stamp) {
    constexpr auto greatest = static_cast<double>(kGreatest);
    return std::llround(std::clamp(stamp, -greatest, greatest));
}

/// The stamp of the sample `index` of a fill.
std::int64_t filled(const StampFill& fill, std::uint64_t index) {
    return fill.base + rounded(fill.first + fill.step * static_cast<double>(index));
}

std::uint64_t divided(std::uint64_t stamp, std::uint64_t divisor) {
    return divisor == 1 ? stamp : stamp / divisor + (stamp % divisor >= (divisor + 1) / 2 ? 1 : 0);
}

/// Which may be more than 63 bits long.
std::uint64_t difference(std::int64_t greater, std::int64_t lesser) {
    return static_cast<std::uint64_t>(greater) - static_cast<std::uint64_t>(lesser);
}

} // namespace

void StampScale::add(std::int64_t stamp) {
    _greatest = std::max(_greatest, static_cast<std::uint64_t>(stamp < 0 ? -stamp : stamp));
}

void StampScale::add(const Decimal& stamp) {
    add(stamp.scaled(0));
    _digits = std::max(_digits, -stamp.exponent);
}

int StampScale::exponent() const {
    int exponent = 0;
    for (std::uint64_t most = kGreatest / 10; exponent < std::min(_digits, kDigitsOfTime) && _greatest < most;) {
        most /= 10;
        ++exponent;
    }
    return exponent;
}

StampUnwrapper::StampUnwrapper(int exponent) : _range(kGreatest) {
    const std::uint64_t power = kPowersOfTen[static_cast<std::size_t>(exponent)];
    if (power <= static_cast<std::uint64_t>(kGreatest / kStampRange)) {
        _range = kStampRange * static_cast<std::int64_t>(power);
    }
}

std::int64_t StampUnwrapper::unwrap(std::int64_t stamp) {
    stamp = clamped(stamp);
    if (_any && _isInRange(stamp) && _isInRange(_before)) {
        if (stamp < _before && _before - stamp > _range / 2 && _passed <= kGreatest - _range) {
            _passed += _range;
            ++_wraps;
        } else if (_passed != 0 && stamp > _before && stamp - _before > _range / 2) {
            _passed -= _range;
        }
    }
    _any = true;
    _before = stamp;
    return stamp + _passed;
}

void StampSurvey::add(std::optional<std::int64_t> stamp, const SamplePlace& place) {
    ++_samples;
    if (stamp) {
        _addKnown(*stamp, place);
    } else {
        _note(_missing, place);
    }
}

void StampSurvey::_note(Places& places, const SamplePlace& place) {
    if (places.count++ == 0) {
        places.first = place;
    }
}

void StampSurvey::_addKnown(std::int64_t stamp, const SamplePlace& place) {
    const std::uint64_t wraps = _unwrapper.wraps();
    const std::int64_t unwrapped = _unwrapper.unwrap(stamp);
    if (_unwrapper.wraps() != wraps) {
        _note(_wrapped, place);
    }
    if (stamp >= _unwrapper.range()) {
        _note(_wide, place);
    }
    if (stamp < 0) {
        _note(_negative, place);
    }
    _greatest = _last ? std::max(_greatest, unwrapped) : unwrapped;
    _lowest = _last ? std::min(_lowest, unwrapped) : unwrapped;
    if (!_last) {
        _first = unwrapped;
        _firstSample = place.sample;
    } else if (unwrapped < *_last) {
        _note(_backwards, place);
        _greatestBack = std::max(_greatestBack, difference(*_last, unwrapped) - 1);
    } else if (place.sample == _lastSample + 1) {
        _addStep({difference(unwrapped, *_last), place});
    }
    if (_last && !_firstStep) {
        const auto step = static_cast<double>(unwrapped - *_last);
        _firstStep = std::max(step / static_cast<double>(place.sample - _lastSample), 0.0);
    }
    if (_last && place.sample > _lastSample + 1) {
        _closeGap(unwrapped, place.sample);
    }
    _lastStep = _last && unwrapped > *_last ? difference(unwrapped, *_last) / (place.sample - _lastSample) : 0;
    _last = unwrapped;
    _lastSample = place.sample;
}

void StampSurvey::_closeGap(std::int64_t next, std::uint64_t sample) {
    const double step = static_cast<double>(next - *_last) / static_cast<double>(sample - _lastSample);
    _fills.push_back({_lastSample + 1, sample - _lastSample - 1, *_last, step, step});
}

void StampSurvey::_addStep(const Step& step) {
    if (_usualStep != 0) {
        _judge(step);
        return;
    }
    _firstSteps.push_back(step);
    if (_firstSteps.size() == kStepsToKnowStamps) {
        _judgeFirstSteps();
    }
}

void StampSurvey::_judge(const Step& step) {
    if (step.length / kGapFactor >= _usualStep && step.length > kGapFactor * _usualStep) {
        _note(_gaps, step.place);
        _gaps.step = _gaps.count == 1 ? step.length : _gaps.step;
    }
}

void StampSurvey::_judgeFirstSteps() {
    std::vector<std::uint64_t> lengths;
    for (const Step& step : _firstSteps) {
        lengths.push_back(step.length);
    }
    const auto middle = lengths.begin() + static_cast<std::ptrdiff_t>(lengths.size() / 2);
    std::nth_element(lengths.begin(), middle, lengths.end());
    _usualStep = std::min(std::max<std::uint64_t>(*middle, 1), UINT64_MAX / kGapFactor);
    for (const Step& step : std::exchange(_firstSteps, {})) {
        _judge(step);
    }
}

StampPlan StampSurvey::plan() {
    if (!_firstSteps.empty()) {
        _judgeFirstSteps();
    }
    StampPlan plan;
    if (_missing.count != 0) {
        _fillEnds(plan);
    }
    _scale(plan);
    _hasStandardForm =
        _missing.count == 0 && plan.divisor == 1 && plan.origin == 0 && plan.exponent == 0 && _wrapped.count == 0;
    return plan;
}

bool StampSurvey::areStandard() const {
    return _hasStandardForm;
}

/// Goes on with the first and the last step beyond the stamps that there are.
void StampSurvey::_fillEnds(StampPlan& plan) {
    if (!_last) {
        return; // an error: nothing gives the times
    }
    if (_firstSample != 0) {
        const auto count = static_cast<double>(_firstSample);
        double step = _firstStep.value_or(1.0);
        if (_lowest >= 0) {
            step = std::min(step, static_cast<double>(_first) / count); // no stamp becomes negative
        }
        _fills.insert(_fills.begin(), {0, _firstSample, _first, -count * step, step});
        _lowest = std::min(_lowest, filled(_fills.front(), 0));
    }
    if (_lastSample + 1 < _samples) {
        const std::uint64_t count = _samples - _lastSample - 1;
        const double step = _firstStep ? static_cast<double>(_lastStep) : 1.0;
        _fills.push_back({_lastSample + 1, count, *_last, step, step});
        _greatest = std::max(_greatest, filled(_fills.back(), count - 1));
    }
    plan.fills = std::move(_fills);
}

/// The times count from the first sample, whose date the configuration gives; no stamp becomes negative.
void StampSurvey::_scale(StampPlan& plan) const {
    plan.exponent = _exponent;
    plan.origin = _lowest;
    const bool mayStand = _isText && _exponent == 0 && _lowest == 0;
    std::uint64_t most = kMissingStamp - std::uint64_t{mayStand ? 0U : 1U};
    const std::uint64_t greatest = difference(_greatest, plan.origin);
    int dropped = 0;
    while (divided(greatest, plan.divisor) > most ||
           _greatestBack / plan.divisor > kHalfStampRange - 1) { // or would be taken for a wrap
        plan.divisor *= 10;
        ++dropped;
        most = kMissingStamp - 1;
    }
    plan.greatest = divided(greatest, plan.divisor);
    const int exponent = _exponent - dropped;
    const auto power = static_cast<double>(kPowersOfTen[static_cast<std::size_t>(std::abs(exponent))]);
    (exponent < 0 ? plan.unit : plan.factor) = power;
}

void StampSurvey::report(const ByteSource& source, Findings& findings) const {
    const auto report = [&](const Places& places, Kind kind, std::string found, std::string repair) {
        if (places.count == 0) {
            return;
        }
        if (places.first.line == 0 && kind != Kind::NoTimes && kind != Kind::StampConstant) {
            found += (_isText ? " in sample " : " in record ") + std::to_string(places.first.sample + 1);
        }
        findings.add(kind, source.place(places.first.line, "timestamp", places.first.position),
                     {std::move(found), std::move(repair), "", places.count});
    };
    if (_last) {
        report(_missing, Kind::StampMissing, "no time stamp", "interpolated");
    } else {
        report(_missing, Kind::NoTimes, "no time stamp in any sample", "");
    }
    report(_wrapped, Kind::StampWrap, "a restart from 0", "counted on");
    report(_wide, Kind::StampRange, "more than 32 bits", "used as it is");
    report(_negative, Kind::StampRange, "a negative time stamp", "used as it is");
    report(_backwards, Kind::StampBackwards, "a lower one than before", "");
    report(_gaps, Kind::StampGap,
           "a step of " + std::to_string(_gaps.step) + " instead of " + std::to_string(_usualStep), "");
    if (_last && _samples > 1 && _lowest == _greatest) {
        report({1, {}, 0}, Kind::StampConstant, "the same time stamp in every sample", "");
    }
}

std::uint64_t PlannedStamps::_planned(std::int64_t stamp) const {
    return divided(difference(std::max(stamp, _plan.origin), _plan.origin), _plan.divisor);
}

std::uint32_t PlannedStamps::next(std::optional<std::int64_t> stamp) {
    const std::uint64_t sample = _sample++;
    if (stamp) {
        return static_cast<std::uint32_t>(_planned(_unwrapper.unwrap(*stamp)));
    }
    while (_fill < _plan.fills.size() && _plan.fills[_fill].sample + _plan.fills[_fill].count <= sample) {
        ++_fill;
    }
    if (_fill == _plan.fills.size() || _plan.fills[_fill].sample > sample) {
        return 0;
    }
    const StampFill& fill = _plan.fills[_fill];
    const std::int64_t between = filled(fill, sample - fill.sample);
    return static_cast<std::uint32_t>(
        std::min<std::uint64_t>(_planned(between), kMissingStamp - 1)); // whatever a double rounds to
}

} // namespace OrvComtradeIntake
