// The greatest value of each channel of a recording, as a device wrote it.

// [device_values]
#include <OrvComtradeIntake/Intake.h>

#include <algorithm>
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
        for (std::size_t sample = 0; sample < columns.samples; ++sample) {
            peak = std::max(peak, std::fabs(values[sample]));
        }
        std::cout << channels[i].id << ": " << peak << ' ' << opened.unitOf(i) << '\n';
    }
}
// [/device_values]
