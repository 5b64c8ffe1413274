#include "data/encodingRange.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace OrvComtradeIntake {

namespace {

/// What a device writes for a range that it does not know: the ends of an encoding.
bool isEndOfEncoding(double end) {
    constexpr std::array<double, 10> ends = {32767.0,  32768.0,      65535.0,      99998.0,      99999.0,
                                             999999.0, 2147483647.0, 2147483648.0, 4294967295.0, 0.0};
    constexpr double rounding = 1e-5; // of ends that are written in the unit
    const auto isEnd = [end](double known) { return std::abs(std::abs(end) - known) <= 0.5 + rounding * known; };
    return std::any_of(ends.begin(), ends.end(), isEnd) || std::abs(end) > 1e30;
}

} // namespace

bool isRangeOfEncoding(const AnalogInfo& channel) {
    const auto rawOf = [&channel](double end) { return (end - channel.b) / channel.a; };
    const bool inUnit = channel.a != 0.0 && isEndOfEncoding(rawOf(channel.min)) && isEndOfEncoding(rawOf(channel.max));
    return inUnit || (isEndOfEncoding(channel.min) && isEndOfEncoding(channel.max));
}

} // namespace OrvComtradeIntake
