#include "data/asciiSurvey.h"

#include "cfg/settleRates.h"
#include "data/AsciiSamples.h"
#include "data/DecimalScales.h"
#include "data/FastLines.h"
#include "data/Stamps.h"
#include "data/missingValues.h"
#include "data/survey.h"
#include "data/watches.h"

#include <algorithm>
#include <string>
#include <utility>

namespace OrvComtradeIntake {

namespace {

constexpr std::size_t kShownBytes = 40;       // of a line
constexpr std::uint64_t kFewestBadLines = 10; // of no sense for each that may be a sample, for the data to be none

/// The first two columns of a fast line.
struct LineHead {
    std::int64_t number = 0;
    std::int64_t stamp = 0;
};

LineHead headOf(const char* line) {
    LineHead head;
    head.number = takeInteger(line);
    head.stamp = takeInteger(line);
    return head;
}

/// nullptr for the standard's.
const char* lineEndText(LineReader::LineEnd lineEnd) {
    switch (lineEnd) {
    case LineReader::LineEnd::Lf:
        return "LF alone";
    case LineReader::LineEnd::Cr:
        return "CR alone";
    case LineReader::LineEnd::CrCrLf:
        return "CR CR LF";
    case LineReader::LineEnd::CrLf:
        break;
    }
    return nullptr;
}

/// How a walk reads the data. What is found at the end of one walk may call for another: decimals change the scale of
/// every value, stamps with decimals that of every stamp, and lengths given as end samples the number of samples.
struct Pass {
    bool quick = true;          ///< fast lines are passed over
    bool allAreSamples = false; ///< whatever their numbers say
    int stampExponent = 0;      ///< stamps are taken times ten to this power
};

std::uint64_t countLines(const ByteSource& data) {
    LineReader lines(data, 1U << 16U);
    DataLine line;
    std::uint64_t count = 0;
    while (lines.next(line)) {
        count += line.text.empty() ? 0U : 1U;
    }
    return count;
}

class AsciiSurvey {
public:
    AsciiSurvey(const ByteSource& data, const ReadCfg& cfg, const std::vector<Segment>& segments,
                std::uint64_t mostSamples, const Pass& pass, ColumnTap* tap)
        : _data(data), _header(cfg.header), _layout(cfg.header, DataType::Ascii), _most(mostSamples), _pass(pass),
          _tap(tap), _stamped(cfg.header.timesAreStamped()), _samples(data, cfg.header, true),
          _watches(segments, cfg.header.timeMultiplier), _missing(_layout.analogs), _scales(_layout.analogs),
          _stamps(true, pass.stampExponent) {}

    /// Gives the pass that is needed instead of this one, if any.
    std::optional<Pass> walk() {
        const std::uint64_t declared = _header.samplesDeclared;
        while (!_areTooMany()) {
            if (_pass.quick && !_hasDecimals) {
                const std::uint64_t most = std::min(declared == 0 ? UINT64_MAX : declared, _most);
                _takeFast(most - std::min(most, _index));
            }
            if (declared != 0 && _index >= declared) { // the next one may be no sample any more
                _faults = _samples.faults();
            }
            const PlacedSample* const read = _samples.next();
            if (read == nullptr || !_isSample(*read)) {
                return _end(read);
            }
            _add(*read);
        }
        return std::nullopt;
    }

    std::uint64_t samples() const { return _index; }

    std::optional<DataFacts> finish(Findings& findings) {
        if (_areTooMany()) {
            const std::string most = std::to_string(_most) + " samples";
            findings.add(Kind::LimitExceeded, _data.place(0, "samples", 0),
                         {"more than " + most, "", "at most " + most});
            return std::nullopt;
        }
        if (_lacksColumns) {
            _reportLack(findings);
            return std::nullopt;
        }
        if (_good == 0 || _isNoise()) {
            _reportNone(findings);
            return std::nullopt;
        }
        _facts.samples = _index;
        _facts.missing = _missing.take(_index);
        _facts.exponents = _scales.exponents();
        _facts.libraryReads = _facts.libraryReads && _facts.exponents.empty();
        _report(findings);
        return std::move(_facts);
    }

private:
    bool _areTooMany() const { return _index > _most; }

    void _takeFast(std::uint64_t most) {
        const std::uint64_t count = _samples.takeFast(most, [this](const LineRun& run) {
            if (_tap != nullptr && _tap->isOpen()) {
                _tap->add(run, _index);
            }
            LineHead head;
            for (std::size_t i = 0; i < run.count; ++i, ++_index) {
                head = headOf(run.begins[i]);
                const auto offset = static_cast<std::uint64_t>(run.begins[i] - run.begin);
                const SamplePlace place{_index, run.number + i, run.position + offset};
                if (!_watches.pass(head.number, head.stamp, _index)) {
                    _watches.add(head.number, head.stamp, place);
                }
                if (_stamped) {
                    _stampScale.add(head.stamp);
                    _stamps.add(scaledStamp(head.stamp, _pass.stampExponent), place);
                }
            }
            _lastNumber = head.number;
            _passedOver = true;
        });
        _good += count;
        _sound += count;
    }

    /// Beyond the declared number lines are samples while their numbers go on.
    bool _isSample(const PlacedSample& read) const {
        if (_pass.allAreSamples || _header.samplesDeclared == 0 || _index < _header.samplesDeclared) {
            return true;
        }
        return read.sample.number && _lastNumber && *_lastNumber != INT64_MAX &&
               *read.sample.number == *_lastNumber + 1;
    }

    void _add(const PlacedSample& read) {
        const AsciiSample& sample = read.sample;
        if (_tap != nullptr && _tap->isOpen()) {
            _tap->add(sample, _index);
        }
        for (std::size_t i = 0; i < sample.analog.size(); ++i) {
            if (sample.analog[i].missing) {
                _missing.add(i, _index);
            } else {
                _scales.add(i, sample.analog[i].value);
            }
        }
        const SamplePlace place{_index, read.line, read.position};
        _watches.add(sample.number, sample.stamp, place);
        _lastNumber = sample.number ? sample.number : _watches.expectedNumber();
        if (_stamped) {
            _addStamp(sample, place);
        }
        _facts.libraryReads = _facts.libraryReads && read.libraryReads;
        if (!_facts.libraryReads) {
            _samples.stopAskingLibrary();
        }
        _hasDecimals = _hasDecimals || sample.hasDecimals;
        const bool isWhole = sample.kind == LineKind::Whole;
        _good += isWhole ? 1U : 0U;
        _sound += isWhole && std::none_of(sample.faults.begin(), sample.faults.end(), isLost) ? 1U : 0U;
        ++_index;
    }

    void _addStamp(const AsciiSample& sample, const SamplePlace& place) {
        if (sample.exactStamp) {
            _stampScale.add(*sample.exactStamp);
        } else if (sample.stamp) {
            _stampScale.add(*sample.stamp);
        }
        _stamps.add(scaledStamp(sample, _pass.stampExponent), place);
    }

    std::optional<Pass> _end(const PlacedSample* read) {
        Pass other = _pass;
        bool isNeeded = false;
        _reachedEnd = read == nullptr;
        _lacksColumns = _samples.lackColumns();
        if (_lacksColumns) {
            return std::nullopt;
        }
        if (_reachedEnd) {
            _faults = _samples.faults();
        } else {
            _surplusLine = read->line;
            _surplusPosition = read->position;
        }
        if (_passedOver && _hasDecimals) { // the greatest value of each channel counts
            isNeeded = true;
            other.quick = false;
        }
        if (_stamped && _stampScale.exponent() != _pass.stampExponent) {
            isNeeded = true;
            other.stampExponent = _stampScale.exponent();
        }
        if (read != nullptr && ratesMayBeLengths(_header, _index + 1 + _countRest())) {
            isNeeded = true;
            other.allAreSamples = true;
        }
        return isNeeded ? std::optional(other) : std::nullopt;
    }

    std::uint64_t _countRest() {
        std::uint64_t count = 0;
        for (;;) {
            count += _samples.takeFast(UINT64_MAX, [](const LineRun&) {});
            if (_samples.next() == nullptr) {
                return count;
            }
            ++count;
        }
    }

    /// Other bytes than lines of data have now and then as many commas as a sample.
    bool _isNoise() const { return _sound == 0 && _faults.count(LineFault::BadLine) / kFewestBadLines > _index; }

    void _reportNone(Findings& findings) const {
        Place place = _data.place(0, "", 0);
        std::string found = "no line with " + std::to_string(_layout.fields()) + " columns of numbers";
        found += _firstLine(place);
        findings.add(Kind::NoSamples, place,
                     {std::move(found), "",
                      "number, timestamp, " + std::to_string(_layout.analogs) + " values, " +
                          std::to_string(_layout.statuses) + " states"});
    }

    void _reportLack(Findings& findings) const {
        findings.add(Kind::NoSamples, _data.place(0, "", 0),
                     {std::to_string(_samples.absentColumns()) + " missing columns in the first " +
                          std::to_string(_index) + " lines, hardly any present",
                      "", std::to_string(_layout.fields()) + " columns in nearly every line"});
    }

    /// The first line that is not blank shows most about what the file is.
    std::string _firstLine(Place& place) const {
        LineReader lines(_data, 1U << 16U);
        DataLine line;
        while (lines.next(line)) {
            const std::size_t columns = columnsIn(line.text);
            if (columns != 0) {
                place = _data.place(line.number, "", line.position);
                return "; the first line, \"" + escaped(line.text, kShownBytes) + "\", has " + std::to_string(columns);
            }
        }
        return line.number == 0 ? "; the data are empty" : "; only blanks, 0x1A or zero bytes";
    }

    void _report(Findings& findings) {
        if (const char* const text = lineEndText(_samples.lineEnd())) {
            findings.add(Kind::LineEnds, _data.place(1, "DAT", 0), {text});
        }
        _faults.report(_data, _layout, _header.revision >= 2013, findings);
        _reportEnd(findings);
        _watches.numbers().report(_data, findings);
        if (_stamped) {
            _facts.stamps = _stamps.plan();
            _facts.libraryReads = _facts.libraryReads && _stamps.areStandard();
            _stamps.report(_data, findings);
        } else {
            _watches.stamps().report(_data, findings);
            _facts.areStampsSound = _watches.stamps().areSound();
            _facts.doStampsFitRecords = _watches.stamps().fitRecords();
        }
    }

    void _reportEnd(Findings& findings) {
        if (!_reachedEnd) {
            findings.add(Kind::StrayBytes, _data.place(_surplusLine, "", _surplusPosition),
                         {"lines after the declared samples whose numbers do not continue", "skipped"});
            return;
        }
        if (_samples.endsShort()) {
            const PlacedSample& last = _samples.shortLine();
            findings.add(Kind::RecordCut, _data.place(last.line, "", last.position),
                         {"fewer columns than channels in the last line", "skipped",
                          std::to_string(_layout.fields()) + " columns"});
        }
        _samples.pending().only(LineFault::BadLine).report(_data, _layout, true, findings); // others are no harm there
    }

    const ByteSource& _data;
    const Header& _header;
    DataLayout _layout;
    const std::uint64_t _most; ///< samples that the limits allow
    Pass _pass;
    ColumnTap* _tap;
    bool _stamped;
    AsciiSamples _samples;
    Watches _watches;
    MissingRuns _missing;
    DecimalScales _scales;
    StampScale _stampScale;
    StampSurvey _stamps;
    DataFacts _facts;
    LineFaults _faults; ///< up to the last sample
    std::uint64_t _index = 0;
    std::uint64_t _good = 0;  ///< samples of whole lines
    std::uint64_t _sound = 0; ///< of these, without a column that makes no sense
    std::optional<std::int64_t> _lastNumber;
    bool _hasDecimals = false;
    bool _passedOver = false;     ///< fast lines, whose values have not been looked at
    bool _reachedEnd = true;      ///< no lines were left out
    bool _lacksColumns = false;   ///< more than short lines explain
    std::size_t _surplusLine = 0; ///< the first one that was
    std::uint64_t _surplusPosition = 0;
};

} // namespace

std::optional<DataFacts> surveyAscii(const ByteSource& data, const ReadCfg& cfg, std::uint64_t mostSamples,
                                     Findings& findings, ColumnTap* tap) {
    const bool needsCount = cfg.header.rates.size() > 1 && !cfg.header.timesAreStamped();
    std::vector<Segment> segments = segmentsOf(cfg, needsCount ? countLines(data) : 0);
    constexpr int mostPasses = 4;
    Pass pass;
    for (int number = 1;; ++number) {
        AsciiSurvey survey(data, cfg, segments, mostSamples, pass, tap);
        std::optional<Pass> other = survey.walk();
        if (!other && needsCount) { // lines that are no samples were counted, too
            std::vector<Segment> settled = segmentsOf(cfg, survey.samples());
            if (settled != segments) {
                segments = std::move(settled);
                other = pass;
            }
        }
        if (!other || number == mostPasses) {
            return survey.finish(findings);
        }
        if (tap != nullptr) {
            tap->close();
        }
        pass = *other;
    }
}

} // namespace OrvComtradeIntake
