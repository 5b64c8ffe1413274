#include "Configuration.h"

#include <algorithm>

namespace OrvComtradeIntake {

namespace {

constexpr double kSmallestRate = 1e-6; // the library takes a rate below this for none

} // namespace

bool Configuration::timesAreStamped() const {
    return rates.empty() ||
           std::any_of(rates.begin(), rates.end(), [](const RateLine& line) { return line.rate < kSmallestRate; });
}

const char* typeWord(DataEncoding encoding) {
    switch (encoding) {
    case DataEncoding::Binary:
        return "BINARY";
    case DataEncoding::Binary32:
        return "BINARY32";
    case DataEncoding::Float32:
        return "FLOAT32";
    case DataEncoding::Ascii:
        break;
    }
    return "ASCII";
}

} // namespace OrvComtradeIntake
