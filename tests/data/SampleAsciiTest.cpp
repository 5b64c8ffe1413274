#include "Cfg.h"
#include "Dat.h"
#include "Sample.h"
#include "support/Results.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace OrvComtradeLib;

using Analogs = std::vector<double>;
using Bits = std::vector<bool>;

/// Channels whose values are the raw ones, and times from the time stamps.
Cfg cfgOf(int analogs, int statuses) {
    Cfg cfg;
    cfg.totalChannelCount = analogs + statuses;
    cfg.analogChannelCount = analogs;
    cfg.binaryChannelCount = statuses;
    cfg.samplingRateKnown = false;
    for (int channel = 0; channel < analogs; ++channel) {
        cfg.analogChannelConfigs.emplace_back(channel, std::string("1,U,,,V,1,0,0,0,0"), 1999);
    }
    for (int channel = 0; channel < statuses; ++channel) {
        cfg.binaryChannelConfigs.emplace_back(channel, std::string("1,T"), 1999);
    }
    return cfg;
}

struct Line {
    const char* why;
    std::string line;
    bool accepted;
    Analogs analogs;
    Bits bits;
};

/// Loads each line into a sample, and as a file of one line.
void expectLines(const Cfg& cfg, const std::vector<Line>& rows) {
    const orvtest::TempDir dir;
    Cfg fileCfg = cfg;
    fileCfg.lastSampleNumber = 1;
    for (const Line& row : rows) {
        Sample sample(cfg);
        EXPECT_EQ(sample.load(row.line, 0), row.accepted) << row.why << ": " << row.line;
        if (row.accepted) {
            EXPECT_EQ(sample.analogValues, row.analogs) << row.why << ": " << row.line;
            EXPECT_EQ(sample.binaryValues, row.bits) << row.why << ": " << row.line;
        }
        if (row.line.find('\n') != std::string::npos) {
            continue; // two lines in a file
        }
        Dat dat(fileCfg);
        EXPECT_EQ(orvtest::resultOf(dat.load(dir.write("line.dat", row.line + "\n"))),
                  row.accepted ? Enums::Ok : Enums::DatLoadError)
            << row.why << ": " << row.line;
        if (row.accepted && dat.samples.size() == 1) {
            EXPECT_EQ(dat.samples[0].analogValues, row.analogs) << row.why << ": " << row.line;
            EXPECT_EQ(dat.samples[0].binaryValues, row.bits) << row.why << ": " << row.line;
        }
    }
}

TEST(SampleConstruct, IsEmptyAndBoundToItsConfiguration) {
    const Cfg cfg = cfgOf(2, 2);
    const Sample sample(cfg);
    EXPECT_EQ(sample.index, 0U);
    EXPECT_EQ(sample.time, 0.0);
    EXPECT_TRUE(sample.analogValues.empty());
    EXPECT_TRUE(sample.binaryValues.empty());
    EXPECT_EQ(&sample.cfg, &cfg);
}

TEST(SampleConstruct, CopyAndMoveBothCopyEveryMember) {
    const Cfg cfg = cfgOf(1, 1);
    Sample sample(cfg);
    ASSERT_TRUE(sample.load(std::string("1,2000000,7,1"), 5));
    const Sample copy(sample); // NOLINT(performance-unnecessary-copy-initialization)
    const Sample moved(std::move(sample));
    for (const Sample* const other : {&copy, &moved}) {
        EXPECT_EQ(other->index, 5U);
        EXPECT_EQ(other->time, 2.0);
        EXPECT_EQ(other->analogValues, Analogs{7.0});
        EXPECT_EQ(other->binaryValues, Bits{true});
        EXPECT_EQ(&other->cfg, &cfg);
    }
    EXPECT_EQ(sample.analogValues, Analogs{7.0}); // NOLINT(bugprone-use-after-move): moving is copying
    EXPECT_EQ(sample.binaryValues, Bits{true});
}

TEST(SampleLoadAscii, FillsIndexTimeAndValues) {
    const Cfg cfg = cfgOf(2, 2);
    Sample sample(cfg);
    ASSERT_TRUE(sample.load(std::string("77,3000000,5,-3,1,0"), 12));
    EXPECT_EQ(sample.index, 12U);
    EXPECT_EQ(sample.time, 3.0);
    EXPECT_EQ(sample.analogValues, (Analogs{5.0, -3.0}));
    EXPECT_EQ(sample.binaryValues, (Bits{true, false}));
}

TEST(SampleLoadAscii, AnalogValuesGoThroughTheirOwnRecords) {
    Cfg cfg = cfgOf(2, 0);
    cfg.analogChannelConfigs[0] = AnalogChannelConfig(0, std::string("1,U,,,kV,0.5,10,0,0,0"), 1999);
    cfg.analogChannelConfigs[1] = AnalogChannelConfig(1, std::string("2,I,,,mA,2,-1,0,0,0,200,1,P"), 1999);
    Sample sample(cfg);
    ASSERT_TRUE(sample.load(std::string("1,0,5,300"), 0));
    // (5 * 0.5 + 10) kV, and (300 * 2/200 - 1) mA
    EXPECT_EQ(sample.analogValues, (Analogs{12500.0, 0.002}));
}

TEST(SampleLoadAscii, EmptyLineChangesNothing) {
    const Cfg cfg = cfgOf(0, 0);
    Sample sample(cfg);
    sample.index = 9;
    EXPECT_FALSE(sample.load(std::string(), 12));
    EXPECT_EQ(sample.index, 9U);
    EXPECT_FALSE(sample.load("", 12));
    EXPECT_EQ(sample.index, 9U);
}

TEST(SampleLoadAscii, LineOfWhiteSpaceIsRejectedWithItsIndexStored) {
    const Cfg cfg = cfgOf(0, 0);
    for (const char* const line : {" ", "\r", "\t\n\v\f\r "}) {
        Sample sample(cfg);
        EXPECT_FALSE(sample.load(std::string(line), 12));
        EXPECT_EQ(sample.index, 12U);
    }
}

TEST(SampleLoadAscii, WithoutChannels) {
    expectLines(cfgOf(0, 0), {
                                 {"both columns", "7,1000", true, {}, {}},
                                 {"only the sample number", "7", false, {}, {}},
                                 {"comma at the end", "7,", false, {}, {}},
                                 {"comma and blank at the end", "7, ", false, {}, {}},
                                 {"blank at the end", "7 ", false, {}, {}},
                                 {"comma behind the last column", "7,1000,", true, {}, {}},
                                 {"surplus", "7,1000,x", true, {}, {}},
                                 {"surplus without a comma", "7,1000x", true, {}, {}},
                                 {"point behind the last column", "7,1000.5", true, {}, {}},
                                 {"negative numbers", "-7,-1000", true, {}, {}},
                                 {"minus as separator", "7-1000", true, {}, {}},
                                 {"sample number is checked for form", "x,1000", false, {}, {}},
                                 {"sample number with a plus", "+7,1000", false, {}, {}},
                                 {"sample number with a point", "7.0,1000", false, {}, {}},
                                 {"empty sample number", ",1000", false, {}, {}},
                                 {"timestamp is checked for form", "7,x", false, {}, {}},
                                 {"empty timestamp", "7,,5", false, {}, {}},
                                 {"minus at the end of the line", "7,-", false, {}, {}},
                             });
}

TEST(SampleLoadAscii, TwoAnalogAndTwoStatusChannels) {
    expectLines(cfgOf(2, 2),
                {
                    // Separators
                    {"commas", "1,1000,5,-3,1,0", true, {5, -3}, {true, false}},
                    {"blanks behind commas", "1, 1000, 5,-3,1,0,\r", true, {5, -3}, {true, false}},
                    {"blanks alone", "1 1000 5 -3 1 0", true, {5, -3}, {true, false}},
                    {"much white space", "\t1,\v 1000\f5\r\n-3, \t1 \t0", true, {5, -3}, {true, false}},
                    {"leading white space", " \r 1,1000,5,-3,1,0", true, {5, -3}, {true, false}},
                    {"carriage return behind", "1,1000,5,-3,1,0\r", true, {5, -3}, {true, false}},
                    {"minus as separator", "1,1000,5-3,1,0", true, {5, -3}, {true, false}},
                    {"blank before a comma", "1,1000 ,5,-3,1,0", false, {}, {}},
                    {"blank before a comma", "1 ,1000,5,-3,1,0", false, {}, {}},
                    {"blank before a comma", "1,1000,5,-3 ,1", true, {5, -3}, {true, true}},
                    {"semicolon", "1;1000;5;-3;1;0", false, {}, {}},
                    {"two commas", "1,1000,,5,-3,1,0", false, {}, {}},
                    {"leading comma", ",1,1000,5,-3,1,0", false, {}, {}},
                    // Number of columns
                    {"one column short", "1,1000,5,-3,1", false, {}, {}},
                    {"one column short, comma", "1,1000,5,-3,1,", false, {}, {}},
                    {"one column short, comma and return", "1,1000,5,-3,1,\r", false, {}, {}},
                    {"one column short, return", "1,1000,5,-3,1\r", false, {}, {}},
                    {"no status column", "1,1000,5,-3", false, {}, {}},
                    {"one analog column", "1,1000,5", false, {}, {}},
                    {"surplus", "1,1000,5,-3,1,0,9,9", true, {5, -3}, {true, false}},
                    {"surplus directly behind", "1,1000,5,-3,1,0x", true, {5, -3}, {true, false}},
                    {"comma at the end", "1,1000,5,-3,1,0,", true, {5, -3}, {true, false}},
                    // Integers
                    {"plus", "1,1000,+5,-3,1,0", false, {}, {}},
                    {"point", "1,1000,5.5,-3,1,0", false, {}, {}},
                    {"point in the last analog column", "1,1000,5,-3.5,1", true, {5, -3}, {true, true}},
                    {"exponent", "1,1000,5e1,-3,1,0", false, {}, {}},
                    {"hexadecimal", "1,1000,0x5,-3,1,0", false, {}, {}},
                    {"two minuses", "1,1000,--5,-3,1,0", false, {}, {}},
                    {"minus before a blank", "1,1000,- 5,-3,1,0", false, {}, {}},
                    {"minus before a comma", "1,1000,-,-3,1,0", false, {}, {}},
                    {"minus at the end", "1,1000,5,-", false, {}, {}},
                    {"leading zeros", "01,01000,005,-003,1,0", true, {5, -3}, {true, false}},
                    {"negative zero is the integer zero", "1,1000,-0,-3,1,0", true, {0, -3}, {true, false}},
                    {"text", "1,1000,x,-3,1,0", false, {}, {}},
                    {"missing value", "1,1000,,-3,1,0", false, {}, {}},
                    // Status columns
                    {"without separator", "1,1000,5,-3,10", true, {5, -3}, {true, false}},
                    {"without separator", "1,1000,5,-3,01", true, {5, -3}, {false, true}},
                    {"a number takes two columns", "1,1000,5,-3,20,0", true, {5, -3}, {true, false}},
                    {"any character but 0 is set", "1,1000,5,-3,1,x", true, {5, -3}, {true, true}},
                    {"any character but 0 is set", "1,1000,5,-3,2,-", true, {5, -3}, {true, true}},
                    {"any character but 0 is set", "1,1000,5,-3,O,\xC0", true, {5, -3}, {true, true}},
                    {"empty column", "1,1000,5,-3,1,,0", true, {5, -3}, {true, true}},
                    {"empty columns", "1,1000,5,-3,,,0", true, {5, -3}, {true, false}},
                    {"empty first column", "1,1000,5,-3,,0", true, {5, -3}, {true, false}},
                    {"blank before a comma", "1,1000,5,-3,0 ,0", true, {5, -3}, {false, true}},
                    {"directly behind a number", "1,1000,5,-3x0", true, {5, -3}, {true, false}},
                });
}

TEST(SampleLoadAscii, ManyStatusColumns) {
    const Bits bits{true, false, true, true, false, false};
    expectLines(cfgOf(0, 6),
                {
                    {"commas", "1,0,1,0,1,1,0,0", true, {}, bits},
                    {"carriage return", "1,0,1,0,1,1,0,0\r", true, {}, bits},
                    {"comma at the end", "1,0,1,0,1,1,0,0,", true, {}, bits},
                    {"blanks behind commas", "1,0, 1, 0, 1, 1, 0, 0", true, {}, bits},
                    {"without commas", "1,0,101100", true, {}, bits},
                    {"other characters", "1,0,2,0,x,?,0,0", true, {}, bits},
                    {"two in the first column", "1,0,2,0,1,1,0,0", true, {}, bits},
                    {"two in the third column", "1,0,1,0,2,1,0,0", true, {}, bits},
                    {"two in the fourth column", "1,0,1,0,1,2,0,0", true, {}, bits},
                    {"two in the second column", "1,0,1,2,1,1,0,0", true, {}, {true, true, true, true, false, false}},
                    {"characters near 0 and 1", "1,0,/,0,3,p,0,0", true, {}, bits},
                    {"empty third column", "1,0,1,0,,1,0,0", true, {}, bits},
                    {"blank before a comma", "1,0,1,0 ,1,1,0,0", true, {}, {true, false, true, true, true, false}},
                    {"semicolon", "1,0,1;0,1,1,0,0", true, {}, {true, true, false, true, true, false}},
                    {"surplus", "1,0,0,0,0,0,0,0,1,1,1,1,1,1", true, {}, Bits(6, false)},
                    {"one short", "1,0,1,0,1,1,0", false, {}, {}},
                    {"one short, comma", "1,0,1,0,1,1,0,", false, {}, {}},
                    {"two short, comma", "1,0,1,0,1,1,", false, {}, {}},
                });
    expectLines(cfgOf(0, 4), {
                                 {"at the end of the line", "1,0,1,0,1,1", true, {}, {true, false, true, true}},
                                 {"comma", "1,0,0,1,1,0,", true, {}, {false, true, true, false}},
                                 {"surplus", "1,0,0,0,0,1,x", true, {}, {false, false, false, true}},
                             });
    expectLines(cfgOf(0, 3), {{"no more than expected", "1,0,1,1,0,1,1,1,", true, {}, {true, true, false}}});
}

TEST(SampleLoadAscii, HundredStatusColumns) {
    std::string line = "1,0";
    std::string blanks = "1,0";
    Bits bits;
    for (int channel = 0; channel < 100; ++channel) {
        const bool bit = channel % 3 == 0 || channel == 64;
        line += bit ? ",1" : ",0";
        blanks += bit ? " 1" : " 0";
        bits.push_back(bit);
    }
    std::string oneBlank = line;
    oneBlank[5] = ' ';
    expectLines(cfgOf(0, 100), {
                                   {"commas", line, true, {}, bits},
                                   {"blanks", blanks, true, {}, bits},
                                   {"a blank behind the first", oneBlank, true, {}, bits},
                                   {"surplus", line + ",1,1,1,1,1,1", true, {}, bits},
                               });
    expectLines(cfgOf(0, 101), {{"one short", line, false, {}, {}}});
}

TEST(SampleLoadAscii, NumberEndsAtTheFirstNonDigitWhereverItStands) {
    struct {
        const char* digits;
        double value;
    } const rows[] = {
        {"1", 1.0},
        {"12", 12.0},
        {"123", 123.0},
        {"1234", 1234.0},
        {"12345", 12345.0},
        {"123456", 123456.0},
        {"1234567", 1234567.0},
        {"12345678", 12345678.0},
        {"123456789", 123456789.0},
        {"1234567890123456", 1234567890123456.0},
        {"-90817263", -90817263.0},
        {"00000000000000000000000000000012", 12.0},
    };
    std::vector<Line> lines;
    for (const auto& row : rows) {
        for (const char end : {'x', ':', '/', '\0', '\x10', '\xB0', '\xB9', '.', '+'}) {
            const std::string field = std::string("1,0,") + row.digits + end;
            lines.push_back({"one character behind", field, true, {row.value}, {true}});
            lines.push_back({"digits behind", field + "0987654321", true, {row.value}, {true}});
        }
    }
    expectLines(cfgOf(1, 1), lines);
}

TEST(SampleLoadAscii, NegativeZeroHasNoSign) {
    const Cfg cfg = cfgOf(1, 0);
    Sample sample(cfg);
    ASSERT_TRUE(sample.load(std::string("1,0,-0"), 0));
    EXPECT_FALSE(std::signbit(sample.analogValues.at(0)));
}

TEST(SampleLoadAscii, WhiteSpaceIsTabToCarriageReturnAndBlank) {
    const Cfg cfg = cfgOf(0, 1);
    for (int code = 0; code < 256; ++code) {
        Sample sample(cfg);
        const std::string line = "1,5," + std::string(1, static_cast<char>(code)) + "0";
        ASSERT_TRUE(sample.load(line, 0)) << code;
        const bool isSpace =
            code == 9 || code == 10 || code == 11 || code == 12 || code == 13 || code == 32 || code == 48;
        EXPECT_EQ(sample.binaryValues, Bits{!isSpace}) << code;
    }
}

TEST(SampleLoadAscii, OtherCharactersDoNotSeparateNumbers) {
    const Cfg cfg = cfgOf(0, 0);
    for (int code = 0; code < 256; ++code) {
        Sample sample(cfg);
        const bool separates = (code >= 9 && code <= 13) || code == 32 || code == 44 || code == 45;
        EXPECT_EQ(sample.load("1" + std::string(1, static_cast<char>(code)) + "5", 0), separates) << code;
    }
}

TEST(SampleLoadAscii, IntegersWrapModulo64Bits) {
    const Cfg cfg = cfgOf(1, 0);
    struct {
        const char* why;
        const char* digits;
        double value;
    } const rows[] = {
        {"largest", "9223372036854775807", 9223372036854775808.0},
        {"one more", "9223372036854775808", -9223372036854775808.0},
        {"smallest", "-9223372036854775808", -9223372036854775808.0},
        {"one less", "-9223372036854775809", 9223372036854775808.0},
        {"all bits", "18446744073709551615", -1.0},
        {"none", "18446744073709551616", 0.0},
        {"once around", "18446744073709551621", 5.0},
        {"once around below zero", "-18446744073709551621", -5.0},
        {"many times around", "100000000000000000000000000000", 7886392056514347008.0},
        {"not every integer is a double", "9007199254740993", 9007199254740992.0},
    };
    for (const auto& row : rows) {
        Sample sample(cfg);
        EXPECT_TRUE(sample.load(std::string("1,0,") + row.digits, 0)) << row.why;
        EXPECT_EQ(sample.analogValues, Analogs{row.value}) << row.why;
    }
}

TEST(SampleLoadAscii, TimestampIsCutToItsLow32Bits) {
    Cfg cfg = cfgOf(0, 0);
    struct {
        const char* why;
        const char* timestamp;
        double timeMultiplier;
        double time;
    } const rows[] = {
        {"microseconds", "1000000", 1.0, 1.0},
        {"below zero", "-1", 1.0, 4294.9672949999995},
        {"below zero", "-1", 1000.0, 4294967.295},
        {"largest", "4294967295", 1.0, 4294.9672949999995},
        {"one more", "4294967296", 1.0, 0.0},
        {"beyond", "4295967296", 1.0, 1.0},
        {"above half", "3000000000", 1.0, 3000.0},
        {"wrapped modulo 2^64 first", "18446744073710551616", 1.0, 1.0},
        {"multiplier first, then the microseconds", "3", 0.3, 0.00000089999999999999985},
        {"a product and no quotient", "5", 1.0, 0.0000049999999999999996},
    };
    for (const auto& row : rows) {
        cfg.timeMultiplier = row.timeMultiplier;
        Sample sample(cfg);
        EXPECT_TRUE(sample.load(std::string("1,") + row.timestamp, 0)) << row.why;
        EXPECT_EQ(sample.time, row.time) << row.why;
    }
}

TEST(SampleLoadAscii, KnownRatesGiveTheTimeWhateverTheTimestamp) {
    Cfg cfg = cfgOf(0, 0);
    cfg.samplingRateKnown = true;
    cfg.samplingRates.emplace_back("1000,500");
    cfg.timeMultiplier = 2.0;
    for (const char* const line : {"1,0", "1,999999", "1,-1", "700,5"}) {
        Sample sample(cfg);
        EXPECT_TRUE(sample.load(std::string(line), 7)) << line;
        EXPECT_EQ(sample.time, 0.014) << line;
    }
    Sample sample(cfg);
    EXPECT_FALSE(sample.load(std::string("1,x"), 7));
}

TEST(SampleLoadAscii, WithoutAnyRateTheTimeIsMinusOne) {
    Cfg cfg = cfgOf(0, 0);
    cfg.samplingRateKnown = true;
    Sample sample(cfg);
    ASSERT_TRUE(sample.load(std::string("1,1000"), 0));
    EXPECT_EQ(sample.time, -1.0);
}

TEST(SampleLoadAscii, RejectedLineLeavesWhatWasReadBefore) {
    const Cfg cfg = cfgOf(2, 1);
    Sample sample(cfg);
    EXPECT_FALSE(sample.load(std::string("1,2000000,5,x,1"), 8));
    EXPECT_EQ(sample.index, 8U);
    EXPECT_EQ(sample.time, 2.0);
    EXPECT_EQ(sample.analogValues, Analogs{5.0});
    EXPECT_TRUE(sample.binaryValues.empty());
}

TEST(SampleLoadAscii, SecondLoadAppends) {
    const Cfg cfg = cfgOf(1, 1);
    Sample sample(cfg);
    ASSERT_TRUE(sample.load(std::string("1,0,5,1"), 0));
    ASSERT_TRUE(sample.load(std::string("2,1000000,6,0"), 1));
    EXPECT_EQ(sample.index, 1U);
    EXPECT_EQ(sample.time, 1.0);
    EXPECT_EQ(sample.analogValues, (Analogs{5.0, 6.0}));
    EXPECT_EQ(sample.binaryValues, (Bits{true, false}));
}

TEST(SampleLoadAscii, ChannelWithoutARecordIsRejected) {
    Cfg cfg = cfgOf(2, 0);
    cfg.analogChannelConfigs.pop_back();
    Sample sample(cfg);
    EXPECT_FALSE(sample.load(std::string("1,0,5,6"), 0));
}

TEST(SampleLoadAscii, ChannelCountsAreUnsigned) {
    Cfg total = cfgOf(0, 0);
    total.totalChannelCount = -2147483647 - 1;
    Sample rejected(total);
    EXPECT_FALSE(rejected.load(std::string("1,0,1,1,1"), 0));

    Cfg analog = cfgOf(1, 0);
    analog.analogChannelCount = -2147483647 - 1;
    Sample accepted(analog);
    EXPECT_TRUE(accepted.load(std::string("1,0,12"), 0));
    EXPECT_EQ(accepted.analogValues, Analogs{12.0});
    EXPECT_TRUE(accepted.binaryValues.empty());
}

TEST(SampleLoadAscii, TotalDecidesHowManyColumnsAreExpected) {
    Cfg cfg = cfgOf(1, 3);
    cfg.totalChannelCount = 2;
    expectLines(cfg, {
                         {"fewer than the channels", "1,0,5,1", true, {5}, {true}},
                         {"surplus", "1,0,5,1,0,1", true, {5}, {true}},
                         {"too few", "1,0,5", false, {}, {}},
                     });
}

TEST(SampleLoadAscii, NulInALineIsACharacterLikeAnyOther) {
    const Cfg cfg = cfgOf(0, 2);
    Sample sample(cfg);
    EXPECT_TRUE(sample.load(std::string("1,0,\0,0", 7), 0));
    EXPECT_EQ(sample.binaryValues, (Bits{true, false}));
}

TEST(SampleLoadAscii, LiteralIsText) {
    const Cfg cfg = cfgOf(1, 1);
    Sample literal(cfg);
    EXPECT_TRUE(literal.load("1,1000000,5,1", 3));
    EXPECT_EQ(literal.index, 3U);
    EXPECT_EQ(literal.time, 1.0);
    EXPECT_EQ(literal.analogValues, Analogs{5.0});
    EXPECT_EQ(literal.binaryValues, Bits{true});

    const char* const text = "2,2000000,6,0";
    Sample pointer(cfg);
    EXPECT_TRUE(pointer.load(text, 4));
    EXPECT_EQ(pointer.time, 2.0);
    Sample rejected(cfg);
    EXPECT_FALSE(rejected.load("2,2000000,6", 4));
}

} // namespace
