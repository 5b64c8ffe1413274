// The analog channels of a recording and their values at one instant: tutorial_values FILE TIME (seconds)

#include "host.h"
#include "toUtf8.h"

#include <cstddef>
#include <iomanip>
#include <iostream>
#include <optional>

namespace {

// [values]
void writeValues(const OrvComtradeLib::Comtrade& recording, double time) {
    std::cout << "   secondary       primary  skew, us  channel\n" << std::fixed;
    for (const auto& channel : recording.analogChannels) {
        const auto& config = recording.cfg.analogChannelConfigs[static_cast<std::size_t>(channel.config.index)];
        unsigned int hint = 0; // where the search begins; it only moves forward
        const double secondary = channel.getValue(time, hint);
        const double primary = secondary * config.primary / config.secondary;
        std::cout << std::setprecision(3) << std::setw(12) << secondary << std::setw(14) << primary
                  << std::setprecision(0) << std::setw(10) << channel.skew * 1e6 << "  " << host::label(config) << " ["
                  << host::baseUnit(config) << "]\n";
    }
}
// [/values]

// [station]
void writeStation(const OrvComtradeLib::Cfg& cfg) {
    std::cout << host::printable(toUtf8::detectAndConvert(cfg.stationName)) << ", "
              << host::printable(toUtf8::detectAndConvert(cfg.recorderId)) << '\n';
}
// [/station]

} // namespace

int main(int argc, char** argv) {
    const std::optional<double> time = argc == 3 ? host::toNumber(argv[2]) : std::nullopt;
    if (!time) {
        std::cerr << "usage: tutorial_values FILE TIME (in seconds)\n";
        return 2;
    }
    OrvComtradeLib::Comtrade recording;
    if (!host::loadOrTell(recording, argv[1])) {
        return 1;
    }
    writeStation(recording.cfg);
    writeValues(recording, *time);
    std::cout.flush();
    return std::cout ? 0 : 1;
}
