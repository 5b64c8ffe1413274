#pragma once

#include <OrvComtradeIntake/Folders.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace OrvComtradeIntake {

/// Names in a folder that begin like this, whatever the case of ASCII letters, sorted; those of folders within are left
/// out where the system says so. None where the folder is not there; throws a FileError where it can't be listed.
/// `folder` is empty for the current one. With `folders` the folder is listed once, and 1,000 names at most are given;
/// without, 10,000 names at most are looked at, since that may be done for each recording.
std::vector<std::string> folderNames(const std::string& folder, std::string_view beginning,
                                     const Folders* folders = nullptr);

/// All names in a folder, `most` of them, in any order.
std::vector<std::string> allNames(const std::string& folder, std::size_t most);

/// The order of names whose ASCII letters count as lower-case ones.
bool isBeforeWithoutCase(std::string_view left, std::string_view right);

} // namespace OrvComtradeIntake
