#include "ScratchFolder.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

namespace fs = std::filesystem;
using OrvComtradeIntake::ScratchFolder;

bool isEmpty(const std::string& folder) {
    return fs::is_empty(folder);
}

/// Runs the child in a process of its own and gives how it ended.
template <class Child> int runInChild(Child child) {
    const pid_t process = fork();
    if (process == 0) {
        child();
        _exit(0);
    }
    int status = 0;
    EXPECT_EQ(waitpid(process, &status, 0), process);
    return status;
}

void fill(const ScratchFolder& folder) {
    std::ofstream(folder.path() + "/recording.cfg") << "text";
    fs::create_symlink("/nowhere", folder.path() + "/recording.dat");
    fs::create_directories(folder.path() + "/deeper/still");
    std::ofstream(folder.path() + "/deeper/still/file") << "text";
}

TEST(ScratchFolderMake, MakesAFolderThatOnlyItsOwnerMayEnter) {
    const orvtest::TempDir parent;
    const ScratchFolder folder = ScratchFolder::make(parent.path());
    struct stat status = {};
    ASSERT_EQ(stat(folder.path().c_str(), &status), 0);
    EXPECT_TRUE(S_ISDIR(status.st_mode));
    EXPECT_EQ(status.st_mode & 07777U, 0700U);
    EXPECT_EQ(fs::path(folder.path()).parent_path(), parent.path());
}

TEST(ScratchFolderMake, GivesEachFolderItsOwnName) {
    const orvtest::TempDir parent;
    const ScratchFolder first = ScratchFolder::make(parent.path());
    const ScratchFolder second = ScratchFolder::make(parent.path());
    EXPECT_NE(first.path(), second.path());
}

TEST(ScratchFolderMake, GoesByTmpdirWhereNoParentIsGiven) {
    const orvtest::TempDir parent;
    const int status = runInChild([&] {
        setenv("TMPDIR", parent.path().c_str(), 1);
        const ScratchFolder folder = ScratchFolder::make("");
        _exit(fs::path(folder.path()).parent_path() == parent.path() ? 7 : 8);
    });
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 7);
}

TEST(ScratchFolderMake, ThrowsWhereThereIsNoParent) {
    const orvtest::TempDir parent;
    EXPECT_THROW(ScratchFolder::make(parent.file("nowhere")), std::system_error);
}

TEST(ScratchFolder, IsRemovedWithEverythingInIt) {
    const orvtest::TempDir parent;
    {
        const ScratchFolder folder = ScratchFolder::make(parent.path());
        fill(folder);
    }
    EXPECT_TRUE(isEmpty(parent.path()));
}

TEST(ScratchFolder, LeavesWhatALinkInItLeadsTo) {
    const orvtest::TempDir parent;
    const orvtest::TempDir elsewhere;
    const std::string original = elsewhere.write("original.dat", "data");
    {
        const ScratchFolder folder = ScratchFolder::make(parent.path());
        fs::create_symlink(original, folder.path() + "/link.dat");
        fs::create_symlink(elsewhere.path(), folder.path() + "/folder");
    }
    EXPECT_TRUE(fs::exists(original));
}

TEST(ScratchFolder, IsRemovedWhenAnExceptionPasses) {
    const orvtest::TempDir parent;
    try {
        const ScratchFolder folder = ScratchFolder::make(parent.path());
        throw 1;
    } catch (int) {
    }
    EXPECT_TRUE(isEmpty(parent.path()));
}

TEST(ScratchFolder, MovesItsFolder) {
    const orvtest::TempDir parent;
    ScratchFolder first = ScratchFolder::make(parent.path());
    const std::string path = first.path();
    ScratchFolder second(std::move(first));
    EXPECT_EQ(second.path(), path);
    EXPECT_EQ(first.path(), ""); // NOLINT(bugprone-use-after-move,clang-analyzer-cplusplus.Move)
    ScratchFolder third = ScratchFolder::make(parent.path());
    const std::string replaced = third.path();
    third = std::move(second);
    EXPECT_FALSE(fs::exists(replaced));
    EXPECT_TRUE(fs::exists(path));
    third = ScratchFolder();
    EXPECT_TRUE(isEmpty(parent.path()));
}

TEST(ScratchFolder, IsLeftAloneByAForkedProcess) {
    const orvtest::TempDir parent;
    ScratchFolder folder = ScratchFolder::make(parent.path());
    const std::string path = folder.path();
    runInChild([&] { folder = ScratchFolder(); });
    EXPECT_TRUE(fs::exists(path));
    runInChild([] { raise(SIGTERM); });
    EXPECT_TRUE(fs::exists(path));
}

TEST(ScratchFolder, IsMadeAndRemovedFromSeveralThreads) {
    const orvtest::TempDir parent;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int n = 0; n < 50; ++n) {
                const ScratchFolder folder = ScratchFolder::make(parent.path());
                std::ofstream(folder.path() + "/file") << n;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_TRUE(isEmpty(parent.path()));
}

class ScratchFolderSignal : public testing::TestWithParam<int> {};

TEST_P(ScratchFolderSignal, RemovesEveryFolderAndEndsTheProgramAsUsual) {
    const orvtest::TempDir parent;
    const int status = runInChild([&] {
        const ScratchFolder first = ScratchFolder::make(parent.path());
        const ScratchFolder second = ScratchFolder::make(parent.path());
        fill(first);
        fill(second);
        raise(GetParam());
    });
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), GetParam());
    EXPECT_TRUE(isEmpty(parent.path()));
}

TEST_P(ScratchFolderSignal, RemovesWhatOtherThreadsAreMakingFillingAndRemoving) {
    for (int milliseconds = 1; milliseconds <= 30; ++milliseconds) {
        const orvtest::TempDir parent;
        runInChild([&] {
            std::vector<std::thread> threads;
            for (int i = 0; i < 4; ++i) {
                threads.emplace_back([&parent] {
                    for (;;) {
                        const ScratchFolder folder = ScratchFolder::make(parent.path());
                        std::ofstream(folder.path() + "/first") << 1;
                        std::ofstream(folder.path() + "/second") << 2;
                    }
                });
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
            raise(GetParam());
            for (std::thread& thread : threads) {
                thread.join(); // never: the signal has ended the program
            }
        });
        ASSERT_TRUE(isEmpty(parent.path())) << milliseconds;
    }
}

INSTANTIATE_TEST_SUITE_P(Signals, ScratchFolderSignal, testing::Values(SIGINT, SIGTERM, SIGHUP));

void endWithNine(int /*signal*/) {
    _exit(9);
}

TEST(ScratchFolderSignal, IsLeftToAProgramThatHandlesItItself) {
    // The disposition that counts is that of the program's first folder: a fresh program is needed.
    const orvtest::TempDir parent;
    const int status = runInChild([&] {
        setenv("SCRATCH_PARENT", parent.path().c_str(), 1);
        execl("/proc/self/exe", "ScratchFolderTest", "--gtest_filter=Child.DISABLED_HandlesTheSignalItself",
              "--gtest_also_run_disabled_tests", static_cast<char*>(nullptr));
    });
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 9);
    EXPECT_FALSE(isEmpty(parent.path()));
}

TEST(Child, DISABLED_HandlesTheSignalItself) {
    const char* const parent = std::getenv("SCRATCH_PARENT");
    ASSERT_NE(parent, nullptr);
    std::signal(SIGTERM, endWithNine);
    const ScratchFolder folder = ScratchFolder::make(parent);
    raise(SIGTERM);
}

} // namespace
