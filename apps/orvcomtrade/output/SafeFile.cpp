#include "output/SafeFile.h"

#include "output/Failure.h"
#include "output/parentFolder.h"
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

constexpr mode_t kMode = 0666;        // less what the umask takes
constexpr mode_t kPrivateMode = 0600; // until it gets the permissions of the file that it replaces
constexpr mode_t kPermissions = 0777;
constexpr mode_t kGroupShift = 3;
constexpr mode_t kOthers = 07;

std::string linkOf(int file) {
    return fmt::format("/proc/self/fd/{}", file);
}

/// A file without a name, which vanishes with the program however it ends; -1 where the system has no such thing.
int openWithoutName(const std::string& folder, mode_t mode) {
    const int file = open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, mode);
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

/// Some disks have no such thing as bringing a file or folder to them.
bool isBroughtToDisk(int file) {
    int result = -1;
    do {
        result = fsync(file);
    } while (result != 0 && errno == EINTR);
    return result == 0 || errno == EINVAL || errno == ENOTSUP;
}

/// Brings the names in a folder to the disk. Gives errno, or 0, also where the folder may not be opened.
int syncFolder(const std::string& folder) {
    const int file = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (file < 0) {
        return 0;
    }
    const int error = isBroughtToDisk(file) ? 0 : errno;
    close(file);
    return error;
}

[[noreturn]] void failToWrite(const std::string& target, int error) {
    throw Failure(kRecordingProblem, fmt::format("{}: cannot be written: {}", printable(target), std::strerror(error)));
}

/// Whether the last call found that nothing stands at a path; any other error leaves that open.
bool isNothingThere() {
    return errno == ENOENT || errno == ENOTDIR || errno == ELOOP;
}

/// Throws a Failure for the target where that can't be known.
bool isSameFile(const std::string& original, const std::string& target) {
    struct stat one = {};
    struct stat other = {};
    for (const auto& [path, status] : {std::pair(&original, &one), std::pair(&target, &other)}) {
        if (stat(path->c_str(), status) != 0) {
            if (isNothingThere()) {
                return false;
            }
            failToWrite(target, errno);
        }
    }
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

} // namespace

SafeFile::SafeFile(std::string target, bool replace, bool isNamed) : _target(std::move(target)), _replace(replace) {
    // A link is replaced, not what it leads to; one to a device (/dev/stdout) is as good as the device.
    const bool isThere = lstat(_target.c_str(), &_replaced) == 0;
    if (!isThere && !isNothingThere()) {
        _fail(errno);
    }
    if (isThere && !replace) {
        _fail(EEXIST);
    }
    if (!isThere || stat(_target.c_str(), &_replaced) != 0) {
        _replaced.st_mode = 0; // or a link that leads nowhere
    }
    if (_replaced.st_mode != 0 && !S_ISREG(_replaced.st_mode)) {
        throw Failure(kRecordingProblem, fmt::format("{}: not replaced: it is no regular file", printable(_target)));
    }
    _open(isNamed);
}

SafeFile::~SafeFile() {
    if (_file >= 0) {
        close(_file);
    }
}

void SafeFile::_open(bool isNamed) {
    const mode_t mode = _replaced.st_mode == 0 ? kMode : kPrivateMode;
    _file = isNamed ? -1 : openWithoutName(parentFolder(_target), mode);
    if (_file >= 0) {
        return;
    }
    const int error = _name.take(parentFolder(_target), [this, mode](const char* name) {
        _file = open(name, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
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
    _takeOverAccess();
    if (!isBroughtToDisk(_file)) {
        _fail(errno);
    }
    if (!_name.isTaken() && _replace) {
        const int error = _name.take(parentFolder(_target), [this](const char* name) { return _link(name); });
        if (error != 0) {
            _fail(error);
        }
    }
    if (_name.isTaken()) {
        _close();
    }
}

/// Nobody may do more with the file than with the one that it replaces: where the group can't be kept, the new one may
/// do what others might.
void SafeFile::_takeOverAccess() const {
    if (_replaced.st_mode == 0) {
        return;
    }
    mode_t mode = _replaced.st_mode & kPermissions;
    const auto same = static_cast<uid_t>(-1);
    if (fchown(_file, _replaced.st_uid, _replaced.st_gid) != 0 && fchown(_file, same, _replaced.st_gid) != 0) {
        mode = (mode & ~(kOthers << kGroupShift)) | (mode & (mode & kOthers) << kGroupShift);
    }
    struct stat now = {};
    const bool isSo = fstat(_file, &now) == 0 && (now.st_mode & kPermissions) == mode; // always, on some disks
    if (!isSo && fchmod(_file, mode) != 0) {
        _fail(errno);
    }
}

void SafeFile::publish(bool isOneOfSeveral) {
    const int aside = _replace ? _setAside(isOneOfSeveral) : ENOENT;
    const bool isAlone = aside == ENOENT;
    int error = aside == 0 || isAlone || !isOneOfSeveral ? 0 : aside;
    error = error == 0 ? _giveName() : error;
    if (error != 0) {
        _fail(error);
    }
    _isNew = isAlone;
    _name.release();
    _close();
}

/// Gives what stands at the target another name as well. Gives errno, or 0.
int SafeFile::_setAside(bool isOneOfSeveral) {
    const char* const target = _target.c_str();
    const int error = _replacedName.take(parentFolder(_target),
                                         [target](const char* name) { return link(target, name) == 0 ? 0 : errno; });
    if (error == 0 || error == ENOENT || !isOneOfSeveral) {
        return error;
    }
    // A disk without links: for a moment nothing stands there.
    return _replacedName.take(parentFolder(_target),
                              [target](const char* name) { return moveToFreeName(target, name); });
}

/// Gives errno, or 0.
int SafeFile::_giveName() {
    if (!_name.isTaken()) {
        return _link(_target.c_str());
    }
    if (!_replace) {
        return moveToFreeName(_name.path(), _target);
    }
    return std::rename(_name.path().c_str(), _target.c_str()) == 0 ? 0 : errno;
}

void SafeFile::rollBack() {
    if (_replacedName.isTaken()) {
        // Where both are names of the same file still, this does nothing, and the other name goes with this object.
        if (std::rename(_replacedName.path().c_str(), _target.c_str()) != 0) {
            _leftAside = _replacedName.path();
            _replacedName.release();
        }
    } else if (_isNew) {
        unlink(_target.c_str());
    }
}

void SafeFile::_close() {
    if (_file >= 0 && close(std::exchange(_file, -1)) != 0) {
        _fail(errno);
    }
}

/// Gives the file without a name one that is free. Gives errno, or 0.
int SafeFile::_link(const char* name) const {
    return linkat(AT_FDCWD, linkOf(_file).c_str(), AT_FDCWD, name, AT_SYMLINK_FOLLOW) == 0 ? 0 : errno;
}

void SafeFile::_fail(int error) const {
    if (error == EEXIST) {
        throw Failure(kRecordingProblem, fmt::format("{}: exists already; --force replaces it", printable(_target)));
    }
    failToWrite(_target, error);
}

SafeFile& SafeFiles::add(const std::string& target, bool isNamed) {
    _files.push_back(std::make_unique<SafeFile>(target, _replace, isNamed));
    return *_files.back();
}

void SafeFiles::publish() {
    for (const auto& file : _files) {
        file->complete();
    }
    const Uninterrupted whole;
    try {
        for (const auto& file : _files) {
            file->publish(_files.size() > 1);
        }
        const std::string& last = _files.back()->target(); // all of them are in one folder
        if (const int error = syncFolder(parentFolder(last))) {
            failToWrite(last, error);
        }
    } catch (const Failure& failure) {
        _rollBack();
        throw Failure(failure.status, failure.what() + _leftAside());
    } catch (...) {
        _rollBack();
        throw;
    }
}

void SafeFiles::_rollBack() {
    for (auto file = _files.rbegin(); file != _files.rend(); ++file) {
        (*file)->rollBack();
    }
}

std::string SafeFiles::_leftAside() const {
    std::string sentence;
    for (const auto& file : _files) {
        if (!file->leftAside().empty()) {
            sentence +=
                fmt::format("; what stood at {} is at {}", printable(file->target()), printable(file->leftAside()));
        }
    }
    return sentence;
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
    const std::string folder = parentFolder(target);
    fs::create_directories(folder, error);
    if (error == std::errc::file_exists) { // made meanwhile for another recording; or why that can't be seen
        std::error_code unseen;
        const bool isThere = fs::is_directory(folder, unseen);
        error = isThere || unseen ? unseen : error;
    }
    if (error == std::errc::not_a_directory || error == std::errc::file_exists) {
        throw Failure(kRecordingProblem,
                      fmt::format("{}: no folder can be made here: a file is in the way", printable(folder)));
    }
    if (error) {
        throw Failure(kRecordingProblem,
                      fmt::format("{}: folder cannot be made: {}", printable(folder), error.message()));
    }
}
