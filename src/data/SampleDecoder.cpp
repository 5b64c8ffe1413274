#include "SampleDecoder.h"

#include "../config/scaling.h"
#include "littleEndian.h"

#include <algorithm>

namespace OrvComtradeLib {

namespace {

constexpr unsigned long kTimestampOffset = 4;
constexpr unsigned long kAnalogOffset = 8;
constexpr unsigned int kStatusBitsPerWord = 16;
constexpr unsigned long kStatusWordLength = 2;

} // namespace

SampleDecoder::SampleDecoder(const Cfg& configuration) : cfg(configuration), shape(configuration), clock(configuration) {
    const auto count = std::min<std::size_t>(static_cast<unsigned int>(cfg.analogChannelCount),
                                             cfg.analogChannelConfigs.size());
    scalings.reserve(count);
    for (std::size_t channel = 0; channel < count; ++channel) {
        const AnalogChannelConfig& record = cfg.analogChannelConfigs[channel];
        scalings.push_back({record.a, record.b, record.unitMultiplier});
    }
}

} // namespace OrvComtradeLib
