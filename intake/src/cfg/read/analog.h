#pragma once

#include "cfg/CfgCursor.h"
#include "cfg/ReadCfg.h"

namespace OrvComtradeIntake {

/// Reads the next line as that of an analog channel. False, with a finding of severity Error, where its commas can be
/// taken in more than one way.
bool readAnalog(CfgCursor& cursor, ReadCfg& read);

/// Puts the range of the data type where a line gives none.
void fillRanges(ReadCfg& read);

} // namespace OrvComtradeIntake
