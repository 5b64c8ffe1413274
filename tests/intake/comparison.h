#pragma once

// A loaded recording against the slow reader's. Differences come as texts, empty where there is none, so that a
// property test can use them as well.

#include "Comtrade.h"
#include "Intake.h"
#include "intake/slowReader.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orvtest {

constexpr long double kHalfUlp = 0x1p-53L;

inline slow::Side slowSide(OrvComtradeIntake::Side side) {
    using OrvComtradeIntake::Side;
    return side == Side::Recorded  ? slow::Side::Unknown
           : side == Side::Primary ? slow::Side::Primary
                                   : slow::Side::Secondary;
}

inline std::string unlike(const std::string& place, const std::string& found, const std::string& expected) {
    return found == expected ? "" : place + ": '" + found + "', not '" + expected + "'";
}

/// Names, units, skews and normal states.
inline std::string firstTextDifference(const OrvComtradeLib::Comtrade& loaded, const slow::Recording& expected) {
    std::string difference = unlike("station", loaded.cfg.stationName, expected.station);
    const auto compare = [&difference](const std::string& place, const std::string& found, const std::string& right) {
        difference = difference.empty() ? unlike(place, found, right) : difference;
    };
    compare("recorder", loaded.cfg.recorderId, expected.recorder);
    compare("analog channels", std::to_string(loaded.analogChannels.size()), std::to_string(expected.analog.size()));
    compare("status channels", std::to_string(loaded.binaryChannels.size()), std::to_string(expected.status.size()));
    for (std::size_t i = 0; difference.empty() && i < expected.analog.size(); ++i) {
        const OrvComtradeLib::AnalogChannelConfig& found = loaded.cfg.analogChannelConfigs.at(i);
        const slow::AnalogChannel& right = expected.analog[i];
        const std::string place = "analog channel " + std::to_string(i);
        compare(place + " id", found.channelId, right.id);
        compare(place + " phase", found.phase, right.phase);
        compare(place + " component", found.circuitComponent, right.component);
        compare(place + " unit", found.unit, right.baseUnit);
        compare(place + " unit factor", std::to_string(found.unitMultiplier), "1.000000");
        const bool sameSkew = std::fabs(static_cast<long double>(found.skew) - right.skew) <= 1e-18L;
        compare(place + " skew", sameSkew ? "" : std::to_string(found.skew), "");
    }
    for (std::size_t i = 0; difference.empty() && i < expected.status.size(); ++i) {
        const OrvComtradeLib::BinaryChannelConfig& found = loaded.cfg.binaryChannelConfigs.at(i);
        const slow::StatusChannel& right = expected.status[i];
        const std::string place = "status channel " + std::to_string(i);
        compare(place + " id", found.channelId, right.id);
        compare(place + " phase", found.phase, right.phase);
        compare(place + " component", found.circuitComponent, right.component);
        compare(place + " normal state", std::to_string(found.normalState), std::to_string(right.normalState));
    }
    return difference;
}

/// Values to within so many half units in the last place of the largest term, times to 1e-12 of themselves, states.
inline std::string firstValueDifference(const OrvComtradeLib::Comtrade& loaded, const slow::Recording& expected,
                                        OrvComtradeIntake::Side side, int halfUlps) {
    const std::string counts =
        unlike("samples", std::to_string(loaded.dat.samples.size()), std::to_string(expected.samples.size()));
    if (!counts.empty()) {
        return counts;
    }
    for (std::size_t i = 0; i < expected.samples.size(); ++i) {
        const slow::Sample& right = expected.samples[i];
        const OrvComtradeLib::Sample& found = loaded.dat.samples[i];
        const std::string place = "sample " + std::to_string(i);
        if (!(std::fabs(static_cast<long double>(found.time) - right.time) <= 1e-12L * std::fabs(right.time))) {
            return unlike(place + " time", std::to_string(found.time), std::to_string(right.time) + " exactly");
        }
        for (std::size_t channel = 0; channel < expected.analog.size(); ++channel) {
            const slow::Value value = slow::valueOf(expected.analog[channel], right.raw[channel], slowSide(side));
            const auto number = static_cast<long double>(found.analogValues.at(channel));
            if (!right.missing[channel] && !(std::fabs(number - value.value) <= halfUlps * kHalfUlp * value.terms)) {
                return unlike(place + " analog channel " + std::to_string(channel), std::to_string(number),
                              std::to_string(value.value) + " exactly");
            }
        }
        if (found.binaryValues != right.status) {
            return place + ": states";
        }
    }
    return "";
}

inline std::string textOf(const std::optional<std::int64_t>& nanoseconds) {
    return nanoseconds ? std::to_string(*nanoseconds) : "none";
}

inline std::string textOf(const std::optional<OrvComtradeIntake::Instant>& instant) {
    return instant ? std::to_string(instant->nanoseconds) : "none";
}

/// Consecutive missing values as "channel:first+count".
inline std::string missingText(const slow::Recording& recording) {
    std::string text;
    for (std::size_t channel = 0; channel < recording.analog.size(); ++channel) {
        std::size_t count = 0;
        for (std::size_t i = 0; i <= recording.samples.size(); ++i) {
            const bool missing = i < recording.samples.size() && recording.samples[i].missing[channel];
            if (!missing && count != 0) {
                text += std::to_string(channel) + ":" + std::to_string(i - count) + "+" + std::to_string(count) + " ";
            }
            count = missing ? count + 1 : 0;
        }
    }
    return text;
}

inline std::string missingText(const OrvComtradeIntake::PreparedRecording& prepared) {
    std::string text;
    for (const OrvComtradeIntake::MissingRun& run : prepared.missing) {
        text += std::to_string(run.channel) + ":" + std::to_string(run.sample) + "+" + std::to_string(run.count) + " ";
    }
    return text;
}

/// What the library does not keep.
inline std::string firstKeptDifference(const OrvComtradeIntake::PreparedRecording& prepared,
                                       const slow::Recording& expected) {
    for (const std::string& difference :
         {unlike("start", textOf(prepared.start), textOf(expected.start)),
          unlike("trigger", textOf(prepared.trigger), textOf(expected.trigger)),
          unlike("samples present", std::to_string(prepared.samplesPresent), std::to_string(expected.samples.size())),
          unlike("missing values", missingText(prepared), missingText(expected))}) {
        if (!difference.empty()) {
            return difference;
        }
    }
    return "";
}

/// The channels as their lines declare them.
inline std::string firstOriginDifference(const OrvComtradeIntake::PreparedRecording& prepared,
                                         const slow::Recording& expected) {
    if (prepared.analog.size() != expected.analog.size()) {
        return "number of origins";
    }
    for (std::size_t i = 0; i < expected.analog.size(); ++i) {
        const OrvComtradeIntake::AnalogOrigin& found = prepared.analog[i];
        const slow::AnalogChannel& right = expected.analog[i];
        if (found.unit != right.unitAsWritten) {
            return unlike("unit of channel " + std::to_string(i), found.unit, right.unitAsWritten);
        }
        if (slowSide(found.side) != right.side || found.primary != static_cast<double>(right.primary) ||
            found.secondary != static_cast<double>(right.secondary)) {
            return "side or ratio of channel " + std::to_string(i);
        }
    }
    return "";
}

} // namespace orvtest
