#pragma once

#include <algorithm>

namespace OrvComtradeLib {

/// Seconds that `sampleCount` samples of a sampling-rate segment last, at most `endSample` of them; -1.0 without a
/// rate. Inline for the loops over whole files.
inline double segmentDuration(double rate, unsigned long endSample, unsigned long sampleCount) {
    return rate > 0.0 ? static_cast<double>(std::min(endSample, sampleCount)) / rate : -1.0;
}

} // namespace OrvComtradeLib
