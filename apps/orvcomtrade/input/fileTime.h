#pragma once

#include <cstdint>
#include <sys/stat.h>

/// When the file was last changed, in nanoseconds since 1970.
inline std::int64_t modifiedAt(const struct stat& status) {
    constexpr std::int64_t nanosecondsPerSecond = 1000000000;
    return std::int64_t{status.st_mtim.tv_sec} * nanosecondsPerSecond + status.st_mtim.tv_nsec;
}
