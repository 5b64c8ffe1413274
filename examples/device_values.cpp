// The greatest value of each channel of a recording, as a device wrote it, and its time.

// [device_values]
#include <OrvComtradeIntake/Intake.h>

#include <cmath>
#include <cstddef>
#include <iostream>

int main(int argc, char** argv) {
    const auto opened = OrvComtradeIntake::open(argc < 2 ? "" : argv[1]);
    for (const auto& finding : opened.findings()) {
        std::cout << finding.code << ": " << finding.found << '\n';
    }
    if (!opened.readable()) {
        return 1;
    }
    const auto columns = opened.columns();
    const auto& channels = opened.header().analog;
    for (std::size_t i = 0; i < channels.size(); ++i) {
        const double* values = columns.column(i);
        double peak = 0.0;
        double time = 0.0;
        for (std::size_t sample = 0; sample < columns.samples; ++sample) {
            if (std::fabs(values[sample]) > std::fabs(peak)) {
                peak = values[sample];
                time = columns.time[sample];
            }
        }
        std::cout << channels[i].id << ": " << peak << ' ' << opened.unitOf(i) << " at " << time << " s\n";
    }
}
// [/device_values]
