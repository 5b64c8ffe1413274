#include "input/timeByRates.h"

using OrvComtradeIntake::RateInfo;

double timeByRates(const std::vector<RateInfo>& rates, std::uint64_t sample) {
    double time = 0.0;
    std::uint64_t begin = 0;
    for (const RateInfo& rate : rates) {
        const bool isLast = &rate == &rates.back();
        if (isLast || sample < rate.endSample) {
            return time + static_cast<double>(sample - begin) / rate.rate;
        }
        if (rate.endSample > begin) {
            time += static_cast<double>(rate.endSample - begin) / rate.rate;
            begin = rate.endSample;
        }
    }
    return time;
}
