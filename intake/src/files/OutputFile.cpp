#include "OutputFile.h"

#include <cerrno>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>

namespace OrvComtradeIntake {

namespace {

constexpr std::size_t kLarge = 128UL * 1024;
constexpr int kOwnerOnly = 0600;

} // namespace

OutputFile::OutputFile(const std::string& path)
    : _path(path), _file(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kOwnerOnly)) {
    if (_file < 0) {
        _fail();
    }
    _buffer.reserve(2 * kLarge);
}

OutputFile::~OutputFile() {
    if (_file >= 0) {
        close(_file);
    }
}

void OutputFile::write(std::string_view bytes) {
    _flush();
    while (!bytes.empty()) {
        const ssize_t count = ::write(_file, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR) {
            _fail();
        }
        bytes.remove_prefix(count < 0 ? 0 : static_cast<std::size_t>(count));
    }
}

void OutputFile::flushIfLarge() {
    if (_buffer.size() >= kLarge) {
        _flush();
    }
}

void OutputFile::finish() {
    _flush();
    const int file = _file;
    _file = -1;
    if (close(file) != 0) {
        _fail();
    }
}

void OutputFile::_flush() {
    if (_buffer.empty()) {
        return;
    }
    std::string bytes;
    bytes.swap(_buffer); // so that write has nothing to flush
    write(bytes);
    bytes.clear();
    _buffer.swap(bytes);
}

void OutputFile::_fail() const {
    throw std::system_error(errno, std::generic_category(), _path);
}

} // namespace OrvComtradeIntake
