#include "Dat.h"

#include "Cfg.h"
#include "support/BoundByPermissions.h"
#include "support/FileLimits.h"
#include "support/LittleEndianBytes.h"
#include "support/RecordingBuilder.h"
#include "support/Results.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace {

using namespace OrvComtradeLib;
using orvtest::BoundByPermissions;
using orvtest::Deadline;
using orvtest::LittleEndianBytes;
using orvtest::NoFileHandles;
using orvtest::RecordingBuilder;
using orvtest::resultOf;
using orvtest::TempDir;

using Analogs = std::vector<double>;
using Bits = std::vector<bool>;

class DatLoad : public testing::Test {
protected:
    /// Loads both files of the recording.
    Enums::LoadResult load(const RecordingBuilder& recording) {
        EXPECT_EQ(resultOf(cfg.load(recording.write(dir.path(), "r"))), Enums::CfgLoaded);
        return resultOf(dat.load(dir.file("r.dat")));
    }

    Enums::LoadResult loadBytes(const std::string& bytes) { return resultOf(dat.load(dir.write("bytes.dat", bytes))); }

    /// Two samples at 1000 Hz are in place.
    void loadTwoSamplesFirst() {
        ASSERT_EQ(load(ascii("2").asciiLine("1,0,5,1").asciiLine("2,0,6,0")), Enums::Ok);
        ASSERT_EQ(dat.samples.size(), 2U);
        ASSERT_EQ(dat.lastSampleTime, 0.001);
    }

    void expectTheTwoSamples() const {
        ASSERT_EQ(dat.samples.size(), 2U);
        EXPECT_EQ(dat.samples[1].analogValues, Analogs{6.0});
        EXPECT_EQ(dat.lastSampleTime, 0.001);
    }

    void expectNoSamples() const {
        EXPECT_TRUE(dat.samples.empty());
        EXPECT_EQ(dat.lastSampleTime, -1.0);
    }

    /// One analog and one status channel at 1000 Hz, a line each.
    static RecordingBuilder ascii(const std::string& count) {
        return RecordingBuilder().analog("1,U,,,V,1,0,0,0,0").status("1,T").rate("1000," + count);
    }

    /// The same in records of 12 bytes.
    static RecordingBuilder binary(const std::string& count) { return ascii(count).type("BINARY"); }

    static std::string records(int count) {
        std::string bytes;
        for (int number = 1; number <= count; ++number) {
            bytes += LittleEndianBytes()
                         .u32(static_cast<std::uint32_t>(number))
                         .u32(0)
                         .i16(static_cast<std::int16_t>(number))
                         .u16(1)
                         .bytes();
        }
        return bytes;
    }

    TempDir dir;
    Cfg cfg;
    Dat dat{cfg};
};

TEST_F(DatLoad, FreshReaderIsEmpty) {
    EXPECT_EQ(&dat.cfg, &cfg);
    expectNoSamples();
}

// Opening

TEST_F(DatLoad, MissingFileKeepsTheEarlierSamples) {
    loadTwoSamplesFirst();
    EXPECT_EQ(resultOf(dat.load(dir.file("absent.dat"))), Enums::DatFileNotFound);
    expectTheTwoSamples();
    EXPECT_EQ(resultOf(dat.load("")), Enums::DatFileNotFound);
    expectTheTwoSamples();
}

TEST_F(DatLoad, FileThatDoesNotOpenKeepsTheEarlierSamples) {
    loadTwoSamplesFirst();
    for (const Enums::DataFileType type : {Enums::Ascii, Enums::Binary}) {
        cfg.dataFileType = type;
        Enums::LoadResult result = resultOf(-1);
        {
            const NoFileHandles none;
            result = resultOf(dat.load(dir.file("r.dat")));
        }
        EXPECT_EQ(result, Enums::DatLoadError);
        expectTheTwoSamples();
    }
}

TEST_F(DatLoad, UnreadableFileKeepsTheEarlierSamples) {
    loadTwoSamplesFirst();
    ASSERT_EQ(chmod(dir.file("r.dat").c_str(), 0), 0);
    const BoundByPermissions bound;
    EXPECT_EQ(resultOf(dat.load(dir.file("r.dat"))), Enums::DatLoadError);
    expectTheTwoSamples();
}

TEST_F(DatLoad, DirectoryIsLoadError) {
    const Deadline deadline(20);
    loadTwoSamplesFirst();
    EXPECT_EQ(resultOf(dat.load(dir.path())), Enums::DatLoadError);
    EXPECT_TRUE(dat.samples.empty());
    ASSERT_EQ(resultOf(cfg.load(binary("2").write(dir.path(), "b"))), Enums::CfgLoaded);
    EXPECT_EQ(resultOf(dat.load(dir.path())), Enums::DatLoadError);
    EXPECT_TRUE(dat.samples.empty());
}

TEST_F(DatLoad, PipeIsNotFoundAndNotWaitedFor) {
    const Deadline deadline(20);
    loadTwoSamplesFirst();
    ASSERT_EQ(mkfifo(dir.file("pipe.dat").c_str(), 0600), 0);
    for (const Enums::DataFileType type : {Enums::Ascii, Enums::Binary}) {
        cfg.dataFileType = type;
        EXPECT_EQ(resultOf(dat.load(dir.file("pipe.dat"))), Enums::DatFileNotFound);
        expectTheTwoSamples();
    }
}

TEST_F(DatLoad, DeviceIsNotFound) {
    const Deadline deadline(20);
    EXPECT_EQ(resultOf(dat.load("/dev/zero")), Enums::DatFileNotFound);
    EXPECT_EQ(resultOf(dat.load("/dev/null")), Enums::DatFileNotFound);
}

TEST_F(DatLoad, OpensAUtf8Path) {
    ASSERT_EQ(resultOf(cfg.load(ascii("1").write(dir.path(), "r"))), Enums::CfgLoaded);
    // "zapis" in Cyrillic letters
    EXPECT_EQ(resultOf(dat.load(dir.write("\xD0\xB7\xD0\xB0\xD0\xBF\xD0\xB8\xD1\x81\xD1\x8C 1.dat", "1,0,5,1\n"))),
              Enums::Ok);
    EXPECT_EQ(dat.samples.size(), 1U);
}

// Binary files

TEST_F(DatLoad, BinaryRecordsBecomeSamples) {
    ASSERT_EQ(load(binary("3").record(0, {10}, {true}).record(0, {-20}, {false}).record(0, {30}, {true})), Enums::Ok);
    ASSERT_EQ(dat.samples.size(), 3U);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(dat.samples[i].index, i);
        EXPECT_EQ(&dat.samples[i].cfg, &cfg);
    }
    EXPECT_EQ(dat.samples[0].time, 0.0);
    EXPECT_EQ(dat.samples[1].time, 0.001);
    EXPECT_EQ(dat.samples[2].time, 0.002);
    EXPECT_EQ(dat.samples[0].analogValues, Analogs{10.0});
    EXPECT_EQ(dat.samples[1].analogValues, Analogs{-20.0});
    EXPECT_EQ(dat.samples[2].analogValues, Analogs{30.0});
    EXPECT_EQ(dat.samples[0].binaryValues, Bits{true});
    EXPECT_EQ(dat.samples[1].binaryValues, Bits{false});
    EXPECT_EQ(dat.samples[2].binaryValues, Bits{true});
    EXPECT_EQ(dat.lastSampleTime, 0.002);
}

TEST_F(DatLoad, BinaryTimesComeFromTheTimestampsWithoutARate) {
    ASSERT_EQ(load(RecordingBuilder()
                       .status("1,T")
                       .rateCount("0")
                       .rate("0,2")
                       .type("BINARY")
                       .multiplier("2")
                       .record(1000000, {}, {true})
                       .record(4000000, {}, {false})),
              Enums::Ok);
    EXPECT_EQ(dat.samples.at(0).time, 2.0);
    EXPECT_EQ(dat.samples.at(1).time, 8.0);
    EXPECT_EQ(dat.lastSampleTime, 8.0);
}

TEST_F(DatLoad, Float32Records) {
    RecordingBuilder file = ascii("2").type("FLOAT32");
    ASSERT_EQ(load(file.record(0, {0.5}, {true}).record(0, {-1.25}, {false})), Enums::Ok);
    EXPECT_EQ(dat.samples.at(0).analogValues, Analogs{0.5});
    EXPECT_EQ(dat.samples.at(1).analogValues, Analogs{-1.25});
    EXPECT_EQ(dat.samples.at(0).binaryValues, Bits{true});
    EXPECT_EQ(dat.samples.at(1).binaryValues, Bits{false});
}

TEST_F(DatLoad, Binary32SetByHandIsReadAsRecords) {
    ASSERT_EQ(resultOf(cfg.load(ascii("2").type("FLOAT32").write(dir.path(), "r"))), Enums::CfgLoaded);
    cfg.dataFileType = Enums::Binary32;
    ASSERT_EQ(
        loadBytes(
            LittleEndianBytes().u32(1).u32(0).i32(2147483647).u16(1).u32(2).u32(0).i32(-2147483647).u16(0).bytes()),
        0);
    EXPECT_EQ(dat.samples.at(0).analogValues, Analogs{2147483647.0});
    EXPECT_EQ(dat.samples.at(1).analogValues, Analogs{-2147483647.0});
}

TEST_F(DatLoad, UnknownTypeSetByHandIsReadAsRecordsOfZeros) {
    ASSERT_EQ(resultOf(cfg.load(binary("2").write(dir.path(), "r"))), Enums::CfgLoaded);
    cfg.dataFileType = static_cast<Enums::DataFileType>(7);
    ASSERT_EQ(loadBytes(records(2)), Enums::Ok);
    ASSERT_EQ(dat.samples.size(), 2U);
    EXPECT_EQ(dat.samples[1].analogValues, Analogs{0.0});
    EXPECT_EQ(dat.samples[1].binaryValues, Bits{true});
}

TEST_F(DatLoad, BinaryLengthMustHoldExactlyTheDeclaredRecords) {
    ASSERT_EQ(resultOf(cfg.load(binary("3").write(dir.path(), "r"))), Enums::CfgLoaded);
    ASSERT_EQ(cfg.recordLength, 12U);
    struct {
        const char* why;
        std::size_t length;
        Enums::LoadResult result;
    } const rows[] = {
        {"empty", 0, Enums::DatLoadError},
        {"one byte", 1, Enums::DatLoadError},
        {"one record", 12, Enums::DatLoadError},
        {"a byte short", 35, Enums::DatLoadError},
        {"exact", 36, Enums::Ok},
        {"a byte more", 37, Enums::Ok},
        {"a byte short of one record more", 47, Enums::Ok},
        {"one record more", 48, Enums::DatLoadError},
        {"two records more", 60, Enums::DatLoadError},
    };
    const std::string bytes = records(5);
    for (const auto& row : rows) {
        EXPECT_EQ(loadBytes(bytes.substr(0, row.length)), row.result) << row.why;
        if (row.result == Enums::Ok) {
            ASSERT_EQ(dat.samples.size(), 3U) << row.why;
            EXPECT_EQ(dat.samples[2].analogValues, Analogs{3.0}) << row.why;
            EXPECT_EQ(dat.lastSampleTime, 0.002) << row.why;
        } else {
            EXPECT_TRUE(dat.samples.empty()) << row.why;
            EXPECT_EQ(dat.lastSampleTime, -1.0) << row.why;
        }
    }
}

TEST_F(DatLoad, BinaryFileOfTheWrongLengthDropsTheEarlierSamples) {
    loadTwoSamplesFirst();
    cfg.dataFileType = Enums::Binary;
    cfg.recordLength = 12;
    EXPECT_EQ(loadBytes(records(1)), Enums::DatLoadError);
    expectNoSamples();
}

TEST_F(DatLoad, BinaryFileOfNoDeclaredSamplesIsLoadError) {
    ASSERT_EQ(resultOf(cfg.load(binary("0").write(dir.path(), "r"))), Enums::CfgLoaded);
    for (const int count : {0, 1}) {
        EXPECT_EQ(loadBytes(records(count)), Enums::DatLoadError) << count;
        expectNoSamples();
    }
    EXPECT_EQ(loadBytes("12345"), Enums::DatLoadError) << "less than a record, so that the quotient is 0 as well";
    expectNoSamples();
}

TEST_F(DatLoad, RecordLengthOfZeroIsLoadError) {
    ASSERT_EQ(resultOf(cfg.load(binary("3").write(dir.path(), "r"))), Enums::CfgLoaded);
    ASSERT_EQ(loadBytes(records(3)), Enums::Ok);
    cfg.recordLength = 0;
    EXPECT_EQ(loadBytes(records(3)), Enums::DatLoadError);
    expectNoSamples();
}

TEST_F(DatLoad, RecordLengthSetByHandMustHoldTheFieldsThatAreRead) {
    cfg.dataFileType = OrvComtradeLib::Enums::Binary;
    cfg.lastSampleNumber = 1;
    cfg.totalChannelCount = 16;
    cfg.binaryChannelCount = 16;
    cfg.statusWordCount = 2; // the second word begins behind the last channel and is not read
    cfg.recordLength = 10;
    ASSERT_EQ(loadBytes(std::string(8, '\0') + std::string("\x05\x00", 2)), Enums::Ok);
    std::vector<bool> states(16);
    states[0] = true;
    states[2] = true;
    EXPECT_EQ(dat.samples[0].binaryValues, states);

    cfg.statusWordCount = 0;
    cfg.analogValuesLength = 100;
    cfg.recordLength = 8;
    ASSERT_EQ(loadBytes(std::string(8, '\0')), Enums::Ok);
    EXPECT_TRUE(dat.samples[0].binaryValues.empty());

    cfg.statusWordCount = 1;
    EXPECT_EQ(loadBytes(std::string(8, '\0')), Enums::DatLoadError);
    cfg.binaryChannelCount = 0;
    cfg.recordLength = 7; // the time stamp ends at 8
    EXPECT_EQ(loadBytes(std::string(7, '\0')), Enums::DatLoadError);
    cfg.analogChannelCount = 2;
    cfg.analogChannelConfigs.emplace_back(0, false, 1999);
    cfg.analogChannelConfigs.emplace_back(1, false, 1999);
    cfg.recordLength = 11; // the second value ends at 12
    EXPECT_EQ(loadBytes(std::string(11, '\0')), Enums::DatLoadError);
    cfg.recordLength = 12;
    EXPECT_EQ(loadBytes(std::string(12, '\0')), Enums::Ok);
}

TEST_F(DatLoad, BinaryCountBeyondTheFileIsLoadError) {
    ASSERT_EQ(resultOf(cfg.load(binary("3").write(dir.path(), "r"))), Enums::CfgLoaded);
    for (const unsigned long count : {4UL, 1000000000000UL, 9223372036854775808UL, 18446744073709551615UL}) {
        cfg.lastSampleNumber = count;
        EXPECT_EQ(loadBytes(records(3)), Enums::DatLoadError) << count;
        expectNoSamples();
    }
}

TEST_F(DatLoad, BinaryChannelWithoutARecordIsLoadError) {
    ASSERT_EQ(resultOf(cfg.load(binary("2").write(dir.path(), "r"))), Enums::CfgLoaded);
    ASSERT_EQ(loadBytes(records(2)), Enums::Ok);
    cfg.analogChannelConfigs.clear();
    EXPECT_EQ(loadBytes(records(2)), Enums::DatLoadError);
    expectNoSamples();
}

TEST_F(DatLoad, BinarySamplesKeepTheCapacityReserved) {
    ASSERT_EQ(resultOf(cfg.load(binary("5").write(dir.path(), "r"))), Enums::CfgLoaded);
    ASSERT_EQ(loadBytes(records(5)), Enums::Ok);
    EXPECT_EQ(dat.samples.capacity(), 5U);
    cfg.lastSampleNumber = 2;
    ASSERT_EQ(loadBytes(records(2)), Enums::Ok);
    EXPECT_EQ(dat.samples.size(), 2U);
    EXPECT_EQ(dat.samples.capacity(), 5U);
}

TEST_F(DatLoad, LongBinaryFileIsReadToTheEnd) {
    ASSERT_EQ(resultOf(cfg.load(binary("100000").write(dir.path(), "r"))), Enums::CfgLoaded);
    std::string bytes;
    for (unsigned int number = 0; number < 100000; ++number) {
        bytes += LittleEndianBytes()
                     .u32(number)
                     .u32(0)
                     .u16(static_cast<std::uint16_t>(number % 30000))
                     .u16(number % 3 == 0 ? 1 : 0)
                     .bytes();
    }
    ASSERT_EQ(loadBytes(bytes), Enums::Ok);
    ASSERT_EQ(dat.samples.size(), 100000U);
    std::size_t wrong = 0;
    for (unsigned int number = 0; number < 100000; ++number) {
        const Sample& sample = dat.samples[number];
        const bool right = sample.index == number && sample.analogValues == Analogs{number % 30000 + 0.0} &&
                           sample.binaryValues == Bits{number % 3 == 0};
        wrong += right ? 0 : 1;
    }
    EXPECT_EQ(wrong, 0U);
    EXPECT_EQ(dat.lastSampleTime, 99.999);
}

TEST_F(DatLoad, RecordOfManyChannels) {
    cfg.dataFileType = Enums::Binary;
    cfg.analogChannelCount = 200000;
    cfg.totalChannelCount = 200000;
    cfg.analogChannelConfigs.assign(200000, AnalogChannelConfig(0, std::string("1,U,,,V,1,0,0,0,0"), 1999));
    cfg.analogValuesLength = 400000;
    cfg.recordLength = 400008;
    cfg.lastSampleNumber = 2;
    cfg.samplingRates.emplace_back("1000,2");
    LittleEndianBytes bytes;
    for (const std::int16_t last : {std::int16_t{7}, std::int16_t{-9}}) {
        bytes.u32(1).u32(0).raw(std::string(399998, '\0')).i16(last);
    }
    ASSERT_EQ(loadBytes(bytes.bytes()), Enums::Ok);
    ASSERT_EQ(dat.samples.at(1).analogValues.size(), 200000U);
    EXPECT_EQ(dat.samples[0].analogValues[199999], 7.0);
    EXPECT_EQ(dat.samples[1].analogValues[199999], -9.0);
    EXPECT_EQ(dat.samples[1].analogValues[199998], 0.0);
}

// ASCII files

TEST_F(DatLoad, AsciiLinesBecomeSamples) {
    ASSERT_EQ(load(ascii("3").asciiLine("11,0,10,1").asciiLine("22,0,-20,0").asciiLine("33,0,30,1")), Enums::Ok);
    ASSERT_EQ(dat.samples.size(), 3U);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(dat.samples[i].index, i);
        EXPECT_EQ(&dat.samples[i].cfg, &cfg);
    }
    EXPECT_EQ(dat.samples[0].time, 0.0);
    EXPECT_EQ(dat.samples[2].time, 0.002);
    EXPECT_EQ(dat.samples[0].analogValues, Analogs{10.0});
    EXPECT_EQ(dat.samples[1].analogValues, Analogs{-20.0});
    EXPECT_EQ(dat.samples[2].binaryValues, Bits{true});
    EXPECT_EQ(dat.lastSampleTime, 0.002);
}

TEST_F(DatLoad, AsciiTimesComeFromTheTimestampsWithoutARate) {
    ASSERT_EQ(load(RecordingBuilder()
                       .status("1,T")
                       .rateCount("0")
                       .rate("0,2")
                       .multiplier("2")
                       .asciiLine("1,1000000,1")
                       .asciiLine("2,-1,1")),
              Enums::Ok);
    EXPECT_EQ(dat.samples.at(0).time, 2.0);
    EXPECT_EQ(dat.lastSampleTime, 8589.934589999999);
}

TEST_F(DatLoad, AsciiLineEndsWithCarriageReturnLoadAlike) {
    ASSERT_EQ(load(ascii("2").lineEnd("\r\n").record(0, {10}, {true}).record(0, {-20}, {false})), Enums::Ok);
    ASSERT_EQ(dat.samples.size(), 2U);
    EXPECT_EQ(dat.samples[1].analogValues, Analogs{-20.0});
    EXPECT_EQ(dat.samples[1].binaryValues, Bits{false});
}

TEST_F(DatLoad, AsciiLinesBeyondTheDeclaredCountAreNotRead) {
    ASSERT_EQ(load(ascii("2").asciiLine("1,0,5,1").asciiLine("2,0,6,0").asciiLine("malformed").asciiLine("\r")),
              Enums::Ok);
    ASSERT_EQ(dat.samples.size(), 2U);
    EXPECT_EQ(dat.lastSampleTime, 0.001);
    ASSERT_EQ(load(ascii("2").asciiLine("1,0,5,1").asciiLine("").asciiLine("2,0,6,0").asciiLine("3,0,7,0")), Enums::Ok);
    EXPECT_EQ(dat.samples.size(), 2U);
}

TEST_F(DatLoad, FewerAsciiLinesThanDeclaredAreAccepted) {
    ASSERT_EQ(load(ascii("100").asciiLine("1,0,5,1").asciiLine("2,0,6,0").asciiLine("3,0,7,0")), Enums::Ok);
    EXPECT_EQ(dat.samples.size(), 3U);
    EXPECT_EQ(dat.samples.capacity(), 3U);
    EXPECT_EQ(dat.lastSampleTime, 0.002);
}

TEST_F(DatLoad, EmptyAsciiFileHasNoSamples) {
    loadTwoSamplesFirst();
    EXPECT_EQ(loadBytes(""), Enums::Ok);
    expectNoSamples();
    EXPECT_EQ(loadBytes("\n\n\n"), Enums::Ok);
    expectNoSamples();
}

TEST_F(DatLoad, EmptyAsciiLinesTakeNoIndex) {
    ASSERT_EQ(resultOf(cfg.load(ascii("3").write(dir.path(), "r"))), Enums::CfgLoaded);
    ASSERT_EQ(loadBytes("\n\n1,0,5,1\n\n\n2,0,6,0\n\n3,0,7,1\n\n"), Enums::Ok);
    ASSERT_EQ(dat.samples.size(), 3U);
    EXPECT_EQ(dat.samples[1].index, 1U);
    EXPECT_EQ(dat.samples[1].time, 0.001);
    EXPECT_EQ(dat.samples[2].index, 2U);
    EXPECT_EQ(dat.samples[2].analogValues, Analogs{7.0});
}

TEST_F(DatLoad, AsciiLineOfACarriageReturnIsNotEmpty) {
    ASSERT_EQ(resultOf(cfg.load(ascii("2").write(dir.path(), "r"))), Enums::CfgLoaded);
    EXPECT_EQ(loadBytes("1,0,5,1\r\n\r\n2,0,6,0\r\n"), Enums::DatLoadError);
    expectNoSamples();
    EXPECT_EQ(loadBytes("1,0,5,1\r\n2,0,6,0\r\n\r\n"), Enums::Ok);
    EXPECT_EQ(dat.samples.size(), 2U);
    EXPECT_EQ(loadBytes("1,0,5,1\r\n\r\n"), Enums::DatLoadError);
    expectNoSamples();
}

TEST_F(DatLoad, LastAsciiLineNeedsNoLineFeed) {
    ASSERT_EQ(resultOf(cfg.load(ascii("2").write(dir.path(), "r"))), Enums::CfgLoaded);
    ASSERT_EQ(loadBytes("1,0,5,1\n2,0,6,0"), Enums::Ok);
    ASSERT_EQ(dat.samples.size(), 2U);
    EXPECT_EQ(dat.samples[1].analogValues, Analogs{6.0});
}

TEST_F(DatLoad, CarriageReturnAloneEndsNoAsciiLine) {
    ASSERT_EQ(resultOf(cfg.load(ascii("2").write(dir.path(), "r"))), Enums::CfgLoaded);
    ASSERT_EQ(loadBytes("1,0,5,1\r2,0,6,0\r"), Enums::Ok);
    EXPECT_EQ(dat.samples.size(), 1U);
}

TEST_F(DatLoad, AsciiLineThatDoesNotDecodeDropsEverySample) {
    for (const char* const line : {"x", "3,0,7", " ", "3,0,+7,1", "3 ,0,7,1"}) {
        loadTwoSamplesFirst();
        EXPECT_EQ(load(ascii("3").asciiLine("1,0,5,1").asciiLine("2,0,6,0").asciiLine(line)), Enums::DatLoadError)
            << line;
        expectNoSamples();
    }
}

TEST_F(DatLoad, AsciiFileOfNoDeclaredSamplesIsNotRead) {
    loadTwoSamplesFirst();
    EXPECT_EQ(load(ascii("0").asciiLine("malformed")), Enums::Ok);
    expectNoSamples();
}

TEST_F(DatLoad, AsciiChannelWithoutARecordIsLoadError) {
    loadTwoSamplesFirst();
    cfg.analogChannelConfigs.clear();
    EXPECT_EQ(resultOf(dat.load(dir.file("r.dat"))), Enums::DatLoadError);
    expectNoSamples();
}

TEST_F(DatLoad, HugeAsciiCountOverThreeLinesLoadsThree) {
    ASSERT_EQ(load(ascii("1000000000000").asciiLine("1,0,5,1").asciiLine("2,0,6,0").asciiLine("3,0,7,0")), Enums::Ok);
    EXPECT_EQ(dat.samples.size(), 3U);
    EXPECT_EQ(dat.samples.capacity(), dat.samples.size());
    EXPECT_EQ(dat.lastSampleTime, 0.002);
}

TEST_F(DatLoad, AsciiCountBeyondAnyMemoryDropsTheSamplesButNotTheLastTime) {
    for (const unsigned long count : {2000000000000UL, 9223372036854775808UL, 18446744073709551615UL}) {
        loadTwoSamplesFirst();
        cfg.lastSampleNumber = count;
        EXPECT_EQ(resultOf(dat.load(dir.file("r.dat"))), Enums::DatLoadError) << count;
        EXPECT_TRUE(dat.samples.empty()) << count;
        EXPECT_EQ(dat.lastSampleTime, 0.001) << count;
        cfg = Cfg();
    }
}

TEST_F(DatLoad, EarlierCapacityIsGivenBack) {
    ASSERT_EQ(resultOf(cfg.load(binary("1000").write(dir.path(), "r"))), Enums::CfgLoaded);
    ASSERT_EQ(loadBytes(records(1000)), Enums::Ok);
    cfg = Cfg();
    loadTwoSamplesFirst();
    EXPECT_EQ(dat.samples.capacity(), 2U);
}

TEST_F(DatLoad, NulInAnAsciiFileIsACharacterLikeAnyOther) {
    ASSERT_EQ(resultOf(cfg.load(ascii("2").write(dir.path(), "r"))), Enums::CfgLoaded);
    ASSERT_EQ(loadBytes(std::string("1,0,5,\0\n2,0,6,0\n", 16)), Enums::Ok);
    ASSERT_EQ(dat.samples.size(), 2U);
    EXPECT_EQ(dat.samples[0].binaryValues, Bits{true});
}

TEST_F(DatLoad, SurplusColumnsAreIgnored) {
    ASSERT_EQ(load(ascii("2").asciiLine("1,0,5,1,9,9").asciiLine("2,0,6,0,x")), Enums::Ok);
    ASSERT_EQ(dat.samples.size(), 2U);
    EXPECT_EQ(dat.samples[0].analogValues.size(), 1U);
    EXPECT_EQ(dat.samples[0].binaryValues.size(), 1U);
}

TEST_F(DatLoad, AsciiValuesAreScaledByTheirRecords) {
    ASSERT_EQ(load(RecordingBuilder()
                       .analog("1,U,,,kV,0.5,10,0,0,0")
                       .analog("2,I,,,mA,2,-1,0,0,0,200,1,P")
                       .rate("1000,1")
                       .asciiLine("1,0,5,300")),
              Enums::Ok);
    EXPECT_EQ(dat.samples.at(0).analogValues, (Analogs{12500.0, 0.002}));
}

TEST_F(DatLoad, BinaryValuesAreScaledByTheirRecords) {
    ASSERT_EQ(load(RecordingBuilder()
                       .analog("1,U,,,kV,0.5,10,0,0,0")
                       .analog("2,I,,,mA,2,-1,0,0,0,200,1,P")
                       .rate("1000,1")
                       .type("BINARY")
                       .record(0, {5, 300}, {})),
              Enums::Ok);
    EXPECT_EQ(dat.samples.at(0).analogValues, (Analogs{12500.0, 0.002}));
}

TEST_F(DatLoad, SeventeenStatusChannelsInRecords) {
    RecordingBuilder file = RecordingBuilder().rate("1000,1").type("BINARY");
    for (int channel = 0; channel < 17; ++channel) {
        file.status("1,T");
    }
    Bits bits(17, false);
    bits[1] = bits[15] = bits[16] = true;
    ASSERT_EQ(load(file.record(0, {}, bits)), Enums::Ok);
    EXPECT_EQ(dat.samples.at(0).binaryValues, bits);
}

TEST_F(DatLoad, HundredStatusChannelsInEitherEncoding) {
    for (const char* const type : {"ASCII", "BINARY"}) {
        RecordingBuilder file = RecordingBuilder().rate("1000,2").type(type);
        Bits first;
        for (int channel = 0; channel < 100; ++channel) {
            file.status("1,T");
            first.push_back(channel % 3 == 0 || channel == 64);
        }
        Bits second = first;
        second.flip();
        ASSERT_EQ(load(file.record(0, {}, first).record(0, {}, second)), Enums::Ok) << type;
        ASSERT_EQ(dat.samples.size(), 2U) << type;
        EXPECT_EQ(dat.samples[0].binaryValues, first) << type;
        EXPECT_EQ(dat.samples[1].binaryValues, second) << type;
    }
}

// Times of many samples

class DatTimes : public DatLoad {
protected:
    void loadIndexes(std::initializer_list<const char*> rates, unsigned long count, double timeMultiplier = 1.0) {
        cfg = Cfg();
        for (const char* const rate : rates) {
            cfg.samplingRates.emplace_back(std::string(rate));
        }
        cfg.lastSampleNumber = count;
        cfg.timeMultiplier = timeMultiplier;
        std::string lines;
        for (unsigned long line = 0; line < count; ++line) {
            lines += "1,123456\n";
        }
        ASSERT_EQ(loadBytes(lines), Enums::Ok);
        ASSERT_EQ(dat.samples.size(), count);
    }
};

TEST_F(DatTimes, FollowTheRates) {
    loadIndexes({"1000,500", "2000,1500", "4000,2000"}, 6001);
    EXPECT_EQ(dat.samples[0].time, 0.0);
    EXPECT_EQ(dat.samples[499].time, 0.499);
    EXPECT_EQ(dat.samples[500].time, 0.5);
    EXPECT_EQ(dat.samples[700].time, 0.6);
    EXPECT_EQ(dat.samples[1800].time, 1.15);
    EXPECT_EQ(dat.samples[2000].time, 1.25);
    EXPECT_EQ(dat.samples[2004].time, 1.251);
    EXPECT_EQ(dat.samples[6000].time, 2.25);
}

TEST_F(DatTimes, StopGrowingOneLastSegmentBehindTheEnd) {
    loadIndexes({"1000,2"}, 6, 10.0);
    EXPECT_EQ(dat.samples[2].time, 0.02);
    EXPECT_EQ(dat.samples[3].time, 0.03);
    EXPECT_EQ(dat.samples[4].time, 0.04);
    EXPECT_EQ(dat.samples[5].time, 0.04);
}

TEST_F(DatTimes, RateThatIsNotANumber) {
    loadIndexes({"nan,2", "1000,5"}, 4, 2.0);
    EXPECT_EQ(dat.samples[0].time, -2.0);
    EXPECT_EQ(dat.samples[1].time, -2.0);
    EXPECT_EQ(dat.samples[2].time, -1.0);
    EXPECT_EQ(dat.samples[3].time, -1.0);
    loadIndexes({"1000,2", "nan,5"}, 8, 2.0);
    EXPECT_EQ(dat.samples[1].time, 0.002);
    EXPECT_EQ(dat.samples[3].time, -1.996);
    EXPECT_EQ(dat.samples[7].time, -1.0);
}

TEST_F(DatTimes, SegmentWithoutSamplesIsPassedOver) {
    loadIndexes({"1000,0", "2000,4", "1000,0"}, 6);
    EXPECT_EQ(dat.samples[0].time, 0.0);
    EXPECT_EQ(dat.samples[3].time, 0.0015);
    EXPECT_EQ(dat.samples[5].time, 0.002);
}

TEST_F(DatTimes, WithoutRatesAreMinusOne) {
    loadIndexes({}, 2);
    EXPECT_EQ(dat.samples[1].time, -1.0);
    EXPECT_EQ(dat.lastSampleTime, -1.0);
}

// Reload

TEST_F(DatLoad, SecondLoadReplacesTheSamples) {
    loadTwoSamplesFirst();
    EXPECT_EQ(loadBytes("9,0,77,1\n"), Enums::Ok);
    ASSERT_EQ(dat.samples.size(), 1U);
    EXPECT_EQ(dat.samples[0].index, 0U);
    EXPECT_EQ(dat.samples[0].analogValues, Analogs{77.0});
    EXPECT_EQ(dat.lastSampleTime, 0.0);
}

TEST_F(DatLoad, ReadsAgainAfterAFailure) {
    loadTwoSamplesFirst();
    EXPECT_EQ(loadBytes("x\n"), Enums::DatLoadError);
    expectNoSamples();
    EXPECT_EQ(resultOf(dat.load(dir.file("r.dat"))), Enums::Ok);
    expectTheTwoSamples();
}

} // namespace
