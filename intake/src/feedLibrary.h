#pragma once

#include "Comtrade.h"
#include "Recording.h"

namespace OrvComtradeIntake {

/// Fills the library's object; see Opened::load.
int feedLibrary(const Recording& recording, OrvComtradeLib::Comtrade& comtrade);

} // namespace OrvComtradeIntake
