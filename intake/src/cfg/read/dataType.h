#pragma once

#include "cfg/CfgLine.h"
#include "cfg/ReadCfg.h"

namespace OrvComtradeIntake {

/// Reads the line of the data type.
void readDataType(CfgCursor& cursor, ReadCfg& read);

} // namespace OrvComtradeIntake
