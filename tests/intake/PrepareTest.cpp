#include "Comtrade.h"
#include "Intake.h"
#include "intake/preparedChecks.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

using OrvComtradeIntake::Finding;
using OrvComtradeIntake::Options;
using OrvComtradeIntake::prepare;
using OrvComtradeIntake::PreparedRecording;
using OrvComtradeIntake::Severity;
using orvtest::TempDir;

namespace fs = std::filesystem;

namespace {

const std::string kData = "1,0,5\n2,1000,6\n3,2000,7\n";

std::string cfgOf(const std::string& type, const std::string& lineEnd = "\n") {
    std::string cfg;
    for (const std::string& line :
         {std::string("S,R,1999"), std::string("1,1A,0D"), std::string("1,U,,,V,2,0,0,-9,9,1,1,S"), std::string("50"),
          std::string("1"), std::string("1000,3"), std::string("02/03/2020,04:05:06.7"),
          std::string("02/03/2020,04:05:06.8"), type, std::string("1")}) {
        cfg += line + lineEnd;
    }
    return cfg;
}

std::vector<std::string> codesOf(const PreparedRecording& recording) {
    std::vector<std::string> codes;
    for (const Finding& finding : recording.findings) {
        codes.push_back(finding.code);
    }
    return codes;
}

std::string bytesOf(const std::string& file) {
    std::ifstream in(file, std::ios_base::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

} // namespace

TEST(Prepare, RecordingThatNeedsNothingIsUsedAsItIs) {
    const TempDir folder;
    const std::string cfg = folder.write("a.cfg", cfgOf("ASCII"));
    folder.write("a.dat", kData);
    const PreparedRecording recording = prepare(cfg);
    EXPECT_TRUE(recording.isOriginal());
    EXPECT_EQ(recording.path, cfg);
    EXPECT_EQ(codesOf(recording), std::vector<std::string>());
    EXPECT_EQ(recording.samplesDeclared, 3U);
    EXPECT_EQ(recording.samplesPresent, 3U);
    EXPECT_EQ(recording.dataType, "ASCII");
    ASSERT_TRUE(recording.start);
    EXPECT_EQ(recording.start->text(), "2020-03-02T04:05:06.700000000");
}

TEST(Prepare, GoodDataAreLinkedIntoAPrivateFolderThatGoesWithTheResult) {
    const TempDir folder;
    const TempDir parent;
    folder.write("a.cfg", cfgOf("ASCII", "\r\n"));
    const std::string data = folder.write("a.dat", kData);
    Options options;
    options.scratchFolder = parent.path();
    {
        const PreparedRecording recording = prepare(folder.file("a.dat"), options);
        EXPECT_FALSE(recording.isOriginal());
        EXPECT_EQ(codesOf(recording), std::vector<std::string>{"line-ends"});
        const fs::path scratch = recording.scratch.path();
        EXPECT_EQ(scratch.parent_path(), fs::path(parent.path()));
        EXPECT_EQ(fs::status(scratch).permissions(), fs::perms::owner_all);
        EXPECT_EQ(fs::read_symlink(scratch / "a.dat"), fs::path(data));
        OrvComtradeLib::Comtrade loaded;
        EXPECT_EQ(loaded.load(recording.path), 0);
        ASSERT_EQ(loaded.dat.samples.size(), 3U);
        EXPECT_EQ(loaded.dat.samples[2].analogValues, std::vector<double>{14.0});
    }
    EXPECT_TRUE(fs::is_empty(parent.path()));
    EXPECT_EQ(bytesOf(folder.file("a.cfg")), cfgOf("ASCII", "\r\n"));
    EXPECT_EQ(bytesOf(data), kData);
}

TEST(Prepare, LinesUnderABinaryTypeWordAreReadAsLines) {
    for (const char* type : {"BINARY", "BINARY32", "FLOAT32"}) {
        const TempDir folder;
        folder.write("a.cfg", cfgOf(type));
        folder.write("a.dat", kData);
        const PreparedRecording recording = prepare(folder.file("a.cfg"));
        EXPECT_EQ(codesOf(recording), std::vector<std::string>{"type-word"}) << type;
        OrvComtradeLib::Comtrade loaded;
        EXPECT_EQ(loaded.load(recording.path), 0) << type;
        ASSERT_EQ(loaded.dat.samples.size(), 3U) << type;
        EXPECT_EQ(loaded.dat.samples[1].analogValues, std::vector<double>{12.0}) << type;
    }
}

TEST(Prepare, WhatIsReadWithDecimalCommasAndAQualifiedUnitNeedsNoSecondMend) {
    const TempDir folder;
    const TempDir again;
    const std::string cfg = "S,R,1999\n1,1A,0D\n1,U,A,,kVrms,0,5,0,0,-9,9,110,0,1,S\n50,0\n1\n1000,0,3\n"
                            "02-Mar-2020 04:05:06,7\n2020-03-02T24:00:00Z\nASCII\n1,0\n";
    folder.write("a.cfg", cfg);
    folder.write("a.dat", kData);
    const PreparedRecording recording = prepare(folder.file("a.cfg"));
    OrvComtradeLib::Comtrade loaded;
    ASSERT_EQ(loaded.load(recording.path), 0);
    ASSERT_EQ(loaded.dat.samples.size(), 3U);
    EXPECT_EQ(loaded.dat.samples[2].analogValues, std::vector<double>{3500.0});
    EXPECT_EQ(loaded.analogChannels.at(0).unit(), "Vrms");
    EXPECT_EQ(loaded.cfg.lineFrequency, 50.0);
    EXPECT_EQ(loaded.cfg.timeMultiplier, 1.0);
    EXPECT_EQ(recording.start->text(), "2020-03-02T04:05:06.700000000");
    EXPECT_EQ(recording.trigger->text(), "2020-03-03T00:00:00.000000000");
    again.write("a.dat", kData);
    const PreparedRecording second = prepare(again.write("a.cfg", bytesOf(recording.path)));
    EXPECT_EQ(codesOf(second), std::vector<std::string>());
    EXPECT_TRUE(second.isOriginal());
}

TEST(Prepare, LinesBehindAByteOrderMarkAreReadWhateverTheTypeWord) {
    for (const char* type : {"ASCII", "BINARY"}) {
        const TempDir folder;
        folder.write("a.cfg", cfgOf(type));
        folder.write("a.dat", "\xEF\xBB\xBF" + kData);
        const PreparedRecording recording = prepare(folder.file("a.cfg"));
        EXPECT_EQ(codesOf(recording).back(), "byte-order-mark") << type;
        OrvComtradeLib::Comtrade loaded;
        EXPECT_EQ(loaded.load(recording.path), 0) << type;
        ASSERT_EQ(loaded.dat.samples.size(), 3U) << type;
        EXPECT_EQ(loaded.dat.samples[0].analogValues, std::vector<double>{10.0}) << type;
    }
}

TEST(Prepare, ByteOrderMarkBeforeTheDataOfACombinedFileIsLeftOut) {
    const TempDir folder;
    const std::string head = "--- file type: CFG ---\n" + cfgOf("ASCII") + "--- file type: DAT ASCII ---\n";
    const PreparedRecording recording = prepare(folder.write("a.cff", head + "\xEF\xBB\xBF" + kData));
    EXPECT_EQ(codesOf(recording), (std::vector<std::string>{"cff", "byte-order-mark"}));
    EXPECT_EQ(recording.findings[1].offset, head.size());
    OrvComtradeLib::Comtrade loaded;
    EXPECT_EQ(loaded.load(recording.path), 0);
    ASSERT_EQ(loaded.dat.samples.size(), 3U);
    EXPECT_EQ(loaded.dat.samples[0].analogValues, std::vector<double>{10.0});
}

TEST(Prepare, LineEndsOfTheDataOfACombinedFileAreToldApart) {
    const TempDir folder;
    const std::string head = "--- file type: CFG ---\r\n" + cfgOf("ASCII", "\r\n") + "--- file type: DAT ASCII ---\r\n";
    const PreparedRecording recording = prepare(folder.write("a.cff", head + "1,0,5\r\n2,1000,6\r3,2000,7\r\n"));
    ASSERT_EQ(codesOf(recording), (std::vector<std::string>{"cff", "line-ends", "line-ends"}));
    EXPECT_EQ(recording.findings[2].field, "DAT");
    EXPECT_EQ(recording.findings[2].line, 3U);
    EXPECT_EQ(recording.findings[2].offset, head.size() + 16);
    EXPECT_EQ(recording.findings[2].found, "CR alone at the end");
    EXPECT_EQ(recording.samplesPresent, 3U);
}

TEST(Prepare, CommaAtTheEndOfEachLineLeavesTheOriginalAsItIs) {
    const TempDir folder;
    const std::string cfg = folder.write("a.cfg", cfgOf("ASCII"));
    folder.write("a.dat", "1,0,5,\n2,1000,6,\n3,2000,7,\n");
    const PreparedRecording recording = prepare(cfg);
    EXPECT_TRUE(recording.isOriginal());
    EXPECT_EQ(codesOf(recording), std::vector<std::string>{"surplus-columns"});
    EXPECT_EQ(recording.findings[0].done, "not read");
    OrvComtradeLib::Comtrade loaded;
    EXPECT_EQ(loaded.load(recording.path), 0);
    ASSERT_EQ(loaded.dat.samples.size(), 3U);
    EXPECT_EQ(loaded.dat.samples[2].analogValues, std::vector<double>{14.0});
}

TEST(Prepare, TimesAreThoseThatTheStampsSay) {
    struct Row {
        const char* why;
        const char* multiplier;
        std::string data;
        std::vector<std::string> codes;
        std::vector<double> times; ///< in microseconds
    };
    const Row rows[] = {
        {"decimals", "1", "1,0,5\n2,0.25,6\n3,0.5,7\n", {"stamp-decimals"}, {0.0, 0.25, 0.5}},
        {"milliseconds", "1000", "1,0,5\n2,0.625,6\n3,1.25,7\n", {"stamp-decimals"}, {0.0, 625.0, 1250.0}},
        {"exponents", "1", "1,1e3,5\n2,1.5e3,6\n3,2e3,7\n", {"stamp-decimals"}, {1000.0, 1500.0, 2000.0}},
        {"a tiny multiplier", "3e-308", "1,0,5\n2,0.25,6\n3,0.5,7\n", {"stamp-decimals"}, {0.0, 0.0, 0.0}},
        {"negative", "1", "1,-200,5\n2,-100,6\n3,0,7\n", {"stamp-negative"}, {0.0, 100.0, 200.0}},
        {"negative decimals",
         "2.5",
         "1,-0.5,5\n2,0,6\n3,0.5,7\n",
         {"stamp-decimals", "stamp-negative"},
         {0.0, 1.25, 2.5}},
        {"counts with a sign that begin again",
         "1",
         "1,2147483647,5\n2,-2147483648,6\n3,-2147483647,7\n",
         {"stamp-wrap"},
         {2147483647.0, 2147483648.0, 2147483649.0}},
        {"wide",
         "1",
         "1,5000000000,5\n2,5000000100,6\n3,5000000200,7\n",
         {"stamp-wide"},
         {5000000000.0, 5000000100.0, 5000000200.0}},
        {"constant", "1", "1,7,5\n2,7,6\n3,7,7\n", {"stamp-constant"}, {7.0, 7.0, 7.0}},
    };
    for (const Row& row : rows) {
        const TempDir folder;
        const std::string multiplier = std::string("\n") + row.multiplier + "\n";
        std::string cfg = cfgOf("ASCII");
        cfg.replace(cfg.find("1\n1000,3"), 8, "0\n0,3");
        cfg.replace(cfg.rfind("\n1\n"), 3, multiplier);
        folder.write("a.cfg", cfg);
        folder.write("a.dat", row.data);
        const PreparedRecording recording = prepare(folder.file("a.cfg"));
        EXPECT_EQ(codesOf(recording), row.codes) << row.why;
        OrvComtradeLib::Comtrade loaded;
        ASSERT_EQ(loaded.load(recording.path), 0) << row.why;
        ASSERT_EQ(loaded.dat.samples.size(), row.times.size()) << row.why;
        for (std::size_t i = 0; i < row.times.size(); ++i) {
            EXPECT_NEAR(loaded.dat.samples[i].time, row.times[i] * 1e-6, row.times[i] * 1e-18 + 1e-300) << row.why;
        }
        const TempDir other;
        const PreparedRecording again = prepare(orvtest::copyOfPair(recording, other));
        EXPECT_TRUE(again.isOriginal()) << row.why;
        EXPECT_EQ(orvtest::mendedText(again), "") << row.why;
    }
}

TEST(Prepare, StampsWithDecimalsChangeNoTimeWhereTheRateIsKnown) {
    const TempDir folder;
    folder.write("a.cfg", cfgOf("ASCII"));
    folder.write("a.dat", "1,0.5,5\n2,1000.25,6\n3,2000,7\n");
    const PreparedRecording recording = prepare(folder.file("a.cfg"));
    EXPECT_EQ(codesOf(recording), std::vector<std::string>{"stamp-decimals"});
    OrvComtradeLib::Comtrade loaded;
    ASSERT_EQ(loaded.load(recording.path), 0);
    EXPECT_EQ(loaded.cfg.timeMultiplier, 1.0);
    ASSERT_EQ(loaded.dat.samples.size(), 3U);
    EXPECT_EQ(loaded.dat.samples[1].time, 0.001);
    EXPECT_EQ(loaded.dat.samples[2].time, 0.002);
    EXPECT_EQ(loaded.dat.samples[1].analogValues, std::vector<double>{12.0});
}

TEST(Prepare, ConfigurationAloneLoadsWithoutSamples) {
    const TempDir folder;
    const PreparedRecording recording = prepare(folder.write("a.cfg", cfgOf("BINARY")));
    EXPECT_EQ(codesOf(recording), std::vector<std::string>{"no-data"});
    EXPECT_EQ(recording.samplesDeclared, 3U);
    EXPECT_EQ(recording.samplesPresent, 0U);
    OrvComtradeLib::Comtrade loaded;
    EXPECT_EQ(loaded.load(recording.path), 0);
    EXPECT_EQ(loaded.analogChannels.size(), 1U);
    EXPECT_EQ(loaded.dat.samples.size(), 0U);
}

TEST(Prepare, WhatCannotBeReadHasAnErrorAndNoPath) {
    const TempDir folder;
    for (const std::string& path : {folder.file("absent.cfg"), folder.write("a.cfg", ""), folder.write("b.cfg", "S\n"),
                                    folder.write("c.dat", kData), folder.path()}) {
        const PreparedRecording recording = prepare(path);
        EXPECT_FALSE(recording.readable()) << path;
        EXPECT_TRUE(std::any_of(recording.findings.begin(), recording.findings.end(), [](const Finding& finding) {
            return finding.severity == Severity::Error;
        })) << path;
    }
}

TEST(Prepare, UnknownEncodingIsAnInvalidArgument) {
    const TempDir folder;
    folder.write("a.cfg", cfgOf("ASCII"));
    folder.write("a.dat", kData);
    Options options;
    options.encoding = "no such encoding";
    EXPECT_THROW(prepare(folder.file("a.cfg"), options), std::invalid_argument);
}

TEST(Prepare, ScratchFolderThatCannotBeMadeIsASystemError) {
    const TempDir folder;
    folder.write("a.cfg", cfgOf("ASCII", "\r\n"));
    folder.write("a.dat", kData);
    Options options;
    options.scratchFolder = folder.file("absent");
    EXPECT_THROW(prepare(folder.file("a.cfg"), options), std::system_error);
}
