// Lists the changes of the status channels: status_events FILE
//
// Each channel's states are its own bit of the samples. Times have microseconds; the state after a change is called
// normal when it is the one that the configuration gives for the primary device at rest.

#include "host.h"

#include <cstddef>
#include <iomanip>
#include <iostream>

namespace {

// [events]
void listEvents(const OrvComtradeLib::Comtrade& recording) {
    const auto& samples = recording.dat.samples;
    const auto& channels = recording.cfg.binaryChannelConfigs;
    for (std::size_t i = 1; i < samples.size(); ++i) {
        for (std::size_t bit = 0; bit < channels.size(); ++bit) {
            const bool from = samples[i - 1].binaryValues[bit];
            const bool to = samples[i].binaryValues[bit];
            if (from != to) {
                const char* const kind = static_cast<int>(to) == channels[bit].normalState ? "normal  " : "abnormal";
                std::cout << std::setw(12) << samples[i].time << " s  " << from << " -> " << to << "  " << kind << "  "
                          << host::label(channels[bit]) << '\n';
            }
        }
    }
}
// [/events]

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: status_events FILE\n";
        return 2;
    }
    OrvComtradeLib::Comtrade recording;
    if (!host::loadOrTell(recording, argv[1])) {
        return 1;
    }
    std::cout << std::fixed << std::setprecision(6);
    listEvents(recording);
    std::cout.flush();
    return std::cout ? 0 : 1;
}
