#pragma once

#include "Cfg.h"
#include "cfg/DataFacts.h"
#include "cfg/ReadCfg.h"

#include <OrvComtradeIntake/Options.h>

#include <string>

namespace OrvComtradeIntake {

/// The `.cfg` that the library reads correctly next to data of `facts.libraryType`: UTF-8, LF, values in base units on
/// the wanted side, times of `facts.samples` samples. The library takes each end sample except the last for the length
/// of its rate, so lengths are written where that makes a difference. The rates must be settled (see settleRates).
std::string libraryForm(const ReadCfg& cfg, const DataFacts& facts, Side wanted);

/// Whether a configuration that the library loaded from the original file gives the same names, values, times and
/// states, to the last bit, as the one that it loads from `libraryForm` (`meant`), given the same data. Each was loaded
/// once.
bool libraryReads(const OrvComtradeLib::Cfg& cfg, const OrvComtradeLib::Cfg& meant);

} // namespace OrvComtradeIntake
