#include "stamps.h"

#include "DataLayout.h"
#include "DataReader.h"
#include "numbers.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>
#include <utility>

namespace OrvComtradeIntake {

namespace {

constexpr std::int64_t kRange = std::int64_t{1} << 32U;
constexpr std::int64_t kHalfRange = kRange / 2;
constexpr std::int64_t kGreatest = std::int64_t{1} << 61U; // keeps sums and differences within 64 bits
constexpr std::size_t kStepsToKnow = 1024;
constexpr std::uint64_t kGapFactor = 10;
constexpr int kMostDigits = 18;

std::int64_t clamped(std::int64_t stamp) {
    return std::clamp(stamp, -kGreatest, kGreatest);
}

std::int64_t rounded(double stamp) {
    constexpr auto greatest = static_cast<double>(kGreatest);
    return std::llround(std::clamp(stamp, -greatest, greatest));
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
    _anyRounded = _anyRounded || stamp.rounded;
}

int StampScale::exponent() const {
    int exponent = 0;
    for (std::uint64_t most = kGreatest / 10; exponent < std::min(_digits, kMostDigits) && _greatest < most;) {
        most /= 10;
        ++exponent;
    }
    return exponent;
}

StampUnwrapper::StampUnwrapper(int exponent) : _range(kGreatest) {
    const std::uint64_t power = kPowersOfTen[static_cast<std::size_t>(exponent)];
    if (power <= static_cast<std::uint64_t>(kGreatest / kRange)) {
        _range = kRange * static_cast<std::int64_t>(power);
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

void StampSurvey::add(std::optional<std::int64_t> stamp, const StampPlace& place) {
    ++_samples;
    if (stamp) {
        _addKnown(*stamp, place);
    } else {
        _note(_missing, place);
    }
}

void StampSurvey::_note(Places& places, const StampPlace& place) {
    if (places.count++ == 0) {
        places.first = place;
    }
}

void StampSurvey::_addKnown(std::int64_t stamp, const StampPlace& place) {
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
        const double step = static_cast<double>(unwrapped) - static_cast<double>(*_last);
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
    const double step =
        (static_cast<double>(next) - static_cast<double>(*_last)) / static_cast<double>(sample - _lastSample);
    _fills.push_back({_lastSample + 1, sample - _lastSample - 1, static_cast<double>(*_last) + step, step});
}

void StampSurvey::_addStep(const Step& step) {
    if (_usualStep != 0) {
        _judge(step);
        return;
    }
    _firstSteps.push_back(step);
    if (_firstSteps.size() == kStepsToKnow) {
        _judgeFirstSteps();
    }
}

void StampSurvey::_judge(const Step& step) {
    if (step.length / kGapFactor >= _usualStep && step.length > kGapFactor * _usualStep) {
        _note(_gaps, step.place);
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

void StampSurvey::settle(DataSurvey& survey) {
    if (!_firstSteps.empty()) {
        _judgeFirstSteps();
    }
    if (_missing.count != 0) {
        _fillEnds(survey);
    }
    _setScale(survey);
    if (_missing.count != 0 || survey.stampDivisor != 1 || _wrapped.count != 0 || _negative.count != 0) {
        survey.asItStands = false;
    }
}

/// Goes on with the first and the last step beyond the stamps that there are.
void StampSurvey::_fillEnds(DataSurvey& survey) {
    if (!_last) {
        return; // an error: nothing tells the times
    }
    if (_firstSample != 0) {
        const auto count = static_cast<double>(_firstSample);
        const auto first = static_cast<double>(_first);
        double step = _firstStep.value_or(1.0);
        if (_lowest >= 0) {
            step = std::min(step, first / count); // no stamp becomes negative
        }
        _fills.insert(_fills.begin(), {0, _firstSample, first - count * step, step});
        _lowest = std::min(_lowest, rounded(first - count * step));
    }
    if (_lastSample + 1 < _samples) {
        const std::uint64_t count = _samples - _lastSample - 1;
        const double step = _firstStep ? static_cast<double>(_lastStep) : 1.0;
        _fills.push_back({_lastSample + 1, count, static_cast<double>(*_last) + step, step});
        _greatest = std::max(_greatest, rounded(static_cast<double>(*_last) + static_cast<double>(count) * step));
    }
    survey.stampFills = std::move(_fills);
}

void StampSurvey::_setScale(DataSurvey& survey) const {
    survey.stampExponent = _exponent;
    survey.stampOrigin = std::min<std::int64_t>(_lowest, 0);
    const bool mayStand = _isText && _exponent == 0 && _lowest >= 0;
    std::uint64_t most = kMissingStamp - std::uint64_t{mayStand ? 0U : 1U};
    const std::uint64_t greatest = difference(_greatest, survey.stampOrigin);
    int dropped = 0;
    while (divided(greatest, survey.stampDivisor) > most ||
           _greatestBack / survey.stampDivisor > kHalfRange - 1) { // or would be taken for a wrap
        survey.stampDivisor *= 10;
        ++dropped;
        most = kMissingStamp - 1;
    }
    const int exponent = _exponent - dropped;
    const auto power = static_cast<double>(kPowersOfTen[static_cast<std::size_t>(std::abs(exponent))]);
    (exponent < 0 ? survey.stampUnit : survey.stampFactor) = power;
}

Finding StampSurvey::_finding(Severity severity, const char* code, const Places& places) const {
    Finding finding;
    finding.severity = severity;
    finding.code = code;
    finding.file = _source.file;
    finding.line = places.first.line;
    finding.field = "timestamp";
    finding.offset = places.first.offset;
    finding.places = places.count;
    if (places.first.line == 0) {
        finding.found = (_isText ? "sample " : "record ") + std::to_string(places.first.sample + 1);
    }
    return finding;
}

void StampSurvey::tell(const DataSurvey& survey, Findings& findings) const {
    const auto tell = [&](const Places& places, Severity severity, const char* code, const std::string& found,
                          const char* expected, const std::string& done) {
        if (places.count == 0) {
            return;
        }
        Finding finding = _finding(severity, code, places);
        finding.found += (finding.found.empty() ? "" : ", ") + found;
        finding.expected = expected;
        finding.done = done;
        finding.mended = !done.empty();
        findings.add(std::move(finding));
    };
    const std::string scaled = writtenStamps(survey);
    const std::string unit = scaled.empty() ? "written as a count that goes on" : scaled;
    if (_last) {
        tell(_missing, Severity::Warning, "stamp-missing", "no time stamp", "a time stamp, since no rate is given",
             "interpolated between its neighbours");
    } else {
        tell(_missing, Severity::Error, "stamp-missing", "no time stamp in any sample",
             "time stamps or a sampling rate", "");
    }
    tell(_wrapped, Severity::Warning, "stamp-wrap", "begins again from 0", "a time stamp that goes on", unit);
    tell(_wide, Severity::Warning, "stamp-wide", "more than 32 bits", "a time stamp below 4294967295", unit);
    if (_lowest < 0) {
        const auto power = static_cast<double>(kPowersOfTen[static_cast<std::size_t>(_exponent)]);
        const std::string lowest = numberText(static_cast<double>(_lowest) / power);
        tell(_negative, Severity::Warning, "stamp-negative", "a negative time stamp", "a time stamp of 0 or more",
             "counted from " + lowest + ", which becomes 0" + (scaled.empty() ? "" : "; " + scaled));
    }
    tell(_backwards, Severity::Warning, "stamp-backwards", "lower than the one before", "a time stamp that goes on",
         "");
    tell(_gaps, Severity::Note, "stamp-gap", "more than ten times the usual step", "the usual step", "");
    if (_last && _samples > 1 && _lowest == _greatest) {
        _tellConstant(findings);
    }
}

void StampSurvey::_tellConstant(Findings& findings) const {
    Finding finding = _finding(Severity::Warning, "stamp-constant", Places());
    finding.found = "the same time stamp in every sample";
    finding.expected = "time stamps that go on";
    finding.offset = _source.offset;
    finding.places = 1;
    findings.add(std::move(finding));
}

std::string writtenStamps(const DataSurvey& survey) {
    if (survey.stampFactor != 1.0) {
        return "written times " + std::to_string(std::llround(survey.stampFactor));
    }
    return survey.stampUnit == 1.0 ? "" : "written divided by " + std::to_string(std::llround(survey.stampUnit));
}

std::uint64_t StampWriter::_written(std::int64_t stamp) const {
    return divided(difference(std::max(stamp, _survey.stampOrigin), _survey.stampOrigin), _survey.stampDivisor);
}

std::uint64_t StampWriter::next(std::optional<std::int64_t> stamp) {
    const std::uint64_t sample = _sample++;
    if (stamp) {
        return _written(_unwrapper.unwrap(*stamp));
    }
    while (_fill < _survey.stampFills.size() &&
           _survey.stampFills[_fill].sample + _survey.stampFills[_fill].count <= sample) {
        ++_fill;
    }
    if (_fill == _survey.stampFills.size() || _survey.stampFills[_fill].sample > sample) {
        return 0;
    }
    const StampFill& fill = _survey.stampFills[_fill];
    const std::int64_t between = rounded(fill.first + fill.step * static_cast<double>(sample - fill.sample));
    return std::min<std::uint64_t>(_written(between), kMissingStamp - 1); // whatever a double rounds to
}

} // namespace OrvComtradeIntake
