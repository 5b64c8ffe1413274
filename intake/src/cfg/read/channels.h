#pragma once

#include "cfg/CfgLine.h"
#include "cfg/ReadCfg.h"

namespace OrvComtradeIntake {

/// Reads the next line as that of an analog channel. Returns false, with a finding of severity Error, if its commas can
/// be understood in more than one way.
bool readAnalog(CfgCursor& cursor, ReadCfg& read);

/// Fills in the range of the data type for lines that give none.
void fillRanges(ReadCfg& read);

/// Reads the next line as that of a status channel. With `isOld`, it has number, name and normal state, as in revision
/// 1991.
void readStatus(CfgCursor& cursor, bool isOld, ReadCfg& read);

} // namespace OrvComtradeIntake
