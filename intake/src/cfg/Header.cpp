#include "cfg/settleRates.h"

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

std::vector<RateInfo> Header::ratesInUse() const {
    const bool areEnds = std::is_sorted(rates.begin(), rates.end(), [](const RateInfo& left, const RateInfo& right) {
        return left.endSample < right.endSample;
    });
    if (timesAreStamped() || samples == 0 || !areEnds) {
        return rates;
    }
    std::vector<RateInfo> used;
    for (const RateInfo& rate : ratesFrom(rates, 0, samples)) {
        if (used.empty() || used.back().rate != rate.rate) {
            used.push_back(rate);
        } else {
            used.back().endSample = rate.endSample;
        }
    }
    return used;
}

} // namespace OrvComtradeIntake
