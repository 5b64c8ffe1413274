#pragma once

#include "Configuration.h"
#include "DataSource.h"
#include "Findings.h"
#include "PreparedRecording.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace OrvComtradeIntake {

/// Consecutive samples without a stamp, and the stamps to write for them: `first`, `first + step`, ...
struct StampFill {
    std::uint64_t sample = 0; ///< 0-based
    std::uint64_t count = 0;  ///< samples
    double first = 0.0;       ///< as what is read times ten to the power of DataSurvey::stampExponent
    double step = 0.0;
};

/// What one walk over the data found, and what must be done so that the library reads it.
struct DataSurvey {
    std::uint64_t samples = 0;                   ///< whole samples that there are
    bool asItStands = true;                      ///< the library reads these bytes rightly, given the number of samples
    DataEncoding encoding = DataEncoding::Ascii; ///< to be written (or kept)
    std::vector<int> exponents;     ///< per analog channel: raw values are written times ten to this power; empty: none
    std::size_t recordStride = 0;   ///< bytes from one binary record to the next
    int stampExponent = 0;          ///< stamps are taken times ten to this power: some have decimals
    std::int64_t stampOrigin = 0;   ///< then counted from this, the lowest: some are negative
    std::uint64_t stampDivisor = 1; ///< then divided by this: they wrapped, or take more than 32 bits
    double stampUnit = 1.0;         ///< what the time multiplier is multiplied by for it
    double stampFactor = 1.0;       ///< what it is divided by; the one or the other is 1
    std::vector<StampFill> stampFills; ///< stamps that are missing and are written as interpolated, by sample
    std::vector<MissingRun> missing;   ///< by channel, then sample
};

/// Reads the data once (twice for some faults), in blocks, without keeping them. Every fault is a finding: sample count
/// other than declared, stray bytes, a last record cut short, blank lines, lines with too few fields, decimals, plus
/// signs, empty fields, 0x1A, stamps that wrap, are negative, constant or missing, BINARY32, missing values (IEEE
/// C37.111-2013, 8.4, 8.6).
DataSurvey surveyData(const DataSource& source, const Configuration& configuration, Findings& findings);

/// Writes the data anew as the survey says, in blocks, to the file `target`. Throws `std::system_error` if it can't.
void writeData(const DataSource& source, const Configuration& configuration, const DataSurvey& survey,
               const std::string& target);

} // namespace OrvComtradeIntake
