#include "SampleDecoder.h"

#include "../config/scaling.h"
#include "littleEndian.h"

#include <algorithm>
#include <cstdint>
#include <exception>

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
    const auto count = std::min<std::size_t>(_analogCount, _cfg.analogChannelConfigs.size());
    _scalings.reserve(count);
    for (std::size_t channel = 0; channel < count; ++channel) {
        const AnalogChannelConfig& record = _cfg.analogChannelConfigs[channel];
        _scalings.push_back({record.a, record.b, record.unitMultiplier});
    }
}

bool SampleDecoder::recordsAreWhole() const {
    const std::uint64_t raw = rawLength(_cfg.dataFileType);
    const std::uint64_t analogEnd =
        kAnalogOffset +
        (_analogCount == 0 || raw == 0 ? 0 : (_analogCount - std::uint64_t{1}) * _cfg.analogValueLength + raw);
    const std::uint64_t statusEnd =
        kAnalogOffset + (_statusCount == 0 ? 0 : _cfg.analogValuesLength + kStatusWordLength * _cfg.statusWordCount);
    return std::max(analogEnd, statusEnd) <= _cfg.recordLength;
}

bool SampleDecoder::decodeLine(const char* begin, const char* end, Sample& sample) {
    try {
        sample.analogValues.reserve(_scalings.size());
        sample.binaryValues.reserve(std::min<std::size_t>(_statusCount, static_cast<std::size_t>(end - begin)));
        return scanLine(
            begin, end, _shape, [&](std::uint32_t timestamp) { sample.time = _timeOf(timestamp, sample.index); },
            [&](std::uint32_t channel, double raw) {
                const Scaling& scaling = _scalings.at(channel);
                sample.analogValues.push_back(scaled(raw, scaling.a, scaling.b, scaling.unitMultiplier));
            },
            [&](bool state) { sample.binaryValues.push_back(state); });
    } catch (const std::exception&) {
        return false;
    }
}

bool SampleDecoder::decodeRecord(const char* record, Sample& sample) {
    if (_analogCount > _scalings.size()) {
        return false;
    }
    try {
        sample.time = _timeOf(readUint32(record + kTimestampOffset), sample.index);
        _decodeAnalogValues(record + kAnalogOffset, sample);
        _decodeStatusBits(record + kAnalogOffset + _cfg.analogValuesLength, sample);
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

double SampleDecoder::_timeOf(std::uint32_t timestamp, unsigned long index) {
    return _cfg.samplingRateKnown ? _clock.timeOf(index) : stampTime(timestamp, _cfg.timeMultiplier);
}

void SampleDecoder::_decodeAnalogValues(const char* bytes, Sample& sample) const {
    switch (_cfg.dataFileType) {
    case Enums::Binary:
        return _appendValues(bytes, sample, readInt16);
    case Enums::Binary32:
        return _appendValues(bytes, sample, readInt32);
    case Enums::Float32:
        return _appendValues(bytes, sample, readFloat32);
    default:
        return _appendValues(bytes, sample, [](const char*) { return 0.0; });
    }
}

template <class ReadRaw> void SampleDecoder::_appendValues(const char* bytes, Sample& sample, ReadRaw readRaw) const {
    sample.analogValues.reserve(_scalings.size());
    for (const Scaling& scaling : _scalings) {
        const auto raw = static_cast<double>(readRaw(bytes));
        sample.analogValues.push_back(scaled(raw, scaling.a, scaling.b, scaling.unitMultiplier));
        bytes += _cfg.analogValueLength;
    }
}

void SampleDecoder::_decodeStatusBits(const char* bytes, Sample& sample) const {
    if (_statusCount == 0) {
        return;
    }
    sample.binaryValues.reserve(
        std::min<std::size_t>(_statusCount, kStatusBitsPerWord * std::size_t{_cfg.statusWordCount}));
    for (std::uint32_t group = 0; group < _cfg.statusWordCount; ++group) {
        const std::uint32_t count = std::min(_statusCount - kStatusBitsPerWord * group, kStatusBitsPerWord);
        if (count == 0) {
            continue;
        }
        const std::uint32_t word = readUint16(bytes + kStatusWordLength * group);
        for (std::uint32_t bit = 0; bit < count; ++bit) {
            sample.binaryValues.push_back((word >> bit & 1U) != 0);
        }
    }
}

} // namespace OrvComtradeLib
