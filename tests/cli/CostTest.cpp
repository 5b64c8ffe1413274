#include "cli/program.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

// What commands cost, in counted allocations, bytes and listings, never in seconds.

namespace {

using namespace orvtest;

constexpr std::size_t kMebibyte = std::size_t{1} << 20U;

struct Work {
    std::size_t allocations = 0;
    std::size_t peak = 0;    ///< bytes
    std::size_t folders = 0; ///< listed
    std::size_t looks = 0;   ///< at what a name is of, links not followed
    Outcome outcome;
};

Work workOf(const TempDir& folder, std::vector<std::string> words) {
    const TempDir place;
    words.emplace_back("--no-sandbox"); // the counts are written at the end
    words.insert(words.begin(), {"LD_PRELOAD=" ORVCOMTRADE_COUNTED_WORK, "ORVCOMTRADE_COUNTS=" + place.file("counts"),
                                 ORVCOMTRADE_PROGRAM});
    Work work{0, 0, 0, 0, runProgramIn(folder.path(), "/usr/bin/env", words)};
    std::ifstream counts(place.file("counts"));
    counts >> work.allocations >> work.peak >> work.folders >> work.looks;
    EXPECT_TRUE(counts.good()) << work.outcome.err;
    return work;
}

std::string tail(const std::string& rate, const std::string& type) {
    return "50\n1\n" + rate + "\n01/01/2020,00:00:00.000000\n01/01/2020,00:00:00.000000\n" + type + "\n1\n";
}

std::string statusConfiguration(std::size_t channels, std::size_t samples) {
    const std::string count = std::to_string(channels);
    std::string text = "S,R,1999\n" + count + ",0A," + count + "D\n";
    for (std::size_t i = 0; i < channels; ++i) {
        text += "1,\n";
    }
    return text + tail("1000," + std::to_string(samples), "BINARY");
}

/// All channels change from each record to the next.
std::string changingRecords(std::size_t channels, std::size_t samples) {
    std::string bytes;
    for (std::size_t i = 0; i < samples; ++i) {
        for (const std::size_t field : {i + 1, i * 1000}) {
            for (unsigned int shift = 0; shift < 32; shift += 8) {
                bytes += static_cast<char>(field >> shift & 0xFFU);
            }
        }
        bytes.append((channels + 15) / 16 * 2, i % 2 == 0 ? '\0' : '\xFF');
    }
    return bytes;
}

void writeChanging(const TempDir& folder, std::size_t channels, std::size_t samples) {
    folder.write("rec.cfg", statusConfiguration(channels, samples));
    folder.write("rec.dat", changingRecords(channels, samples));
}

TEST(CommandCost, MemoryDoesNotGrowWithTheChangesOfState) {
    for (const std::vector<std::string>& command : {std::vector<std::string>{"events", "rec.cfg"},
                                                    {"events", "--json", "rec.cfg"},
                                                    {"export", "rec.cfg"},
                                                    {"check", "rec.cfg"},
                                                    {"info", "rec.cfg"}}) {
        SCOPED_TRACE(command[0]);
        const TempDir folder;
        writeChanging(folder, 4, 5000);
        const Work some = workOf(folder, command);
        writeChanging(folder, 4, 20000);
        const Work more = workOf(folder, command);
        EXPECT_LE(more.peak, some.peak + kMebibyte / 4);
        EXPECT_LE(more.peak, 16 * kMebibyte);
        EXPECT_LE(more.allocations, 5 * some.allocations);
    }
}

TEST(CommandCost, WideRecordingsOfShortLinesCostInProportion) {
    for (const std::string command : {"info", "check", "events"}) {
        SCOPED_TRACE(command);
        const TempDir folder;
        writeChanging(folder, 2000, 2);
        const Work some = workOf(folder, {command, "rec.cfg"});
        writeChanging(folder, 8000, 2);
        const Work more = workOf(folder, {command, "rec.cfg"});
        EXPECT_LE(more.allocations, 5 * some.allocations);
        EXPECT_LE(more.peak, 5 * some.peak);
    }
}

TEST(CommandCost, ALongNameIsNotRepeatedForEveryChannel) {
    const TempDir folder;
    const std::string name(100000, 'x');
    std::string text = statusConfiguration(1000, 2);
    text.replace(text.find("\n1,\n") + 3, 0, name);
    folder.write("rec.cfg", text);
    folder.write("rec.dat", changingRecords(1000, 2));
    const std::string shown = std::string(117, 'x') + "...";
    for (const std::string command : {"info", "events"}) {
        const Work work = workOf(folder, {command, "rec.cfg"});
        EXPECT_EQ(work.outcome.status, 0);
        EXPECT_NE(work.outcome.out.find(' ' + shown + ' '), std::string::npos) << command;
        EXPECT_LE(work.outcome.out.size(), 300 * kMebibyte / 1024) << command;
        EXPECT_LE(work.peak, 8 * kMebibyte) << command;
    }
    EXPECT_NE(orvcomtradeIn(folder.path(), {"info", "--json", "rec.cfg"}).out.find('"' + name + '"'),
              std::string::npos);
}

TEST(CommandCost, PointsObeyTheirLimitAtAnyRate) {
    const TempDir folder;
    folder.write("rec.cfg", "S,R,1999\n1,1A,0D\n1,U,,,V,1,0,0,0,0,1,1,S\n50\n1\n0,2\n01/01/2020,00:00:00.000000\n"
                            "01/01/2020,00:00:00.000000\nASCII\n5000000\n");
    folder.write("rec.dat", "1,0,1\n2,4294967294,2\n");
    const Work work = workOf(folder, {"points", "rec.cfg", "1", "--rate", "1"});
    expectComplaint(work.outcome, 2,
                    "orvcomtrade: this range at this --rate has 2.15e+10 points; at most 10000000 are printed\n");
    EXPECT_LE(work.peak, 4 * kMebibyte);
    EXPECT_EQ(orvcomtradeIn(folder.path(), {"points", "rec.cfg", "1", "--rate", "1e-13"}).status, 0);
}

TEST(CommandCost, AFolderIsListedOnceForAllItsRecordings) {
    const auto work = [](std::size_t recordings, const std::string& command) {
        const TempDir folder;
        for (std::size_t i = 0; i < recordings; ++i) { // without data, whose near misses are looked for
            folder.write("rec" + std::to_string(i) + ".cfg",
                         "S,R,1999\n1,1A,0D\n1,U,,,V,1,0,0,0,0,1,1,S\n" + tail("1000,2", "ASCII"));
        }
        return workOf(folder, {command, "--jobs", "2", "."});
    };
    for (const std::string command : {"check", "info"}) {
        const Work some = work(125, command);
        const Work more = work(250, command);
        EXPECT_EQ(some.folders, more.folders) << command;
        EXPECT_EQ(more.folders, 2U) << command;
        EXPECT_LE(more.allocations, 21 * some.allocations / 10) << command;
        EXPECT_LE(more.peak, some.peak + kMebibyte / 2) << command; // their paths, and what awaits its turn
    }
}

TEST(CommandCost, ASearchLooksOnceForEachRecordingAndNotAtOtherFiles) {
    const TempDir folder;
    const auto work = [&folder](std::size_t recordings) {
        for (std::size_t i = 0; i < recordings; ++i) {
            for (const std::string ending : {".cfg", ".dat", ".hdr", ".txt"}) {
                folder.write("rec" + std::to_string(i) + ending, "");
            }
        }
        return workOf(folder, {"check", "--jobs", "1", "."});
    };
    const std::size_t some = work(100).looks;
    const std::size_t more = work(300).looks;
    EXPECT_GE(more, 300U); // else they are not counted
    EXPECT_EQ(more - some, 200U);
}

TEST(CommandCost, RecordingsOfAFolderAreLookedAtWithoutSamples) {
    const TempDir folder;
    for (std::size_t i = 0; i < 10; ++i) {
        folder.write("rec" + std::to_string(i) + ".cfg", statusConfiguration(16, 20000));
        folder.write("rec" + std::to_string(i) + ".dat", changingRecords(16, 20000));
    }
    for (const std::string command : {"check", "info"}) { // a sample takes more than 88 bytes
        EXPECT_LE(workOf(folder, {command, "--jobs", "1", "."}).peak, 2 * kMebibyte) << command;
    }
}

TEST(CommandLimit, IsToldWithItsNameAndCanBeRaised) {
    const TempDir folder;
    writeSmall(folder, "S", "a", "b", kFourLines);
    const Outcome outcome = orvcomtradeIn(folder.path(), {"info", "rec.cfg", "--limit", "channels=2"});
    expectComplaint(
        outcome, 1,
        "orvcomtrade: rec.cfg:3:channels: at most 2 channels expected, found 3 channels: raise the limit of "
        "this name if the file is a recording\n");
    EXPECT_EQ(orvcomtradeIn(folder.path(), {"info", "--limit", "channels=3", "--limit", "samples=4", "rec.cfg"}).status,
              0);
    EXPECT_EQ(orvcomtradeIn(folder.path(), {"info", "--limit", "samples=3", "rec.cfg"}).status, 1);
    for (const std::string wrong : {"channels", "channel=3", "channels=", "channels=3x", "channels=-1", "=3"}) {
        EXPECT_EQ(orvcomtradeIn(folder.path(), {"info", "--limit", wrong, "rec.cfg"}).status, 2) << wrong;
    }
}

} // namespace
