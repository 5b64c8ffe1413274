#pragma once

#include <OrvComtradeIntake/Options.h>

/// "primary", "secondary", or "unknown" if no side is declared.
inline const char* sideName(OrvComtradeIntake::Side side) {
    return OrvComtradeIntake::sideWord(side, "unknown");
}
