#pragma once

#include "cfg/ReadCfg.h"
#include "report/Findings.h"

#include <cstdint>
#include <vector>

namespace OrvComtradeIntake {

/// Whether the end samples of several rates, as written, add up to the number of samples. If so, they may be the
/// lengths of their rates. Only for a header whose rates are not settled yet.
bool ratesMayBeLengths(const Header& header, std::uint64_t samples);

/// Settles the rates: decides by the number of samples in the data whether end samples are numbers of last samples
/// (IEEE C37.111-2013, 7.4.7) or lengths, and makes them numbers of last samples, which never decrease. Also sets both
/// numbers of samples in the header.
///
/// The last end may be less or more than the number of samples: the last rate then covers all that are left. A number
/// of samples other than the declared one is a finding. So is a rate without samples, if times come from the rates. No
/// samples at all are not reported here.
void settleRates(ReadCfg& cfg, std::uint64_t samples, Findings& findings);

/// The rates of `count` samples from the 0-based `first` on. Their ends count from that sample. `rates` must be
/// settled.
std::vector<RateInfo> ratesFrom(const std::vector<RateInfo>& rates, std::uint64_t first, std::uint64_t count);

} // namespace OrvComtradeIntake
