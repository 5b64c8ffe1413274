#include "data/binarySurvey.h"

#include "cfg/settleRates.h"
#include "data/DataLayout.h"
#include "data/RecordReader.h"
#include "data/Stamps.h"
#include "data/UnusedBits.h"
#include "data/missingValues.h"
#include "data/survey.h"
#include "data/watches.h"
#include "src/data/littleEndian.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

namespace OrvComtradeIntake {

namespace {

constexpr std::uint32_t kMarkOfTexts = 99999; // stands for a missing value in a text
constexpr std::size_t kMostSearches = 8;      // for shifted records: more would cost too much where no number goes on

bool isExactAsSingle(std::uint32_t bits) {
    const auto value = static_cast<double>(static_cast<std::int32_t>(bits));
    return static_cast<double>(static_cast<float>(value)) == value || Mark32::isMark(bits);
}

/// Without a branch in the loop, for the sake of vector units.
template <class Test> bool any(const char* values, std::size_t count, Test test) {
    unsigned int found = 0;
    for (std::size_t i = 0; i < count; ++i) {
        found |= test(fieldAt(values + 4 * i)) ? 1U : 0U;
    }
    return found != 0;
}

/// Where bytes were lost or added.
struct Shift {
    std::uint64_t record = 0; ///< 0-based, the record that is damaged
    std::int64_t bytes = 0;   ///< by which the records behind it are shifted
};

class BinarySurvey {
public:
    BinarySurvey(const ByteSource& data, const ReadCfg& cfg, std::size_t stride, Findings& findings,
                 ColumnTap* tap = nullptr)
        : _data(data), _header(cfg.header), _findings(findings), _tap(tap), _layout(cfg.header), _stride(stride),
          _stamped(cfg.header.timesAreStamped()), _present(data.length() / stride),
          _watches(segmentsOf(cfg, _present), cfg.header.timeMultiplier), _missing(_layout.analogs), _stamps(false, 0),
          _unusedBits(_layout) {
        _facts.type = _header.dataType;
        _facts.libraryType = _header.dataType;
        _facts.recordStride = stride;
        _facts.libraryReads = stride == _layout.recordLength();
        _limit = _present;
        _numbersDecide = _header.samplesDeclared != 0 && !ratesMayBeLengths(_header, _present);
    }

    /// Where records begin to be shifted, if they do: the samples are those before, and need a survey of their own.
    std::optional<Shift> walk() {
        RecordReader reader(_data, _stride);
        for (std::size_t count = reader.next(); count != 0 && !_shift && _index < _limit; count = reader.next()) {
            _addBlock(reader.records(), static_cast<std::size_t>(std::min<std::uint64_t>(count, _limit - _index)));
        }
        _limit = std::min(_limit, _index); // the file may have become shorter meanwhile
        if (!_shift && _isEndShifted()) {
            _shift = Shift{_limit - 1,
                           static_cast<std::int64_t>(_data.length() % _stride) - static_cast<std::int64_t>(_stride)};
        }
        return _shift;
    }

    std::optional<DataFacts> finish(bool acceptsAny) {
        if (_limit == 0) {
            _findings.add(Kind::NoSamples, _placeOf(0), {std::to_string(_data.length()) + " bytes"});
            return std::nullopt;
        }
        if (!acceptsAny && _watches.areSenseless()) {
            _findings.add(Kind::DataMismatch, _placeOf(0), {"sample numbers " + _watches.numbers().firstNumbers()});
            return std::nullopt;
        }
        _finish();
        return std::move(_facts);
    }

private:
    void _addBlock(const char* records, std::size_t count) {
        count = _watch(records, count);
        _unusedBits.add(records, _stride, count, _index);
        if (_tap != nullptr && _tap->isOpen()) {
            _tap->add(Records{records, _stride, count}, _index);
        }
        switch (_header.dataType) {
        case DataType::Binary:
            _findMissing<Mark16>(records, count);
            break;
        case DataType::Binary32:
            _findMissing<Mark32>(records, count);
            _checkExactness(records, count);
            break;
        default:
            _findMissing<MarkFloat>(records, count);
        }
        _index += count;
    }

    /// Looks at numbers and stamps. Gives how many of the records are samples: those beyond the declared ones are while
    /// their numbers go on, and none is behind bytes that were lost or added.
    std::size_t _watch(const char* records, std::size_t count) {
        std::size_t nextTry = _stamped ? count : 0; // many at once
        for (std::size_t i = 0; i < count; ++i) {
            if (i == nextTry) {
                i += _watchMany(records + i * _stride, count - i, _index + i);
                nextTry = i + Watches::kAtOnce;
                if (i == count) {
                    break;
                }
            }
            const char* const record = records + i * _stride;
            const std::uint64_t sample = _index + i;
            const std::int64_t number = fieldAt(record);
            const bool goesOn = number == _watches.expectedNumber().value_or(number);
            const bool isSurplus = _numbersDecide && sample >= _header.samplesDeclared;
            if (!goesOn && (isSurplus || _isShifted(sample))) {
                _limit = sample;
                return i;
            }
            const std::uint32_t stamp = fieldAt(record + DataLayout::kStampOffset);
            const auto known = stamp == kMissingStamp ? std::nullopt : std::optional<std::int64_t>(stamp);
            const SamplePlace place{sample, 0, sample * _stride};
            _watches.add(number, known, place);
            if (_stamped) {
                _stamps.add(known, place);
            }
        }
        return count;
    }

    /// Passes over records that surely follow one another.
    std::size_t _watchMany(const char* records, std::size_t count, std::uint64_t sample) {
        constexpr std::int64_t none = INT64_MAX / 2; // further from any other than stamps are from each other
        const auto stampAt = [&](std::size_t i) {
            const std::uint32_t stamp = fieldAt(records + i * _stride + DataLayout::kStampOffset);
            return stamp == kMissingStamp ? none : std::int64_t{stamp};
        };
        const auto numberAt = [&](std::size_t i) { return std::int64_t{fieldAt(records + i * _stride)}; };
        return _watches.passMany(sample, count, numberAt, stampAt);
    }

    /// Whether the numbers go on some bytes before or behind where this record should begin: bytes were lost or added
    /// in the record before it.
    bool _isShifted(std::uint64_t sample) {
        if (sample < 2 || _searches++ >= kMostSearches) {
            return false;
        }
        const auto expected = static_cast<std::uint32_t>(*_watches.expectedNumber());
        std::vector<char> bytes(6 * _stride);
        const std::uint64_t begin = (sample - 1) * _stride;
        bytes.resize(_data.read(begin, bytes.data(), bytes.size()));
        for (std::size_t at = 1; at + _stride <= bytes.size() && at < 3 * _stride; ++at) {
            const std::uint32_t behind = fieldAt(bytes.data() + at) - expected;
            const bool isNear = behind <= 2 && at % _stride != 0; // else whole records are lost
            if (isNear && _numbersGoOn(bytes, at, begin)) {
                _shift = Shift{sample - 1,
                               static_cast<std::int64_t>(at) - static_cast<std::int64_t>((1 + behind) * _stride)};
                return true;
            }
        }
        return false;
    }

    /// Three numbers in a row are no chance, nor are fewer where the data end with the last of these records.
    bool _numbersGoOn(const std::vector<char>& bytes, std::size_t at, std::uint64_t begin) const {
        const std::uint32_t number = fieldAt(bytes.data() + at);
        std::uint32_t count = 1;
        while (count < 3 && at + (count + 1) * _stride <= bytes.size()) {
            if (fieldAt(bytes.data() + at + count * _stride) != number + count) {
                return false;
            }
            ++count;
        }
        return count == 3 || begin + at + count * _stride == _data.length();
    }

    /// Whether the last record is shifted, which leaves it no whole one: bytes were lost in the record before it.
    bool _isEndShifted() const {
        const bool isOneLost =
            _limit == _present && _header.samplesDeclared > _present && _data.length() % _stride != 0;
        return isOneLost && _limit > 1 && _numberAt(_data.length() - _stride) == _numberAt((_limit - 1) * _stride) + 1;
    }

    std::uint32_t _numberAt(std::uint64_t position) const {
        std::array<char, sizeof(std::uint32_t)> number{};
        _data.read(position, number.data(), number.size());
        return fieldAt(number.data());
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

    /// Whether the values can be written as singles, and if not, which would look like a missing value in a text.
    void _checkExactness(const char* records, std::size_t count) {
        const auto looksMissing = [](std::uint32_t bits) { return bits == kMarkOfTexts; };
        const auto isInexact = [](std::uint32_t bits) { return !isExactAsSingle(bits); };
        for (std::size_t i = 0; i < count; ++i) {
            const char* const values = records + i * _stride + DataLayout::kAnalogOffset;
            _areExact = _areExact && !any(values, _layout.analogs, isInexact);
            if (!any(values, _layout.analogs, looksMissing)) {
                continue;
            }
            _exponents.resize(_layout.analogs);
            for (std::size_t channel = 0; channel < _layout.analogs; ++channel) {
                _exponents[channel] |= looksMissing(fieldAt(values + channel * 4)) ? 1 : 0;
            }
        }
    }

    void _finish() {
        _facts.samples = _limit;
        _facts.missing = _missing.take(_limit);
        _reportEnd();
        if (_header.dataType == DataType::Binary32) { // which the library does not read
            _facts.libraryType = _areExact ? DataType::Float32 : DataType::Ascii;
            _facts.libraryReads = false;
            _facts.exponents = _areExact ? std::vector<int>() : std::move(_exponents);
        }
        _facts.hasUnusedBits = _unusedBits.areSet();
        _unusedBits.report(_data, _stride, _findings);
        _watches.numbers().report(_data, _findings);
        _facts.areNumbersAlike = _watches.numbers().areAlike();
        if (_stamped) {
            _facts.stamps = _stamps.plan();
            _facts.libraryReads = _facts.libraryReads && _stamps.areStandard();
            _stamps.report(_data, _findings);
        } else {
            _watches.stamps().report(_data, _findings);
            _facts.areStampsSound = _watches.stamps().areSound();
        }
    }

    void _reportEnd() {
        const std::uint64_t stray = _data.length() - _limit * _stride;
        const std::string behind = " after record " + std::to_string(_limit);
        if (_limit < _present) {
            _facts.libraryReads = false;
            _findings.add(Kind::StrayBytes, _placeOf(_limit),
                          {std::to_string(stray) + " bytes" + behind + " that are not records", "skipped"});
        } else if (stray != 0) {
            const bool isCut = _header.samplesDeclared > _present;
            _findings.add(isCut ? Kind::RecordCut : Kind::StrayBytes, _placeOf(_limit),
                          {std::to_string(stray) + " bytes" + behind, "skipped"});
        }
    }

    Place _placeOf(std::uint64_t record) const { return {_data.name(), 0, "", _data.offsetInFile(record * _stride)}; }

    const ByteSource& _data;
    const Header& _header;
    Findings& _findings;
    ColumnTap* _tap;
    DataLayout _layout;
    std::size_t _stride;
    bool _stamped;
    std::uint64_t _present; ///< whole records
    Watches _watches;
    MissingRuns _missing;
    StampSurvey _stamps;
    UnusedBits _unusedBits;
    DataFacts _facts;
    std::uint64_t _limit = 0;    ///< records that are samples
    bool _numbersDecide = false; ///< whether records beyond the declared ones are samples
    std::uint64_t _index = 0;    ///< records seen
    std::optional<Shift> _shift;
    std::size_t _searches = 0;
    bool _areExact = true;
    std::vector<int> _exponents;
};

void reportShift(const ByteSource& data, std::size_t stride, const Shift& shift, Findings& findings) {
    const bool areLost = shift.bytes < 0;
    findings.add(Kind::ShiftedRecords, {data.name(), 0, "", data.offsetInFile(shift.record * stride)},
                 {"the following records " + std::to_string(areLost ? -shift.bytes : shift.bytes) +
                      (areLost ? " bytes too early" : " bytes too late"),
                  "read up to record " + std::to_string(shift.record), "record " + std::to_string(shift.record + 1)});
}

} // namespace

std::optional<DataFacts> surveyBinary(const ByteSource& data, const ReadCfg& cfg, std::size_t stride, bool acceptsAny,
                                      Findings& findings, ColumnTap* tap) {
    BinarySurvey survey(data, cfg, stride, findings, tap);
    const std::optional<Shift> shift = survey.walk();
    if (!shift) {
        return survey.finish(acceptsAny);
    }
    reportShift(data, stride, *shift, findings);
    const ByteSource sound = data.part(0, shift->record * stride);
    BinarySurvey surveyOfSound(sound, cfg, stride, findings);
    surveyOfSound.walk();
    std::optional<DataFacts> facts = surveyOfSound.finish(true);
    if (facts) {
        facts->libraryReads = false;
    }
    return facts;
}

} // namespace OrvComtradeIntake
