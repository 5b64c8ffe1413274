#pragma once

#include "CfgLine.h"

#include <cstddef>

namespace OrvComtradeIntake {

/// Fields 1 to 3 of a channel line (name, phase, component) came in `surplus` more than three, for commas in them:
/// joins those that belong together, going by which field looks like a phase.
void joinTexts(CfgLine& line, std::size_t surplus);

} // namespace OrvComtradeIntake
