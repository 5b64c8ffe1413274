#pragma once

#include "Cfg.h"
#include "cfg/DataFacts.h"
#include "cfg/ReadCfg.h"

#include <OrvComtradeIntake/Options.h>

namespace OrvComtradeIntake {

/// The configuration as the library has it when it reads the recording rightly. Throws `std::system_error` where there
/// is no nameless memory to hand it over, or it can't be read from there.
OrvComtradeLib::Cfg libraryCfgOf(const ReadCfg& cfg, const DataFacts& facts, Side wanted);

} // namespace OrvComtradeIntake
