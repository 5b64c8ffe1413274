#pragma once

#include <OrvComtradeIntake/Finding.h>
#include <OrvComtradeIntake/Header.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace OrvComtradeIntake {

/// What later stages need of an analog line in addition to its AnalogInfo.
struct AnalogSource {
    long double a = 1.0L;          ///< as written, so that factors can be multiplied in and rounded to a double once
    long double b = 0.0L;          ///< as written
    bool hasRange = false;         ///< min or max is written
    std::size_t line = 0;          ///< 1-based, in the file
    std::uint64_t sideOffset = 0;  ///< of the field P or S, in the file
    std::uint64_t ratioOffset = 0; ///< of the field primary
};

/// Where the end sample of a rate stands.
struct RateSource {
    std::size_t line = 0;     ///< 1-based, in the file
    std::uint64_t offset = 0; ///< of the field, in the file
};

/// What a `.cfg` says, once understood.
struct ReadCfg {
    std::string file; ///< for findings
    Header header;    ///< complete except for what the data decide: see settleRates and DataFacts
    std::vector<AnalogSource> analog;
    std::vector<RateSource> ends; ///< by rate, as far as the file has lines of them
    bool areRatesSettled = false; ///< ends are numbers of last samples; until then they are as written
    bool wereLengths = false;     ///< they were written as lengths, which the library takes as they are

    Place rate;    ///< of the first sampling rate, or where it should be
    Place trigger; ///< of its line
};

} // namespace OrvComtradeIntake
