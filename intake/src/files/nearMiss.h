#pragma once

#include <string>
#include <string_view>

namespace OrvComtradeIntake {

/// The stem of a file's name without what is put behind it where that name is taken: "rec (1)", "rec - Copy".
std::string_view originalStem(std::string_view stem);

/// Whether a file of this name may be meant for the one of that stem and extension: "rec.dat.gz", "rec.d00" or
/// "rec (1).dat" for "rec" and ".dat". All in lower case.
bool isNearMiss(const std::string& name, const std::string& stem, const std::string& extension);

} // namespace OrvComtradeIntake
