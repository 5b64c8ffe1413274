#include "data/ChannelRange.h"

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

/// Also if the range is given in the unit of the channel.
bool isRangeOfEncoding(const AnalogInfo& channel) {
    const auto rawOf = [&channel](double end) { return (end - channel.b) / channel.a; };
    const bool inUnit = channel.a != 0.0 && isEndOfEncoding(rawOf(channel.min)) && isEndOfEncoding(rawOf(channel.max));
    return inUnit || (isEndOfEncoding(channel.min) && isEndOfEncoding(channel.max));
}

constexpr std::uint64_t kFewOfSamples = 10; // one in so many leaves its range at the most

} // namespace

ChannelRange::ChannelRange(const AnalogInfo& channel, bool isGiven)
    : _channel(&channel), _isOfEncoding(isRangeOfEncoding(channel)),
      _isCompared(isGiven && channel.min < channel.max && !_isOfEncoding) {
    const double slack = 1e-6 * std::max(std::abs(channel.min), std::abs(channel.max)); // singles are rounded
    _low = std::floor(channel.min - slack);                                             // and integers
    _high = std::ceil(channel.max + slack);
}

RangeOf ChannelRange::of(const SeenValues& values) const {
    if (!_isCompared) {
        return _isOfEncoding ? RangeOf::Encoding : RangeOf::Unknown;
    }
    if (values.outside == 0) {
        return RangeOf::Recorded;
    }
    if (_isFilledInUnit(values)) {
        return RangeOf::Unit;
    }
    return kFewOfSamples * values.outside > values.count ? RangeOf::Others : RangeOf::Recorded;
}

bool ChannelRange::_isFilledInUnit(const SeenValues& values) const {
    constexpr double filled = 0.3;
    const double one = values.least * _channel->a + _channel->b;
    const double other = values.greatest * _channel->a + _channel->b;
    const double size = std::max(std::abs(one), std::abs(other));
    return std::min(one, other) >= _low && std::max(one, other) <= _high &&
           size >= filled * std::max(std::abs(_low), std::abs(_high));
}

} // namespace OrvComtradeIntake
