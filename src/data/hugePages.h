#pragma once

#include <cerrno>
#include <cstddef>
#include <cstdint>

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace OrvComtradeLib {

/// Asks for huge pages where whole ones lie inside a block that is about to be filled: a page fault for each 4 KiB is
/// most of what filling a large block costs. Only advice: where it is not taken, nothing changes, and neither `errno`
/// nor the pages beside the block are touched.
inline void adviseHugePages([[maybe_unused]] void* block, [[maybe_unused]] std::size_t length) noexcept {
#ifdef __linux__
    constexpr std::uintptr_t page = std::uintptr_t{2} * 1024 * 1024; // of the usual processors
    constexpr std::size_t leastLength = 2 * page;                    // below, the call costs what it saves
    if (length < leastLength) {
        return;
    }
    const std::size_t before = (page - reinterpret_cast<std::uintptr_t>(block) % page) % page;
    const std::size_t whole = (length - before) / page * page;
    const int error = errno;
    madvise(static_cast<char*>(block) + before, whole, MADV_HUGEPAGE);
    errno = error;
#endif
}

} // namespace OrvComtradeLib
