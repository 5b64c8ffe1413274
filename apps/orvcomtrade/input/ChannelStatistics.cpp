#include "input/ChannelStatistics.h"

#include <algorithm>
#include <cmath>

void ChannelStatistics::add(double value, double time) {
    if (_samples == 0) {
        _min = value;
        _max = value;
    }
    _min = std::min(_min, value);
    _max = std::max(_max, value);
    if (_samples == 0 || std::fabs(value) > std::fabs(_peak)) {
        _peak = value;
        _peakTime = time;
    }
    ++_samples;
    const auto exact = static_cast<long double>(value);
    _sum += exact;
    _squares += exact * exact;
}

double ChannelStatistics::mean() const {
    return _samples == 0 ? 0.0 : static_cast<double>(_sum / static_cast<long double>(_samples));
}

double ChannelStatistics::rms() const {
    return _samples == 0 ? 0.0 : static_cast<double>(std::sqrt(_squares / static_cast<long double>(_samples)));
}
