#pragma once

#include "input/recordingName.h"

#include <filesystem>
#include <string>
#include <system_error>

/// Whether the path leads out of a folder, with all links followed; also true if that cannot be found out. `root` must
/// be canonical.
inline bool isOutside(const std::string& path, const std::string& root) {
    std::error_code error;
    const std::string end = std::filesystem::canonical(path, error).string();
    const std::string inside = joined(root, "");
    return error || (end != root && end.compare(0, inside.size(), inside) != 0);
}
