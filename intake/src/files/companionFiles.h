#pragma once

#include "report/Findings.h"

#include <OrvComtradeIntake/Folders.h>

#include <string>

namespace OrvComtradeIntake {

/// Paths of the files of one recording; empty for a file that does not exist.
struct CompanionFiles {
    std::string cfg;
    std::string dat;
    std::string cff; ///< instead of the others
    std::string hdr;
    std::string inf;

    /// If there is no configuration or no data: up to three names that may be meant for it, as a text for a finding
    /// ("rec.dat.gz, rec.d00, rec (1).dat"), or "none".
    std::string nearMisses;
};

/// Finds the files that belong to `path`, which need not exist. They have the same folder and the same name up to the
/// extension. `path` itself is the file of its own kind. For the others, these are tried in order: the extension in
/// lower case, in upper case, with a capital, in any case; then the name in another case, unless that is a recording of
/// its own. More than one that fits is a finding. Pipes and devices do not count as files.
///
/// The folder is listed only if the usual names do not exist, and never for `.hdr` and `.inf`. With `folders` it is
/// listed once for all its recordings.
CompanionFiles findCompanions(const std::string& path, Findings& findings, const Folders* folders = nullptr);

} // namespace OrvComtradeIntake
