#pragma once

#include "cfg/CfgLine.h"
#include "cfg/ReadCfg.h"

#include <cstddef>

namespace OrvComtradeIntake {

/// Whether the line after `ahead` others, which must exist, may be the line frequency. That is a number alone, or one
/// with a comma or a field after it ("50,", "50,0") if the number of rates or a rate follows; without them, it could be
/// a status channel.
bool isFrequency(const CfgCursor& cursor, std::size_t ahead);

/// Whether the number of rates, a rate or a date comes after `ahead` other lines, in the place of the line frequency.
bool isFrequencyMissing(const CfgCursor& cursor, std::size_t ahead);

/// Whether a line begins with a number that is too small for the frequency of a network.
bool isLessThanFrequency(const CfgLine& line);

/// The line frequency.
void readLineFrequency(CfgCursor& cursor, ReadCfg& read);

/// The number of rates and the rates, with end samples as written.
void readRates(CfgCursor& cursor, ReadCfg& read);

} // namespace OrvComtradeIntake
