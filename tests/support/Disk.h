#pragma once

// Replaces read(2) in the program that includes this header, which one of its source files may do; the file streams of
// the shared libraries read through it as well.

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <functional>
#include <limits>
#include <sys/syscall.h>
#include <unistd.h>
#include <utility>

namespace orvtest {

/// The disk that everything is read from while it lives: it counts, and fails as it is set up to.
class Disk {
public:
    Disk() { current() = this; }
    ~Disk() { current() = nullptr; }
    Disk(const Disk&) = delete;
    Disk& operator=(const Disk&) = delete;

    /// Fails with `error` from this offset of a file on.
    Disk& failFrom(std::size_t offset, int error) {
        _good = offset;
        _error = error;
        return *this;
    }

    /// Gives no more than this many bytes at a time.
    Disk& inPieces(std::size_t bytes) {
        _piece = bytes;
        return *this;
    }

    /// Does something right before a read; the first is number 1.
    Disk& beforeRead(std::size_t number, std::function<void()> action) {
        _number = number;
        _action = std::move(action);
        return *this;
    }

    std::size_t reads() const { return _reads; }
    std::size_t bytes() const { return _bytes; }

    static Disk*& current() {
        static Disk* disk = nullptr;
        return disk;
    }

    ssize_t read(int file, void* buffer, std::size_t count) {
        if (++_reads == _number) {
            _action();
        }
        std::size_t most = std::min(count, _piece);
        if (_error != 0) {
            const auto offset = static_cast<std::size_t>(syscall(SYS_lseek, file, 0, SEEK_CUR));
            if (offset >= _good) {
                errno = _error;
                return -1;
            }
            most = std::min(most, _good - offset);
        }
        const long result = syscall(SYS_read, file, buffer, most);
        _bytes += static_cast<std::size_t>(std::max(result, 0L));
        return result;
    }

private:
    static constexpr std::size_t kNoLimit = std::numeric_limits<std::size_t>::max();

    std::size_t _good = 0;
    int _error = 0;
    std::size_t _piece = kNoLimit;
    std::size_t _number = 0;
    std::function<void()> _action;
    std::size_t _reads = 0;
    std::size_t _bytes = 0;
};

} // namespace orvtest

extern "C" ssize_t read(int file, void* buffer, std::size_t count) {
    if (orvtest::Disk* const disk = orvtest::Disk::current()) {
        return disk->read(file, buffer, count);
    }
    return syscall(SYS_read, file, buffer, count);
}
