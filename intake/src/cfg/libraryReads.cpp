#include "cfg/libraryReads.h"

#include "Cfg.h"

#include <algorithm>
#include <tuple>
#include <vector>

namespace OrvComtradeIntake {

namespace {

using namespace OrvComtradeLib;

auto partsOf(const AnalogChannelConfig& channel) {
    return std::tie(channel.index, channel.channelId, channel.phase, channel.circuitComponent, channel.unit,
                    channel.unitMultiplier, channel.a, channel.b, channel.skew, channel.min, channel.max);
}

auto partsOf(const BinaryChannelConfig& channel) {
    return std::tie(channel.index, channel.channelId, channel.phase, channel.circuitComponent, channel.normalState);
}

auto partsOf(const SamplingRate& rate) {
    return std::tie(rate.rate, rate.endSample);
}

auto partsOf(const Cfg& cfg) {
    return std::tie(cfg.stationName, cfg.recorderId, cfg.totalChannelCount, cfg.analogChannelCount,
                    cfg.binaryChannelCount, cfg.lineFrequency, cfg.lastSampleNumber, cfg.samplingRateKnown,
                    cfg.dataFileType, cfg.analogValueLength, cfg.analogValuesLength, cfg.statusWordCount,
                    cfg.statusWordsLength, cfg.recordLength, cfg.timeMultiplier, cfg.duration);
}

template <class Part> bool areSame(const std::vector<Part>& left, const std::vector<Part>& right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](const Part& one, const Part& other) { return partsOf(one) == partsOf(other); });
}

} // namespace

// A unit with a prefix never passes: the library multiplies it in behind a and b, which rounds otherwise.
bool libraryReads(const Cfg& cfg, const Cfg& meant) {
    return partsOf(cfg) == partsOf(meant) && areSame(cfg.analogChannelConfigs, meant.analogChannelConfigs) &&
           areSame(cfg.binaryChannelConfigs, meant.binaryChannelConfigs) &&
           areSame(cfg.samplingRates, meant.samplingRates);
}

} // namespace OrvComtradeIntake
