#pragma once

namespace OrvComtradeLib {
class Cfg;
}

namespace OrvComtradeIntake {

/// Whether a configuration that the library loaded from the original file gives the same names, values, times and
/// states, to the last bit, as the one that it loads from `libraryForm` (`meant`), given the same data. Each was loaded
/// once.
bool libraryReads(const OrvComtradeLib::Cfg& cfg, const OrvComtradeLib::Cfg& meant);

} // namespace OrvComtradeIntake
