#pragma once

#include "cfg/CfgLine.h"
#include "cfg/read/counts.h"
#include "cfg/read/station.h"

namespace OrvComtradeIntake {

/// How the channel lines are laid out.
struct Layout {
    int revision = 1999;
    bool hasOldStatus = false; ///< status lines of revision 1991: number, name, normal state
};

/// Finds the layout by the year and by the fields of the channel lines, which begin at the cursor.
Layout judgeLayout(const CfgCursor& cursor, const ChannelCounts& counts, const RevisionYear& year);

} // namespace OrvComtradeIntake
