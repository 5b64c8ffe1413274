#pragma once

#include "cfg/CfgLine.h"
#include "cfg/ReadCfg.h"

namespace OrvComtradeIntake {

/// Reads the next line as that of an analog channel. False, with a finding of severity Error, where its commas can be
/// taken in more than one way.
bool readAnalog(CfgCursor& cursor, ReadCfg& read);

/// Puts the range of the data type where a line gives none.
void fillRanges(ReadCfg& read);

/// Reads the next line as that of a status channel. `isOld`: number, name and normal state, as in revision 1991.
void readStatus(CfgCursor& cursor, bool isOld, ReadCfg& read);

} // namespace OrvComtradeIntake
