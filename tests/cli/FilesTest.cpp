#include "cli/program.h"
#include "support/FileLimits.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <poll.h>
#include <sstream>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

// Which files the program takes, in which order it tells of them, and which it writes.

namespace {

namespace fs = std::filesystem;
using namespace orvtest;

/// The small recording under another name, without its configuration's line for a status channel.
void writeRecording(const TempDir& folder, const std::string& name, const std::string& analogId = "U") {
    const fs::path target = folder.file(name);
    fs::create_directories(target.parent_path());
    folder.write(name + ".cfg", "S,R,1999\n2,1A,1D\n1," + analogId +
                                    ",,,V,1,0,0,-99999,99999,1,1,S\n1,Trip,,,0\n50\n1\n1000,3\n"
                                    "01/02/2020,10:00:00.000000\n01/02/2020,10:00:00.000000\nASCII\n1\n");
    folder.write(name + ".dat", "1,0,7,0\n2,1000,8,1\n3,2000,9,1\n");
}

std::vector<std::string> linesOf(const std::string& text) {
    std::istringstream in(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) {
        lines.push_back(line);
    }
    return lines;
}

/// The "path" of each JSON line.
std::vector<std::string> pathsIn(const std::string& jsonLines) {
    std::vector<std::string> paths;
    for (const std::string& line : linesOf(jsonLines)) {
        paths.push_back(nlohmann::json::parse(line).at("path"));
    }
    return paths;
}

using Paths = std::vector<std::string>;

/// Everything in a folder, at any depth, sorted.
Paths contentOf(const std::string& folder) {
    Paths paths;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        paths.push_back(fs::relative(entry.path(), folder).string());
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

// --- Which recordings -----------------------------------------------------------------------------------------------

TEST(CliSearch, FolderIsSearchedToAnyDepthInTheOrderOfNames) {
    const TempDir folder;
    for (const char* const name : {"b", "a/z", "a/deep/er/c", "c/x", "a.b"}) {
        writeRecording(folder, name);
    }
    folder.write("notes.txt", "no recording");
    folder.write("alone.dat", "1,0,7,0\n");
    const Outcome outcome = orvcomtradeIn(folder.path(), {"check", "--json", "."});
    EXPECT_EQ(pathsIn(outcome.out), (Paths{"./a/deep/er/c.cfg", "./a/z.cfg", "./a.b.cfg", "./b.cfg", "./c/x.cfg"}));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
}

TEST(CliSearch, FilesOfOneRecordingAreOneEntry) {
    const TempDir folder;
    writeRecording(folder, "rec");
    folder.write("rec.hdr", "");
    folder.write("rec.inf", "");
    folder.write("rec.cff", "");
    const struct {
        const char* why;
        std::vector<std::string> words;
    } cases[] = {
        {"a folder", {"."}},
        {"all files of it", {"rec.cff", "rec.cfg", "rec.dat", "rec.hdr", "rec.inf"}},
        {"files and the folder", {"rec.hdr", "rec.dat", "."}},
        {"the folder twice", {".", "./."}},
        {"another spelling of the path", {"rec.cfg", folder.file("rec.dat")}},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.why);
        std::vector<std::string> arguments = {"check", "--json"};
        arguments.insert(arguments.end(), row.words.begin(), row.words.end());
        const Outcome outcome = orvcomtradeIn(folder.path(), arguments);
        const Paths paths = pathsIn(outcome.out);
        ASSERT_EQ(paths.size(), 1U) << outcome.out;
        EXPECT_EQ(fs::path(paths[0]).filename(), "rec.cfg");
        EXPECT_EQ(outcome.status, 0);
    }
}

TEST(CliSearch, ArgumentsKeepTheirOrder) {
    const TempDir folder;
    for (const char* const name : {"x/b", "x/a", "y"}) {
        writeRecording(folder, name);
    }
    const Outcome outcome = orvcomtradeIn(folder.path(), {"check", "--json", "y.cfg", "x", "x/b.cfg"});
    EXPECT_EQ(pathsIn(outcome.out), (Paths{"y.cfg", "x/a.cfg", "x/b.cfg"}));
}

TEST(CliSearch, LinksThatLeadInACircleEndTheSearchThere) {
    const TempDir folder;
    writeRecording(folder, "sub/rec");
    fs::create_directory_symlink("..", folder.file("sub/up"));
    fs::create_directory_symlink("itself", folder.file("itself"));
    fs::create_symlink("nowhere.cfg", folder.file("broken.cfg"));
    const Outcome outcome = orvcomtradeIn(folder.path(), {"check", "--json", "."});
    EXPECT_EQ(pathsIn(outcome.out), (Paths{"./sub/rec.cfg"}));
    EXPECT_EQ(outcome.status, 0);
}

TEST(CliSearch, LinkedFolderIsSearched) {
    const TempDir folder;
    const TempDir elsewhere;
    writeRecording(elsewhere, "rec");
    fs::create_directory_symlink(elsewhere.path(), folder.file("link"));
    EXPECT_EQ(pathsIn(orvcomtradeIn(folder.path(), {"check", "--json", "."}).out), (Paths{"./link/rec.cfg"}));
}

TEST(CliSearch, PipesInAFolderAreLeftAlone) {
    const TempDir folder;
    writeRecording(folder, "rec");
    ASSERT_EQ(mkfifo(folder.file("pipe.cfg").c_str(), 0600), 0);
    EXPECT_EQ(pathsIn(orvcomtradeIn(folder.path(), {"check", "--json", "."}).out), (Paths{"./rec.cfg"}));
}

TEST(CliSearch, FolderWithoutARecordingIsTold) {
    const TempDir folder;
    fs::create_directory(folder.file("empty"));
    expectComplaint(orvcomtradeIn(folder.path(), {"info", "empty"}), 1,
                    "orvcomtrade: empty: no recording in this folder\n");
}

TEST(CliSearch, UnreadableFolderIsToldAndTheRestIsRead) {
    if (geteuid() == 0) {
        GTEST_SKIP() << "permissions do not bind root";
    }
    const TempDir folder;
    writeRecording(folder, "rec");
    fs::create_directory(folder.file("closed"));
    fs::permissions(folder.file("closed"), fs::perms::none);
    const Outcome outcome = orvcomtradeIn(folder.path(), {"check", "."});
    fs::permissions(folder.file("closed"), fs::perms::owner_all);
    EXPECT_EQ(outcome.out, "./rec.cfg: reads as it stands\n");
    EXPECT_EQ(outcome.err, "orvcomtrade: ./closed: cannot be searched: Permission denied\n");
    EXPECT_EQ(outcome.status, 1);
}

TEST(CliSearch, OneFailureStopsNoOther) {
    const TempDir folder;
    writeRecording(folder, "a");
    writeRecording(folder, "c");
    folder.write("b.cfg", "");
    const Outcome outcome = orvcomtradeIn(folder.path(), {"points", "--channel", "1", "--end", "0.0015", "--rate",
                                                          "1000", "a.cfg", "b.cfg", "none.txt", "c.cfg"});
    EXPECT_EQ(outcome.out, "# a.cfg\ntime_s,value\n0,7\n0.001,8\n# c.cfg\ntime_s,value\n0,7\n0.001,8\n");
    EXPECT_NE(outcome.err.find("orvcomtrade: b.cfg"), std::string::npos) << outcome.err;
    EXPECT_NE(outcome.err.find("orvcomtrade: none.txt: not a file of a recording"), std::string::npos) << outcome.err;
    EXPECT_EQ(linesOf(outcome.err).size(), 2U) << outcome.err;
    EXPECT_EQ(outcome.status, 1);
}

TEST(CliSearch, ChannelThatOneOfSeveralLacksIsThatOnesFailure) {
    const TempDir folder;
    writeRecording(folder, "a", "Ua");
    writeRecording(folder, "b", "Ub");
    const Outcome outcome = orvcomtradeIn(folder.path(), {"points", ".", "Ub", "--end", "0.0005"});
    EXPECT_EQ(outcome.out.substr(0, 23), "# ./b.cfg\ntime_s,value\n");
    EXPECT_EQ(outcome.err, "orvcomtrade: ./a.cfg: there is no analog channel \"Ub\"; the recording has\n"
                           "  No  Name\n"
                           "   1  Ua,,,V\n");
    EXPECT_EQ(outcome.status, 1);
}

TEST(CliSearch, FailureIsAJsonLineWithJson) {
    const TempDir folder;
    writeRecording(folder, "a");
    for (const char* const command : {"info", "events"}) {
        const Outcome outcome = orvcomtradeIn(folder.path(), {command, "--json", "none.txt", "a.cfg"});
        ASSERT_EQ(linesOf(outcome.out).size(), 2U) << outcome.out;
        const auto failed = nlohmann::json::parse(linesOf(outcome.out)[0]);
        EXPECT_EQ(failed.at("path"), "none.txt");
        EXPECT_EQ(failed.at("ok"), false);
        EXPECT_EQ(failed.at("error"),
                  "none.txt: not a file of a recording: the extension is none of .cfg, .dat and .cff");
        EXPECT_EQ(nlohmann::json::parse(linesOf(outcome.out)[1]).at("ok"), true);
        EXPECT_EQ(outcome.err, "");
        EXPECT_EQ(outcome.status, 1);
    }
}

// --- Many at once ---------------------------------------------------------------------------------------------------

/// 300 recordings in 10 folders, every 37th of which can't be read.
void writeMany(const TempDir& folder) {
    for (int i = 0; i < 300; ++i) {
        const std::string name = std::to_string(i % 10) + "/rec" + std::to_string(i);
        writeRecording(folder, name, "U" + std::to_string(i));
        if (i % 37 == 0) {
            folder.write(name + ".cfg", "");
        }
    }
}

TEST(CliJobs, OutputIsTheSameHoweverManyWork) {
    const TempDir folder;
    writeMany(folder);
    for (const char* const command : {"info", "check", "events"}) {
        const Outcome one = orvcomtradeIn(folder.path(), {command, "--jobs", "1", "."});
        EXPECT_EQ(one.status, 1);
        EXPECT_GT(one.out.size(), 10000U);
        for (const char* const jobs : {"2", "8", "256"}) {
            const Outcome several = orvcomtradeIn(folder.path(), {command, "--jobs", jobs, "."});
            EXPECT_EQ(several.status, 1) << command << jobs;
            EXPECT_TRUE(several.out == one.out) << command << jobs;
            EXPECT_TRUE(several.err == one.err) << command << jobs;
        }
    }
}

TEST(CliJobs, FilesAreTheSameHoweverManyWork) {
    const TempDir folder;
    writeMany(folder);
    ASSERT_EQ(orvcomtradeIn(folder.path(), {"export", "--jobs", "1", ".", "--output", folder.file("one")}).status, 1);
    // The outputs hold no recordings, so the second search finds what the first one did.
    ASSERT_EQ(orvcomtradeIn(folder.path(), {"export", "--jobs", "8", ".", "--output", folder.file("many")}).status, 1);
    const Paths names = contentOf(folder.file("one"));
    EXPECT_EQ(names.size(), 10U + 291U); // 0, 37, ... 296 are nine
    EXPECT_EQ(contentOf(folder.file("many")), names);
    for (const std::string& name : names) {
        if (fs::is_regular_file(folder.file("one/" + name))) {
            EXPECT_EQ(bytesOf(folder.file("many/" + name)), bytesOf(folder.file("one/" + name))) << name;
        }
    }
}

TEST(CliJobs, MoreOutputThanIsKeptForALaterTurnArrivesWhole) {
    const TempDir folder;
    for (int i = 0; i < 6; ++i) {
        writeRecording(folder, "rec" + std::to_string(i));
    }
    // A million points of some ten bytes each are far more than a job may keep before its turn.
    const std::vector<std::string> arguments = {"points", ".", "1", "--end", "0.002", "--rate", "50000000"};
    std::vector<std::string> alone = arguments;
    alone.insert(alone.end(), {"--jobs", "1"});
    std::vector<std::string> together = arguments;
    together.insert(together.end(), {"--jobs", "6"});
    const Outcome one = orvcomtradeIn(folder.path(), alone);
    EXPECT_GT(one.out.size(), 6U * 500000U);
    EXPECT_TRUE(orvcomtradeIn(folder.path(), together).out == one.out);
}

// --- Standard output that fails -------------------------------------------------------------------------------------

const std::vector<std::vector<std::string>> kPrintingCommands = {{"info"},   {"check"},  {"points", "--channel", "1"},
                                                                 {"export"}, {"events"}, {"info", "--json"}};

TEST(CliOutput, ReaderThatHasGoneEndsEveryCommandQuietly) {
    for (std::vector<std::string> words : kPrintingCommands) {
        const TempDir folder;
        int ends[2] = {-1, -1};
        ASSERT_EQ(pipe(ends), 0);
        close(ends[0]);
        const std::string err = folder.file("stderr");
        words.insert(words.begin(), ORVCOMTRADE_PROGRAM);
        words.push_back(kFeeder);
        EXPECT_EQ(runWith(folder.path(), words, ends[1], openForOutput(err)), 0) << words[1];
        EXPECT_EQ(bytesOf(err), "") << words[1];
    }
}

TEST(CliOutput, ReaderThatGoesInTheMiddleOfManyRecordingsEndsThemAll) {
    const Deadline deadline(60);
    const TempDir folder;
    for (int i = 0; i < 40; ++i) {
        writeRecording(folder, "rec" + std::to_string(i));
    }
    int ends[2] = {-1, -1};
    ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0); // the program must not hold the end for reading
    std::string begin(100, ' ');
    std::thread reader([&ends, &begin] {
        begin.resize(static_cast<std::size_t>(std::max<ssize_t>(0, read(ends[0], begin.data(), begin.size()))));
        close(ends[0]);
    });
    const std::string err = folder.file("stderr");
    const int status = runWith(
        folder.path(), {ORVCOMTRADE_PROGRAM, "points", ".", "1", "--end", "0.002", "--rate", "50000000", "--jobs", "4"},
        ends[1], openForOutput(err));
    reader.join();
    EXPECT_EQ(status, 0);
    EXPECT_EQ(bytesOf(err), "");
    EXPECT_EQ(begin.substr(0, 25), "# ./rec0.cfg\ntime_s,value");
}

TEST(CliOutput, FullDeviceIsTold) {
    for (std::vector<std::string> words : kPrintingCommands) {
        const TempDir folder;
        const std::string err = folder.file("stderr");
        const int full = open("/dev/full", O_WRONLY);
        ASSERT_GE(full, 0);
        words.insert(words.begin(), ORVCOMTRADE_PROGRAM);
        words.push_back(kFeeder);
        EXPECT_EQ(runWith(folder.path(), words, full, openForOutput(err)), 1) << words[1];
        EXPECT_EQ(bytesOf(err), "orvcomtrade: cannot write the output: No space left on device\n") << words[1];
    }
}

// --- Files written --------------------------------------------------------------------------------------------------

TEST(CliTargets, OneRecordingGoesToTheFileNamedOrIntoTheFolder) {
    const TempDir folder;
    writeRecording(folder, "sub/rec.x");
    const struct {
        const char* why;
        std::vector<std::string> words;
        const char* file;
    } cases[] = {
        {"a file", {"sub/rec.x.cfg", "--output", "table.csv"}, "table.csv"},
        {"a file without an extension", {"sub/rec.x.cfg", "--output", "table"}, "table"},
        {"a file in a new folder", {"sub/rec.x.cfg", "--output", "new/er/table.csv"}, "new/er/table.csv"},
        {"a folder that is there", {"sub/rec.x.cfg", "--output", "sub"}, "sub/rec.x.csv"},
        {"a folder by its slash", {"sub/rec.x.cfg", "--output", "made/"}, "made/rec.x.csv"},
        {"found in a folder", {".", "--output", "found"}, "found/sub/rec.x.csv"},
        {"found in one of several folders", {"sub", ".", "--output", "several"}, "several/sub/rec.x.csv"},
        {"JSON lines", {"sub/rec.x.cfg", "--format", "jsonl", "--output", "made"}, "made/rec.x.jsonl"},
        {"arrays", {"sub/rec.x.cfg", "--format", "npy", "--output", "a.npy"}, "a.npy"},
        {"arrays", {"sub/rec.x.cfg", "--format", "npy", "--output", "b"}, "b.status.npy"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.why);
        std::vector<std::string> arguments = {"export"};
        arguments.insert(arguments.end(), row.words.begin(), row.words.end());
        const Outcome outcome = orvcomtradeIn(folder.path(), arguments);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_TRUE(fs::is_regular_file(folder.file(row.file))) << outcome.out;
    }
    EXPECT_TRUE(fs::exists(folder.file("a.status.npy")));
    EXPECT_TRUE(fs::exists(folder.file("a.json")));
}

TEST(CliTargets, FileHasTheModeThatTheUmaskLeaves) {
    const TempDir folder;
    writeRecording(folder, "rec");
    const mode_t before = umask(027);
    const Outcome outcome = orvcomtradeIn(folder.path(), {"export", "rec.cfg", "--output", "t.csv"});
    umask(before);
    ASSERT_EQ(outcome.status, 0);
    EXPECT_EQ(fs::status(folder.file("t.csv")).permissions(), static_cast<fs::perms>(0640));
}

TEST(CliTargets, ExistingFileIsKeptWithoutForce) {
    const TempDir folder;
    writeRecording(folder, "rec");
    const std::vector<std::vector<std::string>> commands = {
        {"export", "rec.cfg", "--output", "out/rec.csv"},
        {"export", "rec.cfg", "--output", "out/", "--format", "npy"},
        {"normalize", "rec.cfg", "--output", "out"},
    };
    const char* const targets[] = {"out/rec.csv", "out/rec.json", "out/rec.cfg"};
    for (std::size_t i = 0; i < commands.size(); ++i) {
        SCOPED_TRACE(targets[i]);
        fs::remove_all(folder.file("out"));
        fs::create_directory(folder.file("out"));
        folder.write(targets[i], "old");
        expectComplaint(orvcomtradeIn(folder.path(), commands[i]), 1,
                        std::string("orvcomtrade: ") + targets[i] + ": exists already; --force replaces it\n");
        EXPECT_EQ(bytesOf(folder.file(targets[i])), "old");
        EXPECT_EQ(contentOf(folder.file("out")).size(), 1U);
        std::vector<std::string> forced = commands[i];
        forced.emplace_back("--force");
        EXPECT_EQ(orvcomtradeIn(folder.path(), forced).status, 0);
        EXPECT_NE(bytesOf(folder.file(targets[i])), "old");
    }
}

TEST(CliTargets, OnlyRegularFilesAreReplaced) {
    const TempDir folder;
    writeRecording(folder, "rec");
    ASSERT_EQ(mkfifo(folder.file("pipe").c_str(), 0600), 0);
    expectComplaint(orvcomtradeIn(folder.path(), {"export", "rec.cfg", "--output", "pipe", "--force"}), 1,
                    "orvcomtrade: pipe: not replaced: it is no regular file\n");
    EXPECT_TRUE(fs::is_fifo(folder.file("pipe")));
}

TEST(CliTargets, RecordingIsNeverReplacedByWhatIsMadeOfIt) {
    const TempDir folder;
    writeRecording(folder, "rec");
    const std::string data = bytesOf(folder.file("rec.dat"));
    expectComplaint(orvcomtradeIn(folder.path(), {"normalize", "rec.cfg", "--output", ".", "--force"}), 1,
                    "orvcomtrade: ./rec.dat: not replaced: it is a file of the recording itself\n");
    expectComplaint(orvcomtradeIn(folder.path(), {"export", "rec.cfg", "--output", "rec.dat", "--force"}), 1,
                    "orvcomtrade: rec.dat: not replaced: it is a file of the recording itself\n");
    EXPECT_EQ(bytesOf(folder.file("rec.dat")), data);
}

TEST(CliTargets, TwoRecordingsDoNotShareATarget) {
    const TempDir folder;
    writeRecording(folder, "a/rec");
    writeRecording(folder, "b/rec");
    const Outcome outcome = orvcomtradeIn(folder.path(), {"export", "a/rec.cfg", "b/rec.cfg", "--output", "out"});
    EXPECT_EQ(outcome.out, "a/rec.cfg: written to out/rec.csv\n");
    EXPECT_EQ(outcome.err, "orvcomtrade: b/rec.cfg: would be written to the same file as a/rec.cfg\n");
    EXPECT_EQ(outcome.status, 1);
}

TEST(CliTargets, FileInTheWayOfAFolderIsTold) {
    const TempDir folder;
    writeRecording(folder, "rec");
    folder.write("way", "");
    expectComplaint(orvcomtradeIn(folder.path(), {"normalize", "rec.cfg", "--output", "way/out"}), 1,
                    "orvcomtrade: way/out: folder cannot be made: Not a directory\n");
}

TEST(CliTargets, FullDiskLeavesNoFile) {
    const TempDir folder;
    const std::vector<std::vector<std::string>> commands = {
        {"export", kFeeder, "--output", "out/t.csv"},
        {"export", kFeeder, "--output", "out/t.jsonl", "--format", "jsonl"},
        {"export", kFeeder, "--output", "out/t.npy", "--format", "npy"},
        {"normalize", kFeeder, "--output", "out"},
    };
    for (const auto& command : commands) {
        SCOPED_TRACE(command[0] + command.back());
        rlimit before{};
        getrlimit(RLIMIT_FSIZE, &before);
        rlimit small = before;
        small.rlim_cur = 8192;
        setrlimit(RLIMIT_FSIZE, &small);
        const Outcome outcome = orvcomtradeIn(folder.path(), command);
        setrlimit(RLIMIT_FSIZE, &before);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.out, "");
        EXPECT_NE(outcome.err.find(": cannot be written: File too large\n"), std::string::npos) << outcome.err;
        EXPECT_EQ(contentOf(folder.file("out")), Paths{});
    }
}

TEST(CliTargets, ProgramThatIsKilledLeavesWholeFilesAlone) {
    const Deadline deadline(120);
    const TempDir folder;
    for (int i = 0; i < 100; ++i) {
        writeRecording(folder, "in/rec" + std::to_string(i));
    }
    std::size_t seen = 0;
    for (const unsigned int milliseconds : {5U, 10U, 20U, 40U, 80U}) {
        fs::remove_all(folder.file("out"));
        fs::create_directory(folder.file("out"));
        const pid_t child = fork();
        if (child == 0) {
            const int nowhere = open("/dev/null", O_WRONLY);
            if (chdir(folder.path().c_str()) == 0 && dup2(nowhere, STDOUT_FILENO) >= 0) {
                execl(ORVCOMTRADE_PROGRAM, "orvcomtrade", "export", "in", "--output", "out", nullptr);
            }
            _exit(127);
        }
        usleep(milliseconds * 1000);
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        for (const std::string& name : contentOf(folder.file("out"))) {
            EXPECT_EQ(fs::path(name).extension(), ".csv");
            EXPECT_EQ(linesOf(bytesOf(folder.file("out/" + name))).size(), 12U) << name;
            ++seen;
        }
    }
    EXPECT_GT(seen, 0U);
}

// --- Progress -------------------------------------------------------------------------------------------------------

/// A terminal for standard error; what the program wrote to it, and its exit status.
struct Terminal {
    int master = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);

    int slave() const {
        grantpt(master);
        unlockpt(master);
        return open(ptsname(master), O_RDWR | O_NOCTTY); // NOLINT(concurrency-mt-unsafe)
    }

    /// What stands there; waits for no more.
    std::string text() const {
        std::string all;
        pollfd one = {master, POLLIN, 0};
        while (poll(&one, 1, 0) > 0 && (one.revents & POLLIN) != 0) {
            char piece[512];
            const ssize_t count = read(master, piece, sizeof piece);
            if (count <= 0) {
                break;
            }
            all.append(piece, static_cast<std::size_t>(count));
        }
        return all;
    }
};

/// Exit status of `info` on a folder, with standard error on the terminal, where nobody takes its output for a while
/// and then everybody slowly.
int infoWithSlowReader(const TempDir& folder, int err, unsigned int milliseconds) {
    int ends[2] = {-1, -1};
    EXPECT_EQ(pipe2(ends, O_CLOEXEC), 0);
    std::thread reader([&ends, milliseconds] {
        usleep(milliseconds * 1000);
        char piece[4096];
        while (read(ends[0], piece, sizeof piece) > 0) {
            usleep(1000);
        }
    });
    const int status = runWith(folder.path(), {ORVCOMTRADE_PROGRAM, "info", "."}, ends[1], err);
    reader.join();
    close(ends[0]);
    return status;
}

TEST(CliProgress, BarStandsOnATerminalWhileTheWorkIsLong) {
    const Deadline deadline(60);
    const TempDir folder;
    writeMany(folder);
    const Terminal terminal;
    const int keptOpen = terminal.slave(); // else what is there may be lost with the last descriptor
    EXPECT_EQ(infoWithSlowReader(folder, terminal.slave(), 1300), 1);
    const std::string shown = terminal.text();
    close(keptOpen);
    close(terminal.master);
    EXPECT_NE(shown.find("\r["), std::string::npos) << shown;
    EXPECT_NE(shown.find("] "), std::string::npos) << shown;
    EXPECT_NE(shown.find(" of 300 recordings"), std::string::npos) << shown;
    const std::size_t lastBar = shown.rfind("\r[");
    const std::size_t lastErased = shown.rfind("\r\x1B[K");
    EXPECT_LT(lastBar, lastErased) << "the bar is taken away at the end";
    EXPECT_NE(shown.find("\r\x1B[Korvcomtrade: ./"), std::string::npos) << "and before a sentence: " << shown;
}

TEST(CliProgress, NoBarForShortWork) {
    const Deadline deadline(60);
    const TempDir folder;
    writeRecording(folder, "a");
    writeRecording(folder, "b");
    const Terminal terminal;
    const int keptOpen = terminal.slave();
    EXPECT_EQ(infoWithSlowReader(folder, terminal.slave(), 0), 0);
    EXPECT_EQ(terminal.text(), "");
    close(keptOpen);
    close(terminal.master);
}

TEST(CliProgress, NoBarWhereStandardErrorIsNoTerminal) {
    const Deadline deadline(60);
    const TempDir folder;
    writeMany(folder);
    EXPECT_EQ(infoWithSlowReader(folder, openForOutput(folder.file("stderr")), 1300), 1);
    EXPECT_EQ(bytesOf(folder.file("stderr")).find_first_of("[\r\x1B"), std::string::npos);
}

// --- Arguments ------------------------------------------------------------------------------------------------------

TEST(CliFileArguments, WrongUsageIsStatus2) {
    const struct {
        std::vector<std::string> arguments;
        const char* sentence;
    } cases[] = {
        {{"export", ".", "x"}, "several recordings need --output FOLDER"},
        {{"export", "."}, "several recordings need --output FOLDER"},
        {{"export", "a.cfg", "--format", "npy"}, "--format npy needs --output: it makes three files"},
        {{"export", "a.cfg", "--json"},
         "--json tells which files were written, and needs --output; the data as JSON lines are --format jsonl"},
    };
    for (const auto& row : cases) {
        expectComplaint(orvcomtrade(row.arguments), 2, std::string("orvcomtrade: ") + row.sentence + "\n");
    }
    const struct {
        std::vector<std::string> arguments;
        const char* sentence;
    } parsed[] = {
        {{"export", "a.cfg", "--format", "xls"}, "--format: xls not in {csv,jsonl,npy}"},
        {{"normalize", "a.cfg"}, "--output is required"},
        {{"normalize", "a.cfg", "--output", ""}, "--output: the name is empty"},
        {{"export", "a.cfg", "--output", ""}, "--output: the name is empty"},
        {{"normalize", "a.cfg", "--output", "o", "--as-is"}, "The following argument was not expected: --as-is"},
        {{"info", "a.cfg", "--side", "left"}, "--side: left not in {primary,recorded,secondary}"},
        {{"info", "a.cfg", "--encoding", "CP-none"}, "--encoding: no encoding is called CP-none"},
        {{"info", "a.cfg", "--jobs", "0"}, "--jobs: Value 0 not in range 1 to 256"},
        {{"info", "a.cfg", "--jobs", "-1"}, "--jobs: Value -1 not in range 1 to 256"},
        {{"info", "a.cfg", "--as-is", "--side", "primary"}, "--side excludes --as-is"},
        {{"info", "a.cfg", "--as-is", "--encoding", "CP866"}, "--encoding excludes --as-is"},
    };
    for (const auto& row : parsed) {
        expectComplaint(orvcomtrade(row.arguments), 2,
                        std::string("orvcomtrade: ") + row.sentence + "\nTry orvcomtrade --help.\n");
    }
}

} // namespace
