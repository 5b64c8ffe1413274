// Preloaded, this takes files without a name from a program, as on a disk that has none.

#include <cerrno>
#include <cstdarg>
#include <fcntl.h>
#include <sys/types.h>

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name): those of the header are reserved
extern "C" int open(const char* path, int flags, ...) {
    if ((flags & O_TMPFILE) == O_TMPFILE) {
        errno = EOPNOTSUPP;
        return -1;
    }
    va_list more;
    va_start(more, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(more, mode_t) : 0; // NOLINT: what the caller gave
    va_end(more);
    return openat(AT_FDCWD, path, flags, mode);
}
