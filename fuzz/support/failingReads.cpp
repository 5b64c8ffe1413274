#include "failingReads.h"

#include <cerrno>
#include <cstddef>
#include <sys/syscall.h>
#include <sys/types.h>
#include <unistd.h>

namespace {

constexpr std::uint64_t kNever = UINT64_MAX;

std::uint64_t readsLeft = kNever;
fuzz::ReadFailure theFailure = fuzz::ReadFailure::Error;

} // namespace

namespace fuzz {

FailingRead::FailingRead(std::uint64_t others, ReadFailure failure) {
    theFailure = failure;
    readsLeft = others;
}

FailingRead::~FailingRead() {
    readsLeft = kNever;
}

} // namespace fuzz

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name): those of the header are reserved
extern "C" ssize_t pread(int file, void* bytes, std::size_t count, off_t offset) {
    static bool isInterrupted = false;
    if (isInterrupted) {
        isInterrupted = false;
        return syscall(SYS_pread64, file, bytes, count == 0 ? 0 : 1, offset);
    }
    if (readsLeft == 0) {
        readsLeft = kNever;
        isInterrupted = theFailure == fuzz::ReadFailure::Short;
        errno = isInterrupted ? EINTR : EIO;
        return -1;
    }
    readsLeft -= readsLeft == kNever ? 0 : 1;
    return syscall(SYS_pread64, file, bytes, count, offset);
}
