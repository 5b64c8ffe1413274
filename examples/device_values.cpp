// The greatest value of each channel of a recording, as a device wrote it.

// [device_values]
#include <OrvComtradeIntake/Intake.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iostream>

int main(int argc, char** argv) {
    const OrvComtradeIntake::Opened opened = OrvComtradeIntake::open(argc < 2 ? "" : argv[1]);
    for (const auto& finding : opened.findings()) {
        std::cout << finding.code << ": " << finding.found << '\n';
    }
    if (!opened.readable()) {
        return 1;
    }
    const OrvComtradeIntake::Columns columns = opened.columns();
    for (std::size_t channel = 0; channel < opened.header().analog.size(); ++channel) {
        const double* values = columns.column(channel);
        double peak = 0.0;
        for (std::size_t sample = 0; sample < columns.samples; ++sample) {
            peak = std::max(peak, std::fabs(values[sample]));
        }
        std::cout << opened.header().analog[channel].id << ": " << peak << ' ' << opened.unitOf(channel) << '\n';
    }
}
// [/device_values]
