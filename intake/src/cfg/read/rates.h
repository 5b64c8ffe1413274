#pragma once

#include "cfg/CfgLine.h"
#include "cfg/ReadCfg.h"

#include <cstddef>

namespace OrvComtradeIntake {

/// Whether the line after `ahead` others, which is there, may be the line frequency: a number alone, or one with a
/// comma or a field behind it ("50,", "50,0") before the number of rates or a rate. By itself that could be a status
/// channel.
bool isFrequency(const CfgCursor& cursor, std::size_t ahead);

/// Whether the number of rates, a rate or a date stands after `ahead` others, where the line frequency should.
bool isFrequencyMissing(const CfgCursor& cursor, std::size_t ahead);

/// Whether a line begins with a number that is too small for the frequency of a network.
bool isLessThanFrequency(const CfgLine& line);

/// The line frequency.
void readLineFrequency(CfgCursor& cursor, ReadCfg& read);

/// The number of rates and the rates, with end samples as written.
void readRates(CfgCursor& cursor, ReadCfg& read);

} // namespace OrvComtradeIntake
