#include "SampleDecoder.h"

#include "../config/scaling.h"
#include "littleEndian.h"

#include <algorithm>
#include <cstdint>
#include <exception>
#include <type_traits>

namespace OrvComtradeLib {

namespace {

constexpr std::uint64_t kTimestampOffset = 4;
constexpr std::uint64_t kAnalogOffset = 8;
constexpr std::uint64_t kStatusWordLength = 2;
constexpr std::uint32_t kStatusBitsPerWord = 16;

std::uint64_t rawLength(Enums::DataFileType type) {
    switch (type) {
    case Enums::Binary:
        return 2;
    case Enums::Binary32:
    case Enums::Float32:
        return 4;
    default:
        return 0;
    }
}

} // namespace

SampleDecoder::SampleDecoder(const Cfg& configuration)
    : _cfg(configuration), _shape(configuration), _clock(configuration),
      _analogCount(static_cast<std::uint32_t>(configuration.analogChannelCount)),
      _statusCount(static_cast<std::uint32_t>(configuration.binaryChannelCount)) {
    const std::size_t count = std::min<std::size_t>(_analogCount, _cfg.analogChannelConfigs.size());
    for (std::size_t channel = 0; channel < count; ++channel) {
        const AnalogChannelConfig& record = _cfg.analogChannelConfigs[channel];
        _a.push_back(record.a);
        _b.push_back(record.b);
        _unitMultiplier.push_back(record.unitMultiplier);
    }
    _lineValues.resize(count);
}

bool SampleDecoder::recordsAreWhole() const {
    const std::uint64_t raw = rawLength(_cfg.dataFileType);
    std::uint64_t end = kAnalogOffset;
    if (_analogCount != 0 && raw != 0) {
        end += (_analogCount - std::uint64_t{1}) * _cfg.analogValueLength + raw;
    }
    // A last word that begins right behind the last status channel is not read.
    const std::uint64_t words = _cfg.statusWordCount;
    const std::uint64_t wordsRead = words != 0 && (words - 1) * kStatusBitsPerWord == _statusCount ? words - 1 : words;
    if (_statusCount != 0 && wordsRead != 0) {
        end = std::max(end, kAnalogOffset + _cfg.analogValuesLength + kStatusWordLength * wordsRead);
    }
    return end <= _cfg.recordLength;
}

bool SampleDecoder::decodeLine(const char* begin, const char* end, Sample& sample) {
    try {
        _statusBits.reset(std::min<std::size_t>(_shape.expectedFields, static_cast<std::size_t>(end - begin)));
        std::size_t analogValues = 0;
        const bool complete = scanLine(
            begin, end, _shape, [&](std::uint32_t timestamp) { sample.time = _timeOf(timestamp, sample.index); },
            [&](std::uint32_t channel, double raw) {
                double& value = _lineValues.at(channel);
                value = scaled(raw, _a[channel], _b[channel], _unitMultiplier[channel]);
                ++analogValues;
            },
            [&](std::uint64_t states, std::uint32_t count) { _statusBits.append(states, count); });
        sample.analogValues.assign(_lineValues.data(), _lineValues.data() + analogValues);
        _statusBits.copyTo(sample.binaryValues);
        return complete;
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
        _decodeAnalogValues(record + kAnalogOffset, sample.analogValues);
        _decodeStatusBits(record + kAnalogOffset + _cfg.analogValuesLength, sample.binaryValues);
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

double SampleDecoder::_timeOf(std::uint32_t timestamp, unsigned long index) {
    return _cfg.samplingRateKnown ? _clock.timeOf(index) : stampTime(timestamp, _cfg.timeMultiplier);
}

void SampleDecoder::_decodeAnalogValues(const char* bytes, std::vector<double>& values) const {
    switch (_cfg.dataFileType) {
    case Enums::Binary:
        return _scaleValues<std::int16_t>(bytes, values);
    case Enums::Binary32:
        return _scaleValues<std::int32_t>(bytes, values);
    case Enums::Float32:
        return _scaleValues<float>(bytes, values);
    default:
        // No type word yields another type; a host that sets one gets raw values of 0.
        for (std::size_t i = 0; i < _a.size(); ++i) {
            values.push_back(scaled(0.0, _a[i], _b[i], _unitMultiplier[i]));
        }
    }
}

template <class Raw> void SampleDecoder::_scaleValues(const char* bytes, std::vector<double>& values) const {
    values.resize(_a.size());
    // Local pointers and a constant distance wherever it is what the type says, so that vector instructions can be
    // used.
    const auto scaleAll = [bytes, out = values.data(), count = values.size(), a = _a.data(), b = _b.data(),
                           unitMultiplier = _unitMultiplier.data()](auto valueLength) {
        for (std::size_t i = 0; i < count; ++i) {
            const auto raw = static_cast<double>(readLittleEndian<Raw>(bytes + i * valueLength));
            out[i] = scaled(raw, a[i], b[i], unitMultiplier[i]);
        }
    };
    if (_cfg.analogValueLength == sizeof(Raw)) {
        scaleAll(std::integral_constant<std::size_t, sizeof(Raw)>());
    } else {
        scaleAll(std::size_t{_cfg.analogValueLength});
    }
}

void SampleDecoder::_decodeStatusBits(const char* bytes, std::vector<bool>& states) {
    if (_statusCount == 0) {
        return;
    }
    _statusBits.reset(std::size_t{kStatusBitsPerWord} * _cfg.statusWordCount);
    for (std::uint32_t group = 0; group < _cfg.statusWordCount; ++group) {
        const std::uint32_t count = std::min(_statusCount - kStatusBitsPerWord * group, kStatusBitsPerWord);
        if (count != 0) {
            const std::uint32_t word = readLittleEndian<std::uint16_t>(bytes + kStatusWordLength * group);
            _statusBits.append(word & ((1U << count) - 1U), count);
        }
    }
    _statusBits.copyTo(states);
}

} // namespace OrvComtradeLib
