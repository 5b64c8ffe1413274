#pragma once

#include "Cfg.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>

namespace fuzz {

/// Gives `cfg` that many channel records; `salt` chooses their factors.
inline void addRecords(OrvComtradeLib::Cfg& cfg, std::size_t analogCount, std::size_t statusCount, std::uint8_t salt) {
    static constexpr double kFactors[] = {
        1.0, 0.01, -3.5, 0.000123, 1e300, 0.0, std::numeric_limits<double>::infinity()};
    static constexpr double kOffsets[] = {0.0, -7.25, 1e-300, 1e308, 0.1};
    static constexpr double kUnits[] = {1.0, 0.001, 1000.0, 1000000.0};
    for (std::size_t i = 0; i < analogCount; ++i) {
        OrvComtradeLib::AnalogChannelConfig record(static_cast<int>(i), false, 1999);
        record.a = kFactors[(i + salt) % 7];
        record.b = kOffsets[(i + salt / 7) % 5];
        record.unitMultiplier = kUnits[(i + salt / 35) % 4];
        cfg.analogChannelConfigs.push_back(record);
    }
    cfg.binaryChannelConfigs.resize(statusCount);
}

/// Gives `cfg` a time base; `choice` chooses it.
inline void addTimes(OrvComtradeLib::Cfg& cfg, std::uint8_t choice) {
    static const char* const kRates[] = {
        "1000,3", "0.5,2", "3,1", "0,2", "-1,1", "1e-7,0", "1e300,9223372036854775807"};
    static constexpr double kMultipliers[] = {1.0, 1000.0, -0.5, 1e-300};
    cfg.samplingRateKnown = (choice & 1U) != 0;
    cfg.timeMultiplier = kMultipliers[choice >> 1U & 3U];
    const std::size_t count = choice >> 3U & 3U;
    for (std::size_t i = 0; i < count; ++i) {
        cfg.samplingRates.emplace_back(std::string(kRates[(i * 3 + (choice >> 5U)) % 7]));
    }
}

} // namespace fuzz
