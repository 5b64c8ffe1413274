#pragma once

#include <string>
#include <string_view>

namespace OrvComtradeIntake {

/// The stem of a file's name without what systems append if a name is taken: "rec" for "rec (1)" and "rec - Copy".
std::string_view originalStem(std::string_view stem);

/// Whether the file `name` may be meant for the one of this stem and extension: "rec.dat.gz", "rec.d00" or
/// "rec (1).dat" for "rec" and ".dat". All three must be in lower case.
bool isNearMiss(const std::string& name, const std::string& stem, const std::string& extension);

} // namespace OrvComtradeIntake
