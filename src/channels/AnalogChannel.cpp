#include "AnalogChannel.h"

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
    const double slope = (y2 - y1) / (x2 - x1);
    // Deliberate: in this order, which rounds differently from y1 + (x - x1) * slope.
    return (y1 - x1 * slope) + x * slope;
}

double AnalogChannel::getInterpolationValue(unsigned int index, double time) const {
    try {
        const auto channel = static_cast<std::size_t>(config.index);
        const Sample& left = samples.at(index);
        const Sample& right = samples.at(index + std::size_t{1});
        return getInterpolationValue(left.time, left.analogValues.at(channel), right.time,
                                     right.analogValues.at(channel), time);
    } catch (const std::exception&) {
        return 0.0;
    }
}

double AnalogChannel::getValue(double time, unsigned int& index) const {
    if (samples.empty()) {
        return 0.0;
    }
    const double instant = time - skew;
    if (instant < 0.0 || instant > samples.back().time) {
        return 0.0;
    }
    const std::size_t count = samples.size();
    const Sample* const sample = samples.data();
    std::size_t position = index;
    // Deliberate: the search never moves backwards, so a hint beyond the right place is taken as it stands.
    while (position < count && instant > sample[position].time) {
        ++position;
    }
    position = std::min(position, count - 1);
    index = static_cast<unsigned int>(position);
    if (position != 0) {
        return getInterpolationValue(static_cast<unsigned int>(position - 1), instant);
    }
    const auto channel = static_cast<std::size_t>(config.index);
    const std::vector<double>& values = samples.front().analogValues;
    return channel < values.size() ? values[channel] : 0.0;
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
        unsigned int hint = 0;
        for (std::uint64_t k = 0; static_cast<double>(k) < total; ++k) {
            const double time = static_cast<double>(k) / pointRate + start;
            points.push_back(narrowed(time, getValue(time, hint)));
        }
        return points;
    } catch (const std::exception&) {
        return {};
    }
}

} // namespace OrvComtradeLib
