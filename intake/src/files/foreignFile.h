#pragma once

#include "files/ByteSource.h"

#include <string>

namespace OrvComtradeIntake {

/// What a file is, by its first bytes, if it cannot be a file of a recording: "a zip archive". Empty if it may be one.
/// Its name does not matter. Throws `std::system_error`.
std::string foreignKind(const ByteSource& file);

/// Whether a path names a resource fork ("._REC.CFG"), which macOS leaves next to each file.
bool isResourceForkName(const std::string& path);

constexpr const char* kResourceFork = "a resource fork of macOS";

} // namespace OrvComtradeIntake
