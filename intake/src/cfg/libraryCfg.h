#pragma once

#include "Cfg.h"
#include "cfg/DataFacts.h"
#include "cfg/ReadCfg.h"

#include <OrvComtradeIntake/Options.h>

namespace OrvComtradeIntake {

/// The configuration that the library has when it reads the recording correctly. The library itself loads it, from a
/// NamelessFile. Throws `std::system_error` if that file cannot be made or read.
OrvComtradeLib::Cfg libraryCfgOf(const ReadCfg& cfg, const DataFacts& facts, Side wanted);

} // namespace OrvComtradeIntake
