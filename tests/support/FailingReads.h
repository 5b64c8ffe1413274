#pragma once

// Replaces pread(2) in the program that includes this header, which one of its source files may do.

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <sys/syscall.h>
#include <sys/types.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace orvtest {

/// Makes reads by offset fail while it lives, as it is set up to.
class FailingReads {
public:
    FailingReads() { current() = this; }
    ~FailingReads() { current() = nullptr; }
    FailingReads(const FailingReads&) = delete;
    FailingReads& operator=(const FailingReads&) = delete;

    /// The next reads fail with these errors, the last one first.
    FailingReads& withErrors(const std::vector<int>& errors) {
        _errors = errors;
        return *this;
    }

    /// Reads from this offset on fail as on a damaged disk.
    FailingReads& from(std::int64_t offset) {
        _good = offset;
        return *this;
    }

    /// A read gives no more bytes than that.
    FailingReads& inPieces(std::size_t bytes) {
        _piece = bytes;
        return *this;
    }

    /// Does something before each read.
    FailingReads& doing(std::function<void(int file)> action) {
        _action = std::move(action);
        return *this;
    }

    static FailingReads*& current() {
        static FailingReads* reads = nullptr;
        return reads;
    }

    ssize_t read(int file, void* buffer, std::size_t count, std::int64_t offset) {
        if (_action) {
            _action(file);
        }
        if (!_errors.empty()) {
            errno = _errors.back();
            _errors.pop_back();
            return -1;
        }
        if (offset >= _good) {
            errno = EIO;
            return -1;
        }
        const auto good = static_cast<std::size_t>(_good - offset);
        return syscall(SYS_pread64, file, buffer, std::min({count, _piece, good}), offset);
    }

private:
    std::function<void(int file)> _action;
    std::vector<int> _errors;
    std::int64_t _good = std::numeric_limits<std::int64_t>::max();
    std::size_t _piece = std::numeric_limits<std::size_t>::max();
};

} // namespace orvtest

extern "C" ssize_t pread(int file, void* buffer, std::size_t count, off_t offset) {
    if (orvtest::FailingReads* const reads = orvtest::FailingReads::current()) {
        return reads->read(file, buffer, count, offset);
    }
    return syscall(SYS_pread64, file, buffer, count, offset);
}
