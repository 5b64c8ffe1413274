#pragma once

#include <OrvComtradeIntake/Options.h>

/// "primary", "secondary", or "unknown" where no side is declared.
inline const char* sideName(OrvComtradeIntake::Side side) {
    return OrvComtradeIntake::sideWord(side, "unknown");
}
