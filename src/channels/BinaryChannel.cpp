#include "BinaryChannel.h"

#include "../data/prefetch.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <exception>
#include <stdexcept>

namespace OrvComtradeLib {

namespace {

bool stateOf(const Sample& sample, std::size_t bit) {
    if (bit >= sample.binaryValues.size()) {
        throw std::out_of_range("status bit");
    }
    return sample.binaryValues[bit];
}

} // namespace

BinaryChannel::BinaryChannel(BinaryChannelConfig& channelConfig, const std::vector<Sample>& recordedSamples)
    : BaseChannel(channelConfig, recordedSamples) {}

BinaryChannel::~BinaryChannel() = default;

float BinaryChannel::bool2Float(bool state) const {
    return state ? 1.0F : 0.0F;
}

std::vector<Orv::PointF> BinaryChannel::getPoints(double start, double end, double /*rate*/) const {
    if (samples.empty()) {
        return {};
    }
    try {
        // Deliberate: the bit of the view's own record, hence channel 0 for every view.
        const auto bit = static_cast<std::size_t>(binaryConfig.index);
        const double last = end < 0.0 ? samples.back().time : end;
        std::vector<Orv::PointF> points;
        // Deliberate: x of the opening and closing points is absolute, x of a change is counted from the start.
        const auto append = [&](double x, bool state) { points.push_back({static_cast<float>(x), bool2Float(state)}); };
        bool previous = stateOf(samples.front(), bit);
        bool current = previous;
        bool first = true;
        constexpr auto kAhead = static_cast<std::ptrdiff_t>(kSamplesAhead);
        const Sample* const furthest = &samples.back();
        for (const Sample& sample : samples) {
            prefetchStates((furthest - &sample > kAhead ? &sample + kAhead : furthest)->binaryValues);
            current = stateOf(sample, bit);
            const bool changed = current != previous;
            if (sample.time < start) {
                previous = current;
                continue;
            }
            if (first) {
                append(start, current);
                first = false;
            }
            if (sample.time > last) {
                append(last, current);
                current = previous; // deliberate: a closing point below would carry the state inside the range again
                break;
            }
            if (changed) {
                append(sample.time - start, current);
                previous = current;
            }
        }
        if (!points.empty() && std::fabs(last - static_cast<double>(points.back().x)) > 1e-6) {
            append(last, current);
        }
        return points;
    } catch (const std::exception&) {
        return {};
    }
}

} // namespace OrvComtradeLib
