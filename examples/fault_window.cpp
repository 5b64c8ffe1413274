// Peak and RMS of every analog channel between two instants: fault_window FILE START END (seconds)
//
// Taken over the samples in START <= instant < END, not over interpolated values, so that no peak is missed; give whole
// cycles for an RMS that means something. A channel's samples were taken its skew after the time of the sample.

#include "host.h"

#include <cmath>
#include <cstddef>
#include <iomanip>
#include <iostream>
#include <optional>
#include <vector>

namespace {

struct Window {
    double start;
    double end;
};

struct Extent {
    std::size_t samples = 0;
    double peak = 0.0; ///< with its sign
    double peakTime = 0.0;
    double rms = 0.0;
};

// [extent]
/// How long sample `i` stands for the signal: until the next one. Where the sampling rate changes within the window,
/// each value so counts by its time and not by how many there are.
double weightOf(const std::vector<OrvComtradeLib::Sample>& samples, std::size_t i) {
    const std::size_t next = i + 1 < samples.size() ? i + 1 : i;
    const double seconds = next == 0 ? 1.0 : samples[next].time - samples[next - 1].time;
    return seconds > 0.0 ? seconds : 0.0; // time stamps of a damaged file may run backwards
}

Extent extentOf(const OrvComtradeLib::AnalogChannel& channel, Window window) {
    const auto position = static_cast<std::size_t>(channel.config.index);
    Extent extent;
    double squares = 0.0;
    double seconds = 0.0;
    for (std::size_t i = 0; i < channel.samples.size(); ++i) {
        const double instant = channel.samples[i].time + channel.skew;
        const double value = channel.samples[i].analogValues[position];
        if (!(instant >= window.start && instant < window.end) || !std::isfinite(value)) {
            continue;
        }
        if (extent.samples == 0 || std::abs(value) > std::abs(extent.peak)) {
            extent.peak = value;
            extent.peakTime = instant;
        }
        ++extent.samples;
        const double weight = weightOf(channel.samples, i);
        squares += value * value * weight;
        seconds += weight;
    }
    extent.rms = seconds > 0.0 ? std::sqrt(squares / seconds) : std::abs(extent.peak);
    return extent;
}
// [/extent]

void write(const OrvComtradeLib::Comtrade& recording, Window window) {
    std::cout << " samples          peak      at, s           RMS  channel\n" << std::fixed;
    for (std::size_t i = 0; i < recording.analogChannels.size(); ++i) {
        const Extent extent = extentOf(recording.analogChannels[i], window);
        const auto& config = recording.cfg.analogChannelConfigs[i];
        std::cout << std::setw(8) << extent.samples << std::setprecision(3) << std::setw(14) << extent.peak
                  << std::setprecision(6) << std::setw(11) << extent.peakTime << std::setprecision(3) << std::setw(14)
                  << extent.rms << "  " << host::label(config) << " [" << host::baseUnit(config) << "]\n";
    }
}

} // namespace

int main(int argc, char** argv) {
    const std::optional<double> start = argc == 4 ? host::toNumber(argv[2]) : std::nullopt;
    const std::optional<double> end = argc == 4 ? host::toNumber(argv[3]) : std::nullopt;
    if (!start || !end) {
        std::cerr << "usage: fault_window FILE START END (in seconds)\n";
        return 2;
    }
    OrvComtradeLib::Comtrade recording;
    if (!host::loadOrTell(recording, argv[1])) {
        return 1;
    }
    write(recording, {*start, *end});
    std::cout.flush();
    return std::cout ? 0 : 1;
}
