// The layout of a record stands in recordLayout.h, the grammar of an ASCII line in LineScanner.h.

#include "Sample.h"

#include "LineScanner.h"
#include "SampleClock.h"
#include "littleEndian.h"
#include "recordLayout.h"

#include <algorithm>
#include <exception>

namespace OrvComtradeLib {

Sample::Sample(const Cfg& configuration) : cfg(configuration) {}

Sample::~Sample() = default;

bool Sample::load(const std::string& line, unsigned long sampleIndex) {
    return _loadLine(line, sampleIndex);
}

bool Sample::load(const char* line, unsigned long sampleIndex) {
    return _loadLine(line, sampleIndex);
}

bool Sample::_loadLine(std::string_view line, unsigned long sampleIndex) {
    if (line.empty()) {
        return false;
    }
    index = sampleIndex;
    try {
        LineScanner scanner(line, LineShape(cfg));
        const bool statesFollow = scanner.scanNumbers([&](std::uint32_t field, std::int64_t value) {
            if (field == 1) {
                time = _getTime(static_cast<std::uint32_t>(value), sampleIndex);
            } else if (field > 1) {
                const AnalogChannelConfig& channelConfig = cfg.analogChannelConfigs.at(field - 2);
                analogValues.push_back(channelConfig.GetRealValue(static_cast<double>(value)));
            }
        });
        if (statesFollow) {
            scanner.scanStates([&](std::uint64_t states, std::uint32_t count) {
                for (; count != 0; --count, states >>= 1U) {
                    binaryValues.push_back((states & 1U) != 0);
                }
            });
        }
        return scanner.isComplete();
    } catch (const std::exception&) {
        return false;
    }
}

bool Sample::load(char* record, unsigned long sampleIndex) {
    try {
        index = sampleIndex;
        time = _getTime(readLittleEndian<std::uint32_t>(record + kTimestampOffset), sampleIndex);
        return _loadAnalogChannels(record) && _loadBinaryChannels(record);
    } catch (const std::exception&) {
        return false;
    }
}

double Sample::_getTime(unsigned int timestamp, unsigned long sampleIndex) {
    if (cfg.samplingRateKnown) {
        return cfg.timeFromSampleIndex(sampleIndex);
    }
    return stampTime(timestamp, cfg.timeMultiplier);
}

bool Sample::_loadAnalogChannels(char* record) {
    const auto count = static_cast<unsigned int>(cfg.analogChannelCount);
    for (unsigned int channel = 0; channel < count; ++channel) {
        analogValues.push_back(_getAnalogChannelValue(record, channel));
    }
    return true;
}

double Sample::_getAnalogChannelValue(char* record, unsigned int channel) {
    if (channel >= static_cast<unsigned int>(cfg.analogChannelCount)) {
        return 0.0;
    }
    const AnalogChannelConfig& channelConfig = cfg.analogChannelConfigs.at(channel);
    return channelConfig.GetRealValue(_getDoubleChannelValue(record, channel));
}

double Sample::_getDoubleChannelValue(char* record, unsigned int channel) {
    const char* const bytes = record + (kAnalogOffset + channel * cfg.analogValueLength);
    switch (cfg.dataFileType) {
    case Enums::Binary:
        return readLittleEndian<std::int16_t>(bytes);
    case Enums::Binary32:
        return readLittleEndian<std::int32_t>(bytes);
    case Enums::Float32:
        return static_cast<double>(readLittleEndian<float>(bytes));
    default:
        return 0.0;
    }
}

bool Sample::_loadBinaryChannels(char* record) {
    if (cfg.binaryChannelCount == 0) {
        return true;
    }
    for (unsigned int group = 0; group < cfg.statusWordCount; ++group) {
        _loadBinaryChannelsGroup(record, group);
    }
    return true;
}

void Sample::_loadBinaryChannelsGroup(char* record, unsigned int group) {
    const unsigned int remaining = static_cast<unsigned int>(cfg.binaryChannelCount) - kStatusBitsPerWord * group;
    const unsigned int count = std::min(remaining, kStatusBitsPerWord);
    if (count == 0) {
        return;
    }
    const unsigned int word =
        readLittleEndian<std::uint16_t>(record + (kAnalogOffset + cfg.analogValuesLength + kStatusWordLength * group));
    for (unsigned int bit = 0; bit < count; ++bit) {
        binaryValues.push_back((word >> bit & 1U) != 0);
    }
}

} // namespace OrvComtradeLib
