#include "asciiSurvey.h"

#include "AsciiSamples.h"
#include "DecimalScales.h"
#include "MissingValues.h"
#include "stamps.h"
#include "surveyFindings.h"
#include "textData.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <string>
#include <utility>

namespace OrvComtradeIntake {

namespace {

/// The first two columns of a plain line.
struct LineHead {
    std::int64_t number = 0;
    std::int64_t stamp = 0;
};

std::int64_t takeInteger(const char*& at) {
    const bool negative = *at == '-';
    at += negative ? 1 : 0;
    std::int64_t value = 0;
    for (; *at >= '0' && *at <= '9'; ++at) {
        value = value * 10 + (*at - '0');
    }
    ++at; // the comma, or a line end
    return negative ? -value : value;
}

LineHead headOf(const char* line) {
    LineHead head;
    head.number = takeInteger(line);
    head.stamp = takeInteger(line);
    return head;
}

constexpr std::size_t kShownBytes = 40; // of a line

/// How a walk goes about the data; some faults need a second one.
struct Manner {
    bool quick = true;          ///< plain lines are passed over
    bool allAreSamples = false; ///< whatever their numbers say
    int stampExponent = 0;      ///< stamps are taken times ten to this power
};

/// What a second walk is needed for.
struct SecondWalk {
    bool wanted = false;
    Manner manner;
};

class AsciiSurvey {
public:
    AsciiSurvey(const DataSource& source, const Configuration& configuration, const Manner& manner)
        : _source(source), _layout(configuration), _manner(manner), _declared(configuration.samplesDeclared()),
          _sumOfRates(configuration.rates.size() > 1 && !configuration.ratesAreSettled ? sumOfRates(configuration) : 0),
          _stamped(configuration.timesAreStamped()), _samples(source, _layout, _stamped), _missing(_layout.analogs),
          _scales(_layout.analogs), _stamps(source, true, manner.stampExponent) {}

    SecondWalk walk() {
        for (;;) {
            if (_manner.quick && !_hasDecimals) {
                _takePlain();
            }
            if (_declared != 0 && _index >= _declared) { // the next one may be no sample any more
                _keepFaults();
            }
            const PlacedSample* const read = _samples.next();
            if (read == nullptr || !_isSample(*read)) {
                return _end(read);
            }
            _add(*read);
        }
    }

    DataSurvey finish(Findings& findings) {
        _survey.samples = _index;
        _survey.asItStands = _survey.asItStands && !_source.base64;
        _survey.missing = _missing.take(_index);
        _survey.exponents = _scales.exponents();
        if (_good == 0 || _isNoise()) {
            return _none(findings);
        }
        if (_stamped) {
            _stamps.settle(_survey);
        }
        _mended.tell(true, _source, _layout, findings, _stamped ? _doneToStamps() : "");
        _harmless.tell(false, _source, _layout, findings);
        if (_reachedEnd) {
            _tellEnd(findings);
        } else {
            _tellSurplus(findings);
        }
        _tellRounding(findings);
        if (_stamped) {
            _stamps.tell(_survey, findings);
        }
        tellMissing(
            _survey, _source,
            [this](const MissingRun& /*run*/, Finding& finding) {
                finding.found = "99999, or nothing";
                finding.line = _firstMissingLine;
                finding.offset = offsetInFile(_source, _firstMissingPosition);
            },
            findings);
        return std::move(_survey);
    }

private:
    void _takePlain() {
        const std::uint64_t most = _declared == 0 ? UINT64_MAX : _declared - std::min(_declared, _index);
        const std::uint64_t count = _samples.takePlain(most, [this](const LineRun& run) {
            _lastNumber = headOf(run.last).number;
            _passedOver = true;
            if (_stamped) {
                _addStamps(run);
            } else {
                _index += run.count;
            }
        });
        _good += count;
        _sound += count;
    }

    void _addStamps(const LineRun& run) {
        const char* line = run.begin;
        for (std::uint64_t i = 0; i < run.count; ++i) {
            _addStamp(headOf(line).stamp);
            line = static_cast<const char*>(std::memchr(line, '\n', static_cast<std::size_t>(run.end - line))) + 1;
        }
    }

    void _addStamp(std::int64_t stamp) {
        _stampScale.add(stamp);
        _stamps.add(scaledStamp(stamp, _manner.stampExponent), StampPlace{_index++, 0, _source.offset});
    }

    void _addStamp(const AsciiSample& sample, const StampPlace& place) {
        if (sample.exactStamp) {
            _stampScale.add(*sample.exactStamp);
        } else if (sample.stamp) {
            _stampScale.add(*sample.stamp);
        }
        _stamps.add(scaledStamp(sample, _manner.stampExponent), place);
    }

    /// What is done to stamps with decimals.
    std::string _doneToStamps() const {
        const bool isRounded =
            _stampScale.anyRounded(_manner.stampExponent) || (_survey.stampDivisor != 1 && _stampScale.hasFractions());
        const std::string scaled = writtenStamps(_survey);
        return (scaled.empty() ? "written as whole counts" : scaled) + (isRounded ? ", rounded" : "");
    }

    /// Beyond the declared number lines are samples while their numbers go on.
    bool _isSample(const PlacedSample& read) const {
        if (_manner.allAreSamples || _declared == 0 || _index < _declared) {
            return true;
        }
        return read.sample.number && _lastNumber && *_lastNumber != INT64_MAX &&
               *read.sample.number == *_lastNumber + 1;
    }

    void _add(const PlacedSample& read) {
        const AsciiSample& sample = read.sample;
        for (std::size_t i = 0; i < sample.analog.size(); ++i) {
            if (sample.analog[i].missing) {
                _addMissing(i, read);
            } else {
                _scales.add(i, sample.analog[i].value);
            }
        }
        if (_stamped) {
            _addStamp(sample, {_index, read.line, offsetInFile(_source, read.position)});
        }
        _survey.asItStands = _survey.asItStands && read.asTheLibrary;
        _hasDecimals = _hasDecimals || sample.hasDecimals;
        _lastNumber = sample.number;
        const bool isWhole = sample.kind == LineKind::Whole;
        _good += isWhole ? 1 : 0;
        _sound += isWhole && std::none_of(sample.faults.begin(), sample.faults.end(), isLost) ? 1U : 0U;
        ++_index;
    }

    void _keepFaults() {
        _mended = _samples.mended();
        _harmless = _samples.harmless();
    }

    void _addMissing(std::size_t channel, const PlacedSample& read) {
        if (_firstMissingLine == 0) {
            _firstMissingLine = read.line;
            _firstMissingPosition = read.position;
        }
        _missing.add(channel, _index);
    }

    SecondWalk _end(const PlacedSample* read) {
        SecondWalk second{false, _manner};
        _reachedEnd = read == nullptr;
        if (_reachedEnd) {
            _keepFaults();
        } else {
            _surplusLine = read->line;
            _surplusPosition = read->position;
        }
        if (_passedOver && _hasDecimals) { // the greatest value of each channel counts
            second.wanted = true;
            second.manner.quick = false;
        }
        if (_stamped && _stampScale.exponent() != _manner.stampExponent) {
            second.wanted = true;
            second.manner.stampExponent = _stampScale.exponent();
        }
        if (read != nullptr && _sumOfRates > _index && _index + 1 + _countRest() == _sumOfRates) {
            second.wanted = true;
            second.manner.allAreSamples = true;
        }
        return second;
    }

    std::uint64_t _countRest() {
        std::uint64_t count = 0;
        for (;;) {
            count += _samples.takePlain(UINT64_MAX, [](const LineRun&) {});
            if (_samples.next() == nullptr) {
                return count;
            }
            ++count;
        }
    }

    /// Other bytes than lines of data have now and then as many commas as a sample.
    bool _isNoise() const {
        constexpr std::uint64_t fewest = 10; // lines of no sense for each that may be a sample
        const std::uint64_t bad = _mended.count(LineFault::BadLine) + _harmless.count(LineFault::BadLine);
        return _sound == 0 && bad / fewest > _index;
    }

    DataSurvey _none(Findings& findings) {
        _survey.samples = 0;
        _survey.asItStands = false;
        _survey.missing.clear();
        Finding finding = dataFinding(Severity::Error, "no-data", _source);
        finding.found = "no line with " + std::to_string(_layout.fields()) + " columns of numbers";
        _describeFirstLine(finding);
        finding.expected = "number, timestamp, " + std::to_string(_layout.analogs) + " values, " +
                           std::to_string(_layout.statuses) + " states";
        findings.add(std::move(finding));
        return std::move(_survey);
    }

    /// The first line that is not blank tells most about what the file is.
    void _describeFirstLine(Finding& finding) const {
        DataLines lines(_source, _layout);
        DataLine line;
        while (lines.next(line)) {
            const std::size_t columns = columnsIn(line.text);
            if (columns != 0) {
                finding.line = line.number;
                finding.offset = offsetInFile(_source, line.position);
                finding.found +=
                    "; the first line, \"" + shown(line.text, kShownBytes) + "\", has " + std::to_string(columns);
                return;
            }
        }
        finding.found += line.number == 0 ? "; the data are empty" : "; only blanks, 0x1A or zero bytes";
    }

    void _tellRounding(Findings& findings) const {
        const std::optional<Rounding> rounding = _scales.rounding();
        if (!rounding) {
            return;
        }
        Finding finding = dataFinding(Severity::Warning, "rounded", _source);
        finding.field = fieldName(2 + rounding->channel, _layout);
        finding.found = "values with " + std::to_string(rounding->before) + " digits before the point and " +
                        std::to_string(rounding->behind) + " behind it";
        finding.expected = "15 digits in all at most";
        finding.done = "rounded to multiples of 10^" + std::to_string(rounding->unit);
        finding.places = rounding->channels;
        finding.mended = true;
        findings.add(std::move(finding));
    }

    /// Lines behind the last sample are never read.
    void _tellEnd(Findings& findings) {
        LineFaults rest = _samples.pending();
        if (rest.any(LineFault::ShortLine)) {
            Finding finding = dataFinding(Severity::Warning, "record-cut", _source);
            finding.found = "fewer columns than channels in the last line";
            finding.expected = std::to_string(_layout.fields()) + " columns";
            finding.done = "not read";
            rest.putPlace(LineFault::ShortLine, _source, finding);
            findings.add(std::move(finding));
            rest.remove(LineFault::ShortLine);
        }
        rest.tell(false, _source, _layout, findings);
    }

    void _tellSurplus(Findings& findings) const {
        Finding finding = surplusFinding(_source, "more lines, whose numbers don't go on", _declared);
        finding.done = "those beyond the declared number are not read";
        finding.line = _surplusLine;
        finding.offset = offsetInFile(_source, _surplusPosition);
        findings.add(std::move(finding));
    }

    const DataSource& _source;
    DataLayout _layout;
    Manner _manner;
    std::uint64_t _declared;
    std::uint64_t _sumOfRates; ///< of more than one rate
    bool _stamped;
    AsciiSamples _samples;
    MissingValues _missing;
    DecimalScales _scales;
    StampScale _stampScale;
    StampSurvey _stamps;
    DataSurvey _survey;
    LineFaults _mended;   ///< up to the last sample
    LineFaults _harmless; ///< up to the last sample
    std::uint64_t _index = 0;
    std::uint64_t _good = 0;  ///< samples of whole lines
    std::uint64_t _sound = 0; ///< of these, without a column that makes no sense
    std::optional<std::int64_t> _lastNumber;
    bool _hasDecimals = false;
    bool _passedOver = false;     ///< plain lines, whose values have not been looked at
    bool _reachedEnd = true;      ///< no lines were left out
    std::size_t _surplusLine = 0; ///< the first one that was
    std::uint64_t _surplusPosition = 0;
    std::size_t _firstMissingLine = 0;
    std::uint64_t _firstMissingPosition = 0;
};

DataSurvey unreadable(const DataSource& source, Findings& findings) {
    Finding finding = dataFinding(Severity::Error, "unreadable", source);
    finding.found = "UTF-16";
    finding.expected = "a text of one byte for each comma and digit";
    findings.add(std::move(finding));
    DataSurvey none;
    none.asItStands = false;
    return none;
}

} // namespace

DataSurvey surveyAscii(const DataSource& source, const Configuration& configuration, Findings& findings) {
    if (isUtf16Data(source)) {
        return unreadable(source, findings);
    }
    AsciiSurvey first(source, configuration, Manner());
    const SecondWalk second = first.walk();
    if (!second.wanted) {
        return first.finish(findings);
    }
    AsciiSurvey again(source, configuration, second.manner);
    const SecondWalk third = again.walk();
    if (!third.wanted) {
        return again.finish(findings);
    }
    AsciiSurvey last(source, configuration, third.manner);
    last.walk();
    return last.finish(findings);
}

} // namespace OrvComtradeIntake
