#pragma once

#include <OrvComtradeIntake/Options.h>

/// "primary", "secondary", or "unknown" where no side is declared.
const char* sideName(OrvComtradeIntake::Side side);
