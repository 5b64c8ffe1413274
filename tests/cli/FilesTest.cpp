#include "cli/Terminal.h"
#include "cli/program.h"
#include "support/FileLimits.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <sstream>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

// Which files the program takes, in which order it reports them, and which it writes.

namespace {

namespace fs = std::filesystem;
using namespace orvtest;

/// A recording as the standard asks for it, of one channel of either kind.
void writeRecording(const TempDir& folder, const std::string& name, const std::string& analogId = "U") {
    const fs::path target = folder.file(name);
    fs::create_directories(target.parent_path());
    folder.write(name + ".cfg", "S,R,1999\r\n2,1A,1D\r\n1," + analogId +
                                    ",,,V,1,0,0,-99999,99999,1,1,S\r\n1,Trip,,,0\r\n50\r\n1\r\n1000,3\r\n"
                                    "01/02/2020,10:00:00.000000\r\n01/02/2020,10:00:00.000000\r\nASCII\r\n1\r\n");
    folder.write(name + ".dat", "1,0,7,0\r\n2,1000,8,1\r\n3,2000,9,1\r\n");
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

/// A folder that was packed by a system with resource forks, a settings file, and a recording.
void writeWithOthers(const TempDir& folder) {
    writeRecording(folder, "rec");
    fs::create_directory(folder.file("__MACOSX"));
    folder.write("__MACOSX/._rec.cfg", std::string("\x00\x05\x16\x07\x00\x02\x00\x00", 8));
    folder.write("setup.cfg", "[metadata]\nname = tool\n");
    folder.write("zipped.cfg", "PK\x03\x04 and so on");
}

TEST(CliSearch, FilesThatAreNoRecordingsAreNamedAndLeftOut) {
    const TempDir folder;
    writeWithOthers(folder);
    for (const char* const command : {"check", "info", "events"}) {
        SCOPED_TRACE(command);
        const Outcome outcome = orvcomtradeIn(folder.path(), {command, "--json", "."});
        EXPECT_EQ(pathsIn(outcome.out), (Paths{"./rec.cfg"}));
        const std::vector<std::string> notes = linesOf(outcome.err);
        ASSERT_EQ(notes.size(), 3U) << outcome.err;
        EXPECT_EQ(notes[0].find("orvcomtrade: ./__MACOSX/._rec.cfg: skipped, not a recording: found "), 0U) << notes[0];
        EXPECT_EQ(notes[1].find("orvcomtrade: ./setup.cfg:2: skipped, not a recording: found "), 0U) << notes[1];
        EXPECT_EQ(notes[2], "orvcomtrade: ./zipped.cfg: skipped, not a recording: found a zip archive");
        EXPECT_EQ(outcome.status, 0);
    }
    EXPECT_EQ(orvcomtradeIn(folder.path(), {"normalize", ".", "--output", "out"}).status, 0);
    EXPECT_EQ(contentOf(folder.file("out")), (Paths{"rec.cfg", "rec.dat"}));
}

TEST(CliSearch, FileThatIsNoRecordingIsAnErrorWhereItIsNamed) {
    const TempDir folder;
    writeWithOthers(folder);
    EXPECT_EQ(orvcomtradeIn(folder.path(), {"info", "setup.cfg"}).status, 1);
    const Outcome outcome = orvcomtradeIn(folder.path(), {"check", ".", "zipped.cfg"});
    EXPECT_EQ(outcome.out,
              "./rec.cfg: OK\n"
              "./zipped.cfg: error: a .cfg, .dat or .cff file expected, found a zip archive: unpack it, or "
              "leave it out [not-a-recording]\n"
              "./zipped.cfg: cannot be read\n");
    EXPECT_EQ(linesOf(outcome.err).size(), 2U) << outcome.err;
    EXPECT_EQ(outcome.status, 1);
}

TEST(CliSearch, DamagedRecordingThatIsMetIsAnError) {
    const struct {
        const char* why;
        const char* file;
        std::string content;
    } cases[] = {
        {"an empty configuration", "rec.cfg", ""},
        {"data that are something else", "rec.dat", "PK\x03\x04 and so on"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.why);
        const TempDir folder;
        writeRecording(folder, "rec");
        folder.write(row.file, row.content);
        const Outcome outcome = orvcomtradeIn(folder.path(), {"check", "."});
        EXPECT_NE(outcome.out.find("./rec.cfg: cannot be read\n"), std::string::npos) << outcome.out;
        EXPECT_EQ(outcome.err, "");
        EXPECT_EQ(outcome.status, 1);
    }
}

TEST(CliSearch, FolderWithoutAnyRecordingFails) {
    const TempDir folder;
    fs::create_directory(folder.file("sub"));
    folder.write("sub/zipped.cfg", "PK\x03\x04 and so on");
    expectComplaint(orvcomtradeIn(folder.path(), {"check", "sub"}), 1,
                    "orvcomtrade: sub/zipped.cfg: skipped, not a recording: found a zip archive\n"
                    "orvcomtrade: no recording found\n");
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

TEST(CliSearch, LinksThatLeadOutOfTheFolderAreFollowedOnRequest) {
    const TempDir folder;
    const TempDir elsewhere;
    writeRecording(elsewhere, "rec");
    writeRecording(folder, "in/a");
    writeRecording(folder, "in/c");
    fs::create_directory_symlink(elsewhere.path(), folder.file("in/linked"));
    fs::create_symlink(elsewhere.file("rec.cfg"), folder.file("in/b.cfg"));
    for (const char* const name : {"in/a.hdr", "in/C.DAT"}) {
        fs::create_symlink(elsewhere.file("rec.dat"), folder.file(name));
    }
    fs::create_symlink("/etc/hostname", folder.file("in/notes.txt"));
    const std::string out = ": it leads out of the folder that is searched; --follow-links follows it\n";
    const std::string andOut = " is a link, and" + out.substr(1);
    const Outcome outcome = orvcomtradeIn(folder.path(), {"check", "in"});
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "orvcomtrade: in/C.DAT: not followed" + out + "orvcomtrade: in/a.hdr: not followed" + out +
                               "orvcomtrade: in/b.cfg: not followed" + out + "orvcomtrade: in/linked: not followed" +
                               out + "orvcomtrade: in/a.cfg: not read: a.hdr" + andOut +
                               "orvcomtrade: in/c.cfg: not read: C.DAT" + andOut);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(pathsIn(orvcomtradeIn(folder.path(), {"check", "--json", "--follow-links", "in"}).out),
              (Paths{"in/a.cfg", "in/b.cfg", "in/c.cfg", "in/linked/rec.cfg"}));
}

TEST(CliSearch, LinksThatAreNamedAndThoseWithinTheFolderAreFollowed) {
    const TempDir folder;
    const TempDir elsewhere;
    writeRecording(elsewhere, "rec");
    writeRecording(folder, "in/deep/rec");
    fs::create_directory_symlink(elsewhere.path(), folder.file("link"));
    fs::create_symlink(elsewhere.file("rec.cfg"), folder.file("b.cfg"));
    fs::create_symlink(elsewhere.file("rec.dat"), folder.file("b.dat"));
    fs::create_symlink("deep/rec.cfg", folder.file("in/a.cfg"));
    fs::create_symlink("deep/rec.dat", folder.file("in/a.dat"));
    const Outcome outcome = orvcomtradeIn(folder.path(), {"check", "--json", "link", "b.cfg", "in"});
    EXPECT_EQ(pathsIn(outcome.out), (Paths{"link/rec.cfg", "b.cfg", "in/a.cfg", "in/deep/rec.cfg"}));
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.status, 0);
}

TEST(CliSearch, PipesInAFolderAreLeftAlone) {
    const TempDir folder;
    writeRecording(folder, "rec");
    ASSERT_EQ(mkfifo(folder.file("pipe.cfg").c_str(), 0600), 0);
    EXPECT_EQ(pathsIn(orvcomtradeIn(folder.path(), {"check", "--json", "."}).out), (Paths{"./rec.cfg"}));
}

TEST(CliSearch, FolderWithoutARecordingIsReported) {
    const TempDir folder;
    fs::create_directory(folder.file("empty"));
    expectComplaint(orvcomtradeIn(folder.path(), {"info", "empty"}), 1,
                    "orvcomtrade: empty: no recording in this folder\n");
}

TEST(CliSearch, FoldersWithoutAConfigurationAreReportedAndTheRestIsRead) {
    const TempDir folder;
    fs::create_directory(folder.file("empty"));
    fs::create_directories(folder.file("others/deep"));
    folder.write("others/notes.txt", "");
    folder.write("others/deep/alone.dat", "1,0,7,0\n");
    writeRecording(folder, "rec");
    const Outcome outcome = orvcomtradeIn(folder.path(), {"check", "empty", "rec.cfg", "others"});
    expectOutcome(outcome, 1, "rec.cfg: OK\n",
                  "orvcomtrade: empty: no recording in this folder\n"
                  "orvcomtrade: others: no recording in this folder\n");
    EXPECT_EQ(outcome.summary, "1 recording: 1 clean, 0 with warnings, 0 with errors, 0 unreadable\n");
    EXPECT_EQ(orvcomtradeIn(folder.path(), {"check", "empty"}).summary, "");
}

TEST(CliSearch, NamesOfAnyBytesAreReadAndShownWithEscapes) {
    const TempDir folder;
    for (const char* const name : {"in/a\nb", "in/c\"d'", "in/e\xFF"}) {
        writeRecording(folder, name);
    }
    const Outcome outcome = orvcomtradeIn(folder.path(), {"export", "in", "--output", "out"});
    EXPECT_EQ(outcome.out, "in/a\\x0Ab.cfg: written to out/a\\x0Ab.csv\n"
                           "in/c\"d'.cfg: written to out/c\"d'.csv\n"
                           "in/e\\xFF.cfg: written to out/e\\xFF.csv\n");
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(contentOf(folder.file("out")), (Paths{"a\nb.csv", "c\"d'.csv", "e\xFF.csv"}));
    // JSON holds no bytes that are no text: a replacement character stands for each, and all bytes in another member.
    const std::string lines = orvcomtradeIn(folder.path(), {"check", "--json", "in"}).out;
    EXPECT_EQ(pathsIn(lines), (Paths{"in/a\nb.cfg", "in/c\"d'.cfg", "in/e\xEF\xBF\xBD.cfg"}));
    EXPECT_EQ(nlohmann::json::parse(linesOf(lines)[2]).at("pathBytes"), "in/e%FF.cfg");
    EXPECT_FALSE(nlohmann::json::parse(linesOf(lines)[1]).contains("pathBytes"));
}

TEST(CliSearch, NamesOfPipesAndDevicesAreReported) {
    const Deadline deadline(60);
    const TempDir folder;
    ASSERT_EQ(mkfifo(folder.file("pipe.cfg").c_str(), 0600), 0);
    fs::create_symlink("/dev/zero", folder.file("endless.dat"));
    writeRecording(folder, "rec");
    const Outcome outcome = orvcomtradeIn(folder.path(), {"check", "pipe.cfg", "", "rec.cfg", "endless.dat"});
    expectOutcome(outcome, 1, "rec.cfg: OK\n",
                  "orvcomtrade: pipe.cfg: not a file of a recording: it is no regular file\n"
                  "orvcomtrade: a file with an empty name cannot be read\n"
                  "orvcomtrade: endless.dat: not a file of a recording: it is no regular file\n");
}

TEST(CliSearch, PipesBesideAFileAreNotReadForIt) {
    const Deadline deadline(60);
    const TempDir folder;
    ASSERT_EQ(mkfifo(folder.file("rec.cfg").c_str(), 0600), 0);
    folder.write("rec.dat", "1,0,7,0\n");
    expectComplaint(
        orvcomtradeIn(folder.path(), {"info", "rec.dat"}), 1,
        "orvcomtrade: rec.dat: a .cfg or .cff file of this name expected, found rec.cfg, which is not a regular file: "
        "put the .cfg next to the data\n");
}

TEST(CliSearch, UnreadableFolderIsReportedAndTheRestIsRead) {
    const TempDir folder;
    writeRecording(folder, "rec");
    fs::create_directory(folder.file("closed"));
    fs::create_directory_symlink("closed/deeper", folder.file("link"));
    fs::permissions(folder.file("closed"), fs::perms::none);
    const Outcome outcome = orvcomtradeBoundIn(folder.path(), {"check", "."});
    fs::permissions(folder.file("closed"), fs::perms::owner_all);
    expectOutcome(outcome, 1, "./rec.cfg: OK\n",
                  "orvcomtrade: ./closed: cannot be searched: Permission denied\n"
                  "orvcomtrade: ./link: cannot be searched: Permission denied\n");
}

TEST(CliSearch, FolderWhoseFilesMayOnlyBeListedIsReported) {
    const TempDir folder;
    writeRecording(folder, "listed/a");
    writeRecording(folder, "listed/b");
    fs::permissions(folder.file("listed"), fs::perms::owner_read);
    const Outcome outcome = orvcomtradeBoundIn(folder.path(), {"check", "listed"});
    fs::permissions(folder.file("listed"), fs::perms::owner_all);
    expectComplaint(outcome, 1, "orvcomtrade: listed: cannot be searched: Permission denied\n");
}

TEST(CliSearch, FolderTooDeepForAPathIsReported) {
    const TempDir folder;
    writeRecording(folder, "rec");
    const fs::path before = fs::current_path();
    fs::current_path(folder.path());
    const std::string name(250, 'x');
    for (int i = 0; i < 20; ++i) {
        fs::create_directory(name);
        fs::current_path(name);
    }
    fs::current_path(before);
    const Outcome outcome = orvcomtradeIn(folder.path(), {"check", "."});
    EXPECT_EQ(outcome.out, "./rec.cfg: OK\n");
    EXPECT_NE(outcome.err.find("x: cannot be searched: File name too long\n"), std::string::npos) << outcome.err;
    EXPECT_EQ(outcome.status, 1);
}

TEST(CliSearch, UnreadableFilesAreReported) {
    const TempDir folder;
    writeRecording(folder, "a");
    writeRecording(folder, "b");
    fs::permissions(folder.file("a.cfg"), fs::perms::none);
    fs::permissions(folder.file("b.dat"), fs::perms::none);
    expectComplaint(orvcomtradeBoundIn(folder.path(), {"info", "."}), 1,
                    "orvcomtrade: ./a.cfg: a readable file expected, found Permission denied: check the "
                    "permissions\n"
                    "orvcomtrade: ./b.dat: a readable file expected, found Permission denied: check the "
                    "permissions\n");
}

TEST(CliSearch, OneFailureStopsNoOther) {
    const TempDir folder;
    writeRecording(folder, "a");
    writeRecording(folder, "c");
    folder.write("b.cfg", "");
    const Outcome outcome = orvcomtradeIn(
        folder.path(), {"points", "-q", "--channel", "1", "--end", "0.0015", "a.cfg", "b.cfg", "none.txt", "c.cfg"});
    EXPECT_EQ(outcome.out,
              "# recording,a.cfg\ntime_s,value\n0,7\n0.001,8\n# recording,c.cfg\ntime_s,value\n0,7\n0.001,8\n");
    EXPECT_NE(outcome.err.find("orvcomtrade: b.cfg"), std::string::npos) << outcome.err;
    EXPECT_NE(outcome.err.find("orvcomtrade: none.txt: No such file or directory"), std::string::npos) << outcome.err;
    EXPECT_EQ(linesOf(outcome.err).size(), 2U) << outcome.err;
    EXPECT_EQ(outcome.status, 1);
}

TEST(CliSearch, ChannelThatOneOfSeveralLacksIsThatOnesFailure) {
    const TempDir folder;
    writeRecording(folder, "a", "Ua");
    writeRecording(folder, "b", "Ub");
    const Outcome outcome = orvcomtradeIn(folder.path(), {"points", "-q", ".", "Ub", "--end", "0.0005"});
    EXPECT_EQ(outcome.out.substr(0, 32), "# recording,./b.cfg\ntime_s,value");
    EXPECT_EQ(outcome.err, "orvcomtrade: ./a.cfg: there is no channel \"Ub\"; the recording has\n"
                           "  Kind    No  Name\n"
                           "  analog   1  Ua,V\n"
                           "  status   1  Trip\n");
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
        EXPECT_EQ(failed.at("error"), "none.txt: No such file or directory");
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
        EXPECT_GT(one.out.size(), 5000U);
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
    EXPECT_EQ(begin.substr(0, 35), "# recording,./rec0.cfg\ntime_s,value");
}

TEST(CliOutput, FullDeviceIsReported) {
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

TEST(CliOutput, ClosedOutputIsReportedAndGoesIntoNoFile) {
    const TempDir folder;
    for (int i = 0; i < 50; ++i) {
        writeRecording(folder, "in/rec" + std::to_string(i));
    }
    ASSERT_EQ(orvcomtradeIn(folder.path(), {"export", "in", "--output", "whole"}).status, 0);
    const Outcome outcome =
        runProgramIn(folder.path(), "/bin/sh",
                     {"-c", "exec \"$@\" >&-", "sh", ORVCOMTRADE_PROGRAM, "export", "in", "--output", "out"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "orvcomtrade: cannot write the output: Bad file descriptor\n");
    for (const std::string& name : contentOf(folder.file("out"))) {
        EXPECT_EQ(bytesOf(folder.file("out/" + name)), bytesOf(folder.file("whole/" + name))) << name;
    }
}

TEST(CliOutput, ReaderThatHasGoneKeepsNoFileFromBeingWritten) {
    const TempDir folder;
    for (int i = 0; i < 20; ++i) {
        writeRecording(folder, "in/rec" + std::to_string(i));
    }
    folder.write("in/broken.cfg", "");
    const std::string err = folder.file("stderr");
    for (const char* const command : {"export", "normalize"}) {
        SCOPED_TRACE(command);
        int ends[2] = {-1, -1};
        ASSERT_EQ(pipe(ends), 0);
        close(ends[0]);
        EXPECT_EQ(runWith(folder.path(), {ORVCOMTRADE_PROGRAM, command, "in", "--output", command}, ends[1],
                          openForOutput(err)),
                  1);
        EXPECT_EQ(linesOf(bytesOf(err)).size(), 2U) << bytesOf(err); // with the summary
    }
    EXPECT_EQ(contentOf(folder.file("export")).size(), 20U);
    EXPECT_EQ(contentOf(folder.file("normalize")).size(), 40U);
}

// --- Summary, and files that exist
// ------------------------------------------------------------------------------------

TEST(CliSummary, SaysWhatBecameOfSeveralRecordings) {
    const TempDir folder;
    writeRecording(folder, "in/a");
    writeRecording(folder, "in/b");
    folder.write("in/broken.cfg", "");
    const auto summary = [&folder](const std::vector<std::string>& words) {
        return orvcomtradeIn(folder.path(), words).summary;
    };
    const std::string clean = summary({"check", "in"});
    EXPECT_EQ(clean, "3 recordings: 2 clean, 0 with warnings, 0 with errors, 1 unreadable\n");
    EXPECT_EQ(summary({"check", "in", "--json"}),
              "{\"recordings\":3,\"clean\":2,\"with warnings\":0,\"with errors\":0,\"unreadable\":1}\n");
    EXPECT_EQ(summary({"check", "in/a.cfg"}), "");
    EXPECT_EQ(summary({"check", "in", "-q"}), "");
    EXPECT_EQ(summary({"export", "in", "-o", "out"}), "3 recordings: 2 written, 0 skipped, 1 failed\n");
    EXPECT_EQ(summary({"export", "in", "-o", "out", "--skip-existing"}),
              "3 recordings: 0 written, 2 skipped, 1 failed\n");
}

TEST(CliCheckStatus, FollowsTheSeverityThatIsToFail) {
    const TempDir folder;
    writeRecording(folder, "a");
    std::string cfg = bytesOf(folder.file("a.cfg"));
    cfg.erase(std::remove(cfg.begin(), cfg.end(), '\r'), cfg.end());
    folder.write("a.cfg", cfg); // a note: LF alone
    EXPECT_EQ(orvcomtradeIn(folder.path(), {"check", "a.cfg"}).status, 0);
    EXPECT_EQ(orvcomtradeIn(folder.path(), {"check", "a.cfg", "--fail-on", "warning"}).status, 0);
    EXPECT_EQ(orvcomtradeIn(folder.path(), {"check", "a.cfg", "--fail-on", "note"}).status, 1);
}

TEST(CliTargets, ExistingFilesAreSkippedOrUpdatedOnRequest) {
    const TempDir folder;
    writeRecording(folder, "a");
    for (const char* const command : {"export", "normalize"}) {
        SCOPED_TRACE(command);
        const std::string out = std::string("out-") + command;
        const std::string file = out + (command == std::string("export") ? "/a.csv" : "/a.cfg");
        const std::vector<std::string> words = {command, "a.cfg", "-o", out + "/"};
        const auto run = [&](const char* flag) {
            std::vector<std::string> all = words;
            all.emplace_back(flag);
            return orvcomtradeIn(folder.path(), all);
        };
        expectOutput(run("--skip-existing"), "a.cfg: written to " + file + "\n");
        const std::string bytes = bytesOf(folder.file(file));
        folder.write(file, "changed");
        expectOutput(run("--skip-existing"), "a.cfg: skipped, " + file + " is there\n");
        expectOutput(run("--update"), "a.cfg: skipped, " + file + " is there\n");
        EXPECT_EQ(bytesOf(folder.file(file)), "changed");
        const auto before = fs::last_write_time(folder.file("a.dat")) - std::chrono::seconds(1);
        fs::last_write_time(folder.file(file), before);
        expectOutput(run("--update"), "a.cfg: written to " + file + "\n");
        EXPECT_EQ(bytesOf(folder.file(file)), bytes);
    }
}

TEST(CliTargets, ExtensionChoosesTheFormatAndDashIsStandardOutput) {
    const TempDir folder;
    writeRecording(folder, "a");
    const std::string csv = orvcomtradeIn(folder.path(), {"export", "a.cfg"}).out;
    for (const char* const target : {"-", "/dev/stdout", "/dev/fd/1", "/proc/self/fd/1"}) {
        expectOutput(orvcomtradeIn(folder.path(), {"export", "a.cfg", "-o", target}), csv);
    }
    fs::create_symlink("/dev/stdout", folder.file("link"));
    expectOutput(orvcomtradeIn(folder.path(), {"export", "a.cfg", "-o", "link"}), csv);
    EXPECT_TRUE(fs::is_symlink(folder.file("link")));
    expectOutput(orvcomtradeIn(folder.path(), {"export", "a.cfg", "-o", "x.npy", "-q"}), "");
    EXPECT_EQ(bytesOf(folder.file("x.npy")).substr(1, 5), "NUMPY");
    expectOutput(orvcomtradeIn(folder.path(), {"export", "a.cfg", "-o", "x.jsonl", "-q"}), "");
    EXPECT_EQ(bytesOf(folder.file("x.jsonl")).substr(0, 8), "{\"time\":");
    expectOutput(orvcomtradeIn(folder.path(), {"export", "a.cfg", "-o", "y.csv", "--sidecar", "-q"}), "");
    EXPECT_EQ(bytesOf(folder.file("y.csv")), csv);
    EXPECT_EQ(nlohmann::json::parse(bytesOf(folder.file("y.json"))).at("table"), "y.csv");
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
    fs::create_symlink("/dev/null", folder.file("device"));
    expectOutput(orvcomtradeIn(folder.path(), {"export", "rec.cfg", "--output", "device"}), "");
    EXPECT_TRUE(fs::is_symlink(folder.file("device")));
}

TEST(CliTargets, LinkIsReplacedAndNotWhatItLeadsTo) {
    const TempDir folder;
    writeRecording(folder, "rec");
    folder.write("old.csv", "old");
    fs::create_symlink("old.csv", folder.file("link"));
    fs::create_symlink("nowhere", folder.file("broken"));
    for (const char* const name : {"link", "broken"}) {
        EXPECT_EQ(orvcomtradeIn(folder.path(), {"export", "rec.cfg", "--output", name, "--force"}).status, 0);
        EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(folder.file(name)))) << name;
    }
    EXPECT_EQ(bytesOf(folder.file("old.csv")), "old");
    EXPECT_FALSE(fs::exists(folder.file("nowhere")));
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

TEST(CliTargets, RecordingThatIsReadUntouchedIsNeverReplacedEither) {
    const TempDir folder;
    writeRecording(folder, "rec");
    const std::string data = bytesOf(folder.file("rec.dat"));
    expectComplaint(orvcomtradeIn(folder.path(), {"export", "--as-is", "rec.cfg", "--output", "rec.dat", "--force"}), 1,
                    "orvcomtrade: rec.dat: not replaced: it is a file of the recording itself\n");
    EXPECT_EQ(bytesOf(folder.file("rec.dat")), data);
}

TEST(CliTargets, FolderThatMayNotBeWrittenToIsReported) {
    const TempDir folder;
    writeRecording(folder, "rec");
    fs::create_directory(folder.file("closed"));
    folder.write("closed/old.csv", "old");
    fs::permissions(folder.file("closed"), fs::perms::owner_read | fs::perms::owner_exec);
    const struct {
        std::vector<std::string> words;
        const char* sentence;
    } cases[] = {
        {{"export", "rec.cfg", "--output", "closed/t.csv"}, "closed/t.csv: cannot be written: Permission denied"},
        {{"export", "rec.cfg", "--output", "closed/old.csv", "--force"},
         "closed/old.csv: cannot be written: Permission denied"},
        {{"normalize", "rec.cfg", "--output", "closed"}, "closed/rec.dat: cannot be written: Permission denied"},
        {{"normalize", "rec.cfg", "--output", "closed/new"}, "closed/new: folder cannot be made: Permission denied"},
    };
    for (const auto& row : cases) {
        expectComplaint(orvcomtradeBoundIn(folder.path(), row.words), 1,
                        std::string("orvcomtrade: ") + row.sentence + "\n");
    }
    fs::permissions(folder.file("closed"), fs::perms::owner_all);
    EXPECT_EQ(contentOf(folder.file("closed")), (Paths{"old.csv"}));
    EXPECT_EQ(bytesOf(folder.file("closed/old.csv")), "old");
}

TEST(CliTargets, FileNamedTwiceIsWrittenOnce) {
    const TempDir folder;
    writeRecording(folder, "rec");
    expectOutput(orvcomtradeIn(folder.path(), {"export", "rec.cfg", "./rec.dat", "rec.cfg", "--output", "out"}),
                 "rec.cfg: written to out/rec.csv\n");
    expectOutput(orvcomtradeIn(folder.path(), {"normalize", "rec.cfg", "rec.cfg", "--output", "out"}),
                 "rec.cfg: written to out/rec.cfg\n");
}

TEST(CliTargets, RecordingsOfOneNameInTwoFoldersKeepTheFoldersNames) {
    const TempDir folder;
    writeRecording(folder, "a/rec");
    writeRecording(folder, "b/rec");
    expectOutput(orvcomtradeIn(folder.path(), {"normalize", "a", "b", "--output", "out"}),
                 "a/rec.cfg: written to out/a/rec.cfg\nb/rec.cfg: written to out/b/rec.cfg\n");
}

TEST(CliTargets, NamesThatOnlyMeetInTheirEndingsAreNotShared) {
    const TempDir folder;
    writeRecording(folder, "in/rec");
    writeRecording(folder, "in/rec.status");
    for (const char* const jobs : {"1", "8"}) {
        const Outcome outcome = orvcomtradeIn(
            folder.path(), {"export", "in", "--format", "npy", "--jobs", jobs, "--output", std::string("out") + jobs});
        EXPECT_EQ(outcome.err, "orvcomtrade: in/rec.status.cfg: would be written to the same file as in/rec.cfg\n");
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(contentOf(folder.file(std::string("out") + jobs)), (Paths{"rec.json", "rec.npy", "rec.status.npy"}));
    }
    EXPECT_EQ(orvcomtradeIn(folder.path(), {"export", "in", "--output", "out"}).status, 0);
}

TEST(CliTargets, TwoRecordingsDoNotShareATarget) {
    const TempDir folder;
    writeRecording(folder, "a/rec");
    writeRecording(folder, "b/rec");
    const Outcome outcome = orvcomtradeIn(folder.path(), {"export", "a/rec.cfg", "b/rec.cfg", "--output", "out"});
    expectOutcome(outcome, 1, "a/rec.cfg: written to out/rec.csv\n",
                  "orvcomtrade: b/rec.cfg: would be written to the same file as a/rec.cfg\n");
}

TEST(CliTargets, FolderOfEarlierOutputIsNotNormalizedAgain) {
    const TempDir folder;
    writeRecording(folder, "in/rec");
    expectOutput(orvcomtradeIn(folder.path(), {"normalize", "in", "--output", "in/clean"}),
                 "in/rec.cfg: written to in/clean/rec.cfg\n");
    const Outcome again = orvcomtradeIn(folder.path(), {"normalize", "in", "--output", "in/clean", "--force"});
    expectOutcome(again, 0, "in/rec.cfg: written to in/clean/rec.cfg\n",
                  "orvcomtrade: in/clean: not searched: the output goes there\n");
    EXPECT_EQ(contentOf(folder.file("in")), (Paths{"clean", "clean/rec.cfg", "clean/rec.dat", "rec.cfg", "rec.dat"}));
    expectOutput(orvcomtradeIn(folder.path(), {"normalize", "in/clean", "--output", "out"}),
                 "in/clean/rec.cfg: written to out/rec.cfg\n");
}

TEST(CliSearch, FolderInPlaceOfAListIsReported) {
    const TempDir folder;
    expectComplaint(orvcomtradeIn(folder.path(), {"list", "--files-from", "."}), 2, "orvcomtrade: .: Is a directory\n");
}

TEST(CliTargets, FileInTheWayOfAFolderIsReported) {
    const TempDir folder;
    writeRecording(folder, "rec");
    folder.write("way", "");
    expectComplaint(orvcomtradeIn(folder.path(), {"normalize", "rec.cfg", "--output", "way/out"}), 1,
                    "orvcomtrade: way/out: no folder can be made here: a file is in the way\n");
}

/// With files that can't grow beyond 8 KiB.
template <class Run> Outcome onFullDisk(Run run) {
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    rlimit small = before;
    small.rlim_cur = 8192;
    setrlimit(RLIMIT_FSIZE, &small);
    Outcome outcome = run();
    setrlimit(RLIMIT_FSIZE, &before);
    return outcome;
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
        const Outcome outcome = onFullDisk([&] { return orvcomtradeIn(folder.path(), command); });
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.out, "");
        EXPECT_NE(outcome.err.find(": cannot be written: File too large\n"), std::string::npos) << outcome.err;
        EXPECT_EQ(contentOf(folder.file("out")), Paths{});
    }
}

TEST(CliTargets, FullDiskKeepsTheFilesThatWereToBeReplaced) {
    const TempDir folder;
    const std::vector<std::vector<std::string>> commands = {
        {"export", kFeeder, "--force", "--output", "out/t.csv"},
        {"export", kFeeder, "--force", "--output", "out/t.npy", "--format", "npy"},
        {"normalize", kFeeder, "--force", "--output", "out"},
    };
    fs::create_directory(folder.file("out"));
    const Paths names = {
        "feeder_earth_fault.cfg", "feeder_earth_fault.dat", "t.csv", "t.json", "t.npy", "t.status.npy"};
    for (const std::string& name : names) {
        folder.write("out/" + name, "old");
    }
    for (const auto& command : commands) {
        SCOPED_TRACE(command[0] + command.back());
        const Outcome outcome = onFullDisk([&] { return orvcomtradeIn(folder.path(), command); });
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(contentOf(folder.file("out")), names);
        for (const std::string& name : names) {
            EXPECT_EQ(bytesOf(folder.file("out/" + name)), "old") << name;
        }
    }
}

/// The words of a command that works on a disk without nameless files.
std::vector<std::string> withoutNamelessFiles(std::vector<std::string> words) {
    words.insert(words.begin(), {"ASAN_OPTIONS=verify_asan_link_order=0",
                                 "LD_PRELOAD=" ORVCOMTRADE_WITHOUT_NAMELESS_FILES, ORVCOMTRADE_PROGRAM});
    return words;
}

TEST(CliTargets, DiskWithoutNamelessFilesGetsWholeFilesToo) {
    const TempDir folder;
    writeRecording(folder, "rec");
    const auto run = [&folder](const std::vector<std::string>& words) {
        return runProgramIn(folder.path(), "/usr/bin/env", withoutNamelessFiles(words));
    };
    const mode_t before = umask(027);
    expectOutput(run({"normalize", "rec.cfg", "--output", "out"}), "rec.cfg: written to out/rec.cfg\n");
    umask(before);
    EXPECT_EQ(fs::status(folder.file("out/rec.cfg")).permissions(), static_cast<fs::perms>(0640));
    expectComplaint(run({"normalize", "rec.cfg", "--output", "out"}), 1,
                    "orvcomtrade: out/rec.dat: exists already; --force replaces it\n");
    expectOutput(run({"normalize", "rec.cfg", "--output", "out", "--force"}), "rec.cfg: written to out/rec.cfg\n");
    EXPECT_EQ(contentOf(folder.file("out")), (Paths{"rec.cfg", "rec.dat"}));
    EXPECT_EQ(bytesOf(folder.file("out/rec.dat")), bytesOf(folder.file("rec.dat")));
}

/// Starts a program in the folder, with its output on the descriptor, which is closed here.
pid_t startIn(const std::string& folder, std::vector<std::string> words, int out) {
    const std::vector<char*> arguments = argumentsOf(words);
    const pid_t child = fork();
    if (child == 0) {
        if (chdir(folder.c_str()) == 0 && dup2(out, STDOUT_FILENO) >= 0) {
            execv(arguments[0], arguments.data());
        }
        _exit(127);
    }
    close(out);
    return child;
}

/// With its output thrown away.
pid_t startIn(const std::string& folder, const std::vector<std::string>& words) {
    return startIn(folder, words, open("/dev/null", O_WRONLY));
}

std::size_t namesIn(const std::string& folder) {
    std::error_code ignored;
    fs::directory_iterator entry(folder, ignored);
    std::size_t count = 0;
    for (; entry != fs::directory_iterator(); entry.increment(ignored)) {
        ++count;
    }
    return count;
}

/// Sends the signal as soon as so many names stand in the folder, and gives how the program ended.
int endWhen(pid_t child, int signal, const std::string& folder, std::size_t names) {
    int status = 0;
    while (waitpid(child, &status, WNOHANG) == 0) {
        if (namesIn(folder) >= names) {
            kill(child, signal);
            waitpid(child, &status, 0);
            break;
        }
        usleep(100);
    }
    return status;
}

void expectWholeTables(const std::string& folder) {
    for (const std::string& name : contentOf(folder)) {
        EXPECT_EQ(fs::path(name).extension(), ".csv") << name;
        EXPECT_EQ(linesOf(bytesOf(folder + "/" + name)).size(), 4U) << name;
    }
}

TEST(CliTargets, InterruptedProgramLeavesNoHalfWrittenFile) {
    const Deadline deadline(120);
    const TempDir folder;
    for (int i = 0; i < 60; ++i) {
        writeRecording(folder, "in/rec" + std::to_string(i));
    }
    std::vector<std::string> words = withoutNamelessFiles({"export", "in", "--output", "out"});
    words.insert(words.begin(), "/usr/bin/env");
    for (const std::size_t names : {1U, 2U, 10U, 40U}) {
        fs::remove_all(folder.file("out"));
        fs::create_directory(folder.file("out"));
        const int status = endWhen(startIn(folder.path(), words), SIGTERM, folder.file("out"), names);
        EXPECT_TRUE(WIFSIGNALED(status) || (WIFEXITED(status) && WEXITSTATUS(status) == 0)) << status;
        expectWholeTables(folder.file("out"));
        const Paths kept = contentOf(folder.file("out"));
        const Outcome rest = orvcomtradeIn(folder.path(), {"export", "in", "--output", "out", "--skip-existing"});
        EXPECT_EQ(rest.status, 0) << rest.err;
        for (const Paths::value_type& name : kept) {
            EXPECT_NE(rest.out.find(": skipped, out/" + name + " is there\n"), std::string::npos) << name;
        }
        EXPECT_EQ(contentOf(folder.file("out")).size(), 60U);
        expectWholeTables(folder.file("out"));
    }
}

TEST(CliTargets, SignalEndsTheProgramAlsoWhereItWaits) {
    const Deadline deadline(30);
    const TempDir folder;
    for (int i = 0; i < 200; ++i) {
        writeRecording(folder, "in/rec" + std::to_string(i));
    }
    fs::create_directory(folder.file("out"));
    int ends[2] = {-1, -1};
    ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
    ASSERT_GE(fcntl(ends[1], F_SETPIPE_SZ, 4096), 4096); // less than the lines of all recordings, which nobody reads
    std::vector<std::string> words = withoutNamelessFiles({"export", "in", "--output", "out"});
    words.insert(words.begin(), "/usr/bin/env");
    const int status = endWhen(startIn(folder.path(), words, ends[1]), SIGTERM, folder.file("out"), 5);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM) << status;
    expectWholeTables(folder.file("out"));
    close(ends[0]);
}

TEST(CliTargets, ProgramThatIsKilledLeavesWholeFilesAlone) {
    const Deadline deadline(120);
    const TempDir folder;
    for (int i = 0; i < 100; ++i) {
        writeRecording(folder, "in/rec" + std::to_string(i));
    }
    for (const std::size_t names : {1U, 5U, 20U, 60U}) {
        fs::remove_all(folder.file("out"));
        fs::create_directory(folder.file("out"));
        endWhen(startIn(folder.path(), {ORVCOMTRADE_PROGRAM, "export", "in", "--output", "out"}), SIGKILL,
                folder.file("out"), names);
        EXPECT_GE(namesIn(folder.file("out")), names);
        expectWholeTables(folder.file("out"));
    }
}

// --- No temporary files ---------------------------------------------------------------------------------------------

/// A recording with carriage returns, and with more values to repair than a small disk holds.
void writeRepairable(const TempDir& folder, const std::string& name) {
    writeRecording(folder, name);
    std::string lines;
    for (int i = 1; i <= 2000; ++i) {
        lines += std::to_string(i) + "," + std::to_string(i * 1000) + ",+7,0\r\n";
    }
    folder.write(name + ".dat", lines);
}

TEST(CliTemporary, RecordingIsRepairedWithoutAFileOnAnyDisk) {
    const TempDir folder;
    writeRepairable(folder, "rec");
    fs::create_directory(folder.file("tmp"));
    for (const char* const temporary : {"TMPDIR=tmp", "TMPDIR=/nowhere"}) {
        for (const char* const command : {"info", "check"}) {
            SCOPED_TRACE(std::string(temporary) + " " + command);
            const std::vector<std::string> words = {temporary,
                                                    "LLVM_PROFILE_FILE=/dev/null", // an instrumented program writes it
                                                    ORVCOMTRADE_PROGRAM, command, "rec.cfg"};
            const Outcome outcome = onFullDisk([&] { return runProgramIn(folder.path(), "/usr/bin/env", words); });
            EXPECT_EQ(outcome.err, "");
            EXPECT_EQ(outcome.status, 0);
        }
    }
    EXPECT_EQ(contentOf(folder.path()), (Paths{"rec.cfg", "rec.dat", "tmp"}));
}

// --- Progress -------------------------------------------------------------------------------------------------------

/// Exit status of the program, with standard error on the terminal, where nobody takes its output for a while and then
/// everybody slowly.
int statusWithSlowReader(const TempDir& folder, std::vector<std::string> words, int err, unsigned int milliseconds) {
    int ends[2] = {-1, -1};
    EXPECT_EQ(pipe2(ends, O_CLOEXEC), 0);
    std::thread reader([&ends, milliseconds] {
        usleep(milliseconds * 1000);
        char piece[4096];
        while (read(ends[0], piece, sizeof piece) > 0) {
            usleep(1000);
        }
    });
    words.insert(words.begin(), ORVCOMTRADE_PROGRAM);
    const int status = runWith(folder.path(), std::move(words), ends[1], err);
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
    EXPECT_EQ(statusWithSlowReader(folder, {"info", "."}, terminal.slave(), 1300), 1);
    const std::string shown = terminal.text();
    close(keptOpen);
    close(terminal.master);
    EXPECT_NE(shown.find("\r["), std::string::npos) << shown;
    EXPECT_NE(shown.find("] "), std::string::npos) << shown;
    EXPECT_NE(shown.find(" of 300 recordings, "), std::string::npos) << shown;
    EXPECT_NE(shown.find(" s, about "), std::string::npos) << shown;
    EXPECT_NE(shown.find(" s left"), std::string::npos) << shown;
    const std::size_t lastBar = shown.rfind("\r[");
    const std::size_t lastErased = shown.rfind("\r\x1B[K");
    EXPECT_LT(lastBar, lastErased) << "the bar is taken away at the end";
    EXPECT_NE(shown.find("\r\x1B[Korvcomtrade: ./"), std::string::npos) << "and before a sentence: " << shown;
}

TEST(CliProgress, BarTellsTheSecondsOfOneLongRecording) {
    const Deadline deadline(60);
    const TempDir folder;
    writeRecording(folder, "rec");
    const Terminal terminal;
    const int keptOpen = terminal.slave();
    EXPECT_EQ(statusWithSlowReader(folder, {"points", "rec.cfg", "1", "--end", "0.002", "--rate", "200000000"},
                                   terminal.slave(), 1300),
              0);
    const std::string shown = terminal.text();
    close(keptOpen);
    close(terminal.master);
    EXPECT_NE(shown.find("\r[..............................] 0 of 1 recording, 1 s"), std::string::npos) << shown;
    EXPECT_NE(shown.find("\r\x1B[K"), std::string::npos) << shown;
}

TEST(CliProgress, NoBarForShortWork) {
    const Deadline deadline(60);
    const TempDir folder;
    writeRecording(folder, "a");
    writeRecording(folder, "b");
    const Terminal terminal;
    const int keptOpen = terminal.slave();
    EXPECT_EQ(statusWithSlowReader(folder, {"info", "."}, terminal.slave(), 0), 0);
    EXPECT_EQ(terminal.text(), "");
    close(keptOpen);
    close(terminal.master);
}

TEST(CliProgress, NoBarWhereStandardErrorIsNoTerminal) {
    const Deadline deadline(60);
    const TempDir folder;
    writeMany(folder);
    EXPECT_EQ(statusWithSlowReader(folder, {"info", "."}, openForOutput(folder.file("stderr")), 1300), 1);
    EXPECT_EQ(bytesOf(folder.file("stderr")).find_first_of("[\r\x1B"), std::string::npos);
}

// --- Arguments ------------------------------------------------------------------------------------------------------

TEST(CliFileArguments, WrongUsageIsStatus2) {
    const struct {
        std::vector<std::string> arguments;
        const char* sentence;
    } cases[] = {
        {{"export", ".", "x"}, "a folder, or several recordings, need --output FOLDER"},
        {{"export", "."}, "a folder, or several recordings, need --output FOLDER"},
        {{"export", "a.cfg", "--format", "npy"}, "--format npy needs --output: it makes three files"},
        {{"export", "a.cfg", "--json"},
         "--json reports which files were written, and needs --output; the data as JSON lines are --format jsonl"},
        {{"normalize", "a.cfg", "--output", "o", "--side", "primary"},
         "--side needs --for library: in the standard's form each channel keeps its side"},
    };
    for (const auto& row : cases) {
        expectComplaint(orvcomtrade(row.arguments), 2, std::string("orvcomtrade: ") + row.sentence + "\n");
    }
    const struct {
        std::vector<std::string> arguments;
        const char* sentence;
    } parsed[] = {
        {{"export", "a.cfg", "--format", "xls"}, "--format: xls is not one of csv, jsonl, npy"},
        {{"normalize", "a.cfg"}, "--output is required"},
        {{"normalize", "a.cfg", "--output", ""}, "--output: the name is empty"},
        {{"normalize", "a.cfg", "--output", "o", "--for", "me"}, "--for: me is not one of library, standard"},
        {{"export", "a.cfg", "--output", ""}, "--output: the name is empty"},
        {{"normalize", "a.cfg", "--output", "o", "--as-is"}, "unknown option '--as-is'"},
        {{"info", "a.cfg", "--side", "left"}, "--side: left is not one of primary, recorded, secondary"},
        {{"info", "a.cfg", "--encoding", "CP-none"}, "--encoding: unknown encoding: CP-none"},
        {{"info", "a.cfg", "--jobs", "0"}, "--jobs: not a whole number from 1 to 256: 0"},
        {{"info", "a.cfg", "--jobs", "-1"}, "--jobs: not a whole number from 1 to 256: -1"},
        {{"info", "a.cfg", "--as-is", "--side", "primary"}, "--side and --as-is cannot be given together"},
        {{"info", "a.cfg", "--as-is", "--encoding", "CP866"}, "--encoding and --as-is cannot be given together"},
    };
    for (const auto& row : parsed) {
        expectComplaint(orvcomtrade(row.arguments), 2,
                        std::string("orvcomtrade: ") + row.sentence + "\nTry orvcomtrade " + row.arguments.front() +
                            " --help.\n");
    }
}

} // namespace
