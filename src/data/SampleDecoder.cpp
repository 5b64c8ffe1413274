#include "SampleDecoder.h"

#include "../config/scaling.h"
#include "littleEndian.h"
#include "recordLayout.h"

#include <algorithm>
#include <cstdint>
#include <exception>
#include <type_traits>

namespace OrvComtradeLib {

namespace {

/// Status words of a record that are read: one that begins right behind the last channel is not.
std::uint32_t wordsRead(const Cfg& cfg, std::uint32_t statusCount) {
    const std::uint32_t words = statusCount == 0 ? 0 : cfg.statusWordCount;
    const bool lastIsEmpty = words != 0 && (words - std::uint64_t{1}) * kStatusBitsPerWord == statusCount;
    return lastIsEmpty ? words - 1 : words;
}

/// `__restrict`, which all compilers know: without it every record begins with a look whether the values overlap the
/// factors. The raw values may be the values themselves.
template <class RawOf>
void scaleValues(const double* __restrict a, const double* __restrict b, const double* __restrict unitMultiplier,
                 double* values, std::size_t count, RawOf rawOf) {
    for (std::size_t channel = 0; channel < count; ++channel) {
        values[channel] = scaled(rawOf(channel), a[channel], b[channel], unitMultiplier[channel]);
    }
}

} // namespace

SampleDecoder::SampleDecoder(const Cfg& configuration)
    : _cfg(configuration), _shape(configuration), _clock(configuration),
      _analogCount(static_cast<std::uint32_t>(configuration.analogChannelCount)),
      _statusCount(static_cast<std::uint32_t>(configuration.binaryChannelCount)),
      _wordsRead(wordsRead(configuration, _statusCount)) {
    const std::size_t count = std::min<std::size_t>(_analogCount, _cfg.analogChannelConfigs.size());
    for (std::size_t channel = 0; channel < count; ++channel) {
        const AnalogChannelConfig& record = _cfg.analogChannelConfigs[channel];
        _a.push_back(record.a);
        _b.push_back(record.b);
        _unitMultiplier.push_back(record.unitMultiplier);
    }
    _values.resize(count);
}

bool SampleDecoder::recordsAreWhole() const {
    const std::uint64_t raw = rawLength(_cfg.dataFileType);
    std::uint64_t end = kAnalogOffset;
    if (_analogCount != 0 && raw != 0) {
        end += (_analogCount - std::uint64_t{1}) * _cfg.analogValueLength + raw;
    }
    if (_wordsRead != 0) {
        end = std::max(end, std::uint64_t{kAnalogOffset} + _cfg.analogValuesLength +
                                std::uint64_t{kStatusWordLength} * _wordsRead);
    }
    return end <= _cfg.recordLength;
}

bool SampleDecoder::decodeLine(std::string_view line, Sample& sample) {
    try {
        LineScanner scanner(line, _shape);
        std::size_t values = 0;
        const bool statesFollow = scanner.scanNumbers([&](std::uint32_t field, std::int64_t value) {
            if (field > 1) {
                _values.at(field - 2) = static_cast<double>(value);
                ++values;
            } else if (field == 1) {
                sample.time = _timeOf(static_cast<std::uint32_t>(value), sample.index);
            }
        });
        _scale(values, [this](std::size_t channel) { return _values[channel]; });
        sample.analogValues.assign(_values.data(), _values.data() + values);
        if (!statesFollow) {
            return scanner.isComplete();
        }
        // Status columns seldom change from one line to the next; the same text means the same states.
        const bool unchanged = scanner.rest() == _statusText;
        if (!unchanged) {
            _statusText = scanner.rest();
            _statusBits.reset(std::min<std::size_t>(_shape.expectedFields, _statusText.size()));
            scanner.scanStates(
                [this](std::uint64_t states, std::uint32_t count) { _statusBits.append(states, count); });
        }
        _statusBits.copyTo(sample.binaryValues);
        return unchanged || scanner.isComplete();
    } catch (const std::exception&) {
        return false;
    }
}

bool SampleDecoder::decodeRecord(const char* record, Sample& sample) {
    if (_analogCount > _a.size()) {
        return false;
    }
    try {
        sample.time = _timeOf(readLittleEndian<std::uint32_t>(record + kTimestampOffset), sample.index);
        _decodeAnalogValues(record + kAnalogOffset);
        sample.analogValues.assign(_values.begin(), _values.end());
        if (_wordsRead != 0) {
            _decodeStatusBits(record + kAnalogOffset + std::size_t{_cfg.analogValuesLength}, sample.binaryValues);
        }
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

double SampleDecoder::_timeOf(std::uint32_t timestamp, unsigned long index) {
    return _cfg.samplingRateKnown ? _clock.timeOf(index) : stampTime(timestamp, _cfg.timeMultiplier);
}

void SampleDecoder::_decodeAnalogValues(const char* bytes) {
    switch (_cfg.dataFileType) {
    case Enums::Binary:
        return _scaleRawValues<std::int16_t>(bytes);
    case Enums::Binary32:
        return _scaleRawValues<std::int32_t>(bytes);
    case Enums::Float32:
        return _scaleRawValues<float>(bytes);
    default:
        // No type word yields another type; a host that sets one gets raw values of 0.
        return _scale(_a.size(), [](std::size_t) { return 0.0; });
    }
}

template <class Raw> void SampleDecoder::_scaleRawValues(const char* bytes) {
    const auto scaleAll = [&](auto valueLength) {
        _scale(_a.size(), [bytes, valueLength](std::size_t channel) {
            return static_cast<double>(readLittleEndian<Raw>(bytes + channel * valueLength));
        });
    };
    // A constant distance, wherever it is what the type says, lets the compiler use vector instructions.
    if (_cfg.analogValueLength == sizeof(Raw)) {
        scaleAll(std::integral_constant<std::size_t, sizeof(Raw)>());
    } else {
        scaleAll(std::size_t{_cfg.analogValueLength});
    }
}

template <class RawOf> void SampleDecoder::_scale(std::size_t count, RawOf rawOf) {
    scaleValues(_a.data(), _b.data(), _unitMultiplier.data(), _values.data(), count, rawOf);
}

void SampleDecoder::_decodeStatusBits(const char* bytes, std::vector<bool>& states) {
    // Status words seldom change from one record to the next.
    const std::string_view words(bytes, std::size_t{kStatusWordLength} * _wordsRead);
    if (words != _statusText) {
        _statusText = words;
        _statusBits.reset(std::size_t{kStatusBitsPerWord} * _wordsRead);
        for (std::uint32_t group = 0; group < _wordsRead; ++group) {
            const std::uint32_t count = std::min(_statusCount - kStatusBitsPerWord * group, kStatusBitsPerWord);
            const auto word = readLittleEndian<std::uint16_t>(bytes + std::size_t{kStatusWordLength} * group);
            _statusBits.append(word & ((1U << count) - 1U), count);
        }
    }
    _statusBits.copyTo(states);
}

} // namespace OrvComtradeLib
