#pragma once

#include <OrvComtradeIntake/Header.h>

#include <cstdint>
#include <vector>

/// Time in seconds of the 0-based sample, by rates that are all above 0; those behind the last end follow the last
/// rate.
double timeByRates(const std::vector<OrvComtradeIntake::RateInfo>& rates, std::uint64_t sample);
