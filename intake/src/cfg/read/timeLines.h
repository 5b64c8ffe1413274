#pragma once

#include "cfg/CfgLine.h"
#include "cfg/ReadCfg.h"

namespace OrvComtradeIntake {

/// Reads what follows the data type: time multiplier, time codes, time quality. Other lines are text that belongs to
/// nothing.
void readTimeLines(CfgCursor& cursor, ReadCfg& read);

} // namespace OrvComtradeIntake
