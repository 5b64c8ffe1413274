#pragma once

#include "files/ByteSource.h"

#include <string>

namespace OrvComtradeIntake {

/// What a file is that begins like no file of a recording, whatever its name: "a zip archive". Empty: it may be one.
/// Throws `std::system_error`.
std::string foreignKind(const ByteSource& file);

/// Whether a path names a resource fork, which macOS leaves beside each file ("._REC.CFG").
bool isResourceForkName(const std::string& path);

constexpr const char* kResourceFork = "a resource fork of macOS";

} // namespace OrvComtradeIntake
