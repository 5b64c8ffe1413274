#pragma once

// What the targets compare the library with: slow, plain, and made from the description of the formats alone.

#include "Cfg.h"

#include <climits>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace fuzz {

/// Equal to the last bit; any not-a-number equals any other.
inline bool same(double left, double right) {
    std::uint64_t leftBits = 0;
    std::uint64_t rightBits = 0;
    std::memcpy(&leftBits, &left, sizeof left);
    std::memcpy(&rightBits, &right, sizeof right);
    return leftBits == rightBits || (left != left && right != right);
}

inline bool same(float left, float right) {
    return same(static_cast<double>(left), static_cast<double>(right));
}

inline bool same(const std::vector<double>& left, const std::vector<double>& right) {
    bool equal = left.size() == right.size();
    for (std::size_t i = 0; equal && i < left.size(); ++i) {
        equal = same(left[i], right[i]);
    }
    return equal;
}

/// The parts of a text between separators; a separator at the very end makes no further part.
inline std::vector<std::string> cut(std::string_view text, char separator) {
    std::vector<std::string> parts;
    std::string part;
    bool open = false;
    for (const char character : text) {
        if (character == separator) {
            parts.push_back(part);
            part.clear();
            open = false;
        } else {
            part += character;
            open = true;
        }
    }
    if (open) {
        parts.push_back(part);
    }
    return parts;
}

inline std::optional<double> numberIn(const std::string& text) {
    errno = 0;
    char* end = nullptr;
    const double value = std::strtod(text.c_str(), &end);
    const bool converted = end != text.c_str() && errno != ERANGE;
    return converted ? std::optional<double>(value) : std::nullopt;
}

inline std::optional<long> integerIn(const std::string& text) {
    errno = 0;
    char* end = nullptr;
    const long value = std::strtol(text.c_str(), &end, 10);
    const bool converted = end != text.c_str() && errno != ERANGE;
    return converted ? std::optional<long>(value) : std::nullopt;
}

inline std::optional<int> smallIntegerIn(const std::string& text) {
    const std::optional<long> value = integerIn(text);
    const bool fits = value && *value >= INT_MIN && *value <= INT_MAX;
    return fits ? std::optional<int>(static_cast<int>(*value)) : std::nullopt;
}

inline double slowDuration(const OrvComtradeLib::SamplingRate& segment, std::uint64_t count) {
    if (!(segment.rate > 0.0)) {
        return -1.0;
    }
    return static_cast<double>(count < segment.endSample ? count : segment.endSample) / segment.rate;
}

/// Time of a sample by the sampling rates, every rate's last sample number taken for the length of its segment.
inline double slowTime(const std::vector<OrvComtradeLib::SamplingRate>& rates, double multiplier, std::uint64_t index) {
    if (rates.empty()) {
        return -1.0;
    }
    double passed = 0.0;
    std::size_t segment = 0;
    while (rates[segment].endSample <= index) {
        const double duration = slowDuration(rates[segment], rates[segment].endSample);
        if (duration < 0.0) {
            return -1.0;
        }
        passed = passed + duration;
        index -= rates[segment].endSample;
        if (segment + 1 == rates.size()) {
            break;
        }
        ++segment;
    }
    return (slowDuration(rates[segment], index) + passed) * multiplier;
}

/// Time of a sample of a data file.
inline double slowTime(const OrvComtradeLib::Cfg& cfg, std::uint32_t stamp, std::uint64_t index) {
    return cfg.samplingRateKnown ? slowTime(cfg.samplingRates, cfg.timeMultiplier, index)
                                 : static_cast<double>(stamp) * cfg.timeMultiplier * 0.000001;
}

inline double slowValue(const OrvComtradeLib::AnalogChannelConfig& channel, double raw) {
    return (raw * channel.a + channel.b) * channel.unitMultiplier;
}

} // namespace fuzz
