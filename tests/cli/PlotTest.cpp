// plot, as its users call it. What its pictures show is tested in tests/picture.

#include "cli/program.h"
#include "support/TempDir.h"
#include "support/files.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace orvtest;

bool isSvg(const std::string& text) {
    const std::string end = "</svg>\n";
    return text.rfind("<svg ", 0) == 0 && text.size() > end.size() &&
           text.compare(text.size() - end.size(), end.size(), end) == 0;
}

/// Another PATH while it lives.
class Path {
public:
    explicit Path(const std::string& folders) : _before(std::getenv("PATH")) { // NOLINT(concurrency-mt-unsafe)
        setenv("PATH", folders.c_str(), 1);                                    // NOLINT(concurrency-mt-unsafe)
    }
    ~Path() { setenv("PATH", _before.c_str(), 1); } // NOLINT(concurrency-mt-unsafe)
    Path(const Path&) = delete;
    Path& operator=(const Path&) = delete;
    Path(Path&&) = delete;
    Path& operator=(Path&&) = delete;

private:
    const std::string _before;
};

void writeProgram(const TempDir& folder, const std::string& name, const std::string& script) {
    folder.write(name, "#!/bin/sh\n" + script);
    chmod(folder.file(name).c_str(), 0755);
}

TEST(Plot, FormatFollowsTheExtensionAndStandardOutputGetsSvg) {
    const TempDir folder;
    EXPECT_TRUE(isSvg(orvcomtradeIn(folder.path(), {"plot", kFeeder}).out));
    EXPECT_EQ(orvcomtradeIn(folder.path(), {"plot", kFeeder, "-o", "a.svg"}).out, kFeeder + ": written to a.svg\n");
    EXPECT_TRUE(isSvg(bytesOf(folder.file("a.svg"))));
    EXPECT_EQ(orvcomtradeIn(folder.path(), {"plot", kFeeder, "-o", "a.txt"}).status, 0);
    EXPECT_EQ(bytesOf(folder.file("a.txt")), orvcomtradeIn(folder.path(), {"plot", kFeeder, "-f", "text"}).out);
    EXPECT_EQ(orvcomtradeIn(folder.path(), {"plot", kFeeder, "-f", "svg", "-o", "b.txt"}).status, 0);
    EXPECT_TRUE(isSvg(bytesOf(folder.file("b.txt"))));
}

TEST(Plot, FolderOfRecordingsBecomesAFolderOfPicturesWhateverFails) {
    const TempDir folder;
    fs::copy(kRecordings, folder.file("in"));
    folder.write("in/broken.cfg", "S,R,1999\nno counts\n");
    folder.write("in/empty.cfg", "S,R,1999\n1,1A,0D\n1,U,,,V,1,0,0,-9,9,1,1,S\n50\n1\n1000,0\n"
                                 "01/02/2020,10:00:00.000000\n01/02/2020,10:00:00.000000\nASCII\n1\n");
    folder.write("in/empty.dat", "");
    const Outcome outcome = orvcomtradeIn(folder.path(), {"plot", "in", "-o", "out", "--jobs", "3"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "in/feeder_earth_fault.cfg: written to out/feeder_earth_fault.svg\n"
                           "in/line_two_phase_fault.cfg: written to out/line_two_phase_fault.svg\n"
                           "in/transformer_inrush.cfg: written to out/transformer_inrush.svg\n");
    EXPECT_NE(outcome.err.find("in/broken.cfg:2:"), std::string::npos) << outcome.err;
    EXPECT_NE(outcome.err.find("orvcomtrade: in/empty.cfg: nothing to draw: it has no samples\n"), std::string::npos)
        << outcome.err;
    for (const char* const name : {"feeder_earth_fault", "line_two_phase_fault", "transformer_inrush"}) {
        EXPECT_TRUE(isSvg(bytesOf(folder.file("out/" + std::string(name) + ".svg")))) << name;
    }
    EXPECT_FALSE(fs::exists(folder.file("out/empty.svg")));
    const Outcome again = orvcomtradeIn(folder.path(), {"plot", "in/feeder_earth_fault.cfg", "-o", "out"});
    EXPECT_EQ(again.status, 1);
    EXPECT_NE(again.err.find("out/feeder_earth_fault.svg"), std::string::npos);
    EXPECT_EQ(orvcomtradeIn(folder.path(), {"plot", "in/feeder_earth_fault.cfg", "-o", "out", "--force", "--json"}).out,
              "{\"path\":\"in/feeder_earth_fault.cfg\",\"ok\":true,\"files\":[\"out/feeder_earth_fault.svg\"]}\n");
}

TEST(Plot, WhatCannotBeDoneIsRefusedBeforeAnythingIsRead) {
    const struct {
        std::vector<std::string> arguments;
        const char* sentence;
    } rows[] = {
        {{kFeeder, kLine}, "a folder, or several recordings, need --output FOLDER"},
        {{kFeeder, "--json"}, "--json reports which files were written, and needs --output"},
        {{kFeeder, "-s", "0.2", "-e", "0.1"}, "--end must not lie before --start"},
        {{kFeeder, "-s", "nan"}, "--start and --end must be finite numbers"},
        {{kFeeder, "--width", "39"}, "--width must be from 40 to 20000, --height from 10 to 20000"},
        {{kFeeder, "--height", "inf"}, "--width must be from 40 to 20000, --height from 10 to 20000"},
    };
    for (const auto& row : rows) {
        std::vector<std::string> arguments = {"plot"};
        arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
        const Outcome outcome = orvcomtrade(arguments);
        EXPECT_EQ(outcome.status, 2) << row.sentence;
        EXPECT_EQ(outcome.out, "") << row.sentence;
        EXPECT_NE(outcome.err.find(row.sentence), std::string::npos) << outcome.err;
    }
}

TEST(Plot, ChannelsAreNamedAsEverywhere) {
    const std::string one = orvcomtrade({"plot", kFeeder, "-c", "4", "-c", "UA", "--status", "Trip"}).out;
    EXPECT_NE(one.find(">3I0<"), std::string::npos);
    EXPECT_NE(one.find(">UA<"), std::string::npos);
    EXPECT_EQ(one.find(">UB<"), std::string::npos);
    EXPECT_NE(one.find(">Trip, Feeder 4<"), std::string::npos);
    EXPECT_EQ(one.find("Reclose"), std::string::npos);
    const std::string none = orvcomtrade({"plot", kFeeder, "-c", "none"}).out;
    EXPECT_EQ(none.find(">UA<"), std::string::npos);
    EXPECT_NE(none.find(">Reclose<"), std::string::npos);
    const Outcome outcome = orvcomtrade({"plot", kFeeder, "-c", "ID"});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_NE(outcome.err.find("\"ID\""), std::string::npos) << outcome.err;
}

TEST(Plot, RangeOutsideTheRecordingIsAReasonToFail) {
    const Outcome outcome = orvcomtrade({"plot", kFeeder, "-s", "5", "-e", "6"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "orvcomtrade: " + kFeeder +
                               ": nothing to draw: no sample lies in this window; the recording runs from 0 s to "
                               "0.699 s\n");
}

TEST(Plot, TimesCountFromWhatTimeSaysInRangesToo) {
    const std::string whole = orvcomtrade({"plot", kFeeder, "--start", "0.066", "--end", "0.086"}).out;
    const Outcome outcome =
        orvcomtrade({"plot", kFeeder, "--time", "trigger", "--start=-0.01", "--end", "0.01", "-f", "text"});
    EXPECT_NE(whole.find("From 0.066 to 0.086 s."), std::string::npos);
    EXPECT_NE(outcome.out.find("         time from trigger, ms\nDrawn: 0.066 to 0.086 s of 0.699 s.\n"),
              std::string::npos)
        << outcome.out;
    const TempDir folder;
    writeSmall(folder, "S,R", "U", "I", kFourLines);
    std::string cfg = bytesOf(folder.file("rec.cfg"));
    cfg.replace(cfg.rfind("01/01/2020"), 10, "00/00/0000");
    folder.write("rec.cfg", cfg);
    expectComplaint(orvcomtradeIn(folder.path(), {"plot", "rec.cfg", "--time", "trigger", "-s", "0"}), 1,
                    "orvcomtrade: rec.cfg: the time of its trigger is not known\n");
}

TEST(Plot, UtcNeedsATimeCode) {
    const std::string utc = orvcomtrade({"plot", kInrush, "--time", "utc"}).out;
    EXPECT_NE(utc.find(">time, 2024-06-21 UTC<"), std::string::npos);
    EXPECT_NE(utc.find(">trigger 09:30:02.250<"), std::string::npos);
    EXPECT_NE(orvcomtrade({"plot", kInrush, "--time", "absolute"}).out.find(">trigger 11:30:02.250<"),
              std::string::npos);
    expectComplaint(orvcomtrade({"plot", kLine, "--time", "utc"}), 1,
                    "orvcomtrade: " + kLine +
                        ": no time code is recorded, so UTC is not known; --time absolute shows the "
                        "recorder's clock\n");
}

TEST(View, ShowsTheSideFirstThatWasAskedFor) {
    const TempDir folder;
    for (const char* const side : {"", "primary", "secondary"}) {
        const std::string name = std::string("a") + side + ".html";
        std::vector<std::string> arguments = {"view", kFeeder, "-o", name};
        if (*side != '\0') {
            arguments.insert(arguments.end(), {"--side", side});
        }
        EXPECT_EQ(orvcomtradeIn(folder.path(), arguments).status, 0) << side;
        EXPECT_NE(bytesOf(folder.file(name)).find("\"index\":\"\",\"side\":\"" + std::string(side) + "\""),
                  std::string::npos)
            << side;
    }
    for (const char* const side : {"recorded", "primary"}) {
        const std::string made = orvcomtradeIn(folder.path(), {"report", kFeeder, "-o", "site", "--side", side}).out;
        EXPECT_NE(made.find(": written to "), std::string::npos) << made;
    }
}

TEST(Plot, PngIsMadeByAnotherProgram) {
    const TempDir folder;
    const TempDir programs;
    const Path path(programs.path() + ":/bin:/usr/bin");
    writeProgram(programs, "rsvg-convert", "[ \"$*\" = --format=png ] && printf PNG && head -c 5");
    EXPECT_EQ(orvcomtradeIn(folder.path(), {"plot", kRecordings, "-f", "png", "-o", "out"}).status, 0);
    EXPECT_EQ(bytesOf(folder.file("out/line_two_phase_fault.png")), "PNG<svg ");
    EXPECT_EQ(orvcomtradeIn(folder.path(), {"plot", kLine, "-f", "png"}).out, "PNG<svg ");
    writeProgram(programs, "rsvg-convert", "exit 1");
    const Outcome outcome = orvcomtradeIn(folder.path(), {"plot", kLine, "-o", "a.png"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "orvcomtrade: " + kLine + ": rsvg-convert made no picture of it\n");
    EXPECT_FALSE(fs::exists(folder.file("a.png")));
}

TEST(Plot, StreamsHaveTheSameNamesAsForAnExport) {
    const TempDir folder;
    const std::string svg = orvcomtradeIn(folder.path(), {"plot", kLine, "-f", "svg"}).out;
    for (const char* const target : {"-", "/dev/stdout", "/dev/fd/1"}) {
        expectOutput(orvcomtradeIn(folder.path(), {"plot", kLine, "-f", "svg", "-o", target}), svg);
    }
    EXPECT_EQ(orvcomtradeIn(folder.path(), {"plot", kLine, "-f", "svg", "-o", "/dev/fd/2"}).err, svg);
    EXPECT_TRUE(fs::is_empty(folder.path()));
}

TEST(Plot, WithoutTheOtherProgramThereIsNoPng) {
    const TempDir folder;
    const Path path(folder.path());
    const Outcome outcome = orvcomtradeIn(folder.path(), {"plot", kLine, "-o", "a.png"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "orvcomtrade: PNG needs the program rsvg-convert, which is not installed (Debian has it in "
                           "librsvg2-bin); SVG needs no other program\n");
}

} // namespace
