#include "files/ByteSource.h"

#include "files/Descriptor.h"
#include "files/FileError.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <new>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace OrvComtradeIntake {

struct ByteSource::File {
    Descriptor descriptor;
    std::uint64_t length = 0; ///< when it was opened
    timespec written = {};    ///< for the last time, when it was opened
};

namespace {

bool areSame(const timespec& left, const timespec& right) {
    return left.tv_sec == right.tv_sec && left.tv_nsec == right.tv_nsec;
}

Descriptor openToRead(const std::string& path) {
    int number = -1;
    do {
        number = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    } while (number < 0 && errno == EINTR);
    if (number < 0) {
        throwFileError(errno == ENXIO ? ENOTSUP : errno, path); // ENXIO: a socket
    }
    return Descriptor(number);
}

struct stat statusOf(const Descriptor& descriptor, const std::string& path) {
    struct stat status = {};
    if (fstat(descriptor.number(), &status) != 0) {
        throwFileError(errno, path);
    }
    return status;
}

/// Reads up to the end of the file, whatever signals come.
std::size_t readFile(const Descriptor& descriptor, std::uint64_t offset, char* into, std::size_t most,
                     const std::string& path) {
    std::size_t done = 0;
    while (done < most) {
        const ssize_t count = pread(descriptor.number(), into + done, most - done, static_cast<off_t>(offset + done));
        if (count < 0 && errno != EINTR) {
            throwFileError(errno, path);
        }
        if (count == 0) {
            break;
        }
        done += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
    }
    return done;
}

} // namespace

ByteSource ByteSource::ofFile(const std::string& path) {
    const auto file = std::make_shared<File>();
    file->descriptor = openToRead(path);
    const struct stat status = statusOf(file->descriptor, path);
    if (!S_ISREG(status.st_mode)) {
        throwFileError(S_ISDIR(status.st_mode) ? EISDIR : ENOTSUP, path);
    }
    file->length = static_cast<std::uint64_t>(status.st_size);
    file->written = status.st_mtim;
    ByteSource source;
    source._file = file;
    source._name = path;
    source._length = file->length;
    return source;
}

ByteSource ByteSource::ofMemory(std::string_view bytes, const std::string& name) {
    ByteSource source;
    source._bytes = bytes;
    source._name = name;
    source._length = bytes.size();
    return source;
}

ByteSource ByteSource::ofText(std::string bytes, const std::string& name, std::uint64_t offset, std::uint64_t step) {
    const auto text = std::make_shared<const std::string>(std::move(bytes));
    ByteSource source = ofMemory(*text, name);
    source._text = text;
    source._offset = offset;
    source._step = step;
    return source;
}

ByteSource ByteSource::part(std::uint64_t position, std::uint64_t length) const {
    ByteSource source = *this;
    position = std::min(position, _length);
    source._length = std::min(length, _length - position);
    source._offset = offsetInFile(position);
    if (!_file) {
        source._bytes = _bytes.substr(static_cast<std::size_t>(position), static_cast<std::size_t>(source._length));
    }
    return source;
}

std::size_t ByteSource::read(std::uint64_t position, char* into, std::size_t most) const {
    if (position >= _length) {
        return 0;
    }
    most = static_cast<std::size_t>(std::min<std::uint64_t>(most, _length - position));
    if (_file) {
        const std::size_t count = readFile(_file->descriptor, _offset + position, into, most, _name);
        requireUnchanged();
        return count;
    }
    return _bytes.copy(into, most, static_cast<std::size_t>(position));
}

std::string ByteSource::all() const {
    std::string bytes;
    if (_length > bytes.max_size()) {
        throw std::bad_alloc();
    }
    bytes.resize(static_cast<std::size_t>(_length));
    bytes.resize(read(0, bytes.data(), bytes.size()));
    return bytes;
}

ByteSource ByteSource::withFirstLine(std::size_t line) const {
    ByteSource source = *this;
    source._firstLine = line;
    return source;
}

std::size_t ByteSource::lineInFile(std::size_t line) const {
    if (line == 0) {
        return 0;
    }
    return _step == 0 ? _firstLine : _firstLine + line - 1;
}

Place ByteSource::place(std::size_t line, const std::string& field, std::uint64_t position) const {
    return {_name, lineInFile(line), field, offsetInFile(position)};
}

void ByteSource::requireUnchanged() const {
    if (!_file) {
        return;
    }
    const struct stat now = statusOf(_file->descriptor, _name);
    const auto length = static_cast<std::uint64_t>(now.st_size);
    if (length != _file->length) {
        throw FileError(length < _file->length ? FileChange::Shorter : FileChange::Longer, _name);
    }
    if (!areSame(now.st_mtim, _file->written)) {
        throw FileError(FileChange::Rewritten, _name);
    }
}

std::string ByteSource::pathOfWholeFile() const {
    const bool isWhole = _file && _offset == 0 && _length == _file->length;
    return isWhole ? _file->descriptor.path() : std::string();
}

} // namespace OrvComtradeIntake
