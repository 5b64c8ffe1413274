#pragma once

#include "OrvComtradeExport.h"

#include <string>

namespace OrvComtradeLib {

/// One sampling-rate line of a `.cfg` (IEEE C37.111-1999, 5.3.6).
class ORVCOMTRADE_API SamplingRate {
public:
    /// Parses "rate,endSample". Throws `std::out_of_range` for fewer than two fields, and the exceptions of
    /// `std::stod` and `std::stol` for numbers that do not convert.
    explicit SamplingRate(const std::string& line);

    /// Seconds that `sampleCount` samples of this segment last, at most `endSample` of them; -1.0 without a rate.
    double getDuration(unsigned long sampleCount) const;

    double rate = 0.0;           ///< samples per second; 0 where the file gives none
    unsigned long endSample = 0; ///< last sample number of the segment, as written
};

} // namespace OrvComtradeLib
