#include "torture/failingCalls.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <pthread.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>
#include <unwind.h>

// The allocator itself, which has no other name.
extern "C" {
void* __libc_malloc(std::size_t size) noexcept;                          // NOLINT: the C library's name
void* __libc_calloc(std::size_t count, std::size_t size) noexcept;       // NOLINT: likewise
void* __libc_realloc(void* block, std::size_t size) noexcept;            // NOLINT: likewise
void* __libc_memalign(std::size_t alignment, std::size_t size) noexcept; // NOLINT: likewise
void __libc_free(void* block) noexcept;                                  // NOLINT: likewise
}

namespace orvtest {

namespace {

// Plain data: they are used before any constructor has run.
std::atomic<Calls*> theCalls = nullptr;
Plan thePlan;
std::atomic<std::int64_t> theLiveBlocks = 0;

/// Of the addresses that all callers up to the first return to. Allocates nothing.
std::uint64_t callChain() {
    std::uint64_t chain = 14695981039346656037U; // FNV-1a
    const auto add = [](_Unwind_Context* context, void* sum) {
        auto& hash = *static_cast<std::uint64_t*>(sum);
        hash = (hash ^ _Unwind_GetIP(context)) * 1099511628211U;
        return _URC_NO_REASON;
    };
    _Unwind_Backtrace(add, &chain);
    return chain;
}

bool fails(Call call) {
    Calls* const calls = theCalls.load(std::memory_order_acquire);
    if (calls == nullptr) {
        return false;
    }
    const std::uint64_t number = ++calls->made[static_cast<std::size_t>(call)];
    if (thePlan.call == Call::Count && number <= kMostChains) {
        calls->chains[static_cast<std::size_t>(call)][number - 1] = callChain();
    }
    if (call != thePlan.call || number < thePlan.number || (number > thePlan.number && !thePlan.isLasting)) {
        return false;
    }
    ++calls->failed;
    errno = infoOf(call).error;
    return true;
}

void* counted(void* block) {
    theLiveBlocks += block != nullptr ? 1 : 0;
    return block;
}

int resultOf(long result) {
    return static_cast<int>(result);
}

int openAt(int folder, const char* path, int flags, mode_t mode) {
    return fails(Call::Open) ? -1 : resultOf(syscall(SYS_openat, folder, path, flags, mode));
}

int statusAt(int folder, const char* path, struct stat* status, int flags) {
    return fails(Call::Status) ? -1 : resultOf(syscall(SYS_newfstatat, folder, path, status, flags));
}

/// The next function of the name: the C library's own.
template <class Function> Function realOf(std::atomic<Function>& known, const char* name) {
    Function function = known.load(std::memory_order_relaxed);
    if (function == nullptr) {
        function = reinterpret_cast<Function>(dlsym(RTLD_NEXT, name)); // NOLINT: as dlsym gives functions
        known.store(function, std::memory_order_relaxed);
    }
    return function;
}

std::atomic<FILE* (*)(const char*, const char*)> realFopen = nullptr;
std::atomic<std::size_t (*)(void*, std::size_t, std::size_t, FILE*)> realFread = nullptr;
std::atomic<DIR* (*)(const char*)> realOpendir = nullptr;
std::atomic<dirent* (*)(DIR*)> realReaddir = nullptr;
std::atomic<int (*)(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*)> realThread = nullptr;

} // namespace

void failBy(const Plan& plan, Calls& calls) {
    theCalls.store(nullptr, std::memory_order_release);
    thePlan = plan;
    for (std::atomic<std::uint64_t>& made : calls.made) {
        made = 0;
    }
    calls.failed = 0;
    theCalls.store(&calls, std::memory_order_release);
}

void failNothing() {
    theCalls.store(nullptr, std::memory_order_release);
}

std::int64_t liveBlocks() {
    return theLiveBlocks;
}

} // namespace orvtest

using orvtest::Call;
using orvtest::fails;

// Parameters of the C library's headers have reserved names, and its functions names of their own.
// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name,readability-identifier-naming)
extern "C" {

void* malloc(std::size_t size) noexcept {
    return fails(Call::Allocation) ? nullptr : orvtest::counted(__libc_malloc(size));
}

void* calloc(std::size_t count, std::size_t size) noexcept {
    return fails(Call::Allocation) ? nullptr : orvtest::counted(__libc_calloc(count, size));
}

void* realloc(void* block, std::size_t size) noexcept {
    if (fails(Call::Allocation)) {
        return nullptr;
    }
    void* const moved = __libc_realloc(block, size);
    const bool isNew = block == nullptr && moved != nullptr;
    const bool isFreed = block != nullptr && moved == nullptr && size == 0;
    orvtest::theLiveBlocks += isNew ? 1 : isFreed ? -1 : 0;
    return moved;
}

void* memalign(std::size_t alignment, std::size_t size) noexcept {
    return fails(Call::Allocation) ? nullptr : orvtest::counted(__libc_memalign(alignment, size));
}

void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
    return memalign(alignment, size);
}

int posix_memalign(void** block, std::size_t alignment, std::size_t size) noexcept {
    const int before = errno;
    void* const made = memalign(alignment, size);
    errno = before;
    if (made == nullptr) {
        return ENOMEM;
    }
    *block = made;
    return 0;
}

void free(void* block) noexcept {
    orvtest::theLiveBlocks -= block != nullptr ? 1 : 0;
    __libc_free(block);
}

ssize_t read(int file, void* bytes, std::size_t count) {
    return fails(Call::Read) ? -1 : syscall(SYS_read, file, bytes, count);
}

ssize_t pread(int file, void* bytes, std::size_t count, off_t offset) {
    return fails(Call::Read) ? -1 : syscall(SYS_pread64, file, bytes, count, offset);
}

ssize_t readv(int file, const iovec* pieces, int count) {
    return fails(Call::Read) ? -1 : syscall(SYS_readv, file, pieces, count);
}

dirent* readdir(DIR* folder) {
    return fails(Call::Read) ? nullptr : orvtest::realOf(orvtest::realReaddir, "readdir")(folder);
}

void* mmap(void* address, std::size_t length, int protection, int flags, int file, off_t offset) noexcept {
    if (fails(file >= 0 ? Call::Read : Call::Allocation)) {
        return MAP_FAILED;
    }
    return reinterpret_cast<void*>(syscall(SYS_mmap, address, length, protection, flags, file, offset)); // NOLINT
}

ssize_t write(int file, const void* bytes, std::size_t count) {
    return fails(Call::Write) ? -1 : syscall(SYS_write, file, bytes, count);
}

ssize_t pwrite(int file, const void* bytes, std::size_t count, off_t offset) {
    return fails(Call::Write) ? -1 : syscall(SYS_pwrite64, file, bytes, count, offset);
}

ssize_t writev(int file, const iovec* pieces, int count) {
    return fails(Call::Write) ? -1 : syscall(SYS_writev, file, pieces, count);
}

int open(const char* path, int flags, ...) {
    va_list more;
    va_start(more, flags);
    const mode_t mode = (flags & (O_CREAT | __O_TMPFILE)) != 0 ? va_arg(more, mode_t) : 0; // NOLINT: what was given
    va_end(more);
    return orvtest::openAt(AT_FDCWD, path, flags, mode);
}

int openat(int folder, const char* path, int flags, ...) {
    va_list more;
    va_start(more, flags);
    const mode_t mode = (flags & (O_CREAT | __O_TMPFILE)) != 0 ? va_arg(more, mode_t) : 0; // NOLINT: what was given
    va_end(more);
    return orvtest::openAt(folder, path, flags, mode);
}

FILE* fopen(const char* path, const char* mode) {
    return fails(Call::Open) ? nullptr : orvtest::realOf(orvtest::realFopen, "fopen")(path, mode);
}

/// As the C library does it, which calls its own `read`: the stream remembers that it failed.
std::size_t fread(void* bytes, std::size_t size, std::size_t count, FILE* stream) {
    if (fails(Call::Read)) {
        constexpr int kErrorSeen = 0x20;
        stream->_flags |= kErrorSeen;
        return 0;
    }
    return orvtest::realOf(orvtest::realFread, "fread")(bytes, size, count, stream);
}

FILE* fopen64(const char* path, const char* mode) {
    return fopen(path, mode);
}

DIR* opendir(const char* path) {
    return fails(Call::Open) ? nullptr : orvtest::realOf(orvtest::realOpendir, "opendir")(path);
}

int close(int file) {
    const bool isFailing = fails(Call::Close);
    const int error = errno;
    const int result = orvtest::resultOf(syscall(SYS_close, file));
    errno = isFailing ? error : errno;
    return isFailing ? -1 : result;
}

int rename(const char* from, const char* to) noexcept {
    return fails(Call::Name) ? -1 : orvtest::resultOf(syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0));
}

int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned int flags) noexcept {
    return fails(Call::Name) ? -1 : orvtest::resultOf(syscall(SYS_renameat2, fromFolder, from, toFolder, to, flags));
}

int link(const char* from, const char* to) noexcept {
    return fails(Call::Name) ? -1 : orvtest::resultOf(syscall(SYS_linkat, AT_FDCWD, from, AT_FDCWD, to, 0));
}

int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags) noexcept {
    return fails(Call::Name) ? -1 : orvtest::resultOf(syscall(SYS_linkat, fromFolder, from, toFolder, to, flags));
}

int mkdir(const char* path, mode_t mode) noexcept {
    return fails(Call::Name) ? -1 : orvtest::resultOf(syscall(SYS_mkdirat, AT_FDCWD, path, mode));
}

int fsync(int file) {
    return fails(Call::Sync) ? -1 : orvtest::resultOf(syscall(SYS_fsync, file));
}

int fdatasync(int file) {
    return fails(Call::Sync) ? -1 : orvtest::resultOf(syscall(SYS_fdatasync, file));
}

int memfd_create(const char* name, unsigned int flags) noexcept {
    return fails(Call::Memory) ? -1 : orvtest::resultOf(syscall(SYS_memfd_create, name, flags));
}

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*start)(void*),
                   void* argument) noexcept {
    if (fails(Call::Thread)) {
        return EAGAIN;
    }
    return orvtest::realOf(orvtest::realThread, "pthread_create")(thread, attributes, start, argument);
}

int stat(const char* path, struct stat* status) noexcept {
    return orvtest::statusAt(AT_FDCWD, path, status, 0);
}

int lstat(const char* path, struct stat* status) noexcept {
    return orvtest::statusAt(AT_FDCWD, path, status, AT_SYMLINK_NOFOLLOW);
}

int fstat(int file, struct stat* status) noexcept {
    return orvtest::statusAt(file, "", status, AT_EMPTY_PATH);
}

} // extern "C"
// NOLINTEND(readability-inconsistent-declaration-parameter-name,readability-identifier-naming)
