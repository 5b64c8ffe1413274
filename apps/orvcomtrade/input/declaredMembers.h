#pragma once

#include <cstdint>
#include <string>

/// The greatest number of files that an end record of this archive declares. libzip may follow any of these records,
/// and allocates room for that many files before it looks at one. 0 if there is no such record, or the file cannot be
/// read.
std::uint64_t declaredMembers(const std::string& path);
