#pragma once

#include "cfg/CfgCursor.h"
#include "cfg/ReadCfg.h"

namespace OrvComtradeIntake {

/// Reads the next line as that of a status channel. `isOld`: number, name and normal state, as in revision 1991.
void readStatus(CfgCursor& cursor, bool isOld, ReadCfg& read);

} // namespace OrvComtradeIntake
