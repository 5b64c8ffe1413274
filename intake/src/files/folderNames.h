#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace OrvComtradeIntake {

/// Names in a folder that begin like this, whatever the case of ASCII letters, sorted; those of folders within are left
/// out where the system says so. Looks at 10,000 names at most, since it may be done once per recording. `folder` is
/// empty for the current one. None where it is not there; throws a FileError where it can't be listed.
std::vector<std::string> folderNames(const std::string& folder, std::string_view beginning);

} // namespace OrvComtradeIntake
