#pragma once

#include "cfg/CfgLine.h"
#include "cfg/ReadCfg.h"

#include <cstddef>

namespace OrvComtradeIntake {

/// Whether the line after `ahead` others, which is there, may be the line frequency: a number alone, or one with a
/// comma or a field behind it ("50,", "50,0") before the number of rates or a rate. By itself that could be a status
/// channel.
bool isFrequency(const CfgCursor& cursor, std::size_t ahead);

/// The line frequency.
void readLineFrequency(CfgCursor& cursor, ReadCfg& read);

/// The number of rates and the rates, with end samples as written.
void readRates(CfgCursor& cursor, ReadCfg& read);

} // namespace OrvComtradeIntake
