#pragma once

#include "report/Findings.h"

#include <OrvComtradeIntake/Folders.h>

#include <string>

namespace OrvComtradeIntake {

/// Paths of the files of one recording; empty: there is none.
struct CompanionFiles {
    std::string cfg;
    std::string dat;
    std::string cff; ///< instead of the others
    std::string hdr;
    std::string inf;

    /// Where there is no configuration, or no data: three names at most that may be meant for it ("rec.dat.gz, rec.d00,
    /// rec (1).dat"), as a text for a finding; "none" if there is none.
    std::string nearMisses;
};

/// Finds the files that belong to `path`, which need not be there: same folder, same name up to the extension; `path`
/// itself for its own kind, else the extension in lower case, upper case, with a capital, in any case, else the name in
/// another case where that is no recording of its own. More than one that fits is a finding. A pipe or a device is no
/// file. The folder is listed only where the usual names are not there, never for `.hdr` and `.inf`, and once where
/// `folders` keeps its names: a folder of many recordings is not to be listed for each of them.
CompanionFiles findCompanions(const std::string& path, Findings& findings, const Folders* folders = nullptr);

} // namespace OrvComtradeIntake
