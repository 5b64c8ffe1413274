#include "AnalogChannel.h"

#include "../data/prefetch.h"
#include "StringHelper.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <exception>

namespace OrvComtradeLib {

namespace {

constexpr double kCountLimit = 18446744073709551616.0; // 2^64

Orv::PointF narrowed(double x, double y) {
    return {static_cast<float>(x), static_cast<float>(y)};
}

/// The straight line through two points at x.
double lineThrough(double x1, double y1, double x2, double y2, double x) {
    const double slope = (y2 - y1) / (x2 - x1);
    // Deliberate: in this order, which rounds differently from y1 + (x - x1) * slope.
    return (y1 - x1 * slope) + x * slope;
}

/// The line through samples `index` and `index` + 1, or 0.0 where one of them or its value is missing.
double interpolated(const std::vector<Sample>& samples, std::size_t index, std::size_t channel, double time) {
    if (index >= samples.size() || index + 1 >= samples.size()) {
        return 0.0;
    }
    const Sample& left = samples[index];
    const Sample& right = samples[index + 1];
    if (channel >= left.analogValues.size() || channel >= right.analogValues.size()) {
        return 0.0;
    }
    return lineThrough(left.time, left.analogValues[channel], right.time, right.analogValues[channel], time);
}

/// Value at an instant that is corrected for skew already; the search goes on from `hint`.
double valueAt(const std::vector<Sample>& samples, std::size_t channel, double instant, unsigned int& hint) {
    if (samples.empty() || instant < 0.0 || instant > samples.back().time) {
        return 0.0;
    }
    const std::size_t count = samples.size();
    std::size_t position = hint;
    // Deliberate: the search never moves backwards, so a hint beyond the right place is taken as it stands.
    while (position < count && instant > samples[position].time) {
        ++position;
    }
    position = std::min(position, count - 1);
    hint = static_cast<unsigned int>(position);
    if (position != 0) {
        return interpolated(samples, position - 1, channel, instant);
    }
    const std::vector<double>& values = samples.front().analogValues;
    return channel < values.size() ? values[channel] : 0.0;
}

} // namespace

AnalogChannel::AnalogChannel(AnalogChannelConfig& channelConfig, const std::vector<Sample>& recordedSamples)
    : BaseChannel(channelConfig, recordedSamples), skew(channelConfig.skew) {}

AnalogChannel::~AnalogChannel() = default;

std::string AnalogChannel::phase() const {
    return config.phase;
}

std::string AnalogChannel::unit() const {
    return dynamic_cast<const AnalogChannelConfig&>(config).unit;
}

bool AnalogChannel::isCurrent() const {
    // Deliberate: exact texts only, and bytes are lowered one by one, so neither kA nor a Cyrillic capital counts.
    const std::string lowered = StringHelper::toLower(unit());
    return lowered == "a" || lowered == "\xD0\xB0"; // the second is the Cyrillic small letter a
}

double AnalogChannel::getInterpolationValue(double x1, double y1, double x2, double y2, double x) const {
    return lineThrough(x1, y1, x2, y2, x);
}

double AnalogChannel::getInterpolationValue(unsigned int index, double time) const {
    return interpolated(samples, index, static_cast<std::size_t>(config.index), time);
}

double AnalogChannel::getValue(double time, unsigned int& index) const {
    return valueAt(samples, static_cast<std::size_t>(config.index), time - skew, index);
}

double AnalogChannel::defaultSampleRate(double duration) const {
    const double rate = 1000.0 / duration;
    // Deliberate: rates close to a multiple of 0.02 are nudged off it.
    return std::fabs(std::remainder(rate, 0.02)) < 0.006 ? rate + 0.006 : rate;
}

std::vector<Orv::PointF> AnalogChannel::getPoints(double start, double end, double rate) const {
    if (samples.empty()) {
        return {};
    }
    try {
        const double last = end < 0.0 ? samples.back().time : end;
        const double duration = last - start;
        const double pointRate = rate < 0.0 ? defaultSampleRate(duration) : rate;
        const double total = duration * pointRate;
        if (!(total > 0.0 && total < kCountLimit)) {
            return {};
        }
        std::vector<Orv::PointF> points;
        points.reserve(static_cast<std::uint64_t>(total));
        const auto channel = static_cast<std::size_t>(config.index);
        unsigned int hint = 0;
        for (std::uint64_t k = 0; static_cast<double>(k) < total; ++k) {
            const double time = static_cast<double>(k) / pointRate + start;
            points.push_back(narrowed(time, valueAt(samples, channel, time - skew, hint)));
            if (hint + kSamplesAhead < samples.size()) {
                prefetchValue(samples[hint + kSamplesAhead].analogValues, channel);
            }
        }
        return points;
    } catch (const std::exception&) {
        return {};
    }
}

} // namespace OrvComtradeLib
