#pragma once

#include <array>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdint>

// Stands in for the calls by which a program asks the C library for what may not be had, and makes the n-th of a kind
// fail. Preloaded (torture_calls) or linked into a program. Calls that the C library makes of its own functions are not
// seen, but those of its allocator are.
namespace orvtest {

/// What is asked for.
enum class Call : std::uint32_t {
    Allocation, ///< malloc, calloc, realloc, aligned_alloc, posix_memalign, memalign; operator new by way of them
    Read,       ///< read, pread, readv, readdir, mmap of a file
    Write,      ///< write, pwrite, writev
    Open,       ///< open, openat, fopen, opendir
    Close,      ///< close, which closes all the same
    Name,       ///< rename, renameat2, link, linkat, mkdir
    Sync,       ///< fsync, fdatasync
    Memory,     ///< memfd_create
    Thread,     ///< pthread_create
    Status,     ///< stat, lstat, fstat
    Count
};

constexpr std::size_t kCalls = static_cast<std::size_t>(Call::Count);

struct CallInfo {
    const char* name;
    int error; ///< errno of a failure
};

constexpr std::array<CallInfo, kCalls> kCallInfos = {{
    {"allocation", ENOMEM},
    {"read", EIO},
    {"write", ENOSPC},
    {"open", EMFILE},
    {"close", EIO},
    {"name", EIO},
    {"sync", EIO},
    {"memory", ENOMEM},
    {"thread", EAGAIN},
    {"status", EIO},
}};

constexpr const CallInfo& infoOf(Call call) {
    return kCallInfos[static_cast<std::size_t>(call)];
}

/// Which calls fail.
struct Plan {
    Call call = Call::Count;  ///< none
    std::uint64_t number = 0; ///< from 1
    bool isLasting = false;   ///< all later ones fail as well
};

constexpr std::uint64_t kMostChains = 16384; ///< calls of a kind whose chain is known

/// What was called since the plan was made. Of processes that share the memory it lies in.
struct Calls {
    std::atomic<std::uint64_t> made[kCalls];
    std::atomic<std::uint64_t> failed;
    std::uint64_t chains[kCalls]
                        [kMostChains]; ///< of each call: by whom it was made, and who called that; if none fails
};

/// From now on calls are counted, and fail as planned.
void failBy(const Plan& plan, Calls& calls);

/// No more.
void failNothing();

/// Blocks that were allocated and not freed, in all of the process's life.
std::int64_t liveBlocks();

} // namespace orvtest
