#pragma once

#include "cfg/CfgCursor.h"

#include <cstddef>

namespace OrvComtradeIntake {

/// Makes one text of `count` fields from the one at `index` on, where it has commas (a finding).
void joinText(CfgCursor& cursor, CfgLine& line, std::size_t index, std::size_t count, const char* name);

/// Fields 1 to 3 of a channel line (name, phase, component) came in `surplus` more than three, for commas in them:
/// joins those that belong together, going by which field looks like a phase.
void joinTexts(CfgCursor& cursor, CfgLine& line, std::size_t surplus);

} // namespace OrvComtradeIntake
