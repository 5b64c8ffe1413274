#include "sandbox/Sandbox.h"

#include "output/Failure.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <new>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <system_error>
#include <unistd.h>

#if __has_include(<linux/landlock.h>) && defined(SYS_landlock_create_ruleset) && !defined(ORVCOMTRADE_WITHOUT_LANDLOCK)
#define ORVCOMTRADE_LANDLOCK 1
#include <linux/landlock.h>
#else
#define ORVCOMTRADE_LANDLOCK 0
#endif

namespace {

// The header of the build may be older than the kernel that the program runs on, and have no names for all of them.
constexpr std::uint64_t kWriteFile = 1U << 1;
constexpr std::uint64_t kReadFile = 1U << 2;
constexpr std::uint64_t kListFolder = 1U << 3;
constexpr std::uint64_t kRemoveFile = 1U << 5;
constexpr std::uint64_t kMakeFolder = 1U << 7;
constexpr std::uint64_t kMakeFile = 1U << 8;
constexpr std::uint64_t kTruncate = 1U << 14;
constexpr std::uint64_t kReadFolder = kReadFile | kListFolder;
constexpr std::uint64_t kWriteFolder = kReadFolder | kWriteFile | kRemoveFile | kMakeFolder | kMakeFile | kTruncate;

#if ORVCOMTRADE_LANDLOCK

static_assert(kWriteFile == LANDLOCK_ACCESS_FS_WRITE_FILE && kReadFile == LANDLOCK_ACCESS_FS_READ_FILE &&
              kListFolder == LANDLOCK_ACCESS_FS_READ_DIR && kRemoveFile == LANDLOCK_ACCESS_FS_REMOVE_FILE &&
              kMakeFolder == LANDLOCK_ACCESS_FS_MAKE_DIR && kMakeFile == LANDLOCK_ACCESS_FS_MAKE_REG);

/// What rules are about, as the kernel wants it.
struct Ruleset {
    std::uint64_t files = 0;
    std::uint64_t connections = 0;
    std::uint64_t scopes = 0;
};

/// All that a version of the interface can forbid; what it does not know must be zero.
Ruleset everythingOf(long version) {
    constexpr std::uint64_t moveAcrossFolders = 1U << 13;
    constexpr std::uint64_t controlDevices = 1U << 15;
    Ruleset all;
    all.files = moveAcrossFolders - 1;
    all.files |= version >= 2 ? moveAcrossFolders : 0;
    all.files |= version >= 3 ? kTruncate : 0;
    all.files |= version >= 5 ? controlDevices : 0;
    all.connections = version >= 4 ? 3 : 0; // made by others, and to others
    all.scopes = version >= 6 ? 3 : 0;      // abstract sockets and signals of other programs
    return all;
}

/// Gives the rights that the kernel knows to `known`. -1 where it has no Landlock.
int makeRules(std::uint64_t& known) {
    const long version = syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
    if (version < 1) {
        return -1;
    }
    const Ruleset all = everythingOf(version);
    known = all.files;
    return static_cast<int>(syscall(SYS_landlock_create_ruleset, &all, sizeof all, 0));
}

bool addRule(int rules, int place, std::uint64_t rights) {
    landlock_path_beneath_attr rule = {};
    rule.allowed_access = rights;
    rule.parent_fd = place;
    return syscall(SYS_landlock_add_rule, rules, LANDLOCK_RULE_PATH_BENEATH, &rule, 0) == 0;
}

void enforce(int rules) {
    syscall(SYS_landlock_restrict_self, rules, 0);
}

#else

int makeRules(std::uint64_t& /*known*/) {
    return -1;
}

bool addRule(int /*rules*/, int /*place*/, std::uint64_t /*rights*/) {
    return true;
}

void enforce(int /*rules*/) {}

#endif

/// A place among the files, as a rule wants it; below 0 where it can't be opened.
int placeOf(const std::string& path) {
    return open(path.empty() ? "." : path.c_str(), O_PATH | O_CLOEXEC);
}

} // namespace

void requireAbsent(int error, const std::string& path) {
    if (error == ENOMEM) {
        throw std::bad_alloc();
    }
    if (error != ENOENT && error != ENOTDIR && error != EACCES && error != ELOOP && error != ENAMETOOLONG) {
        throw Failure(kRecordingProblem, path + ": " + std::generic_category().message(error));
    }
}

Sandbox::Sandbox() : _rules(makeRules(_known)) {}

Sandbox::~Sandbox() {
    if (isThere()) {
        ::close(_rules);
    }
}

void Sandbox::allowReading(const std::string& path) const {
    _allow(placeOf(path), path, kReadFolder);
}

void Sandbox::allowWriting(const std::string& folder) const {
    std::filesystem::path path = folder;
    int place = placeOf(path.string());
    while (place < 0 && errno == ENOENT && path.has_relative_path()) {
        path = path.parent_path();
        place = placeOf(path.string());
    }
    _allow(place, path.string(), kWriteFolder);
}

void Sandbox::_allow(int place, const std::string& path, std::uint64_t rights) const {
    if (place < 0) {
        requireAbsent(errno, path);
        return;
    }
    struct stat status = {};
    bool isAllowed = fstat(place, &status) == 0;
    if (isAllowed) { // rights of folders are refused for files
        isAllowed = addRule(_rules, place, _known & (S_ISDIR(status.st_mode) ? rights : kReadFile));
    }
    const int error = errno;
    ::close(place);
    if (!isAllowed) {
        requireAbsent(error, path);
    }
}

void Sandbox::close() const {
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && isThere()) {
        enforce(_rules);
    }
}
