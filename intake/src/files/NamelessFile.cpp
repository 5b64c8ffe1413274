#include "files/NamelessFile.h"

#include "files/FileError.h"

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace OrvComtradeIntake {

namespace {

constexpr std::size_t kPieceLength = 256UL * 1024;

std::string temporaryFolder() {
    const char* const folder = std::getenv("TMPDIR");
    return folder == nullptr || *folder == '\0' ? "/tmp" : folder;
}

/// Whether memory without a name failed because there is none here, rather than for now.
bool isNotThere(int error) {
    return error == ENOSYS || error == EPERM || error == EACCES || error == EINVAL;
}

Descriptor makeFileOnDisk() {
    const std::string folder = temporaryFolder();
    int file = -1;
    do {
        file = open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    } while (file < 0 && errno == EINTR);
    if (file < 0) {
        const int error = errno;
        throwFileError(error, "a file without a name in " + folder);
    }
    return Descriptor(file);
}

Descriptor makeFile() {
    const int file = memfd_create("orvcomtrade", MFD_CLOEXEC);
    if (file < 0 && isNotThere(errno)) {
        return makeFileOnDisk();
    }
    if (file < 0) {
        throwFileError(errno, "a file without a name");
    }
    return Descriptor(file);
}

} // namespace

NamelessFile::NamelessFile() : _file(makeFile()), _path(_file.path()) {
    if (_path.empty()) {
        throwFileError(ENOENT, "/proc/self/fd");
    }
}

void NamelessFile::write(std::string_view bytes) {
    if (_pending.size() + bytes.size() < kPieceLength) {
        _pending += bytes;
        return;
    }
    _writeOut(_pending);
    _pending.clear();
    if (bytes.size() < kPieceLength) {
        _pending = bytes;
    } else {
        _writeOut(bytes);
    }
}

void NamelessFile::finish() {
    _writeOut(_pending);
    _pending = {};
}

void NamelessFile::_writeOut(std::string_view bytes) const {
    while (!bytes.empty()) {
        const ssize_t count = ::write(_file.number(), bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR) {
            throwFileError(errno, "a file without a name");
        }
        bytes.remove_prefix(count < 0 ? 0 : static_cast<std::size_t>(count));
    }
}

} // namespace OrvComtradeIntake
