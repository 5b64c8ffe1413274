#pragma once

#include <OrvComtradeIntake/Folders.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace OrvComtradeIntake {

/// Sorted names in a folder that begin with `beginning`, whatever the case of ASCII letters. Names of subfolders are
/// left out if the system shows which they are. `folder` is empty for the current one. Returns none if the folder does
/// not exist; throws a FileError if it cannot be listed.
///
/// With `folders`, the folder is listed once, and at most 1,000 names are returned. Without, at most 10,000 names are
/// looked at, since this may happen for each recording.
std::vector<std::string> folderNames(const std::string& folder, std::string_view beginning,
                                     const Folders* folders = nullptr);

/// The names in a folder, `most` of them at most, in any order.
std::vector<std::string> allNames(const std::string& folder, std::size_t most);

/// The order of names by their bytes, with ASCII letters in lower case.
bool isBeforeWithoutCase(std::string_view left, std::string_view right);

} // namespace OrvComtradeIntake
