#pragma once

#include <OrvComtradeIntake/Header.h>

#include <cstdint>
#include <vector>

/// Time in seconds of a 0-based sample by the rates, which must all be above 0. Samples after the last end have the
/// last rate.
double timeByRates(const std::vector<OrvComtradeIntake::RateInfo>& rates, std::uint64_t sample);
