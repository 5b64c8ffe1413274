#include "output/SafeFile.h"

#include "output/Failure.h"
#include "output/printable.h"
#include "output/writeWhole.h"

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace fs = std::filesystem;

namespace {

constexpr mode_t kMode = 0666; // less what the umask takes

std::string folderOf(const std::string& path) {
    const std::string folder = fs::path(path).parent_path().string();
    return folder.empty() ? "." : folder;
}

std::string linkOf(int file) {
    return fmt::format("/proc/self/fd/{}", file);
}

/// A file without a name, which vanishes with the program however it ends; -1 where the system has no such thing.
int openWithoutName(const std::string& folder) {
    const int file = open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, kMode);
    if (file >= 0 && access(linkOf(file).c_str(), F_OK) != 0) {
        close(file);
        return -1;
    }
    return file;
}

/// Moves `from` to `to`, where nothing may stand. Gives errno, or 0.
int moveToFreeName(const std::string& from, const std::string& to) {
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) {
        return 0;
    }
    if (errno != EINVAL && errno != ENOSYS) {
        return errno;
    }
    if (link(from.c_str(), to.c_str()) != 0) {
        return errno;
    }
    unlink(from.c_str());
    return 0;
}

bool isSameFile(const std::string& left, const std::string& right) {
    struct stat one = {};
    struct stat other = {};
    return stat(left.c_str(), &one) == 0 && stat(right.c_str(), &other) == 0 && one.st_dev == other.st_dev &&
           one.st_ino == other.st_ino;
}

} // namespace

SafeFile::SafeFile(std::string target, bool replace) : _target(std::move(target)), _replace(replace) {
    struct stat status = {};
    if (lstat(_target.c_str(), &status) == 0) {
        if (!replace) {
            _fail(EEXIST);
        }
        // A link is replaced, not what it leads to; one to a device (/dev/stdout) is as good as the device.
        if (S_ISLNK(status.st_mode) && stat(_target.c_str(), &status) != 0) {
            status.st_mode = S_IFREG; // leads nowhere
        }
        if (!S_ISREG(status.st_mode)) {
            throw Failure(kRecordingProblem,
                          fmt::format("{}: not replaced: it is no regular file", printable(_target)));
        }
    }
    _open();
}

SafeFile::~SafeFile() {
    if (_file >= 0) {
        close(_file);
    }
}

void SafeFile::_open() {
    _file = openWithoutName(folderOf(_target));
    if (_file >= 0) {
        return;
    }
    const int error = _name.take(folderOf(_target), [this](const char* name) {
        _file = open(name, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kMode);
        return _file < 0 ? errno : 0;
    });
    if (error != 0) {
        _fail(error);
    }
}

void SafeFile::send(std::string_view piece) {
    if (!writeWhole(_file, piece)) {
        _fail(errno);
    }
}

void SafeFile::complete() {
    flush();
    if (!_name.isTaken()) {
        if (!_replace) {
            return; // it gets its only name at once
        }
        const int error = _name.take(folderOf(_target), [this](const char* name) { return _link(name); });
        if (error != 0) {
            _fail(error);
        }
    }
    if (close(std::exchange(_file, -1)) != 0) {
        _fail(errno);
    }
}

void SafeFile::publish() {
    int error = 0;
    if (!_name.isTaken()) {
        error = _link(_target.c_str());
    } else if (_replace) {
        error = std::rename(_name.path().c_str(), _target.c_str()) == 0 ? 0 : errno;
    } else {
        error = moveToFreeName(_name.path(), _target);
    }
    if (error != 0) {
        _fail(error);
    }
    _name.release();
}

/// Gives the file without a name one that is free. Gives errno, or 0.
int SafeFile::_link(const char* name) const {
    return linkat(AT_FDCWD, linkOf(_file).c_str(), AT_FDCWD, name, AT_SYMLINK_FOLLOW) == 0 ? 0 : errno;
}

void SafeFile::_fail(int error) const {
    if (error == EEXIST) {
        throw Failure(kRecordingProblem, fmt::format("{}: exists already; --force replaces it", printable(_target)));
    }
    throw Failure(kRecordingProblem,
                  fmt::format("{}: cannot be written: {}", printable(_target), std::strerror(error)));
}

SafeFile& SafeFiles::add(const std::string& target) {
    _files.push_back(std::make_unique<SafeFile>(target, _replace));
    return *_files.back();
}

void SafeFiles::publish() {
    for (const auto& file : _files) {
        file->complete();
    }
    for (std::size_t i = 0; i < _files.size(); ++i) {
        try {
            _files[i]->publish();
        } catch (...) {
            for (std::size_t k = 0; k < i && !_replace; ++k) {
                unlink(_files[k]->target().c_str());
            }
            throw;
        }
    }
}

std::vector<std::string> SafeFiles::targets() const {
    std::vector<std::string> names;
    names.reserve(_files.size());
    for (const auto& file : _files) {
        names.push_back(file->target());
    }
    return names;
}

void refuseToReplace(const std::vector<std::string>& originals, const std::string& target) {
    for (const std::string& original : originals) {
        if (isSameFile(original, target)) {
            throw Failure(kRecordingProblem,
                          fmt::format("{}: not replaced: it is a file of the recording itself", printable(target)));
        }
    }
}

void makeFolderOf(const std::string& target) {
    std::error_code error;
    const std::string folder = folderOf(target);
    fs::create_directories(folder, error);
    if (error) {
        throw Failure(kRecordingProblem,
                      fmt::format("{}: folder cannot be made: {}", printable(folder), error.message()));
    }
}
