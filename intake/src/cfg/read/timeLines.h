#pragma once

#include "cfg/CfgLine.h"
#include "cfg/ReadCfg.h"

namespace OrvComtradeIntake {

/// Reads what follows the data type: time multiplier, time codes, time quality. Any other line is reported as text that
/// belongs to nothing.
void readTimeLines(CfgCursor& cursor, ReadCfg& read);

} // namespace OrvComtradeIntake
