#pragma once

#include <cstdint>

/// The most that is taken out of an archive, so that a damaged or hostile one fills no memory.
struct ArchiveLimits {
    std::uint64_t memberBytes = 256UL * 1024 * 1024; ///< of a file in it, unpacked
    std::uint64_t members = 1000000;                 ///< files in it
};
