// The sampling rates of a recording and the times that follow from them: tutorial_times FILE

#include "host.h"

#include <cstddef>
#include <iostream>

namespace {

// [rates]
void writeRates(const OrvComtradeLib::Comtrade& recording) {
    const auto& cfg = recording.cfg;
    for (const auto& segment : cfg.samplingRates) {
        std::cout << host::exact(segment.rate) << " samples per second up to number " << segment.endSample << '\n';
    }
    std::cout << "times come from the " << (cfg.samplingRateKnown ? "sampling rates" : "time stamps of the data file")
              << "; time multiplier " << host::exact(cfg.timeMultiplier) << '\n'
              << recording.dat.samples.size() << " of " << cfg.lastSampleNumber << " samples, the last at "
              << host::exact(recording.dat.lastSampleTime) << " s\n";
}
// [/rates]

// [time]
/// Time of a sample where the last sample numbers of the rates count from the beginning of the recording, whatever the
/// time multiplier. Every rate must be known, and the object loaded once.
double timeByRates(const OrvComtradeLib::Cfg& cfg, std::size_t position) {
    const auto number = static_cast<double>(position);
    double time = 0.0;
    double begin = 0.0;
    for (const auto& segment : cfg.samplingRates) {
        const auto end = static_cast<double>(segment.endSample);
        if (number < end || &segment == &cfg.samplingRates.back()) {
            return time + (number - begin) / segment.rate;
        }
        time += (end - begin) / segment.rate;
        begin = end;
    }
    return time;
}
// [/time]

void writeBorders(const OrvComtradeLib::Comtrade& recording) {
    const auto& samples = recording.dat.samples;
    std::cout << "sample, its time, and its time by the rates:\n";
    for (const auto& segment : recording.cfg.samplingRates) {
        for (const std::size_t position : {segment.endSample - 1, segment.endSample}) {
            if (position < samples.size()) {
                std::cout << position << "  " << host::exact(samples[position].time) << "  "
                          << host::exact(timeByRates(recording.cfg, position)) << '\n';
            }
        }
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: tutorial_times FILE\n";
        return 2;
    }
    OrvComtradeLib::Comtrade recording;
    if (!host::loadOrTell(recording, argv[1])) {
        return 1;
    }
    writeRates(recording);
    if (recording.cfg.samplingRateKnown) {
        writeBorders(recording);
    }
    std::cout.flush();
    return std::cout ? 0 : 1;
}
