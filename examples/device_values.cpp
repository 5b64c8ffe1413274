// Every value of a recording, as a device wrote it, with its time.

// [device_values]
#include <OrvComtradeIntake/Intake.h>

#include <iostream>

int main(int argc, char** argv) {
    const auto opened = OrvComtradeIntake::open(argc < 2 ? "" : argv[1]);
    for (const auto& finding : opened.findings()) {
        std::cerr << finding.code << ": " << finding.found << '\n';
    }
    if (!opened.readable()) {
        return 1;
    }
    const auto columns = opened.columns();
    const auto& channels = opened.header().analog;
    for (std::size_t i = 0; i < channels.size(); ++i) {
        std::cout << channels[i].id << ", " << opened.unitOf(i) << '\n';
        for (std::size_t k = 0; k < columns.samples; ++k) {
            std::cout << columns.time[k] << ' ' << columns.column(i)[k] << '\n';
        }
    }
}
// [/device_values]
