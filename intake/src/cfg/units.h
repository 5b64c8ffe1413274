#pragma once

#include <string>

namespace OrvComtradeIntake {

/// A unit without its prefix.
struct BaseUnit {
    std::string name;
    long double factor = 1.0L; ///< of the prefix
};

/// kV as V and 1000, kVrms as Vrms and 1000; a unit without a prefix, or that isn't known, as it stands and 1.
BaseUnit baseUnit(const std::string& unit);

/// Whether the library would multiply values of this unit for its first letter.
bool isScaledByLibrary(const std::string& unit);

} // namespace OrvComtradeIntake
