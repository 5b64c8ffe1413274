#pragma once

#include <filesystem>
#include <string>

/// The folder that a file is in.
inline std::string parentFolder(const std::string& path) {
    const std::string folder = std::filesystem::path(path).parent_path().string();
    return folder.empty() ? "." : folder;
}
