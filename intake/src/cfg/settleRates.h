#pragma once

#include "cfg/ReadCfg.h"
#include "report/Findings.h"

#include <cstdint>
#include <vector>

namespace OrvComtradeIntake {

/// Whether the end samples of several rates, as written, add up to the number of samples: they may be the lengths of
/// their rates then. For a header that settleRates has not seen.
bool ratesMayBeLengths(const Header& header, std::uint64_t samples);

/// Decides by the number of samples in the data whether end samples are numbers of last samples (IEEE C37.111-2013,
/// 7.4.7) or lengths, and makes them numbers of last samples, which never decrease. Sets the numbers of samples of the
/// header. The last end may be less or more than the samples in the data: the last rate goes on for them all. A count
/// other than the declared one is a finding, and so are rates without samples; no samples at all are none.
void settleRates(ReadCfg& cfg, std::uint64_t samples, Findings& findings);

/// The rates that `count` samples from the 0-based `first` on have, with their ends counted from the first of these
/// samples. For rates that are settled.
std::vector<RateInfo> ratesFrom(const std::vector<RateInfo>& rates, std::uint64_t first, std::uint64_t count);

} // namespace OrvComtradeIntake
