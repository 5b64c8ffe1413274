#include "points.h"

#include "AnalogChannel.h"
#include "Cfg.h"
#include "Sample.h"

#include <limits>

namespace {

using OrvComtradeLib::Sample;

std::vector<Sample> samplesOf(const OrvComtradeLib::Cfg& cfg, const double* times, const double* values,
                              std::size_t count) {
    std::vector<Sample> samples;
    samples.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        Sample& sample = samples.emplace_back(cfg);
        sample.index = i;
        sample.time = times[i];
        sample.analogValues.assign(1, values[i]);
    }
    return samples;
}

} // namespace

std::vector<double> interpolated(const double* times, const double* values, std::size_t count, double skew,
                                 const double* wanted, std::size_t wantedCount) {
    const OrvComtradeLib::Cfg cfg;
    const std::vector<Sample> samples = samplesOf(cfg, times, values, count);
    OrvComtradeLib::AnalogChannelConfig config(0, false, 1999);
    OrvComtradeLib::AnalogChannel channel(config, samples);
    channel.skew = skew;
    std::vector<double> given(wantedCount, std::numeric_limits<double>::quiet_NaN());
    unsigned int sample = 0;
    for (std::size_t i = 0; i < wantedCount; ++i) {
        const double instant = wanted[i] - skew;
        if (count == 0 || !(instant >= times[0] && instant <= times[count - 1])) {
            continue;
        }
        given[i] = channel.getValue(wanted[i], sample);
        if (instant == times[sample]) {
            given[i] = values[sample]; // what the line to it would give, but for rounding and a missing value before it
        }
    }
    return given;
}
