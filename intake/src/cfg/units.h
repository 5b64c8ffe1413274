#pragma once

#include <string>

namespace OrvComtradeIntake {

/// A unit without its prefix.
struct BaseUnit {
    std::string name;
    long double factor = 1.0L; ///< of the prefix
};

/// "kV" gives "V" and 1000, "kVrms" gives "Vrms" and 1000. A unit without a prefix, or an unknown one, is unchanged and
/// has factor 1.
BaseUnit baseUnit(const std::string& unit);

/// Whether the library would multiply values of this unit because of its first letter.
bool isScaledByLibrary(const std::string& unit);

} // namespace OrvComtradeIntake
