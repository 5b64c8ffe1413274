#pragma once

#include <cstdint>

/// Limits for an archive, so that a damaged or hostile one cannot fill the memory.
struct ArchiveLimits {
    std::uint64_t memberBytes = 256UL * 1024 * 1024; ///< bytes of a file in it, unpacked
    std::uint64_t members = 1000000;                 ///< files in it
};
