#include <OrvComtradeIntake/Header.h>

#include <algorithm>

namespace OrvComtradeIntake {

const char* typeWord(DataType type) {
    switch (type) {
    case DataType::Binary:
        return "BINARY";
    case DataType::Binary32:
        return "BINARY32";
    case DataType::Float32:
        return "FLOAT32";
    case DataType::Ascii:
        break;
    }
    return "ASCII";
}

const char* sideWord(Side side, const char* none) {
    switch (side) {
    case Side::Primary:
        return "primary";
    case Side::Secondary:
        return "secondary";
    case Side::Recorded:
        break;
    }
    return none;
}

bool Header::timesAreStamped() const {
    const auto isStamped = [](const RateInfo& rate) { return rate.rate <= 0.0; };
    return rates.empty() || std::any_of(rates.begin(), rates.end(), isStamped);
}

} // namespace OrvComtradeIntake
