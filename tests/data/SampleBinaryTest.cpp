#include "Cfg.h"
#include "Sample.h"
#include "support/LittleEndianBytes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace {

using namespace OrvComtradeLib;
using orvtest::LittleEndianBytes;

using Analogs = std::vector<double>;
using Bits = std::vector<bool>;

/// Channels whose values are the raw ones, times from the time stamps, and the layout that goes with the type.
Cfg cfgOf(Enums::DataFileType type, int analogs, int statuses) {
    Cfg cfg;
    cfg.totalChannelCount = analogs + statuses;
    cfg.analogChannelCount = analogs;
    cfg.binaryChannelCount = statuses;
    cfg.samplingRateKnown = false;
    for (int channel = 0; channel < analogs; ++channel) {
        cfg.analogChannelConfigs.emplace_back(channel, std::string("1,U,,,V,1,0,0,0,0"), 1999);
    }
    cfg.dataFileType = type;
    cfg.analogValueLength = type == Enums::Binary || type == Enums::Ascii ? 2 : 4;
    cfg.analogValuesLength = cfg.analogValueLength * static_cast<unsigned int>(analogs);
    cfg.statusWordCount = static_cast<unsigned int>(statuses + 15) / 16;
    cfg.statusWordsLength = 2 * cfg.statusWordCount;
    cfg.recordLength = 8 + cfg.analogValuesLength + cfg.statusWordsLength;
    return cfg;
}

bool loadRecord(Sample& sample, const std::string& bytes, unsigned long index = 0) {
    std::vector<char> record(bytes.begin(), bytes.end()); // exactly as long as the bytes
    return sample.load(record.data(), index);
}

TEST(SampleLoadBinary, FillsIndexTimeAndValues) {
    const Cfg cfg = cfgOf(Enums::Binary, 2, 3);
    Sample sample(cfg);
    ASSERT_TRUE(loadRecord(sample,
                           std::string("\xFF\xFF\xFF\xFF" // sample number
                                       "\x80\x84\x1E\x00" // 2000000 microseconds
                                       "\x05\x00\xFD\xFF" // 5 and -3
                                       "\x05\x00",
                                       14),
                           12)); // bits 0 and 2
    EXPECT_EQ(sample.index, 12U);
    EXPECT_EQ(sample.time, 2.0);
    EXPECT_EQ(sample.analogValues, (Analogs{5.0, -3.0}));
    EXPECT_EQ(sample.binaryValues, (Bits{true, false, true}));
}

TEST(SampleLoadBinary, AnalogValuesGoThroughTheirOwnRecords) {
    Cfg cfg = cfgOf(Enums::Binary, 2, 0);
    cfg.analogChannelConfigs[0] = AnalogChannelConfig(0, std::string("1,U,,,kV,0.5,10,0,0,0"), 1999);
    cfg.analogChannelConfigs[1] = AnalogChannelConfig(1, std::string("2,I,,,mA,2,-1,0,0,0,200,1,P"), 1999);
    Sample sample(cfg);
    ASSERT_TRUE(loadRecord(sample, LittleEndianBytes().u32(1).u32(0).i16(5).i16(300).bytes()));
    // (5 * 0.5 + 10) kV, and (300 * 2/200 - 1) mA
    EXPECT_EQ(sample.analogValues, (Analogs{12500.0, 0.002}));
}

TEST(SampleLoadBinary, TimestampIsUnsignedMicroseconds) {
    Cfg cfg = cfgOf(Enums::Binary, 0, 0);
    struct {
        const char* why;
        std::string bytes;
        double timeMultiplier;
        double time;
    } const rows[] = {
        {"byte order", std::string("\x40\x42\x0F\x00", 4), 1.0, 1.0},
        {"all bits", "\xFF\xFF\xFF\xFF", 1.0, 4294.9672949999995},
        {"highest bit", std::string("\x00\x00\x00\x80", 4), 1.0, 2147.483648},
        {"multiplier", "\xFF\xFF\xFF\xFF", 1000.0, 4294967.295},
        {"multiplier first, then the microseconds", std::string("\x03\x00\x00\x00", 4), 0.3, 0.00000089999999999999985},
        {"zero", std::string(4, '\0'), 1.0, 0.0},
    };
    for (const auto& row : rows) {
        cfg.timeMultiplier = row.timeMultiplier;
        Sample sample(cfg);
        EXPECT_TRUE(loadRecord(sample, "\x01\x02\x03\x04" + row.bytes)) << row.why;
        EXPECT_EQ(sample.time, row.time) << row.why;
    }
}

TEST(SampleLoadBinary, KnownRatesGiveTheTimeWhateverTheTimestamp) {
    Cfg cfg = cfgOf(Enums::Binary, 0, 0);
    cfg.samplingRateKnown = true;
    cfg.samplingRates.emplace_back("1000,500");
    cfg.timeMultiplier = 2.0;
    for (const unsigned int timestamp : {0U, 999999U, 4294967295U}) {
        Sample sample(cfg);
        EXPECT_TRUE(loadRecord(sample, LittleEndianBytes().u32(1).u32(timestamp).bytes(), 7));
        EXPECT_EQ(sample.time, 0.014) << timestamp;
    }
    cfg.samplingRates.clear();
    Sample sample(cfg);
    EXPECT_TRUE(loadRecord(sample, LittleEndianBytes().u32(1).u32(1000).bytes(), 7));
    EXPECT_EQ(sample.time, -1.0);
}

TEST(SampleLoadBinary, BinaryIsSigned16Bit) {
    const Cfg cfg = cfgOf(Enums::Binary, 5, 0);
    Sample sample(cfg);
    ASSERT_TRUE(loadRecord(sample, std::string(8, '\0') + std::string("\xFF\x7F"
                                                                      "\x00\x80"
                                                                      "\xFF\xFF"
                                                                      "\x34\x12"
                                                                      "\x00\x00",
                                                                      10)));
    EXPECT_EQ(sample.analogValues, (Analogs{32767.0, -32768.0, -1.0, 4660.0, 0.0}));
}

TEST(SampleLoadBinary, Binary32IsSigned32Bit) {
    const Cfg cfg = cfgOf(Enums::Binary32, 4, 1);
    Sample sample(cfg);
    ASSERT_TRUE(loadRecord(sample, std::string(8, '\0') + std::string("\xFF\xFF\xFF\x7F"
                                                                      "\x00\x00\x00\x80"
                                                                      "\xFF\xFF\xFF\xFF"
                                                                      "\x78\x56\x34\x12"
                                                                      "\x01\x00",
                                                                      18)));
    EXPECT_EQ(sample.analogValues, (Analogs{2147483647.0, -2147483648.0, -1.0, 305419896.0}));
    EXPECT_EQ(sample.binaryValues, Bits{true});
}

TEST(SampleLoadBinary, Float32IsSinglePrecisionWidened) {
    const Cfg cfg = cfgOf(Enums::Float32, 5, 1);
    Sample sample(cfg);
    ASSERT_TRUE(loadRecord(sample, std::string(8, '\0') + std::string("\x00\x00\xC0\xBF" // -1.5
                                                                      "\xCD\xCC\xCC\x3D" // nearest to 0.1
                                                                      "\x01\x00\x00\x00" // smallest
                                                                      "\xFF\xFF\x7F\x7F" // largest
                                                                      "\x00\x00\x00\x80" // negative zero
                                                                      "\x01\x00",
                                                                      22)));
    EXPECT_EQ(sample.analogValues, (Analogs{-1.5, 0.10000000149011612, 1.401298464324817e-45,
                                            340282346638528859811704183484516925440.0, 0.0}));
    EXPECT_EQ(sample.binaryValues, Bits{true});
}

TEST(SampleLoadBinary, Float32NotANumberAndInfinityAreScaledLikeAnyValue) {
    Cfg cfg = cfgOf(Enums::Float32, 4, 0);
    cfg.analogChannelConfigs[2].a = -2.0;
    cfg.analogChannelConfigs[3].a = 0.0;
    Sample sample(cfg);
    ASSERT_TRUE(loadRecord(sample, std::string(8, '\0') + std::string("\x00\x00\xC0\x7F"
                                                                      "\x00\x00\x80\xFF"
                                                                      "\x00\x00\x80\x7F"
                                                                      "\x00\x00\x80\x7F",
                                                                      16)));
    ASSERT_EQ(sample.analogValues.size(), 4U);
    EXPECT_TRUE(std::isnan(sample.analogValues[0]));
    EXPECT_EQ(sample.analogValues[1], -std::numeric_limits<double>::infinity());
    EXPECT_EQ(sample.analogValues[2], -std::numeric_limits<double>::infinity());
    EXPECT_TRUE(std::isnan(sample.analogValues[3]));
}

TEST(SampleLoadBinary, OtherTypesHaveRawValueZeroWithoutReading) {
    for (const Enums::DataFileType type : {Enums::Ascii, static_cast<Enums::DataFileType>(7)}) {
        Cfg cfg = cfgOf(type, 2, 0);
        cfg.analogChannelConfigs[1].b = 3.0;
        Sample sample(cfg);
        // No byte behind the time stamp
        EXPECT_TRUE(loadRecord(sample, "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF")) << type;
        EXPECT_EQ(sample.analogValues, (Analogs{0.0, 3.0})) << type;
    }
}

TEST(SampleLoadBinary, PositionsFollowTheStoredLengths) {
    Cfg cfg = cfgOf(Enums::Binary, 2, 1);
    cfg.analogValueLength = 3;
    cfg.analogValuesLength = 9;
    Sample sample(cfg);
    ASSERT_TRUE(loadRecord(sample, std::string(8, '\0') + std::string("\x01\x00\x77"
                                                                      "\x02\x00\x77"
                                                                      "\x77\x77\x77"
                                                                      "\x01\x00",
                                                                      11)));
    EXPECT_EQ(sample.analogValues, (Analogs{1.0, 2.0}));
    EXPECT_EQ(sample.binaryValues, Bits{true});
}

TEST(SampleLoadBinary, PositionsWrapAt32Bits) {
    Cfg cfg = cfgOf(Enums::Binary, 2, 0);
    cfg.analogValueLength = 4294967292U; // 4 bytes backwards
    Sample sample(cfg);
    ASSERT_TRUE(loadRecord(sample, LittleEndianBytes().u32(1).u32(7).i16(5).bytes()));
    EXPECT_EQ(sample.analogValues, (Analogs{5.0, 7.0}));
}

TEST(SampleLoadBinary, StatusBitsStartAtTheLeastSignificant) {
    const Cfg cfg = cfgOf(Enums::Binary, 0, 16);
    Sample sample(cfg);
    ASSERT_TRUE(loadRecord(sample, std::string(8, '\0') + "\x01\x82"));
    EXPECT_EQ(sample.binaryValues, (Bits{true, false, false, false, false, false, false, false, //
                                         false, true, false, false, false, false, false, true}));
}

TEST(SampleLoadBinary, SeventeenthStatusChannelIsBitZeroOfTheSecondWord) {
    const Cfg cfg = cfgOf(Enums::Binary, 1, 17);
    for (const bool last : {true, false}) {
        Sample sample(cfg);
        ASSERT_TRUE(loadRecord(
            sample, LittleEndianBytes().u32(1).u32(0).i16(9).u16(0x8000).u16(last ? 0x0001 : 0xFFFE).bytes()));
        ASSERT_EQ(sample.binaryValues.size(), 17U);
        EXPECT_FALSE(sample.binaryValues[14]);
        EXPECT_TRUE(sample.binaryValues[15]);
        EXPECT_EQ(sample.binaryValues[16], last);
    }
}

TEST(SampleLoadBinary, SurplusBitsOfTheLastWordAreIgnored) {
    const Cfg cfg = cfgOf(Enums::Binary, 0, 3);
    Sample sample(cfg);
    ASSERT_TRUE(loadRecord(sample, std::string(8, '\0') + "\xFA\xFF"));
    EXPECT_EQ(sample.binaryValues, (Bits{false, true, false}));
}

TEST(SampleLoadBinary, WithoutChannelsOnlyTheTimeIsRead) {
    const Cfg cfg = cfgOf(Enums::Float32, 0, 0);
    Sample sample(cfg);
    EXPECT_TRUE(loadRecord(sample, LittleEndianBytes().u32(1).u32(1000000).bytes()));
    EXPECT_EQ(sample.time, 1.0);
    EXPECT_TRUE(sample.analogValues.empty());
    EXPECT_TRUE(sample.binaryValues.empty());
}

TEST(SampleLoadBinary, StatusNeedsBothCountAndWords) {
    Cfg cfg = cfgOf(Enums::Binary, 0, 5);
    cfg.statusWordCount = 0;
    Sample withoutWords(cfg);
    EXPECT_TRUE(loadRecord(withoutWords, std::string(8, '\0')));
    EXPECT_TRUE(withoutWords.binaryValues.empty());

    cfg.binaryChannelCount = 0;
    cfg.statusWordCount = 1;
    Sample withoutChannels(cfg);
    EXPECT_TRUE(loadRecord(withoutChannels, std::string(10, '\xFF')));
    EXPECT_TRUE(withoutChannels.binaryValues.empty());
}

TEST(SampleLoadBinary, WordBeyondTheStatusChannels) {
    // Exactly used up: nothing more. Passed: the difference wraps, and the whole word counts.
    Cfg cfg = cfgOf(Enums::Binary, 0, 16);
    cfg.statusWordCount = 2;
    Sample usedUp(cfg);
    ASSERT_TRUE(loadRecord(usedUp, std::string(8, '\0') + std::string(4, '\xFF')));
    EXPECT_EQ(usedUp.binaryValues, Bits(16, true));

    cfg.binaryChannelCount = 3;
    Sample passed(cfg);
    ASSERT_TRUE(loadRecord(passed, std::string(8, '\0') + std::string(4, '\xFF')));
    EXPECT_EQ(passed.binaryValues, Bits(19, true));

    cfg.binaryChannelCount = 17;
    cfg.statusWordCount = 1;
    Sample oneWord(cfg);
    ASSERT_TRUE(loadRecord(oneWord, std::string(8, '\0') + std::string(2, '\xFF')));
    EXPECT_EQ(oneWord.binaryValues, Bits(16, true));
}

TEST(SampleLoadBinary, NegativeStatusCountIsAHugeOne) {
    Cfg cfg = cfgOf(Enums::Binary, 0, 16);
    cfg.binaryChannelCount = -1;
    cfg.statusWordCount = 2;
    Sample sample(cfg);
    ASSERT_TRUE(loadRecord(sample, std::string(8, '\0') + std::string(4, '\xFF')));
    EXPECT_EQ(sample.binaryValues, Bits(32, true));
}

TEST(SampleLoadBinary, ChannelWithoutARecordIsRejected) {
    Cfg cfg = cfgOf(Enums::Binary, 2, 0);
    cfg.analogChannelConfigs.pop_back();
    Sample sample(cfg);
    EXPECT_FALSE(loadRecord(sample, LittleEndianBytes().u32(1).u32(0).i16(5).i16(6).bytes(), 4));
    EXPECT_EQ(sample.index, 4U);
}

TEST(SampleLoadBinary, NegativeAnalogCountIsAHugeOne) {
    Cfg cfg = cfgOf(Enums::Binary, 0, 0);
    cfg.analogChannelCount = -1;
    Sample sample(cfg);
    EXPECT_FALSE(loadRecord(sample, std::string(8, '\0')));
}

TEST(SampleLoadBinary, SecondLoadAppends) {
    const Cfg cfg = cfgOf(Enums::Binary, 1, 1);
    Sample sample(cfg);
    ASSERT_TRUE(loadRecord(sample, LittleEndianBytes().u32(1).u32(0).i16(5).u16(1).bytes(), 0));
    ASSERT_TRUE(loadRecord(sample, LittleEndianBytes().u32(2).u32(1000000).i16(6).u16(0).bytes(), 1));
    EXPECT_EQ(sample.index, 1U);
    EXPECT_EQ(sample.time, 1.0);
    EXPECT_EQ(sample.analogValues, (Analogs{5.0, 6.0}));
    EXPECT_EQ(sample.binaryValues, (Bits{true, false}));
}

TEST(SampleLoadBinary, RecordIsReadOnly) {
    const Cfg cfg = cfgOf(Enums::Binary, 1, 1);
    const std::string bytes = LittleEndianBytes().u32(1).u32(2).i16(3).u16(4).bytes();
    std::vector<char> record(bytes.begin(), bytes.end());
    Sample sample(cfg);
    ASSERT_TRUE(sample.load(record.data(), 0));
    EXPECT_EQ(std::string(record.begin(), record.end()), bytes);
}

} // namespace
