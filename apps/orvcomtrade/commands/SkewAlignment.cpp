#include "commands/SkewAlignment.h"

#include "input/skewSeconds.h"

#include <algorithm>
#include <limits>

using OrvComtradeIntake::AnalogInfo;
using OrvComtradeIntake::Columns;
using OrvComtradeIntake::Header;

namespace {

constexpr double kNoValue = std::numeric_limits<double>::quiet_NaN();

} // namespace

SkewAlignment::SkewAlignment(const Header& header) : _lastValues(header.analog.size(), kNoValue), _lastTime(kNoValue) {
    for (const AnalogInfo& channel : header.analog) {
        _skews.push_back(skewSeconds(channel));
    }
}

const Columns& SkewAlignment::aligned(const Columns& block) {
    if (std::all_of(_skews.begin(), _skews.end(), [](double skew) { return skew == 0.0; })) {
        return block;
    }
    _aligned = block;
    for (std::size_t channel = 0; channel < _skews.size(); ++channel) {
        if (_skews[channel] != 0.0 && block.samples > 0) {
            _align(channel, block);
        }
    }
    _lastTime = block.samples == 0 ? _lastTime : block.time.back();
    return _aligned;
}

void SkewAlignment::_align(std::size_t channel, const Columns& block) {
    const double skew = _skews[channel];
    const double* const values = block.column(channel);
    double* const column = _aligned.analog.data() + channel * block.samples;
    for (std::size_t i = 0; i < block.samples; ++i) {
        const double before = i == 0 ? _lastTime : block.time[i - 1];
        const double valueBefore = i == 0 ? _lastValues[channel] : values[i - 1];
        const double step = block.time[i] - before; // NaN for the first sample
        if (skew < 0.0 || skew >= step) {
            continue;
        }
        column[i] = valueBefore + (values[i] - valueBefore) * ((step - skew) / step);
    }
    _lastValues[channel] = values[block.samples - 1];
}
