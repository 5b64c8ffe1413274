#include "Comtrade.h"

#include "support/RecordingBuilder.h"
#include "support/Results.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

using namespace OrvComtradeLib;
using orvtest::RecordingBuilder;
using orvtest::resultOf;
using orvtest::TempDir;

namespace {

/// Two analog and three status channels, four samples at 1000 Hz; duration 0.003 s.
RecordingBuilder feeder() {
    return RecordingBuilder()
        .station("Feeder,R1,1999")
        .analog("1,Ua,A,Bus 1,V,2,0,500,-32767,32767,1,1,S")
        .analog("2,Ia,A,Bus 1,A,1,0,0,-32767,32767,1,1,S")
        .status("1,Trip,A,CB1,0")
        .status("2,Closed,,CB2,1")
        .status("3,Alarm,,,0")
        .rate("1000,4")
        .record(0, {1, 10}, {false, true, false})
        .record(1000, {2, 20}, {false, false, true})
        .record(2000, {3, 30}, {true, true, false})
        .record(3000, {4, 40}, {true, false, true});
}

/// One analog and one status channel, two samples at 100 Hz.
RecordingBuilder transformer() {
    return RecordingBuilder()
        .station("Transformer,R2,2013")
        .analog("1,Ib,B,,A,1,0,0,-32767,32767,1,1,S")
        .status("1,Tap,,T1,0")
        .rate("100,2")
        .record(0, {7}, {true})
        .record(10000, {8}, {false});
}

/// What the facade itself records, without the configuration and the samples.
struct Fields {
    explicit Fields(const Comtrade& recording)
        : filePath(recording.filePath), duration(recording.duration), enabled(recording.enabled),
          loaded(recording.loaded), cfgFileName(recording.cfgFileName), datFileName(recording.datFileName),
          analogViews(recording.analogChannels.size()), statusViews(recording.binaryChannels.size()) {}

    std::string filePath;
    double duration;
    bool enabled;
    bool loaded;
    std::string cfgFileName;
    std::string datFileName;
    std::size_t analogViews;
    std::size_t statusViews;
};

void expectSame(const Fields& actual, const Fields& expected) {
    EXPECT_EQ(actual.filePath, expected.filePath);
    EXPECT_EQ(actual.duration, expected.duration);
    EXPECT_EQ(actual.enabled, expected.enabled);
    EXPECT_EQ(actual.loaded, expected.loaded);
    EXPECT_EQ(actual.cfgFileName, expected.cfgFileName);
    EXPECT_EQ(actual.datFileName, expected.datFileName);
    EXPECT_EQ(actual.analogViews, expected.analogViews);
    EXPECT_EQ(actual.statusViews, expected.statusViews);
}

void expectNeverLoaded(const Comtrade& recording) {
    EXPECT_EQ(recording.filePath, "");
    EXPECT_EQ(recording.duration, -1.0);
    EXPECT_TRUE(recording.enabled);
    EXPECT_FALSE(recording.loaded);
    EXPECT_TRUE(recording.analogChannels.empty());
    EXPECT_TRUE(recording.binaryChannels.empty());
}

/// The facade after feeder() was loaded from `path` and a later load failed past the check of the extension.
void expectFeederKeptButNotLoaded(const Comtrade& recording, const std::string& path) {
    EXPECT_EQ(recording.filePath, path);
    EXPECT_EQ(recording.duration, 0.003);
    EXPECT_TRUE(recording.enabled);
    EXPECT_FALSE(recording.loaded);
    EXPECT_EQ(recording.analogChannels.size(), 2U);
    EXPECT_EQ(recording.binaryChannels.size(), 3U);
}

} // namespace

TEST(Comtrade, StartsEmpty) {
    const Comtrade recording;
    expectNeverLoaded(recording);
    EXPECT_EQ(recording.cfgFileName, "");
    EXPECT_EQ(recording.datFileName, "");
    EXPECT_EQ(recording.cfg.stationName, "Station1");
    EXPECT_EQ(recording.dat.lastSampleTime, -1.0);
    EXPECT_TRUE(recording.dat.samples.empty());
    EXPECT_EQ(&recording.dat.cfg, &recording.cfg);
}

TEST(Comtrade, IsNeitherCopiedNorMoved) {
    static_assert(!std::is_copy_constructible_v<Comtrade>);
    static_assert(!std::is_copy_assignable_v<Comtrade>);
    static_assert(!std::is_move_constructible_v<Comtrade>);
    static_assert(!std::is_move_assignable_v<Comtrade>);
    static_assert(std::is_default_constructible_v<Comtrade>);
}

TEST(ComtradeLoad, OkFillsEveryField) {
    const TempDir dir;
    const std::string path = feeder().write(dir.path(), "feeder");
    Comtrade recording;
    EXPECT_EQ(resultOf(recording.load(path)), Enums::Ok);
    EXPECT_EQ(recording.filePath, path);
    EXPECT_EQ(recording.duration, 0.003);
    EXPECT_TRUE(recording.enabled);
    EXPECT_TRUE(recording.loaded);
    EXPECT_EQ(recording.cfgFileName, dir.file("feeder.cfg"));
    EXPECT_EQ(recording.datFileName, dir.file("feeder.dat"));
    EXPECT_EQ(recording.cfg.stationName, "Feeder");
    EXPECT_EQ(recording.dat.samples.size(), 4U);
    EXPECT_EQ(recording.analogChannels.size(), 2U);
    EXPECT_EQ(recording.binaryChannels.size(), 3U);
}

TEST(ComtradeLoad, ResultsPrintByName) {
    EXPECT_EQ(testing::PrintToString(resultOf(3)), "CfgLoadError (3)");
    EXPECT_EQ(testing::PrintToString(resultOf(6)), "DatLoadError (6)");
    EXPECT_EQ(testing::PrintToString(resultOf(7)), "no result (7)");
}

TEST(ComtradeLoad, FileNamesFollowFromAnyFileOfTheRecording) {
    struct Row {
        const char* given;
        const char* cfg;
        const char* dat;
        Enums::LoadResult result;
    };
    // On disk: rec.cfg, rec.dat, UP.CFG and up.two.cfg with up.two.dat
    const Row rows[] = {
        // Lower case
        {"rec.cfg", "rec.cfg", "rec.dat", Enums::Ok},
        {"rec.dat", "rec.cfg", "rec.dat", Enums::Ok},
        {"rec.cff", "rec.cfg", "rec.dat", Enums::Ok},
        {"up.two.cfg", "up.two.cfg", "up.two.dat", Enums::Ok},
        // Any case of the extension is accepted, and the given file keeps it
        {"rec.CFF", "rec.cfg", "rec.dat", Enums::Ok},
        {"rec.DAT", "rec.cfg", "rec.DAT", Enums::DatFileNotFound},
        {"rec.Cfg", "rec.Cfg", "rec.dat", Enums::CfgFileNotFound},
        {"UP.CFG", "UP.CFG", "UP.dat", Enums::DatFileNotFound},
        {"UP.cff", "UP.cfg", "UP.dat", Enums::CfgFileNotFound},
    };
    const TempDir dir;
    feeder().write(dir.path(), "rec");
    feeder().write(dir.path(), "up.two");
    dir.write("UP.CFG", feeder().cfgText());
    for (const Row& row : rows) {
        Comtrade recording;
        EXPECT_EQ(resultOf(recording.load(dir.file(row.given))), row.result) << row.given;
        EXPECT_EQ(recording.cfgFileName, dir.file(row.cfg)) << row.given;
        EXPECT_EQ(recording.datFileName, dir.file(row.dat)) << row.given;
        EXPECT_EQ(recording.loaded, row.result == Enums::Ok) << row.given;
        EXPECT_EQ(recording.filePath, row.result == Enums::Ok ? dir.file(row.given) : "") << row.given;
    }
}

TEST(ComtradeLoad, ContentsOfACombinedFileAreNotRead) {
    const TempDir dir;
    const std::string path = dir.write("rec.cff", "--- file type: CFG ---\n" + feeder().cfgText());
    Comtrade recording;
    EXPECT_EQ(resultOf(recording.load(path)), Enums::CfgFileNotFound);
}

TEST(ComtradeLoad, OtherExtensionIsNoComtradeFileAndChangesNothing) {
    const TempDir dir;
    const std::string path = feeder().write(dir.path(), "feeder");
    for (const char* other : {"rec.txt", "rec.cfg ", "rec.", "rec.cfgx", "folder.cfg/rec", ".", "feeder.hdr"}) {
        Comtrade recording;
        EXPECT_EQ(resultOf(recording.load(other)), Enums::NotComtradeFile) << other;
        expectNeverLoaded(recording);
        EXPECT_EQ(recording.cfgFileName, "") << other;
        EXPECT_EQ(recording.datFileName, "") << other;

        ASSERT_EQ(resultOf(recording.load(path)), Enums::Ok);
        const Fields before(recording);
        EXPECT_EQ(resultOf(recording.load(other)), Enums::NotComtradeFile) << other;
        expectSame(Fields(recording), before);
        EXPECT_TRUE(recording.loaded) << other;
        EXPECT_EQ(recording.dat.samples.size(), 4U) << other;
        EXPECT_EQ(recording.cfg.stationName, "Feeder") << other;
    }
}

TEST(ComtradeLoad, PathWithoutADotThrowsOutOfRangeAndChangesNothing) {
    const TempDir dir;
    const std::string path = feeder().write(dir.path(), "feeder");
    for (const char* dotless : {"recording", "", "/folder/recording"}) {
        Comtrade recording;
        EXPECT_THROW(recording.load(dotless), std::out_of_range) << dotless;
        expectNeverLoaded(recording);
        EXPECT_EQ(recording.cfgFileName, "") << dotless;
        EXPECT_EQ(recording.datFileName, "") << dotless;

        ASSERT_EQ(resultOf(recording.load(path)), Enums::Ok);
        const Fields before(recording);
        try {
            recording.load(dotless);
            FAIL() << dotless;
        } catch (const std::out_of_range& thrown) {
            EXPECT_EQ(std::string(thrown.what()).rfind("basic_string::substr", 0), 0U) << thrown.what();
        }
        expectSame(Fields(recording), before);
        EXPECT_TRUE(recording.loaded) << dotless;
        EXPECT_EQ(recording.dat.samples.size(), 4U) << dotless;
    }
}

TEST(ComtradeLoad, MissingConfigurationIsCfgFileNotFound) {
    const TempDir dir;
    const std::string path = feeder().write(dir.path(), "feeder");
    const std::string data = dir.write("REC.DAT", transformer().datBytes());

    Comtrade fresh;
    EXPECT_EQ(resultOf(fresh.load(data)), Enums::CfgFileNotFound);
    expectNeverLoaded(fresh);
    EXPECT_EQ(fresh.cfgFileName, dir.file("REC.cfg"));
    EXPECT_EQ(fresh.datFileName, data);

    Comtrade recording;
    ASSERT_EQ(resultOf(recording.load(path)), Enums::Ok);
    EXPECT_EQ(resultOf(recording.load(data)), Enums::CfgFileNotFound);
    expectFeederKeptButNotLoaded(recording, path);
    EXPECT_EQ(recording.cfgFileName, dir.file("REC.cfg"));
    EXPECT_EQ(recording.datFileName, data);
    EXPECT_EQ(recording.cfg.stationName, "Feeder");
    EXPECT_EQ(recording.cfg.samplingRates.size(), 1U);
    EXPECT_EQ(recording.dat.samples.size(), 4U);
    EXPECT_EQ(recording.dat.lastSampleTime, 0.003);
}

TEST(ComtradeLoad, BrokenConfigurationIsCfgLoadErrorAndTheDataFileIsNotLookedAt) {
    const TempDir dir;
    const std::string path = feeder().write(dir.path(), "feeder");
    const std::string broken = dir.write("broken.cfg", "Other,R9,2013\n4,2A,1D\n");

    Comtrade fresh;
    EXPECT_EQ(resultOf(fresh.load(broken)), Enums::CfgLoadError);
    expectNeverLoaded(fresh);
    EXPECT_EQ(fresh.cfgFileName, broken);
    EXPECT_EQ(fresh.datFileName, dir.file("broken.dat"));

    Comtrade recording;
    ASSERT_EQ(resultOf(recording.load(path)), Enums::Ok);
    EXPECT_EQ(resultOf(recording.load(broken)), Enums::CfgLoadError);
    expectFeederKeptButNotLoaded(recording, path);
    EXPECT_EQ(recording.cfgFileName, broken);
    EXPECT_EQ(recording.datFileName, dir.file("broken.dat"));
    EXPECT_EQ(recording.cfg.stationName, "Other");
    EXPECT_EQ(recording.dat.samples.size(), 4U);
    EXPECT_EQ(recording.dat.lastSampleTime, 0.003);
}

TEST(ComtradeLoad, FolderInPlaceOfTheConfigurationIsCfgLoadError) {
    const TempDir dir;
    std::filesystem::create_directory(dir.file("rec.cfg"));
    Comtrade recording;
    EXPECT_EQ(resultOf(recording.load(dir.file("rec.cfg"))), Enums::CfgLoadError);
    expectNeverLoaded(recording);
}

TEST(ComtradeLoad, MissingDataFileIsDatFileNotFoundAndBuildsNoViews) {
    const TempDir dir;
    const std::string path = feeder().write(dir.path(), "feeder");
    const std::string alone = dir.write("alone.cfg", transformer().cfgText());

    Comtrade fresh;
    EXPECT_EQ(resultOf(fresh.load(alone)), Enums::DatFileNotFound);
    expectNeverLoaded(fresh);
    EXPECT_EQ(fresh.cfgFileName, alone);
    EXPECT_EQ(fresh.datFileName, dir.file("alone.dat"));
    EXPECT_EQ(fresh.cfg.stationName, "Transformer");
    EXPECT_EQ(fresh.cfg.analogChannelConfigs.size(), 1U);

    Comtrade recording;
    ASSERT_EQ(resultOf(recording.load(path)), Enums::Ok);
    EXPECT_EQ(resultOf(recording.load(alone)), Enums::DatFileNotFound);
    expectFeederKeptButNotLoaded(recording, path);
    EXPECT_EQ(recording.cfgFileName, alone);
    EXPECT_EQ(recording.datFileName, dir.file("alone.dat"));
    EXPECT_EQ(recording.cfg.stationName, "Transformer");
    EXPECT_EQ(recording.dat.samples.size(), 4U);
    EXPECT_EQ(recording.dat.lastSampleTime, 0.003);
}

TEST(ComtradeLoad, BrokenDataFileIsDatLoadErrorAndBuildsNoViews) {
    const TempDir dir;
    const std::string path = feeder().write(dir.path(), "feeder");
    const std::string broken = transformer().write(dir.path(), "broken");
    dir.write("broken.dat", "1,0,7,1\n2,10000,x,0\n");

    Comtrade fresh;
    EXPECT_EQ(resultOf(fresh.load(broken)), Enums::DatLoadError);
    expectNeverLoaded(fresh);
    EXPECT_EQ(fresh.cfgFileName, broken);
    EXPECT_EQ(fresh.datFileName, dir.file("broken.dat"));
    EXPECT_TRUE(fresh.dat.samples.empty());
    EXPECT_EQ(fresh.dat.lastSampleTime, -1.0);

    Comtrade recording;
    ASSERT_EQ(resultOf(recording.load(path)), Enums::Ok);
    EXPECT_EQ(resultOf(recording.load(broken)), Enums::DatLoadError);
    expectFeederKeptButNotLoaded(recording, path);
    EXPECT_EQ(recording.cfg.stationName, "Transformer");
    EXPECT_TRUE(recording.dat.samples.empty());
    EXPECT_EQ(recording.dat.lastSampleTime, -1.0);
}

TEST(ComtradeLoad, SuccessAfterAFailureLoadsAgain) {
    const TempDir dir;
    const std::string path = feeder().write(dir.path(), "feeder");
    Comtrade recording;
    ASSERT_EQ(resultOf(recording.load(dir.file("missing.cfg"))), Enums::CfgFileNotFound);
    EXPECT_EQ(resultOf(recording.load(path)), Enums::Ok);
    EXPECT_TRUE(recording.loaded);
    EXPECT_EQ(recording.filePath, path);
    EXPECT_EQ(recording.duration, 0.003);
    EXPECT_EQ(recording.analogChannels.size(), 2U);
}

TEST(ComtradeLoad, EnabledIsTheHosts) {
    const TempDir dir;
    const std::string path = feeder().write(dir.path(), "feeder");
    Comtrade recording;
    recording.enabled = false;
    EXPECT_EQ(resultOf(recording.load(path)), Enums::Ok);
    EXPECT_FALSE(recording.enabled);
    EXPECT_EQ(resultOf(recording.load(dir.file("missing.cfg"))), Enums::CfgFileNotFound);
    EXPECT_FALSE(recording.enabled);
}

TEST(ComtradeLoad, BuildsOneViewPerChannelLineInFileOrder) {
    const TempDir dir;
    Comtrade recording;
    ASSERT_EQ(resultOf(recording.load(feeder().write(dir.path(), "feeder"))), Enums::Ok);

    ASSERT_EQ(recording.analogChannels.size(), 2U);
    const char* analogNames[] = {"Ua,A,Bus 1,V", "Ia,A,Bus 1,A"};
    for (std::size_t i = 0; i < 2; ++i) {
        EXPECT_EQ(recording.analogChannels[i].name(), analogNames[i]);
        EXPECT_EQ(&recording.analogChannels[i].config, &recording.cfg.analogChannelConfigs[i]);
        EXPECT_EQ(&recording.analogChannels[i].samples, &recording.dat.samples);
    }
    EXPECT_EQ(recording.analogChannels[0].skew, 0.0005);
    EXPECT_EQ(recording.analogChannels[1].skew, 0.0);
    EXPECT_FALSE(recording.analogChannels[0].isCurrent());
    EXPECT_TRUE(recording.analogChannels[1].isCurrent());

    ASSERT_EQ(recording.binaryChannels.size(), 3U);
    const char* statusNames[] = {"Trip,CB1", "Closed,CB2", "Alarm,"};
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(recording.binaryChannels[i].name(), statusNames[i]);
        EXPECT_EQ(&recording.binaryChannels[i].config, &recording.cfg.binaryChannelConfigs[i]);
        EXPECT_EQ(&recording.binaryChannels[i].samples, &recording.dat.samples);
    }
}

TEST(ComtradeLoad, ViewsOfOneKindOnly) {
    const TempDir dir;
    Comtrade analogOnly;
    ASSERT_EQ(resultOf(analogOnly.load(RecordingBuilder()
                                           .analog("1,Ua,A,,V,1,0,0,-32767,32767,1,1,S")
                                           .rate("1000,1")
                                           .record(0, {5}, {})
                                           .write(dir.path(), "analog"))),
              Enums::Ok);
    EXPECT_EQ(analogOnly.analogChannels.size(), 1U);
    EXPECT_TRUE(analogOnly.binaryChannels.empty());

    Comtrade statusOnly;
    ASSERT_EQ(
        resultOf(statusOnly.load(
            RecordingBuilder().status("1,Trip,,,0").rate("1000,1").record(0, {}, {true}).write(dir.path(), "st"))),
        Enums::Ok);
    EXPECT_TRUE(statusOnly.analogChannels.empty());
    EXPECT_EQ(statusOnly.binaryChannels.size(), 1U);
}

TEST(ComtradeLoad, AnalogViewsPlotTheirOwnChannel) {
    const TempDir dir;
    Comtrade recording;
    ASSERT_EQ(resultOf(recording.load(feeder().write(dir.path(), "feeder"))), Enums::Ok);
    unsigned int hint = 0;
    EXPECT_EQ(recording.analogChannels[1].getValue(0.002, hint), 30.0);
    hint = 0;
    EXPECT_EQ(recording.analogChannels[0].getValue(0.0005, hint), 2.0) << "0.0005 s of skew";
    hint = 0;
    EXPECT_EQ(recording.analogChannels[0].getValue(0.0004, hint), 0.0);
}

TEST(ComtradeLoad, StatusViewsAllPlotStatusChannelZero) {
    const TempDir dir;
    Comtrade recording;
    ASSERT_EQ(resultOf(recording.load(feeder().write(dir.path(), "feeder"))), Enums::Ok);
    for (const BinaryChannel& view : recording.binaryChannels) {
        const std::vector<Orv::PointF> points = view.getPoints(0, -1, 0);
        ASSERT_EQ(points.size(), 3U) << view.name();
        EXPECT_EQ(points[0].y, 0.0F);
        EXPECT_EQ(points[1].x, 0.002F);
        EXPECT_EQ(points[1].y, 1.0F);
        EXPECT_EQ(points[2].x, 0.003F);
        EXPECT_EQ(points[2].y, 1.0F);
    }
}

TEST(ComtradeLoad, DurationOfKnownRatesIsTheTimeOfTheLastDeclaredSample) {
    struct Row {
        const char* why;
        RecordingBuilder recording;
        double duration;
        double lastSampleTime;
    };
    const std::string analog = "1,Ua,A,,V,1,0,0,-32767,32767,1,1,S";
    const Row rows[] = {
        {"stamps are not asked",
         RecordingBuilder().analog(analog).rate("1000,3").record(0, {1}, {}).record(7, {1}, {}).record(9, {1}, {}),
         0.002, 0.002},
        {"fewer lines than declared", RecordingBuilder().analog(analog).rate("1000,5").record(0, {1}, {}), 0.004, 0.0},
        {"no lines at all", RecordingBuilder().analog(analog).rate("1000,5"), 0.004, -1.0},
        {"time multiplier",
         RecordingBuilder().analog(analog).rate("1000,2").multiplier("2").record(0, {1}, {}).record(0, {1}, {}), 0.002,
         0.002},
        {"two rates", RecordingBuilder().analog(analog).rate("1000,2").rate("500,4").record(0, {1}, {}), 0.004, 0.0},
    };
    for (const Row& row : rows) {
        const TempDir dir;
        Comtrade recording;
        ASSERT_EQ(resultOf(recording.load(row.recording.write(dir.path(), "rec"))), Enums::Ok) << row.why;
        EXPECT_EQ(recording.duration, row.duration) << row.why;
        EXPECT_EQ(recording.dat.lastSampleTime, row.lastSampleTime) << row.why;
    }
}

TEST(ComtradeLoad, DurationWithAZeroRateIsTheLastTimeStamp) {
    struct Row {
        const char* why;
        RecordingBuilder recording;
        double duration;
    };
    const std::string analog = "1,Ua,A,,V,1,0,0,-32767,32767,1,1,S";
    const Row rows[] = {
        {"no fixed rate",
         RecordingBuilder().analog(analog).rateCount("0").rate("0,2").record(0, {1}, {}).record(2500000, {1}, {}), 2.5},
        {"time multiplier",
         RecordingBuilder().analog(analog).rate("0,2").multiplier("0.5").record(0, {1}, {}).record(2500000, {1}, {}),
         1.25},
        {"one zero rate among others",
         RecordingBuilder().analog(analog).rate("1000,1").rate("0,2").record(500000, {1}, {}).record(1500000, {1}, {}),
         1.5},
        {"a rate below a millionth", RecordingBuilder().analog(analog).rate("0.0000009,1").record(250000, {1}, {}),
         0.25},
        {"no samples", RecordingBuilder().analog(analog).rate("0,2"), -1.0},
    };
    for (const Row& row : rows) {
        const TempDir dir;
        Comtrade recording;
        ASSERT_EQ(resultOf(recording.load(row.recording.write(dir.path(), "rec"))), Enums::Ok) << row.why;
        EXPECT_EQ(recording.duration, row.duration) << row.why;
        EXPECT_FALSE(recording.cfg.samplingRateKnown) << row.why;
    }
}

TEST(ComtradeLoad, SecondRecordingReplacesAllViews) {
    const TempDir dir;
    const std::string second = transformer().write(dir.path(), "transformer");
    Comtrade recording;
    ASSERT_EQ(resultOf(recording.load(feeder().write(dir.path(), "feeder"))), Enums::Ok);
    ASSERT_EQ(resultOf(recording.load(second)), Enums::Ok);
    EXPECT_EQ(recording.filePath, second);
    ASSERT_EQ(recording.analogChannels.size(), 1U);
    EXPECT_EQ(recording.analogChannels[0].name(), "Ib,B,,A");
    EXPECT_EQ(recording.analogChannels[0].skew, 0.0);
    EXPECT_EQ(&recording.analogChannels[0].config, &recording.cfg.analogChannelConfigs[0]);
    ASSERT_EQ(recording.binaryChannels.size(), 1U);
    EXPECT_EQ(recording.binaryChannels[0].name(), "Tap,T1");
    EXPECT_EQ(&recording.binaryChannels[0].config, &recording.cfg.binaryChannelConfigs[0]);
    EXPECT_EQ(recording.dat.samples.size(), 2U);
}

TEST(ComtradeLoad, SecondRecordingWithoutStatusChannelsLeavesNoStatusViews) {
    const TempDir dir;
    Comtrade recording;
    ASSERT_EQ(resultOf(recording.load(feeder().write(dir.path(), "feeder"))), Enums::Ok);
    ASSERT_EQ(resultOf(recording.load(RecordingBuilder()
                                          .analog("1,Ua,A,,V,1,0,0,-32767,32767,1,1,S")
                                          .rate("1000,1")
                                          .record(0, {5}, {})
                                          .write(dir.path(), "analog"))),
              Enums::Ok);
    EXPECT_EQ(recording.analogChannels.size(), 1U);
    EXPECT_TRUE(recording.binaryChannels.empty());
}
