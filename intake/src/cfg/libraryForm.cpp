#include "cfg/libraryForm.h"

#include "Cfg.h"
#include "cfg/scaling.h"
#include "cfg/writeConfiguration.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <tuple>
#include <utility>
#include <vector>

namespace OrvComtradeIntake {

namespace {

// The first `samples` samples by rate, each with its length for an end; neighbours of the same rate are one. The last
// rate goes on.
std::vector<RateInfo> segmentsOf(const std::vector<RateInfo>& lengths, std::uint64_t samples) {
    std::vector<RateInfo> segments;
    std::uint64_t left = samples;
    for (const RateInfo& rate : lengths) {
        const bool isLast = &rate == &lengths.back();
        const std::uint64_t length = isLast ? left : std::min(rate.endSample, left);
        left -= length;
        if (length == 0) {
            continue;
        }
        if (!segments.empty() && segments.back().rate == rate.rate) {
            segments.back().endSample += length;
        } else {
            segments.push_back({rate.rate, length});
        }
    }
    return segments;
}

std::vector<RateInfo> lengthsOf(std::vector<RateInfo> ends) {
    for (std::size_t index = ends.size() - 1; index > 0; --index) {
        ends[index].endSample -= ends[index - 1].endSample;
    }
    return ends;
}

bool areSame(const std::vector<RateInfo>& left, const std::vector<RateInfo>& right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](const RateInfo& one, const RateInfo& other) {
                          return one.rate == other.rate && one.endSample == other.endSample;
                      });
}

// As they were written where the library takes them for the same segments: it adds up durations, and rounds each.
std::vector<RateInfo> ratesForLibrary(const ReadCfg& cfg, std::uint64_t samples) {
    const Header& header = cfg.header;
    if (samples == 0 || header.timesAreStamped()) {
        const double rate = header.rates.empty() ? 0.0 : header.rates.front().rate;
        return {{samples == 0 ? rate : 0.0, samples}};
    }
    const std::vector<RateInfo> lengths = lengthsOf(header.rates);
    std::vector<RateInfo> rates = cfg.wereLengths ? lengths : header.rates;
    std::vector<RateInfo> segments = segmentsOf(lengths, samples);
    if (!areSame(segments, segmentsOf(rates, samples))) {
        rates = std::move(segments);
    }
    rates.back().endSample = samples;
    return rates;
}

double multiplierForLibrary(const Header& header, const StampPlan& stamps) {
    const bool areNanoseconds = header.hasNanosecondDates && header.revision >= 2013;
    const double multiplier = areNanoseconds ? header.timeMultiplier / 1000.0 : header.timeMultiplier;
    return std::max(multiplier * stamps.unit / stamps.factor, std::numeric_limits<double>::min()); // or would be 0
}

std::vector<AnalogInfo> channelsForLibrary(const ReadCfg& cfg, const DataFacts& facts, Side wanted) {
    std::vector<AnalogInfo> channels;
    channels.reserve(cfg.header.analog.size());
    for (std::size_t index = 0; index < cfg.header.analog.size(); ++index) {
        const int exponent = index < facts.exponents.size() ? facts.exponents[index] : 0;
        channels.push_back(
            channelForLibrary(cfg.header.analog[index], cfg.analog[index], cfg.header.revision, wanted, exponent));
    }
    return channels;
}

auto partsOf(const OrvComtradeLib::AnalogChannelConfig& channel) {
    return std::tie(channel.index, channel.channelId, channel.phase, channel.circuitComponent, channel.unit,
                    channel.unitMultiplier, channel.a, channel.b, channel.skew, channel.min, channel.max);
}

auto partsOf(const OrvComtradeLib::BinaryChannelConfig& channel) {
    return std::tie(channel.index, channel.channelId, channel.phase, channel.circuitComponent, channel.normalState);
}

auto partsOf(const OrvComtradeLib::SamplingRate& rate) {
    return std::tie(rate.rate, rate.endSample);
}

auto partsOf(const OrvComtradeLib::Cfg& cfg) {
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

std::string libraryForm(const ReadCfg& cfg, const DataFacts& facts, Side wanted) {
    Header header = cfg.header;
    header.analog = channelsForLibrary(cfg, facts, wanted);
    header.rates = ratesForLibrary(cfg, facts.samples);
    header.timeMultiplier = header.timesAreStamped() ? multiplierForLibrary(cfg.header, facts.stamps) : 1.0;
    header.dataType = facts.libraryType;
    return writeConfiguration(header, Reader::Library);
}

// A unit with a prefix never passes: the library multiplies it in behind a and b, which rounds otherwise.
bool libraryReads(const OrvComtradeLib::Cfg& cfg, const OrvComtradeLib::Cfg& meant) {
    return partsOf(cfg) == partsOf(meant) && areSame(cfg.analogChannelConfigs, meant.analogChannelConfigs) &&
           areSame(cfg.binaryChannelConfigs, meant.binaryChannelConfigs) &&
           areSame(cfg.samplingRates, meant.samplingRates);
}

} // namespace OrvComtradeIntake
