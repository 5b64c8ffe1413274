#include "stamps.h"

#include "DataLayout.h"
#include "DataReader.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

namespace OrvComtradeIntake {

namespace {

constexpr std::uint64_t kRange = std::uint64_t{1} << 32U;
constexpr std::uint64_t kHalfRange = kRange / 2;
constexpr std::uint64_t kGreatestWide = std::uint64_t{1} << 62U; // keeps sums within 64 bits
constexpr std::size_t kStepsToKnow = 1024;
constexpr std::uint64_t kGapFactor = 10;

std::uint64_t rounded(double stamp) {
    return stamp <= 0.0 ? 0 : static_cast<std::uint64_t>(std::llround(std::min(stamp, 4e18)));
}

std::uint64_t divided(std::uint64_t stamp, std::uint64_t divisor) {
    return divisor == 1 ? stamp : stamp / divisor + (stamp % divisor >= (divisor + 1) / 2 ? 1 : 0);
}

} // namespace

std::uint64_t StampUnwrapper::unwrap(std::uint64_t stamp) {
    stamp = std::min(stamp, kGreatestWide);
    if (_any && stamp < kRange && _before < kRange) {
        if (stamp < _before && _before - stamp > kHalfRange) {
            _passed += kRange;
            ++_wraps;
        } else if (_passed != 0 && stamp > _before && stamp - _before > kHalfRange) {
            _passed -= kRange;
        }
    }
    _any = true;
    _before = stamp;
    return stamp + _passed;
}

void StampSurvey::add(std::optional<std::uint64_t> stamp, const StampPlace& place) {
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

void StampSurvey::_addKnown(std::uint64_t stamp, const StampPlace& place) {
    const std::uint64_t wraps = _unwrapper.wraps();
    const std::uint64_t unwrapped = _unwrapper.unwrap(stamp);
    if (_unwrapper.wraps() != wraps) {
        _note(_wrapped, place);
    }
    if (stamp >= kRange) {
        _note(_wide, place);
    }
    _greatest = std::max(_greatest, unwrapped);
    if (!_last) {
        _first = unwrapped;
        _firstSample = place.sample;
    } else if (unwrapped < *_last) {
        _note(_backwards, place);
        _greatestBack = std::max(_greatestBack, *_last - unwrapped - 1);
    } else if (place.sample == _lastSample + 1) {
        _addStep({unwrapped - *_last, place});
    }
    if (_last && !_firstStep) {
        const double step = static_cast<double>(unwrapped) - static_cast<double>(*_last);
        _firstStep = std::max(step / static_cast<double>(place.sample - _lastSample), 0.0);
    }
    if (_last && place.sample > _lastSample + 1) {
        _closeGap(unwrapped, place.sample);
    }
    _lastStep = _last && unwrapped > *_last ? (unwrapped - *_last) / (place.sample - _lastSample) : 0;
    _last = unwrapped;
    _lastSample = place.sample;
}

void StampSurvey::_closeGap(std::uint64_t next, std::uint64_t sample) {
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

void StampSurvey::finish(DataSurvey& survey, Findings& findings) {
    if (!_firstSteps.empty()) {
        _judgeFirstSteps();
    }
    if (_missing.count != 0) {
        _fillEnds(survey);
    }
    _setDivisor(survey);
    if (_missing.count != 0 || survey.stampDivisor != 1 || _wrapped.count != 0) {
        survey.asItStands = false;
    }
    _tell(survey, findings);
}

/// Goes on with the first and the last step beyond the stamps that there are.
void StampSurvey::_fillEnds(DataSurvey& survey) {
    if (!_last) {
        return; // an error: nothing tells the times
    }
    if (_firstSample != 0) {
        const auto count = static_cast<double>(_firstSample);
        const auto first = static_cast<double>(_first);
        const double step = std::min(_firstStep.value_or(1.0), first / count); // never before 0
        _fills.insert(_fills.begin(), {0, _firstSample, first - count * step, step});
    }
    if (_lastSample + 1 < _samples) {
        const std::uint64_t count = _samples - _lastSample - 1;
        const double step = _firstStep ? static_cast<double>(_lastStep) : 1.0;
        _fills.push_back({_lastSample + 1, count, static_cast<double>(*_last) + step, step});
        const double greatest = static_cast<double>(*_last) + static_cast<double>(count) * step;
        _greatest = std::max(_greatest, rounded(std::min(greatest, static_cast<double>(kGreatestWide))));
    }
    survey.stampFills = std::move(_fills);
}

void StampSurvey::_setDivisor(DataSurvey& survey) const {
    const std::uint64_t greatest = _isText ? kMissingStamp : kMissingStamp - std::uint64_t{1};
    while (divided(_greatest, survey.stampDivisor) > greatest ||
           _greatestBack / survey.stampDivisor > kHalfRange - 1) { // or would be taken for a wrap
        survey.stampDivisor *= 10;
    }
    survey.stampUnit = static_cast<double>(survey.stampDivisor);
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
    finding.found = _isText ? "" : "record " + std::to_string(places.first.sample + 1);
    return finding;
}

void StampSurvey::_tell(const DataSurvey& survey, Findings& findings) const {
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
    const std::string unit = survey.stampDivisor == 1 ? "written as a count that goes on"
                                                      : "written divided by " + std::to_string(survey.stampDivisor);
    if (_last) {
        tell(_missing, Severity::Warning, "stamp-missing", "no time stamp", "a time stamp, since no rate is given",
             "interpolated between its neighbours");
    } else {
        tell(_missing, Severity::Error, "stamp-missing", "no time stamp in any sample",
             "time stamps or a sampling rate", "");
    }
    tell(_wrapped, Severity::Warning, "stamp-wrap", "begins again from 0", "a time stamp that goes on", unit);
    tell(_wide, Severity::Warning, "stamp-wrap", "more than 32 bits", "a time stamp below 4294967295", unit);
    tell(_backwards, Severity::Warning, "stamp-backwards", "lower than the one before", "a time stamp that goes on",
         "");
    tell(_gaps, Severity::Note, "stamp-gap", "more than ten times the usual step", "the usual step", "");
}

std::uint64_t StampWriter::next(std::optional<std::uint64_t> stamp) {
    const std::uint64_t sample = _sample++;
    if (stamp) {
        return divided(_unwrapper.unwrap(*stamp), _survey.stampDivisor);
    }
    while (_fill < _survey.stampFills.size() &&
           _survey.stampFills[_fill].sample + _survey.stampFills[_fill].count <= sample) {
        ++_fill;
    }
    if (_fill == _survey.stampFills.size() || _survey.stampFills[_fill].sample > sample) {
        return 0;
    }
    const StampFill& fill = _survey.stampFills[_fill];
    return divided(rounded(fill.first + fill.step * static_cast<double>(sample - fill.sample)), _survey.stampDivisor);
}

} // namespace OrvComtradeIntake
