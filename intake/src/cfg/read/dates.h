#pragma once

#include "cfg/CfgLine.h"
#include "cfg/ReadCfg.h"

namespace OrvComtradeIntake {

/// Reads the times of the first sample and of the trigger.
void readDates(CfgCursor& cursor, ReadCfg& read);

} // namespace OrvComtradeIntake
