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
    : cfg(configuration), shape(configuration), clock(configuration),
      analogCount(static_cast<std::uint32_t>(configuration.analogChannelCount)),
      statusCount(static_cast<std::uint32_t>(configuration.binaryChannelCount)) {
    const auto count = std::min<std::size_t>(analogCount, cfg.analogChannelConfigs.size());
    scalings.reserve(count);
    for (std::size_t channel = 0; channel < count; ++channel) {
        const AnalogChannelConfig& record = cfg.analogChannelConfigs[channel];
        scalings.push_back({record.a, record.b, record.unitMultiplier});
    }
}

bool SampleDecoder::recordsAreWhole() const {
    const std::uint64_t raw = rawLength(cfg.dataFileType);
    const std::uint64_t analogEnd =
        kAnalogOffset +
        (analogCount == 0 || raw == 0 ? 0 : (analogCount - std::uint64_t{1}) * cfg.analogValueLength + raw);
    const std::uint64_t statusEnd =
        kAnalogOffset +
        (statusCount == 0 ? 0 : cfg.analogValuesLength + kStatusWordLength * cfg.statusWordCount);
    return std::max(analogEnd, statusEnd) <= cfg.recordLength;
}

bool SampleDecoder::decodeLine(const char* begin, const char* end, Sample& sample) {
    try {
        sample.analogValues.reserve(scalings.size());
        sample.binaryValues.reserve(std::min<std::size_t>(statusCount, static_cast<std::size_t>(end - begin)));
        return scanLine(
            begin, end, shape,
            [&](std::uint32_t timestamp) { sample.time = timeOf(timestamp, sample.index); },
            [&](std::uint32_t channel, double raw) {
                const Scaling& scaling = scalings.at(channel);
                sample.analogValues.push_back(scaled(raw, scaling.a, scaling.b, scaling.unitMultiplier));
            },
            [&](bool state) { sample.binaryValues.push_back(state); });
    } catch (const std::exception&) {
        return false;
    }
}

bool SampleDecoder::decodeRecord(const char* record, Sample& sample) {
    if (analogCount > scalings.size()) {
        return false;
    }
    try {
        sample.time = timeOf(readUint32(record + kTimestampOffset), sample.index);
        decodeAnalogValues(record + kAnalogOffset, sample);
        decodeStatusBits(record + kAnalogOffset + cfg.analogValuesLength, sample);
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

double SampleDecoder::timeOf(std::uint32_t timestamp, unsigned long index) {
    return cfg.samplingRateKnown ? clock.timeOf(index) : stampTime(timestamp, cfg.timeMultiplier);
}

void SampleDecoder::decodeAnalogValues(const char* bytes, Sample& sample) const {
    switch (cfg.dataFileType) {
    case Enums::Binary:
        return appendValues(bytes, sample, readInt16);
    case Enums::Binary32:
        return appendValues(bytes, sample, readInt32);
    case Enums::Float32:
        return appendValues(bytes, sample, readFloat32);
    default:
        return appendValues(bytes, sample, [](const char*) { return 0.0; });
    }
}

template <class ReadRaw>
void SampleDecoder::appendValues(const char* bytes, Sample& sample, ReadRaw readRaw) const {
    sample.analogValues.reserve(scalings.size());
    for (const Scaling& scaling : scalings) {
        const auto raw = static_cast<double>(readRaw(bytes));
        sample.analogValues.push_back(scaled(raw, scaling.a, scaling.b, scaling.unitMultiplier));
        bytes += cfg.analogValueLength;
    }
}

void SampleDecoder::decodeStatusBits(const char* bytes, Sample& sample) const {
    if (statusCount == 0) {
        return;
    }
    sample.binaryValues.reserve(statusCount);
    for (std::uint32_t group = 0; group < cfg.statusWordCount; ++group) {
        const std::uint32_t count = std::min(statusCount - kStatusBitsPerWord * group, kStatusBitsPerWord);
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
