#include "Comtrade.h"
#include "support/RecordingBuilder.h"
#include "support/Results.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

using namespace OrvComtradeLib;
using orvtest::RecordingBuilder;
using orvtest::resultOf;
using orvtest::TempDir;

namespace {

/// A kilovolt channel given as primary values (ratio 110 to 0.5) and a current with offset; 17 status channels.
RecordingBuilder substation(const std::string& type) {
    RecordingBuilder builder;
    builder.station("Substation,Bay 4,1999")
        .analog("1,Ua,A,Bus 1,kV,0.25,0,0,-32767,32767,110,0.5,P")
        .analog("2,Ia,A,Line 1,A,0.5,1,250,-32767,32767,600,5,S")
        .rate("1000,3")
        .type(type);
    for (int i = 1; i <= 17; ++i) {
        builder.status(std::to_string(i) + ",D" + std::to_string(i) + ",,,0");
    }
    std::vector<bool> bits(17, false);
    builder.record(0, {1, 10}, bits);
    bits[0] = bits[16] = true;
    builder.record(1000, {-2, -20}, bits);
    bits[0] = false;
    bits[7] = true;
    builder.record(2000, {300, 30}, bits);
    return builder;
}

void expectSubstation(const Comtrade& recording) {
    ASSERT_TRUE(recording.loaded);
    EXPECT_EQ(recording.cfg.stationName, "Substation");
    EXPECT_EQ(recording.cfg.totalChannelCount, 19);
    EXPECT_EQ(recording.duration, 0.002);
    ASSERT_EQ(recording.dat.samples.size(), 3U);

    // a = 0.5 / 110 * 0.25 = 0.0011363636363636363
    const double times[] = {0.0, 0.001, 0.002};
    const double voltages[] = {1.1363636363636362, -2.2727272727272725, 340.9090909090909};
    const double currents[] = {6.0, -9.0, 16.0};
    for (std::size_t i = 0; i < 3; ++i) {
        const Sample& sample = recording.dat.samples[i];
        EXPECT_EQ(sample.index, i);
        EXPECT_EQ(sample.time, times[i]) << i;
        ASSERT_EQ(sample.analogValues.size(), 2U) << i;
        EXPECT_EQ(sample.analogValues[0], voltages[i]) << i;
        EXPECT_EQ(sample.analogValues[1], currents[i]) << i;
        ASSERT_EQ(sample.binaryValues.size(), 17U) << i;
        EXPECT_EQ(sample.binaryValues[0], i == 1) << i;
        EXPECT_EQ(sample.binaryValues[7], i == 2) << i;
        EXPECT_EQ(sample.binaryValues[16], i != 0) << i;
        EXPECT_FALSE(sample.binaryValues[1]) << i;
        EXPECT_FALSE(sample.binaryValues[15]) << i;
    }

    const std::vector<Orv::PointF> current = recording.analogChannels.at(1).getPoints(0.00025, 0.00225, 1000);
    ASSERT_EQ(current.size(), 2U);
    EXPECT_EQ(current[0].x, 0.00025F);
    EXPECT_EQ(current[0].y, 6.0F);
    EXPECT_EQ(current[1].x, 0.00125F);
    EXPECT_EQ(current[1].y, -9.0F);

    const std::vector<Orv::PointF> status = recording.binaryChannels.at(16).getPoints(0, -1, 0);
    ASSERT_EQ(status.size(), 3U);
    EXPECT_EQ(status[1].x, 0.001F);
    EXPECT_EQ(status[1].y, 1.0F);
    EXPECT_EQ(status[2].x, 0.002F);
    EXPECT_EQ(status[2].y, 0.0F);
    EXPECT_EQ(recording.binaryChannels.at(16).name(), "D17,");
}

RecordingBuilder oneAnalog() {
    return RecordingBuilder().analog("1,Ua,A,,V,1,0,0,-32767,32767,1,1,S");
}

std::vector<double> timesOf(const Comtrade& recording) {
    std::vector<double> times;
    for (const Sample& sample : recording.dat.samples) {
        times.push_back(sample.time);
    }
    return times;
}

} // namespace

TEST(Recording, AsciiBinaryAndFloat32HoldTheSame) {
    for (const char* type : {"ASCII", "ascii", "BINARY", "binary", "Binary", "FLOAT32", "float32"}) {
        SCOPED_TRACE(type);
        const TempDir dir;
        Comtrade recording;
        ASSERT_EQ(resultOf(recording.load(substation(type).write(dir.path(), "rec"))), Enums::Ok);
        expectSubstation(recording);
    }
}

TEST(Recording, RecordLengthsFollowTheType) {
    const TempDir dir;
    Comtrade binary;
    ASSERT_EQ(resultOf(binary.load(substation("BINARY").write(dir.path(), "b"))), Enums::Ok);
    EXPECT_EQ(binary.cfg.recordLength, 16U);
    Comtrade single;
    ASSERT_EQ(resultOf(single.load(substation("FLOAT32").write(dir.path(), "f"))), Enums::Ok);
    EXPECT_EQ(single.cfg.recordLength, 20U);
    Comtrade text;
    ASSERT_EQ(resultOf(text.load(substation("ASCII").write(dir.path(), "a"))), Enums::Ok);
    EXPECT_EQ(text.cfg.recordLength, 0U);
}

TEST(Recording, CarriageReturnsInAnAsciiRecordingDoNoHarm) {
    const TempDir dir;
    Comtrade recording;
    ASSERT_EQ(resultOf(recording.load(substation("ASCII").lineEnd("\r\n").write(dir.path(), "rec"))), Enums::Ok);
    expectSubstation(recording);
}

TEST(Recording, CarriageReturnBehindTheTypeWordMakesABinaryRecordingUnreadable) {
    for (const char* type : {"BINARY", "FLOAT32"}) {
        const TempDir dir;
        Comtrade recording;
        EXPECT_EQ(resultOf(recording.load(substation(type).lineEnd("\r\n").write(dir.path(), "rec"))),
                  Enums::DatLoadError)
            << type;
        EXPECT_EQ(recording.cfg.dataFileType, Enums::Ascii) << type;
        EXPECT_FALSE(recording.loaded) << type;
    }
}

TEST(Recording, Binary32IsReadAsTextAndRefused) {
    const TempDir dir;
    Comtrade recording;
    EXPECT_EQ(resultOf(recording.load(substation("BINARY32").write(dir.path(), "rec"))), Enums::DatLoadError);
    EXPECT_EQ(recording.cfg.dataFileType, Enums::Ascii);
}

TEST(Recording, BytesAfterTheLastBinaryRecordAreIgnoredUpToAWholeRecord) {
    const TempDir dir;
    Comtrade fifteen;
    ASSERT_EQ(resultOf(fifteen.load(substation("BINARY").rawBytes(std::string(15, '\x55')).write(dir.path(), "a"))),
              Enums::Ok);
    expectSubstation(fifteen);
    Comtrade sixteen;
    EXPECT_EQ(resultOf(sixteen.load(substation("BINARY").rawBytes(std::string(16, '\x55')).write(dir.path(), "b"))),
              Enums::DatLoadError);
}

TEST(Recording, DeclaredCountBindsABinaryFileButNotAnAsciiOne) {
    const auto builder = [](const char* type) {
        return oneAnalog().rate("1000,5").type(type).record(0, {1}, {}).record(1000, {2}, {}).record(2000, {3}, {});
    };
    const TempDir dir;
    Comtrade text;
    EXPECT_EQ(resultOf(text.load(builder("ASCII").write(dir.path(), "a"))), Enums::Ok);
    EXPECT_EQ(text.dat.samples.size(), 3U);
    EXPECT_EQ(text.duration, 0.004);
    Comtrade binary;
    EXPECT_EQ(resultOf(binary.load(builder("BINARY").write(dir.path(), "b"))), Enums::DatLoadError);
    EXPECT_TRUE(binary.dat.samples.empty());
}

TEST(Recording, Float32KeepsFractionsAndWhatIsNotANumber) {
    const TempDir dir;
    Comtrade recording;
    ASSERT_EQ(resultOf(recording.load(oneAnalog()
                                          .rate("1000,3")
                                          .type("FLOAT32")
                                          .record(0, {0.1}, {})
                                          .record(1000, {std::numeric_limits<double>::quiet_NaN()}, {})
                                          .record(2000, {-std::numeric_limits<double>::infinity()}, {})
                                          .write(dir.path(), "rec"))),
              Enums::Ok);
    EXPECT_EQ(recording.dat.samples[0].analogValues[0], 0.10000000149011612);
    EXPECT_TRUE(std::isnan(recording.dat.samples[1].analogValues[0]));
    EXPECT_EQ(recording.dat.samples[2].analogValues[0], -std::numeric_limits<double>::infinity());
}

TEST(Recording, NamesAreUtf8WhateverTheCodePageOfTheFile) {
    struct Row {
        const char* codePage;
        const char* identifier; ///< "Tok fazy A" (phase A current) in Russian letters
        const char* unit;       ///< the small letter a
        const char* status;     ///< "Vklyuchen" (closed)
    };
    const Row rows[] = {
        {"UTF-8", "\xD0\xA2\xD0\xBE\xD0\xBA \xD1\x84\xD0\xB0\xD0\xB7\xD1\x8B \xD0\x90", "\xD0\xB0",
         "\xD0\x92\xD0\xBA\xD0\xBB\xD1\x8E\xD1\x87\xD0\xB5\xD0\xBD"},
        {"CP866", "\x92\xAE\xAA \xE4\xA0\xA7\xEB \x80", "\xA0", "\x82\xAA\xAB\xEE\xE7\xA5\xAD"},
        {"CP1251", "\xD2\xEE\xEA \xF4\xE0\xE7\xFB \xC0", "\xE0", "\xC2\xEA\xEB\xFE\xF7\xE5\xED"},
    };
    for (const Row& row : rows) {
        for (const char* lineEnd : {"\n", "\r\n"}) {
            SCOPED_TRACE(row.codePage);
            const TempDir dir;
            Comtrade recording;
            ASSERT_EQ(resultOf(recording.load(RecordingBuilder()
                                                  .station(std::string(row.identifier) + ",R,1999")
                                                  .analog(std::string("1,") + row.identifier + ",A,," + row.unit +
                                                          ",1,0,0,-32767,32767,1,1,S")
                                                  .status(std::string("1,") + row.status + ",,,0")
                                                  .rate("1000,1")
                                                  .lineEnd(lineEnd)
                                                  .record(0, {1}, {true})
                                                  .write(dir.path(), "rec"))),
                      Enums::Ok);
            EXPECT_EQ(recording.analogChannels[0].name(),
                      "\xD0\xA2\xD0\xBE\xD0\xBA \xD1\x84\xD0\xB0\xD0\xB7\xD1\x8B \xD0\x90,A,,\xD0\xB0");
            EXPECT_EQ(recording.analogChannels[0].unit(), "\xD0\xB0");
            EXPECT_TRUE(recording.analogChannels[0].isCurrent());
            EXPECT_EQ(recording.binaryChannels[0].name(), "\xD0\x92\xD0\xBA\xD0\xBB\xD1\x8E\xD1\x87\xD0\xB5\xD0\xBD,");
            EXPECT_EQ(recording.cfg.stationName, row.identifier) << "the station line keeps its bytes";
        }
    }
}

TEST(Recording, Cp866WordWhoseBytesFormAUtf8SequenceStaysAsItIs) {
    // "Otkl" in CP866: one letter counts for that code page, the other three are one UTF-8 sequence, and the tie goes
    // to UTF-8
    const TempDir dir;
    Comtrade recording;
    ASSERT_EQ(resultOf(recording.load(RecordingBuilder()
                                          .status("1,\x8E\xE2\xAA\xAB,,,0")
                                          .rate("1000,1")
                                          .record(0, {}, {true})
                                          .write(dir.path(), "rec"))),
              Enums::Ok);
    EXPECT_EQ(recording.binaryChannels[0].name(), "\x8E\xE2\xAA\xAB,");
}

TEST(Recording, FileNameMayHoldAnyLetters) {
    const TempDir dir;
    const std::string base = "\xD0\xA4\xD0\xB8\xD0\xB4\xD0\xB5\xD1\x80 4.1 \xE2\x84\x96 7"; // "Fider 4.1 No 7"
    const std::string path = substation("BINARY").write(dir.path(), base);
    Comtrade recording;
    ASSERT_EQ(resultOf(recording.load(path)), Enums::Ok);
    EXPECT_EQ(recording.filePath, path);
    expectSubstation(recording);
}

TEST(Recording, ZeroRateTakesTimesFromTheStamps) {
    for (const char* type : {"ASCII", "BINARY", "FLOAT32"}) {
        SCOPED_TRACE(type);
        const TempDir dir;
        Comtrade recording;
        ASSERT_EQ(resultOf(recording.load(oneAnalog()
                                              .rateCount("0")
                                              .rate("0,3")
                                              .type(type)
                                              .multiplier("0.5")
                                              .record(0, {10}, {})
                                              .record(500000, {20}, {})
                                              .record(4000000000, {30}, {})
                                              .write(dir.path(), "rec"))),
                  Enums::Ok);
        EXPECT_EQ(timesOf(recording), (std::vector<double>{0.0, 0.25, 2000.0}));
        EXPECT_EQ(recording.duration, 2000.0);
        EXPECT_EQ(recording.cfg.duration, 0.0);
        EXPECT_FALSE(recording.cfg.samplingRateKnown);
        unsigned int hint = 0;
        EXPECT_EQ(recording.analogChannels[0].getValue(0.125, hint), 15.0);
    }
}

TEST(Recording, SeveralRatesCountTheirEndSamplesAsTheirOwnLengths) {
    const TempDir dir;
    RecordingBuilder builder = oneAnalog().rate("1000,2").rate("500,3").rate("250,6");
    for (std::uint32_t i = 0; i < 6; ++i) {
        builder.record(i, {static_cast<double>(i)}, {});
    }
    Comtrade recording;
    ASSERT_EQ(resultOf(recording.load(builder.write(dir.path(), "rec"))), Enums::Ok);
    // 2 samples at 1 ms, then 3 at 2 ms, then at 4 ms
    EXPECT_EQ(timesOf(recording), (std::vector<double>{0.0, 0.001, 0.002, 0.004, 0.006, 0.008}));
    EXPECT_EQ(recording.duration, 0.008);
    EXPECT_EQ(recording.cfg.lastSampleNumber, 6U);
}

TEST(Recording, LinesBehindTheTimeMultiplierAreNotRead) {
    const TempDir dir;
    Comtrade recording;
    ASSERT_EQ(resultOf(recording.load(substation("ASCII").extraLine("0,-5h30").extraLine("B,3").extraLine("\x1A").write(
                  dir.path(), "rec"))),
              Enums::Ok);
    expectSubstation(recording);
}

TEST(Recording, OldLayoutWithoutRevisionOrTimeMultiplier) {
    // Without a third field the year stays 1999, so that the status line's old normal state is taken for a phase
    const TempDir dir;
    Comtrade recording;
    ASSERT_EQ(resultOf(recording.load(RecordingBuilder()
                                          .station("Old,7")
                                          .analog("1,Ua,A,,V,1,0,0,-2048,2047")
                                          .status("1,Trip,1")
                                          .rate("1000,1")
                                          .withoutMultiplier()
                                          .record(0, {5}, {true})
                                          .write(dir.path(), "rec"))),
              Enums::Ok);
    EXPECT_EQ(recording.cfg.revisionYear, 1999);
    EXPECT_EQ(recording.cfg.timeMultiplier, 1.0);
    EXPECT_EQ(recording.cfg.binaryChannelConfigs[0].phase, "1");
    EXPECT_EQ(recording.cfg.binaryChannelConfigs[0].normalState, 0);

    Comtrade dated;
    ASSERT_EQ(resultOf(dated.load(RecordingBuilder()
                                      .station("Old,7,1991")
                                      .status("1,Trip,1")
                                      .rate("1000,1")
                                      .withoutMultiplier()
                                      .record(0, {}, {true})
                                      .write(dir.path(), "dated"))),
              Enums::Ok);
    EXPECT_EQ(dated.cfg.binaryChannelConfigs[0].phase, "");
    EXPECT_EQ(dated.cfg.binaryChannelConfigs[0].normalState, 1);
}

TEST(RecordingReload, RatesPileUpAndTheTimesFollowAllOfThem) {
    const TempDir dir;
    const std::string first = oneAnalog().rate("1000,2").record(0, {1}, {}).record(0, {2}, {}).write(dir.path(), "a");
    RecordingBuilder slow = oneAnalog().rate("500,4");
    for (int i = 0; i < 4; ++i) {
        slow.record(0, {static_cast<double>(i)}, {});
    }
    const std::string second = slow.write(dir.path(), "b");

    Comtrade recording;
    ASSERT_EQ(resultOf(recording.load(first)), Enums::Ok);
    EXPECT_EQ(timesOf(recording), (std::vector<double>{0.0, 0.001}));
    ASSERT_EQ(resultOf(recording.load(second)), Enums::Ok);
    ASSERT_EQ(recording.cfg.samplingRates.size(), 2U);
    EXPECT_EQ(recording.cfg.samplingRates[0].rate, 1000.0);
    EXPECT_EQ(recording.cfg.samplingRates[1].rate, 500.0);
    EXPECT_EQ(recording.cfg.lastSampleNumber, 4U);
    EXPECT_EQ(timesOf(recording), (std::vector<double>{0.0, 0.001, 0.002, 0.004}));
    EXPECT_EQ(recording.duration, 0.004);

    Comtrade fresh;
    ASSERT_EQ(resultOf(fresh.load(second)), Enums::Ok);
    EXPECT_EQ(timesOf(fresh), (std::vector<double>{0.0, 0.002, 0.004, 0.006}));
    EXPECT_EQ(fresh.duration, 0.006);
}

TEST(RecordingReload, ZeroRateOfAnEarlierLoadKeepsTheTimesOnTheStamps) {
    const TempDir dir;
    const std::string stamped = oneAnalog().rate("0,1").record(500000, {1}, {}).write(dir.path(), "a");
    const std::string rated =
        oneAnalog().rate("1000,2").record(0, {1}, {}).record(750000, {2}, {}).write(dir.path(), "b");
    Comtrade recording;
    ASSERT_EQ(resultOf(recording.load(stamped)), Enums::Ok);
    EXPECT_EQ(recording.duration, 0.5);
    ASSERT_EQ(resultOf(recording.load(rated)), Enums::Ok);
    EXPECT_FALSE(recording.cfg.samplingRateKnown);
    EXPECT_EQ(timesOf(recording), (std::vector<double>{0.0, 0.75}));
    EXPECT_EQ(recording.duration, 0.75);
}

TEST(RecordingReload, FieldsThatTheSecondFileDoesNotReachStay) {
    const TempDir dir;
    const std::string first = substation("BINARY").multiplier("2").write(dir.path(), "a");
    const std::string second =
        oneAnalog().station("Short").rate("1000,3").withoutMultiplier().record(0, {1}, {}).write(dir.path(), "b");
    Comtrade recording;
    ASSERT_EQ(resultOf(recording.load(first)), Enums::Ok);
    ASSERT_EQ(resultOf(recording.load(second)), Enums::Ok);
    EXPECT_EQ(recording.cfg.stationName, "Short");
    EXPECT_EQ(recording.cfg.recorderId, "Bay 4");
    EXPECT_EQ(recording.cfg.timeMultiplier, 1.0);
    EXPECT_EQ(recording.cfg.dataFileType, Enums::Ascii);
    EXPECT_EQ(recording.cfg.recordLength, 16U);
    EXPECT_EQ(recording.cfg.statusWordCount, 2U);
    EXPECT_EQ(recording.cfg.binaryChannelCount, 0);
    EXPECT_TRUE(recording.cfg.binaryChannelConfigs.empty());
    EXPECT_TRUE(recording.binaryChannels.empty());
    EXPECT_EQ(recording.dat.samples.size(), 1U);
}

TEST(RecordingReload, FailuresLeaveWhatTheyDidNotReach) {
    struct Row {
        const char* why;
        Enums::LoadResult result;
        const char* base;
        const char* stationName;
        std::size_t rates;
        std::size_t samples;
        double lastSampleTime;
    };
    const Row rows[] = {
        {"no configuration", Enums::CfgFileNotFound, "missing", "Substation", 1, 3, 0.002},
        {"counts that do not add up", Enums::CfgLoadError, "counts", "Counts", 1, 3, 0.002},
        {"blank time multiplier: an exception after every other line", Enums::CfgLoadError, "blank", "Blank", 2, 3,
         0.002},
        {"no data file", Enums::DatFileNotFound, "alone", "Alone", 2, 3, 0.002},
        {"data line that does not decode", Enums::DatLoadError, "letters", "Letters", 2, 0, -1.0},
        {"binary file one byte short", Enums::DatLoadError, "short", "Short", 2, 0, -1.0},
    };
    const TempDir dir;
    oneAnalog()
        .station("Counts,R,1999")
        .counts("3,1A,1D")
        .rate("1000,1")
        .record(0, {1}, {})
        .write(dir.path(), "counts");
    oneAnalog().station("Blank,R,1999").rate("1000,1").multiplier("").record(0, {1}, {}).write(dir.path(), "blank");
    dir.write("alone.cfg", oneAnalog().station("Alone,R,1999").rate("1000,1").cfgText());
    oneAnalog().station("Letters,R,1999").rate("1000,1").asciiLine("1,0,x").write(dir.path(), "letters");
    oneAnalog().station("Short,R,1999").rate("1000,1").type("BINARY").write(dir.path(), "short");
    dir.write("short.dat", std::string(9, '\0'));
    const std::string good = substation("ASCII").write(dir.path(), "good");

    for (const Row& row : rows) {
        SCOPED_TRACE(row.why);
        Comtrade recording;
        ASSERT_EQ(resultOf(recording.load(good)), Enums::Ok);
        ASSERT_EQ(resultOf(recording.load(dir.file(std::string(row.base) + ".cfg"))), row.result);
        EXPECT_FALSE(recording.loaded);
        EXPECT_EQ(recording.filePath, good);
        EXPECT_EQ(recording.duration, 0.002);
        EXPECT_EQ(recording.cfgFileName, dir.file(std::string(row.base) + ".cfg"));
        EXPECT_EQ(recording.datFileName, dir.file(std::string(row.base) + ".dat"));
        EXPECT_EQ(recording.analogChannels.size(), 2U);
        EXPECT_EQ(recording.binaryChannels.size(), 17U);
        EXPECT_EQ(recording.cfg.stationName, row.stationName);
        EXPECT_EQ(recording.cfg.samplingRates.size(), row.rates);
        EXPECT_EQ(recording.dat.samples.size(), row.samples);
        EXPECT_EQ(recording.dat.lastSampleTime, row.lastSampleTime);
    }
}

TEST(RecordingReload, SameRecordingTwiceGivesTheSameTimes) {
    const TempDir dir;
    const std::string path = substation("BINARY").write(dir.path(), "rec");
    Comtrade recording;
    ASSERT_EQ(resultOf(recording.load(path)), Enums::Ok);
    ASSERT_EQ(resultOf(recording.load(path)), Enums::Ok);
    EXPECT_EQ(recording.cfg.samplingRates.size(), 2U);
    expectSubstation(recording);
}
