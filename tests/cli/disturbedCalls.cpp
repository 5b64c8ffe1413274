// Preloaded, this makes one call of a program fail, or sends it a signal there: the call that has the number
// ORVCOMTRADE_CALL, counted from 0 over all functions below. ORVCOMTRADE_CALL_FAILS is what errno becomes, or minus the
// number of the signal. The file ORVCOMTRADE_CALL_MARK is empty until that call comes. ORVCOMTRADE_WITHOUT_LINKS is set
// for a disk whose files have one name only; ORVCOMTRADE_TORN_WRITES for a system that is interrupted at every other
// write and sync, and takes half of what it is given at the others.

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

int numberIn(const char* variable) {
    const char* const text = std::getenv(variable);
    return text == nullptr ? -1 : std::atoi(text); // NOLINT(cert-err34-c): the test's own
}

/// Opened at the start: later, the program may write nothing but its outputs.
const int kMark = [] {
    const char* const mark = std::getenv("ORVCOMTRADE_CALL_MARK");
    return mark == nullptr ? -1 : open(mark, O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
}();

/// Whether this call is the one that fails.
bool isToFail() {
    static int count = 0;
    if (count++ != numberIn("ORVCOMTRADE_CALL")) {
        return false;
    }
    syscall(SYS_write, kMark, "x", 1);
    const int failure = numberIn("ORVCOMTRADE_CALL_FAILS");
    if (failure < 0) {
        kill(getpid(), -failure);
        usleep(30000); // long enough for whoever handles it
        return false;
    }
    errno = failure;
    return true;
}

long called(long result) {
    return isToFail() ? -1 : result;
}

/// Whether this call is interrupted: the first, the third, ...
bool isInterrupted() {
    static bool isNext = false;
    isNext = !isNext;
    if (isNext) {
        errno = EINTR;
    }
    return isNext;
}

bool areWritesTorn() {
    return std::getenv("ORVCOMTRADE_TORN_WRITES") != nullptr;
}

bool hasNoLinks() {
    return std::getenv("ORVCOMTRADE_WITHOUT_LINKS") != nullptr;
}

int refuseLink() {
    errno = EPERM;
    return -1;
}

} // namespace

// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name): those of the headers are reserved
extern "C" {

ssize_t write(int file, const void* bytes, size_t count) {
    if (areWritesTorn()) {
        return isInterrupted() ? -1 : syscall(SYS_write, file, bytes, (count + 1) / 2);
    }
    return isToFail() ? -1 : syscall(SYS_write, file, bytes, count);
}

int fsync(int file) {
    if (areWritesTorn() && isInterrupted()) {
        return -1;
    }
    return isToFail() ? -1 : static_cast<int>(syscall(SYS_fsync, file));
}

int close(int file) {
    return static_cast<int>(called(syscall(SYS_close, file))); // whatever it says, the file is closed
}

int fchmod(int file, mode_t mode) {
    return isToFail() ? -1 : static_cast<int>(syscall(SYS_fchmod, file, mode));
}

int link(const char* from, const char* to) {
    if (hasNoLinks()) {
        return refuseLink();
    }
    return isToFail() ? -1 : static_cast<int>(syscall(SYS_linkat, AT_FDCWD, from, AT_FDCWD, to, 0));
}

int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags) {
    return isToFail() ? -1 : static_cast<int>(syscall(SYS_linkat, fromFolder, from, toFolder, to, flags));
}

int rename(const char* from, const char* to) {
    return isToFail() ? -1 : static_cast<int>(syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0));
}

int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned int flags) {
    return isToFail() ? -1 : static_cast<int>(syscall(SYS_renameat2, fromFolder, from, toFolder, to, flags));
}

} // extern "C"
// NOLINTEND(readability-inconsistent-declaration-parameter-name)
