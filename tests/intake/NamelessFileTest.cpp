#include "files/NamelessFile.h"

#include "support/FileLimits.h"
#include "support/OpenFiles.h"
#include "support/TempDir.h"
#include "support/files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <system_error>
#include <type_traits>
#include <unistd.h>
#include <utility>

namespace {

namespace fs = std::filesystem;
using OrvComtradeIntake::NamelessFile;
using orvtest::bytesOf;
using orvtest::openFiles;
using orvtest::TempDir;

bool hasFilesInMemory = true;

int interruptions = 0;                                // of the next writes
std::size_t mostBytes = static_cast<std::size_t>(-1); // of a write

} // namespace

// Stands in for the system's in this program.
extern "C" int memfd_create(const char* name, unsigned int flags) noexcept {
    if (!hasFilesInMemory) {
        errno = ENOSYS;
        return -1;
    }
    return static_cast<int>(syscall(SYS_memfd_create, name, flags));
}

extern "C" ssize_t write(int file, const void* bytes, std::size_t count) {
    if (interruptions > 0) {
        --interruptions;
        errno = EINTR;
        return -1;
    }
    return syscall(SYS_write, file, bytes, std::min(count, mostBytes));
}

namespace {

static_assert(!std::is_copy_constructible_v<NamelessFile> && std::is_nothrow_move_constructible_v<NamelessFile>);

/// A system without files in memory, and with this folder for temporary ones.
class DiskOnly {
public:
    explicit DiskOnly(const std::string& folder) {
        hasFilesInMemory = false;
        setenv("TMPDIR", folder.c_str(), 1);
    }
    ~DiskOnly() {
        hasFilesInMemory = true;
        unsetenv("TMPDIR");
    }
    DiskOnly(const DiskOnly&) = delete;
    DiskOnly& operator=(const DiskOnly&) = delete;
};

/// Writes pieces of all sizes, and gives what they make together.
std::string fill(NamelessFile& file) {
    std::string all;
    for (const std::size_t length : {0UL, 1UL, 1000UL, 262143UL, 262144UL, 700000UL, 3UL}) {
        const std::string piece(length, static_cast<char>('a' + all.size() % 26));
        file.write(piece);
        all += piece;
    }
    file.finish();
    return all;
}

TEST(NamelessFile, HoldsWhatWasWritten) {
    NamelessFile file;
    EXPECT_EQ(bytesOf(file.path()), "");
    const std::string all = fill(file);
    EXPECT_TRUE(bytesOf(file.path()) == all);
    EXPECT_EQ(file.path().compare(0, 14, "/proc/self/fd/"), 0);
}

TEST(NamelessFile, IsOnTheDiskForTemporaryFilesWhereNoneIsInMemory) {
    const TempDir folder;
    const DiskOnly system(folder.path());
    NamelessFile file;
    const std::string all = fill(file);
    EXPECT_TRUE(bytesOf(file.path()) == all);
    EXPECT_EQ(fs::read_symlink(file.path()).string().compare(0, folder.path().size(), folder.path()), 0);
    EXPECT_TRUE(fs::is_empty(folder.path()));
}

TEST(NamelessFile, GoesOnAfterSignalsAndShortWrites) {
    NamelessFile file;
    interruptions = 3;
    mostBytes = 100000;
    const std::string all = fill(file);
    mostBytes = static_cast<std::size_t>(-1);
    EXPECT_TRUE(bytesOf(file.path()) == all);
}

TEST(NamelessFile, ClosesItselfAndNothingElse) {
    const std::ptrdiff_t before = openFiles();
    {
        NamelessFile first;
        first.write("first");
        NamelessFile second(std::move(first));
        EXPECT_EQ(openFiles(), before + 1);
        NamelessFile third;
        third = std::move(second);
        EXPECT_EQ(openFiles(), before + 1);
        third.finish();
        EXPECT_EQ(bytesOf(third.path()), "first");
    }
    EXPECT_EQ(openFiles(), before);
}

TEST(NamelessFile, SaysWhatFailedWhereItCannotBeMade) {
    const DiskOnly system("/nowhere/at/all");
    try {
        const NamelessFile file;
        FAIL() << "a file was made";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), std::errc::no_such_file_or_directory);
        EXPECT_STREQ(error.what(), "a file without a name in /nowhere/at/all: No such file or directory");
    }
}

TEST(NamelessFile, ThrowsWhereNoFileCanBeOpened) {
    const orvtest::NoFileHandles none;
    EXPECT_THROW(NamelessFile(), std::system_error);
}

TEST(NamelessFile, ThrowsWhereTheDiskIsFullAndLeavesNothing) {
    const TempDir folder;
    const DiskOnly system(folder.path());
    const std::ptrdiff_t before = openFiles();
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit = {};
    getrlimit(RLIMIT_FSIZE, &limit);
    const rlimit small = {1000, limit.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    {
        NamelessFile file;
        EXPECT_THROW(file.write(std::string(1000000, 'x')), std::system_error);
        NamelessFile other;
        other.write(std::string(2000, 'x'));
        EXPECT_THROW(other.finish(), std::system_error);
    }
    setrlimit(RLIMIT_FSIZE, &limit);
    EXPECT_EQ(openFiles(), before);
    EXPECT_TRUE(fs::is_empty(folder.path()));
}

} // namespace
