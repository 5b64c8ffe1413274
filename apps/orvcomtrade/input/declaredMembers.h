#pragma once

#include <cstdint>
#include <string>

/// The greatest number of files that an end record of this archive declares, whichever of them libzip may follow: room
/// for that many is what it takes before it looks at any. 0 where there is none, or the file can't be read.
std::uint64_t declaredMembers(const std::string& path);
