#include "binarySurvey.h"

#include "DataLayout.h"
#include "MissingValues.h"
#include "RecordReader.h"
#include "missingMarks.h"
#include "recordStride.h"
#include "stamps.h"
#include "surveyFindings.h"

#include <algorithm>
#include <string>
#include <utility>

namespace OrvComtradeIntake {

namespace {

bool isExactAsFloat(std::uint32_t bits) {
    const auto value = static_cast<double>(static_cast<std::int32_t>(bits));
    return static_cast<double>(static_cast<float>(value)) == value || Mark32::isMark(bits);
}

/// Without a branch in the loop, for the sake of vector units.
template <class Test> bool any(const char* values, std::size_t count, Test test) {
    unsigned int found = 0;
    for (std::size_t i = 0; i < count; ++i) {
        found |= test(littleEndian32(values + 4 * i)) ? 1U : 0U;
    }
    return found != 0;
}

class BinarySurvey {
public:
    BinarySurvey(const DataSource& source, const Configuration& configuration, Findings& findings)
        : _source(source), _configuration(configuration), _findings(findings), _layout(configuration),
          _stamped(configuration.timesAreStamped()), _missing(_layout.analogs), _stamps(source, false, 0) {}

    DataSurvey run() {
        _declared = _configuration.samplesDeclared();
        _stride = recordStride(_source, _layout, _declared);
        _present = dataLength(_source) / _stride;
        _limit = _present;
        _numbersDecide = _declared != 0 && _present > _declared && !ratesAreLengths(_configuration, _present);
        _survey.encoding = _configuration.encoding;
        _survey.recordStride = _stride;
        _survey.asItStands = !_source.base64 && _stride == _layout.recordLength();
        RecordReader reader(_source, _stride);
        while (const std::size_t count = reader.next()) {
            _surveyBlock(reader.records(), static_cast<std::size_t>(std::min<std::uint64_t>(count, _limit - _index)));
            if (_index == _limit) {
                break;
            }
        }
        _limit = std::min(_limit, _index); // the file may have become shorter meanwhile
        _finish();
        return std::move(_survey);
    }

private:
    void _surveyBlock(const char* records, std::size_t count) {
        if (_numbersDecide && _index + count > _declared) {
            count = _continuing(records, count);
        }
        switch (_configuration.encoding) {
        case DataEncoding::Binary:
            _findMissing<Mark16>(records, count);
            break;
        case DataEncoding::Binary32:
            _findMissing<Mark32>(records, count);
            _checkExactness(records, count);
            break;
        default:
            _findMissing<MarkFloat>(records, count);
        }
        for (std::size_t i = 0; _stamped && i < count; ++i) {
            _addStamp(littleEndian32(records + i * _stride + DataLayout::kStampOffset), _index + i);
        }
        _index += count;
        if (count != 0) {
            _lastNumber = littleEndian32(records + (count - 1) * _stride);
        }
    }

    /// How many of the records are samples: those beyond the declared ones are while their numbers go on.
    std::size_t _continuing(const char* records, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            const std::uint32_t number = littleEndian32(records + i * _stride);
            if (_index + i >= _declared && number != _lastNumber + 1) {
                _limit = _index + i;
                return i;
            }
            _lastNumber = number;
        }
        return count;
    }

    template <class Mark> void _findMissing(const char* records, std::size_t count) {
        const AnalogBlock block{records + DataLayout::kAnalogOffset, _stride,
                                _layout.analogs * sizeof(typename Mark::Bits), count};
        for (std::size_t i = findMark<Mark>(block, 0); i < count; i = findMark<Mark>(block, i + 1)) {
            const char* const values = block.values + i * _stride;
            for (std::size_t channel = 0; channel < _layout.analogs; ++channel) {
                if (Mark::isMark(Mark::bits(values + channel * sizeof(typename Mark::Bits)))) {
                    _missing.add(channel, _index + i);
                }
            }
        }
    }

    /// Whether the values can be written as FLOAT32, and if not, which would look like a missing value in ASCII.
    void _checkExactness(const char* records, std::size_t count) {
        const auto looksMissing = [](std::uint32_t bits) { return bits == static_cast<std::uint32_t>(kMissingText); };
        const auto isInexact = [](std::uint32_t bits) { return !isExactAsFloat(bits); };
        for (std::size_t i = 0; i < count; ++i) {
            const char* const values = records + i * _stride + DataLayout::kAnalogOffset;
            _exact = _exact && !any(values, _layout.analogs, isInexact);
            if (!any(values, _layout.analogs, looksMissing)) {
                continue;
            }
            _exponents.resize(_layout.analogs);
            for (std::size_t channel = 0; channel < _layout.analogs; ++channel) {
                _exponents[channel] |= looksMissing(littleEndian32(values + channel * 4)) ? 1 : 0;
            }
        }
    }

    void _addStamp(std::uint32_t stamp, std::uint64_t sample) {
        const StampPlace place{sample, 0, offsetInFile(_source, sample * _stride + DataLayout::kStampOffset)};
        _stamps.add(stamp == kMissingStamp ? std::nullopt : std::optional<std::int64_t>(stamp), place);
    }

    void _finish() {
        _survey.samples = _limit;
        _survey.missing = _missing.take(_limit);
        if (_limit == 0) {
            _tellNone();
            return;
        }
        _tellPadding();
        _tellEnd();
        if (_configuration.encoding == DataEncoding::Binary32) {
            _finishBinary32();
        }
        if (_stamped) {
            _stamps.settle(_survey);
            _stamps.tell(_survey, _findings);
        }
        tellMissing(
            _survey, _source,
            [this](const MissingRun& run, Finding& finding) {
                finding.found = "record " + std::to_string(run.sample + 1);
                finding.offset = offsetInFile(_source, run.sample * _stride + DataLayout::kAnalogOffset +
                                                           run.channel * _layout.valueLength);
            },
            _findings);
    }

    void _finishBinary32() {
        _survey.encoding = _exact ? DataEncoding::Float32 : DataEncoding::Ascii;
        _survey.asItStands = false;
        if (!_exact) {
            _survey.exponents = std::move(_exponents);
        }
        Finding finding = dataFinding(Severity::Warning, "binary32", _source);
        finding.found = "integers of 32 bits";
        finding.expected = "ASCII, BINARY or FLOAT32 data";
        finding.done = _exact ? "written as FLOAT32: every value is exact" : "written as ASCII: singles are not exact";
        finding.mended = true;
        _findings.add(std::move(finding));
    }

    void _tellNone() {
        _survey.asItStands = false;
        Finding finding = dataFinding(Severity::Error, "no-data", _source);
        finding.found = std::to_string(dataLength(_source)) + " bytes";
        finding.expected = "a record of " + std::to_string(_layout.recordLength()) + " bytes";
        _findings.add(std::move(finding));
    }

    void _tellPadding() {
        if (_stride == _layout.recordLength()) {
            return;
        }
        Finding finding = dataFinding(Severity::Warning, "record-padding", _source);
        finding.found = "records of " + std::to_string(_stride) + " bytes";
        finding.expected = "records of " + std::to_string(_layout.recordLength()) + " bytes";
        finding.done = "the last bytes of each were left out";
        finding.mended = true;
        _findings.add(std::move(finding));
    }

    void _tellEnd() {
        const std::uint64_t stray = dataLength(_source) - _limit * _stride;
        if (_limit < _present) {
            _survey.asItStands = false;
            Finding finding = surplusFinding(_source, std::to_string(_present) + " records", _declared);
            finding.done = "records whose numbers don't go on were left out";
            finding.offset = offsetInFile(_source, _limit * _stride);
            finding.mended = true;
            _findings.add(std::move(finding));
            return;
        }
        if (stray != 0) {
            const bool cut = _declared > _present;
            Finding finding = dataFinding(Severity::Warning, cut ? "record-cut" : "stray-bytes", _source);
            finding.offset = offsetInFile(_source, _limit * _stride);
            finding.found = std::to_string(stray) + " bytes after record " + std::to_string(_limit);
            finding.expected = "whole records of " + std::to_string(_layout.recordLength()) + " bytes";
            finding.done = "not read";
            _findings.add(std::move(finding));
        }
    }

    const DataSource& _source;
    const Configuration& _configuration;
    Findings& _findings;
    DataLayout _layout;
    bool _stamped;
    MissingValues _missing;
    StampSurvey _stamps;
    DataSurvey _survey;
    std::size_t _stride = 0;     ///< bytes from one record to the next
    std::uint64_t _present = 0;  ///< whole records
    std::uint64_t _declared = 0; ///< by the configuration
    std::uint64_t _limit = 0;    ///< records that are samples
    bool _numbersDecide = false; ///< whether records beyond the declared ones are samples
    std::uint64_t _index = 0;    ///< records seen
    std::uint32_t _lastNumber = 0;
    bool _exact = true;
    std::vector<int> _exponents;
};

} // namespace

DataSurvey surveyBinary(const DataSource& source, const Configuration& configuration, Findings& findings) {
    return BinarySurvey(source, configuration, findings).run();
}

} // namespace OrvComtradeIntake
