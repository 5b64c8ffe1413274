// Preloaded, this takes from a program what it gives a file without a name its name by, as where /proc is missing. It
// then has to do as on a disk that has no such files.

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name): those of the header are reserved
extern "C" int access(const char* path, int mode) noexcept {
    constexpr const char* hidden = "/proc/self/fd/";
    if (std::strncmp(path, hidden, std::strlen(hidden)) == 0) {
        errno = ENOENT;
        return -1;
    }
    return faccessat(AT_FDCWD, path, mode, 0);
}
