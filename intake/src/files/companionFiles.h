#pragma once

#include "Findings.h"

#include <string>

namespace OrvComtradeIntake {

/// The files of one recording in a folder, whatever the case of their extensions.
struct CompanionFiles {
    std::string cfg;   ///< path, or empty
    std::string dat;   ///< path, or empty
    std::string cff;   ///< path, or empty: used where there is no `.cfg`
    bool named = true; ///< false: the library would not find the `.dat` by itself (findings tell why)
};

/// Finds the files that belong to `path`, any file of the recording: same folder, same name up to the extension, the
/// exact file first, then the extension in lower case, upper case, any case, then the name in another case where that
/// is no recording of its own; more than one that fits is a finding. `path` itself always wins for its own kind.
CompanionFiles findCompanions(const std::string& path, Findings& findings);

} // namespace OrvComtradeIntake
