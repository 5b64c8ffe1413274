// What becomes of files that the program writes when a call of the system fails, or a signal comes in between.

#include "cli/program.h"
#include "support/FileLimits.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <filesystem>
#include <map>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace orvtest;
using Words = std::vector<std::string>;

/// A disk, by what is preloaded to make it.
struct Disk {
    const char* why;
    bool hasNamelessFiles;
    bool hasLinks;
};

constexpr Disk kDisks[] = {
    {"of today", true, true}, {"without nameless files", false, true}, {"without links either", false, false}};

/// Environment and words of a command on a disk.
Words onDisk(const Disk& disk, const Words& command) {
    std::string modules = ORVCOMTRADE_DISTURBED_CALLS;
    modules += disk.hasNamelessFiles ? "" : ":" ORVCOMTRADE_WITHOUT_NAMELESS_FILES;
    Words words = {"ASAN_OPTIONS=verify_asan_link_order=0:detect_leaks=0", "LD_PRELOAD=" + modules};
    if (!disk.hasLinks) {
        words.emplace_back("ORVCOMTRADE_WITHOUT_LINKS=1");
    }
    words.emplace_back(ORVCOMTRADE_PROGRAM);
    words.insert(words.end(), command.begin(), command.end());
    return words;
}

/// What becomes of a command if one call fails.
struct Disturbed {
    Outcome outcome;
    bool hasCome; ///< the call: there are as many
};

Disturbed runFailingAt(int call, int failure, const TempDir& folder, Words words) {
    words.insert(words.begin(),
                 {"ORVCOMTRADE_CALL=" + std::to_string(call), "ORVCOMTRADE_CALL_FAILS=" + std::to_string(failure),
                  "ORVCOMTRADE_CALL_MARK=" + folder.file("mark")});
    const Outcome outcome = runProgramIn(folder.path(), "/usr/bin/env", words);
    return {outcome, !bytesOf(folder.file("mark")).empty()};
}

/// A command, and the files that it writes into the folder "out".
struct Command {
    Words words;
    Words files;
    bool replaces;
};

const Command kCommands[] = {
    {{"export", "rec.cfg", "--output", "out/", "--format", "npy"}, {"rec.json", "rec.npy", "rec.status.npy"}, false},
    {{"export", "rec.cfg", "--output", "out/", "--format", "npy", "--force"},
     {"rec.json", "rec.npy", "rec.status.npy"},
     true},
    {{"normalize", "rec.cfg", "--output", "out", "--force"}, {"rec.cfg", "rec.dat"}, true},
    {{"export", "rec.cfg", "--output", "out/rec.csv", "--force"}, {"rec.csv"}, true},
};

enum class State { Old, New, Mixed };

/// What stands in the folder: exactly what was there, exactly what was to be written, or anything else.
State stateOf(const std::string& folder, const Command& command) {
    std::map<std::string, bool> isOld;
    for (const auto& entry : fs::directory_iterator(folder)) {
        isOld[entry.path().filename().string()] = bytesOf(entry.path().string()) == "old";
    }
    std::map<std::string, bool> old;
    std::map<std::string, bool> replaced;
    for (const std::string& name : command.files) {
        replaced[name] = false;
        if (command.replaces) {
            old[name] = true;
        }
    }
    return isOld == old ? State::Old : isOld == replaced ? State::New : State::Mixed;
}

void prepare(const TempDir& folder, const Command& command) {
    writeSmall(folder, "S,R", "U", "I", kFourLines);
    fs::remove_all(folder.file("out"));
    fs::create_directory(folder.file("out"));
    for (const std::string& name : command.files) {
        if (command.replaces) {
            folder.write("out/" + name, "old");
        }
    }
}

TEST(SafeOutput, FilesOfARecordingComeTogetherOrNotAtAllWhicheverCallFails) {
    const Deadline deadline(500);
    for (const Disk& disk : kDisks) {
        for (const Command& command : kCommands) {
            int failed = 0;
            for (int call = 0; true; ++call) {
                SCOPED_TRACE(std::string(disk.why) + ": " + command.words[0] + command.words.back() + " at call " +
                             std::to_string(call));
                const TempDir folder;
                prepare(folder, command);
                const auto [outcome, hasCome] = runFailingAt(call, EIO, folder, onDisk(disk, command.words));
                const State state = stateOf(folder.file("out"), command);
                if (outcome.status == 0) {
                    EXPECT_EQ(state, State::New);
                    EXPECT_EQ(outcome.err, "");
                    if (!hasCome) {
                        break;
                    }
                    continue;
                }
                ASSERT_TRUE(hasCome) << outcome.err;
                ++failed;
                EXPECT_EQ(outcome.status, 1);
                const bool isOfFile = outcome.err.find("cannot write the output") == std::string::npos;
                EXPECT_EQ(outcome.err.find(": Input/output error\n"), outcome.err.size() - 21) << outcome.err;
                const bool isReplacedAtOnce = !disk.hasLinks && command.files.size() == 1; // there is no way back
                EXPECT_TRUE(state == (isOfFile ? State::Old : State::New) || (isReplacedAtOnce && state == State::New))
                    << outcome.err;
            }
            EXPECT_GT(failed, 4);
        }
    }
}

TEST(SafeOutput, SignalsLeaveAllFilesOrNoneWheneverTheyCome) {
    const Deadline deadline(500);
    const int signals[] = {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGXCPU};
    for (const Disk& disk : kDisks) {
        for (const Command& command : kCommands) {
            bool isEnded = false;
            for (int call = 0; true; ++call) {
                const int signal = signals[call % 5];
                SCOPED_TRACE(std::string(disk.why) + ": " + command.words[0] + command.words.back() + " signal " +
                             std::to_string(signal) + " at call " + std::to_string(call));
                const TempDir folder;
                prepare(folder, command);
                const auto [outcome, hasCome] = runFailingAt(call, -signal, folder, onDisk(disk, command.words));
                EXPECT_TRUE(outcome.status == 0 || outcome.status == -signal) << outcome.status;
                EXPECT_NE(stateOf(folder.file("out"), command), State::Mixed);
                isEnded = isEnded || outcome.status == -signal;
                if (!hasCome) {
                    break;
                }
            }
            EXPECT_TRUE(isEnded);
        }
    }
}

TEST(SafeOutput, IsTheSameWhateverPiecesTheSystemTakesAndHoweverOftenItIsInterrupted) {
    for (const Command& command : kCommands) {
        SCOPED_TRACE(command.words[0] + command.words.back());
        const TempDir folder;
        prepare(folder, command);
        const Outcome whole = orvcomtradeIn(folder.path(), command.words);
        const auto files = contentsOf(folder.file("out"));
        prepare(folder, command);
        Words words = onDisk(kDisks[0], command.words);
        words.insert(words.begin(), "ORVCOMTRADE_TORN_WRITES=1");
        expectOutcome(runProgramIn(folder.path(), "/usr/bin/env", words), 0, whole.out, "");
        EXPECT_EQ(contentsOf(folder.file("out")), files);
    }
}

TEST(SafeOutput, StandardOutputAndErrorAreTheSameInPieces) {
    const TempDir folder;
    prepare(folder, kCommands[0]);
    for (const Words& command : {Words{"export", "rec.cfg"}, {"info", "--json", "rec.cfg"}, {"check", "none.cfg"}}) {
        const Outcome whole = orvcomtradeIn(folder.path(), command);
        Words words = onDisk(kDisks[0], command);
        words.insert(words.begin(), "ORVCOMTRADE_TORN_WRITES=1");
        expectOutcome(runProgramIn(folder.path(), "/usr/bin/env", words), whole.status, whole.out, whole.err);
    }
}

TEST(SafeOutput, ReplacedFileKeepsItsOwnerAndPermissions) {
    const mode_t before = umask(022);
    for (const Disk& disk : kDisks) {
        for (const mode_t mode : {0600U, 0640U, 0444U, 0666U}) {
            SCOPED_TRACE(disk.why);
            const TempDir folder;
            prepare(folder, kCommands[3]);
            const std::string target = folder.file("out/rec.csv");
            if (geteuid() == 0) {
                ASSERT_EQ(chown(target.c_str(), 12345, 54321), 0);
            }
            struct stat old = {};
            ASSERT_EQ(chmod(target.c_str(), mode), 0);
            ASSERT_EQ(stat(target.c_str(), &old), 0);
            EXPECT_EQ(runProgramIn(folder.path(), "/usr/bin/env", onDisk(disk, kCommands[3].words)).status, 0);
            struct stat now = {};
            ASSERT_EQ(stat(target.c_str(), &now), 0);
            EXPECT_EQ(stateOf(folder.file("out"), kCommands[3]), State::New);
            EXPECT_EQ(now.st_mode & 07777U, mode);
            EXPECT_EQ(now.st_uid, old.st_uid);
            EXPECT_EQ(now.st_gid, old.st_gid);
        }
    }
    umask(before);
}

TEST(SafeOutput, FileInPlaceOfALinkThatLeadsNowhereIsANewOne) {
    const mode_t before = umask(027);
    const TempDir folder;
    prepare(folder, kCommands[3]);
    fs::remove(folder.file("out/rec.csv"));
    fs::create_symlink("nowhere", folder.file("out/rec.csv"));
    EXPECT_EQ(orvcomtradeIn(folder.path(), kCommands[3].words).status, 0);
    umask(before);
    EXPECT_EQ(fs::status(folder.file("out/rec.csv")).permissions(), static_cast<fs::perms>(0640));
}

} // namespace
