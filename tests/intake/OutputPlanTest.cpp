// How a recording is written for whoever follows the standard: any data type and revision as any other, with values
// exact where the type can hold them and rounded to it otherwise.

#include "data/outputPlan.h"

#include "base/numbers.h"
#include "data/ChannelRange.h"
#include "intake/dataSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace OrvComtradeIntake;
using orvtest::cfgFor;
using orvtest::LittleEndianBytes;
using orvtest::record16;
using orvtest::record32;
using orvtest::recordOfSingle;
using orvtest::Rewritten;
using orvtest::Surveyed;
using orvtest::textOf;
using orvtest::wholeOf;

constexpr DataType kTypes[] = {DataType::Ascii, DataType::Binary, DataType::Binary32, DataType::Float32};
constexpr int kRevisions[] = {1991, 1999, 2013};

Form formOf(std::optional<DataType> type, std::optional<int> revision = {}) {
    Form form;
    form.dataType = type;
    form.revision = revision;
    return form;
}

ReadCfg ofRevision(ReadCfg cfg, int revision) {
    cfg.header.revision = revision;
    return cfg;
}

/// With a range and a factor for each channel.
ReadCfg scaledBy(ReadCfg cfg, double a, double b) {
    for (std::size_t i = 0; i < cfg.analog.size(); ++i) {
        cfg.header.analog[i].a = a;
        cfg.header.analog[i].b = b;
        cfg.header.analog[i].min = -1000.0;
        cfg.header.analog[i].max = 1000.0;
        cfg.analog[i].a = static_cast<long double>(a);
        cfg.analog[i].b = static_cast<long double>(b);
    }
    return cfg;
}

/// Values of a channel in its unit; nothing where they are missing.
std::vector<std::optional<long double>> valuesOf(const Surveyed& surveyed, std::size_t channel) {
    const Block block = wholeOf(surveyed);
    const AnalogInfo& line = surveyed.cfg.header.analog[channel];
    const int exponent = surveyed.facts->exponents.empty() ? 0 : surveyed.facts->exponents[channel];
    MissingCursor missing(surveyed.facts->missing, channel);
    std::vector<std::optional<long double>> values;
    for (std::size_t row = 0; row < block.rows; ++row) {
        const auto raw = static_cast<long double>(block.raw[channel * block.rows + row]);
        const long double recorded = raw / std::pow(10.0L, static_cast<long double>(exponent));
        const auto value = recorded * static_cast<long double>(line.a) + static_cast<long double>(line.b);
        values.push_back(missing.isMissing(row) ? std::nullopt : std::optional(value));
    }
    return values;
}

/// How far a value may be off once it is written as this type. A text has the shortest decimals of singles.
long double slackOf(DataType from, DataType to, long double greatest, long double b) {
    const long double doubles = 4e-16L * (greatest + std::abs(b));
    switch (to) {
    case DataType::Binary:
        return doubles + greatest / 32767.0L * 0.5001L;
    case DataType::Binary32:
        return doubles + greatest / 2147483647.0L * 0.5001L;
    case DataType::Float32:
        return doubles + greatest * 0x1p-24L;
    case DataType::Ascii:
        break;
    }
    return doubles + (from == DataType::Float32 ? greatest * 0x1p-24L : 0.0L);
}

/// What differs between a recording and itself as it is written in a form.
std::string firstDifference(const Surveyed& surveyed, const Form& form) {
    const Rewritten rewritten(surveyed, form);
    const Surveyed again = rewritten.again();
    if (!again.facts) {
        return "not read: " + again.codes();
    }
    const bool isSound = again.codes().empty() || again.codes() == "missing-values";
    if (!isSound) {
        return again.codes();
    }
    if (textOf(again.facts->missing) != textOf(surveyed.facts->missing)) {
        return "missing values " + textOf(again.facts->missing);
    }
    const Block found = wholeOf(again);
    const Block meant = wholeOf(surveyed);
    if (found.states != meant.states || found.rows != meant.rows) {
        return "states";
    }
    for (std::size_t channel = 0; channel < surveyed.cfg.header.analog.size(); ++channel) {
        const auto before = valuesOf(surveyed, channel);
        const auto after = valuesOf(again, channel);
        long double greatest = 0.0L;
        const auto b = static_cast<long double>(surveyed.cfg.header.analog[channel].b);
        for (const auto& value : before) {
            greatest = std::max(greatest, value ? std::abs(*value - b) : 0.0L);
        }
        for (std::size_t i = 0; i < before.size(); ++i) {
            const long double slack = slackOf(surveyed.facts->type, rewritten.header.dataType, greatest, b);
            if (before[i] && std::abs(*before[i] - *after[i]) > slack) {
                return "A" + std::to_string(channel + 1) + ", sample " + std::to_string(i + 1) + ": " +
                       numberText(static_cast<double>(*after[i])) + ", not " +
                       numberText(static_cast<double>(*before[i]));
            }
        }
    }
    return "";
}

/// What values a recording may hold.
struct Content {
    const char* why;
    std::vector<double> values;
};

std::string dataOf(const Content& content, DataType type, std::size_t statuses) {
    std::mt19937 random(3);
    std::string text;
    LittleEndianBytes bytes;
    for (std::uint32_t i = 0; i < content.values.size(); ++i) {
        const double value = content.values[i];
        text += std::to_string(i + 1) + "," + std::to_string(1000 * i) + "," + numberText(value);
        bytes.u32(i + 1).u32(1000 * i);
        if (type == DataType::Binary) {
            bytes.i16(static_cast<std::int16_t>(std::lround(value)));
        } else if (type == DataType::Binary32) {
            bytes.i32(static_cast<std::int32_t>(std::lround(value)));
        } else {
            bytes.f32(static_cast<float>(value));
        }
        std::uint32_t word = 0;
        for (std::size_t channel = 0; channel < statuses; ++channel) {
            const bool state = random() % 2 == 0;
            text += state ? ",1" : ",0";
            word |= (state ? 1U : 0U) << channel % 16;
            if (channel % 16 == 15 || channel + 1 == statuses) {
                bytes.u16(static_cast<std::uint16_t>(word));
                word = 0;
            }
        }
        text += "\r\n";
    }
    return type == DataType::Ascii ? text : bytes.bytes();
}

bool holds(DataType type, const Content& content) {
    const double limit = type == DataType::Binary ? 32767.0 : 2147483647.0;
    return type == DataType::Ascii || type == DataType::Float32 ||
           std::all_of(content.values.begin(), content.values.end(),
                       [limit](double value) { return std::abs(value) <= limit && value == std::trunc(value); });
}

const std::vector<Content> kContents = {
    {"small integers", {0, 5, -7, 100, -32767, 32767}},
    {"zeros", {0, 0, 0}},
    {"integers of 32 bits", {0, 5, -2147483647, 2147483647, 16777217}},
    {"the code of 1999 among them", {0, 99999, -99999, 5, 20000001}},
    {"the code of 1991 among them", {0, 999999, -999999, 5, 20000001}},
    {"both codes", {99999, 999999, 16777217}},
    {"decimals", {0.5, -12.25, 1000.125, 3}},
    {"decimals and a code", {0.123, 99999, -4.5}},
    {"decimals that become one of 1999", {9.9999, 0.5, 99.999, 999.99}},
    {"decimals that become one of 1991", {99.9999, 9.99999, 9999.99}},
    {"large ones", {1e9, -2.5e9, 3e9, 0.5}},
    {"larger than 64 bits", {1e20, -5e19, 7}},
    {"of unlike size", {1e12, 0.001, -123.456}},
    {"tiny ones", {1e-7, -3e-6, 0}},
};

TEST(PlanForStandard, AnyTypeAndRevisionIsWrittenAsAnyOther) {
    for (const Content& content : kContents) {
        for (const DataType from : kTypes) {
            if (!holds(from, content)) {
                continue;
            }
            for (const int revision : kRevisions) {
                if (revision < 2013 && (from == DataType::Binary32 || from == DataType::Float32)) {
                    continue;
                }
                const std::size_t statuses = 19;
                const Surveyed surveyed(dataOf(content, from, statuses),
                                        scaledBy(ofRevision(cfgFor(1, statuses, from), revision), 0.01, 2.5));
                ASSERT_TRUE(surveyed.facts) << content.why;
                const auto where = [&](const std::string& form) {
                    return std::string(content.why) + ": " + typeWord(from) + " of " + std::to_string(revision) +
                           " as " + form;
                };
                EXPECT_EQ(firstDifference(surveyed, {}), "") << where("recorded");
                for (const int target : kRevisions) {
                    EXPECT_EQ(firstDifference(surveyed, formOf({}, target)), "") << where(std::to_string(target));
                    for (const DataType type : kTypes) {
                        if (target >= 2013 || type == DataType::Ascii || type == DataType::Binary) {
                            EXPECT_EQ(firstDifference(surveyed, formOf(type, target)), "")
                                << where(typeWord(type) + std::string(" of ") + std::to_string(target));
                        }
                    }
                }
            }
        }
    }
}

TEST(PlanForStandard, MissingValuesStayMissing) {
    const std::string text = "1,0,5,,1\r\n2,1000,99999,7,0\r\n3,2000,6.5,8,1\r\n";
    const std::string old = "1,0,5,,1\r\n2,1000,999999,7,0\r\n3,2000,99999,8,1\r\n";
    const std::string records =
        LittleEndianBytes().u32(1).u32(0).u16(5).u16(0x8000).u16(1).u32(2).u32(1000).u16(0x8000).u16(7).u16(0).bytes();
    const std::string singles = LittleEndianBytes()
                                    .u32(1)
                                    .u32(0)
                                    .f32(0.5F)
                                    .u32(0xFF7FFFFF)
                                    .u16(1)
                                    .u32(2)
                                    .u32(1000)
                                    .u32(0x7FC00000)
                                    .f32(1e20F)
                                    .u16(0)
                                    .bytes();
    const Surveyed surveyeds[] = {Surveyed(text, cfgFor(2, 1, DataType::Ascii)),
                                  Surveyed(old, ofRevision(cfgFor(2, 1, DataType::Ascii), 1991)),
                                  Surveyed(records, cfgFor(2, 1, DataType::Binary)),
                                  Surveyed(singles, ofRevision(cfgFor(2, 1, DataType::Float32), 2013))};
    for (const Surveyed& surveyed : surveyeds) {
        EXPECT_EQ(textOf(surveyed.facts->missing), "0:1+1 1:0+1");
        for (const int revision : kRevisions) {
            for (const DataType type : kTypes) {
                if (revision >= 2013 || type == DataType::Ascii || type == DataType::Binary) {
                    EXPECT_EQ(firstDifference(surveyed, formOf(type, revision)), "") << typeWord(type) << revision;
                }
            }
        }
    }
}

struct TextRow {
    const char* why;
    std::string data;
    int revision;
    int target;
    const char* expected;
    double a; ///< of a channel of a = 2
};

TEST(PlanForStandard, TextIsAsRecordedWhereTheRevisionAllowsIt) {
    const TextRow rows[] = {
        {"integers", "1,0,5\r\n2,1000,-7\r\n", 1999, 1999, "1,0,5\r\n2,1000,-7\r\n", 2.0},
        {"numbered anew", "7,0,5\r\n8,1000,-7\r\n", 1999, 1999, "1,0,5\r\n2,1000,-7\r\n", 2.0},
        {"stamps as recorded", "1,77,5\r\n2,1076,6\r\n", 1999, 1999, "1,77,5\r\n2,1076,6\r\n", 2.0},
        {"no stamps", "1,,5\r\n2,,6\r\n", 1999, 1999, "1,,5\r\n2,,6\r\n", 2.0},
        {"decimals since 2013", "1,0,5.50\r\n2,1000,-0.125\r\n", 2013, 2013, "1,0,5.5\r\n2,1000,-0.125\r\n", 2.0},
        {"decimals before", "1,0,5.5\r\n2,1000,-0.125\r\n", 1999, 1999, "1,0,55000\r\n2,1000,-1250\r\n", 0.0002},
        {"decimals of an old recording in a new one", "1,0,5.5\r\n2,1000,-7\r\n", 1999, 2013,
         "1,0,5.5\r\n2,1000,-7\r\n", 2.0},
        {"integers of more than 2^53", "1,0,9223372036854775807\r\n2,1000,-7\r\n", 1999, 1999,
         "1,0,9223372036854775807\r\n2,1000,-7\r\n", 2.0},
        {"missing", "1,0,\r\n2,1000,99999\r\n3,2000,5\r\n", 1999, 1999, "1,0,99999\r\n2,1000,99999\r\n3,2000,5\r\n",
         2.0},
        {"missing in 1991", "1,0,99999\r\n2,1000,7\r\n", 1999, 1991, "1,0,999999\r\n2,1000,7\r\n", 2.0},
        {"missing since 1991", "1,0,999999\r\n2,1000,7\r\n", 1991, 1999, "1,0,99999\r\n2,1000,7\r\n", 2.0},
        {"a value that would look missing", "1,0,99999\r\n2,1000,7\r\n", 1991, 1999, "1,0,999990\r\n2,1000,70\r\n",
         0.2},
        {"one with decimals beside it", "1,0,99999\r\n2,1000,0.5\r\n", 1991, 2013, "1,0,99999000\r\n2,1000,500\r\n",
         0.002},
        {"large decimals", "1,0,1e20\r\n2,1000,5e19\r\n", 2013, 2013,
         "1,0,100000000000000000000\r\n2,1000,50000000000000000000\r\n", 2.0},
        {"one of them beside another", "1,0,1e22\r\n2,1000,-0.5\r\n", 2013, 2013,
         "1,0,10000000000000000000000\r\n2,1000,-0.5\r\n", 2.0},
        {"the same as integers", "1,0,1e22\r\n2,1000,-0.5\r\n", 2013, 1999,
         "1,0,999999999999999983222784\r\n2,1000,-50\r\n", 0.02},
        {"tiny decimals", "1,0,1.5e-40\r\n2,1000,0\r\n", 2013, 2013,
         "1,0,0.00000000000000000000000000000000000000015\r\n2,1000,0\r\n", 2.0},
    };
    for (const TextRow& row : rows) {
        const Surveyed surveyed(row.data, scaledBy(ofRevision(cfgFor(1, 0, DataType::Ascii), row.revision), 2.0, 0.0));
        const Rewritten rewritten(surveyed, formOf(DataType::Ascii, row.target));
        EXPECT_EQ(rewritten.data, row.expected) << row.why;
        EXPECT_DOUBLE_EQ(rewritten.header.analog[0].a, row.a) << row.why;
        EXPECT_EQ(rewritten.header.dataType, DataType::Ascii) << row.why;
        EXPECT_EQ(rewritten.header.revision, row.target) << row.why;
    }
}

TEST(PlanForStandard, A1991ValueStaysOneWhereItsRangeHoldsIt) {
    ReadCfg cfg = scaledBy(ofRevision(cfgFor(1, 0, DataType::Ascii), 1991), 1.0, 0.0);
    cfg.header.analog[0].min = -2e6;
    cfg.header.analog[0].max = 2e6;
    const Surveyed whole("1,0,999999\r\n2,1000,7\r\n", cfg);
    EXPECT_EQ(Rewritten(whole, {}).data, "1,0,999999\r\n2,1000,7\r\n");
    const Surveyed partly("1,0,999999\r\n2,1000,\r\n3,2000,7\r\n", cfg); // else both would be missing
    EXPECT_EQ(Rewritten(partly, {}).data, "1,0,9999990\r\n2,1000,999999\r\n3,2000,70\r\n");
    EXPECT_EQ(firstDifference(partly, {}), "");
    const AnalogInfo channel = Rewritten(partly, {}).header.analog[0];
    EXPECT_EQ(channel.max, 999999.0);
    EXPECT_EQ(ChannelRange(channel, true).of({}), RangeOf::Encoding); // so the greater value does not leave it
}

TEST(PlanForStandard, RecordsAreAsRecordedInTheirType) {
    const std::string narrow = record16(1, 0, 5) + record16(2, 1000, 0x8000) + record16(3, 2000, 0x8001);
    const Surveyed surveyed(narrow, scaledBy(cfgFor(1, 0, DataType::Binary), 0.02, 1.0));
    const Rewritten same(surveyed, {});
    EXPECT_EQ(same.data, narrow);
    EXPECT_EQ(same.header.analog[0].a, 0.02);
    EXPECT_EQ(same.header.analog[0].max, 1000.0);
    const std::string wide = record32(1, 0, 99999) + record32(2, 1000, 0x80000000) + record32(3, 2000, 0x7FFFFFFF);
    const Surveyed integers(wide, scaledBy(ofRevision(cfgFor(1, 0, DataType::Binary32), 2013), 0.02, 1.0));
    EXPECT_EQ(integers.facts->exponents, std::vector<int>{1}); // for the library alone
    const Rewritten again(integers, {});
    EXPECT_EQ(again.data, wide);
    EXPECT_EQ(again.header.analog[0].a, 0.02);
    const std::string singles =
        recordOfSingle(1, 0, 0.1F) + record32(2, 1000, 0x7F800000) + record32(3, 2000, 0x00000001);
    EXPECT_EQ(Rewritten(Surveyed(singles, ofRevision(cfgFor(1, 0, DataType::Float32), 2013)), {}).data, singles);
}

struct ScaleRow {
    const char* why;
    std::string data;
    DataType to;
    std::vector<double> raw;
    double a;   ///< of a channel of a = 2
    double max; ///< of one of 1000, and less the sign of min
};

TEST(PlanForStandard, RecordsOfATextHoldItsIntegersAsTheyAreOrScaled) {
    const ScaleRow rows[] = {
        {"integers of 16 bits", "1,0,5\r\n2,1000,-32767\r\n", DataType::Binary, {5, -32767}, 2.0, 1000},
        {"one more", "1,0,16384\r\n2,1000,-32768\r\n", DataType::Binary, {16384, -32767}, 2.0 * 32768 / 32767, 32767},
        {"integers of 32 bits", "1,0,5\r\n2,1000,-2147483647\r\n", DataType::Binary32, {5, -2147483647}, 2.0, 1000},
        {"one more in 32 bits",
         "1,0,2147483648\r\n2,1000,-5\r\n",
         DataType::Binary32,
         {2147483647, -5},
         2.0 * 2147483648 / 2147483647,
         2147483647},
        {"decimals that fit", "1,0,0.5\r\n2,1000,-1.25\r\n", DataType::Binary, {500, -1250}, 0.002, 1000000},
        {"decimals that do not",
         "1,0,0.5\r\n2,1000,-100.25\r\n",
         DataType::Binary,
         {163, -32767},
         2.0 * 100.25 / 32767,
         32767},
        {"singles", "1,0,0.5\r\n2,1000,-100.25\r\n", DataType::Float32, {500, -100250}, 0.002, 1000000},
        {"zeros", "1,0,0\r\n2,1000,0\r\n", DataType::Binary, {0, 0}, 2.0, 1000},
    };
    for (const ScaleRow& row : rows) {
        const Surveyed surveyed(row.data, scaledBy(cfgFor(1, 0, DataType::Ascii), 2.0, 0.0));
        const Rewritten rewritten(surveyed, formOf(row.to, 2013));
        EXPECT_EQ(wholeOf(rewritten.again()).raw, row.raw) << row.why;
        EXPECT_DOUBLE_EQ(rewritten.header.analog[0].a, row.a) << row.why;
        EXPECT_DOUBLE_EQ(rewritten.header.analog[0].max, row.max) << row.why;
        EXPECT_DOUBLE_EQ(rewritten.header.analog[0].min, -row.max) << row.why;
        EXPECT_EQ(rewritten.header.dataType, row.to) << row.why;
    }
}

TEST(PlanForStandard, NumbersBeyondSinglesAreScaledToThem) {
    const Surveyed surveyed("1,0,-1e40\r\n2,1000,102.5\r\n", scaledBy(cfgFor(1, 0, DataType::Ascii), 2.0, 0.0));
    const Rewritten rewritten(surveyed, formOf(DataType::Float32, 2013));
    const double a = rewritten.header.analog[0].a;
    const std::vector<double> raw = wholeOf(rewritten.again()).raw;
    EXPECT_NEAR(raw[0] * a, -2e40, 1e34);
    EXPECT_NEAR(raw[1] * a, 205.0, 1e-4);
}

TEST(PlanForStandard, SinglesBecomeTheirShortestDecimals) {
    const std::string singles = recordOfSingle(1, 0, 0.1F) + recordOfSingle(2, 1000, -1e20F) +
                                recordOfSingle(3, 2000, 12345.678F) + record32(4, 3000, 0x7F800000) +
                                record32(5, 4000, 0x7FC00000);
    const Surveyed surveyed(singles, scaledBy(ofRevision(cfgFor(1, 0, DataType::Float32), 2013), 2.0, 0.0));
    const Rewritten text(surveyed, formOf(DataType::Ascii));
    EXPECT_EQ(text.data, "1,0,0.1\r\n2,1000,-1e+20\r\n3,2000,12345.678\r\n4,3000,3.4028235e+38\r\n5,4000,99999\r\n");
    EXPECT_EQ(text.header.analog[0].a, 2.0);
    const Surveyed small(recordOfSingle(1, 0, 0.1F) + recordOfSingle(2, 1000, -12.5F),
                         scaledBy(ofRevision(cfgFor(1, 0, DataType::Float32), 2013), 2.0, 0.0));
    const Rewritten old(small, formOf({}, 1999)); // which has no FLOAT32
    EXPECT_EQ(old.header.dataType, DataType::Ascii);
    EXPECT_EQ(old.data, "1,0,10\r\n2,1000,-1250\r\n");
    EXPECT_DOUBLE_EQ(old.header.analog[0].a, 0.02);
}

TEST(PlanForStandard, SinglesBelowFullPrecisionKeepTheirValue) {
    const std::string singles = record32(1, 0, 4) + record32(2, 1000, 0x807FFFFF); // 4 * 2^-149, and the greatest
    const Surveyed surveyed(singles, ofRevision(cfgFor(1, 0, DataType::Float32), 2013));
    EXPECT_EQ(Rewritten(surveyed, formOf(DataType::Ascii)).data,
              "1,0,5.605193857299268e-45\r\n2,1000,-1.1754942106924411e-38\r\n");
    const Surveyed tiny(record32(1, 0, 4), ofRevision(cfgFor(1, 0, DataType::Float32), 2013));
    EXPECT_EQ(Rewritten(tiny, formOf(DataType::Ascii, 1999)).data, "1,0,5605193857299268\r\n");
}

TEST(PlanForStandard, InfiniteValuesAreTheGreatestOfTheirType) {
    const std::string singles =
        recordOfSingle(1, 0, 1.0F) + record32(2, 1000, 0x7F800000) + record32(3, 2000, 0xFF800000);
    const Surveyed surveyed(singles, ofRevision(cfgFor(1, 0, DataType::Float32), 2013));
    EXPECT_EQ(Rewritten(surveyed, formOf(DataType::Binary)).data,
              record16(1, 0, 1) + record16(2, 1000, 0x7FFF) + record16(3, 2000, 0x8001));
    EXPECT_EQ(Rewritten(surveyed, formOf(DataType::Ascii)).data,
              "1,0,1\r\n2,1000,3.4028235e+38\r\n3,2000,-3.4028233e+38\r\n");
}

TEST(PlanForStandard, RangeTakesInWhatLeavesItByRoundingBeforeItsUnitShrinks) {
    ReadCfg cfg = scaledBy(cfgFor(1, 0, DataType::Ascii), 1.0, 0.0);
    cfg.analog[0].hasRange = true;
    const auto rangeOf = [&cfg](const std::string& values, const Form& form) {
        const AnalogInfo channel = Rewritten(Surveyed(values, cfg), form).header.analog[0];
        return std::to_string(std::lround(channel.min)) + ' ' + std::to_string(std::lround(channel.max));
    };
    EXPECT_EQ(rangeOf("1,0,-999.5\r\n2,1000,1000\r\n", {}), "-100000 100000");
    EXPECT_EQ(rangeOf("1,0,-1000.5\r\n2,1000,1001\r\n", {}), "-100050 100100");
    std::string few = "1,0,-1001.5\r\n2,1000,2000\r\n"; // beyond it: reported there, too
    for (int sample = 3; sample <= 20; ++sample) {
        few += std::to_string(sample) + ',' + std::to_string(1000 * sample - 1000) + ",0\r\n";
    }
    EXPECT_EQ(rangeOf(few, {}), "-100100 100100");
    EXPECT_EQ(rangeOf("1,0,-1000.5\r\n2,1000,1001\r\n", formOf(DataType::Float32, 2013)), "-100050 100100");
    EXPECT_EQ(rangeOf("1,0,-1001\r\n2,1000,1001\r\n", {}), "-1000 1000"); // no decimals: the unit stays
}

TEST(PlanForStandard, RangeOfOtherValuesHasRoomForThoseThatLeaveIt) {
    const struct {
        const char* why;
        const char* values;
        double a;
        double min;
        double max;
    } rows[] = {
        {"many leave it", "1,0,1002\r\n2,1000,-2000.5\r\n", 1.0, -200050.0, 100200.0},
        {"in greater units one alone would", "1,0,1e18\r\n2,1000,10000000000000000000001\r\n", 1.0, -1e-4, 1e15},
        {"beyond singles", "1,0,1111e40\r\n2,1000,1000\r\n", 1.0, -10000.0, 1.111e44},
        {"values in the unit fill it", "1,0,9000.5\r\n2,1000,-4\r\n", 0.1, -1000.0, 1000.0},
        {"they do not", "1,0,2000.5\r\n2,1000,-4\r\n", 0.1, -100000.0, 200050.0},
    };
    for (const auto& row : rows) {
        ReadCfg cfg = scaledBy(cfgFor(1, 0, DataType::Ascii), row.a, 0.0);
        cfg.analog[0].hasRange = true;
        const AnalogInfo channel = Rewritten(Surveyed(row.values, cfg), {}).header.analog[0];
        EXPECT_DOUBLE_EQ(channel.min, row.min) << row.why;
        EXPECT_DOUBLE_EQ(channel.max, row.max) << row.why;
    }
}

TEST(PlanForStandard, StampsThatContradictTheRateAreComputed) {
    const Surveyed sound("1,50,5\r\n2,1050,6\r\n3,2050,7\r\n4,3050,8\r\n", cfgFor(1, 0, DataType::Ascii));
    EXPECT_EQ(Rewritten(sound, {}).data, "1,50,5\r\n2,1050,6\r\n3,2050,7\r\n4,3050,8\r\n");
    const Surveyed odd("1,0,5\r\n2,100,6\r\n3,200,7\r\n4,300,8\r\n", cfgFor(1, 0, DataType::Ascii));
    ASSERT_FALSE(odd.facts->areStampsSound);
    EXPECT_EQ(Rewritten(odd, {}).data, "1,0,5\r\n2,1000,6\r\n3,2000,7\r\n4,3000,8\r\n");
}

TEST(PlanForStandard, StampsWithoutRoomInRecordsAreComputed) {
    const auto binaryOf = [](const std::string& text) {
        return Rewritten(Surveyed(text, cfgFor(1, 0, DataType::Ascii)), formOf(DataType::Binary)).data;
    };
    const std::string computed = record16(1, 0, 5) + record16(2, 1000, 6) + record16(3, 2000, 7) + record16(4, 3000, 8);
    // They count samples but for one, which a record would have as another: then the usual step is 2.
    EXPECT_EQ(binaryOf("1,2,5\r\n2,3,6\r\n3,5,7\r\n4,-32767,8\r\n"), computed);
    EXPECT_EQ(binaryOf("1,8589934597,5\r\n2,2,6\r\n3,3,7\r\n4,5,8\r\n"), computed);
    // A step back to below zero by a coarse clock, which would be one of an hour; the number of a missing stamp.
    EXPECT_EQ(binaryOf("1,5,5\r\n2,5,6\r\n3,-32767,7\r\n4,999999,8\r\n"), computed);
    EXPECT_EQ(binaryOf("1,-2001,5\r\n2,-1001,6\r\n3,-1,7\r\n4,999,8\r\n"), computed);
    EXPECT_EQ(binaryOf("1,2,5\r\n2,3,6\r\n3,4,7\r\n4,5,8\r\n"),
              record16(1, 2, 5) + record16(2, 3, 6) + record16(3, 4, 7) + record16(4, 5, 8));
    EXPECT_EQ(binaryOf("1,-2000,5\r\n2,-1000,6\r\n3,0,7\r\n4,1000,8\r\n"), // from before the trigger on
              record16(1, 4294965296, 5) + record16(2, 4294966296, 6) + record16(3, 0, 7) + record16(4, 1000, 8));
}

TEST(PlanForStandard, ComputedStampsFollowTheRatesAndTheMultiplier) {
    ReadCfg cfg = cfgFor(1, 0, DataType::Ascii);
    cfg.header.rates = {{1000.0, 2}, {4000.0, 5}};
    cfg.header.samplesDeclared = 5;
    cfg.header.timeMultiplier = 0.5;
    const Surveyed surveyed("1,9,5\r\n2,8,6\r\n3,7,7\r\n4,6,8\r\n5,5,9\r\n", cfg);
    ASSERT_FALSE(surveyed.facts->areStampsSound);
    EXPECT_EQ(Rewritten(surveyed, {}).data, "1,0,5\r\n2,2000,6\r\n3,4000,7\r\n4,4500,8\r\n5,5000,9\r\n");
}

TEST(PlanForStandard, StampsCountNanosecondsWhereDatesDo) {
    ReadCfg cfg = ofRevision(cfgFor(1, 0, DataType::Ascii), 2013);
    cfg.header.hasNanosecondDates = true;
    const Surveyed surveyed("1,0,5\r\n2,1000000,6\r\n3,2000000,7\r\n4,3000000,7\r\n", cfg);
    EXPECT_TRUE(surveyed.facts->areStampsSound);
    EXPECT_EQ(Rewritten(surveyed, {}).data, "1,0,5\r\n2,1000000,6\r\n3,2000000,7\r\n4,3000000,7\r\n");
    EXPECT_EQ(Rewritten(surveyed, formOf({}, 1999)).data, "1,0,5\r\n2,1000,6\r\n3,2000,7\r\n4,3000,7\r\n");
    cfg.header.rates = {{0.0, 4}};
    const Surveyed stamped(*surveyed.bytes, cfg);
    EXPECT_EQ(Rewritten(stamped, formOf({}, 1999)).data, "1,0,5\r\n2,1000000,6\r\n3,2000000,7\r\n4,3000000,7\r\n");
    EXPECT_DOUBLE_EQ(Rewritten(stamped, formOf({}, 1999)).header.timeMultiplier, 0.001);
}

TEST(PlanForStandard, TimesOfStampsAreKeptByTheMultiplier) {
    struct Row {
        const char* why;
        std::string data;
        double multiplier; ///< of one of 4
        const char* expected;
    };
    const Row rows[] = {
        {"from another than 0", "1,700,5\r\n2,800,6\r\n", 4.0, "1,0,5\r\n2,100,6\r\n"},
        {"decimals", "1,0.25,5\r\n2,0.75,6\r\n", 0.04, "1,0,5\r\n2,50,6\r\n"},
        {"more than 32 bits", "1,0,5\r\n2,50000000000,6\r\n", 400.0, "1,0,5\r\n2,500000000,6\r\n"},
        {"missing", "1,0,5\r\n2,,6\r\n3,200,7\r\n", 4.0, "1,0,5\r\n2,100,6\r\n3,200,7\r\n"},
    };
    for (const Row& row : rows) {
        ReadCfg cfg = cfgFor(1, 0, DataType::Ascii, 0.0);
        cfg.header.timeMultiplier = 4.0;
        const Rewritten rewritten(Surveyed(row.data, cfg), {});
        EXPECT_EQ(rewritten.data, row.expected) << row.why;
        EXPECT_DOUBLE_EQ(rewritten.header.timeMultiplier, row.multiplier) << row.why;
    }
}

TEST(PlanForStandard, RefusesFormsThatThereAreNot) {
    const Surveyed text("1,0,5\r\n", cfgFor(1, 0, DataType::Ascii));
    EXPECT_THROW(Rewritten(text, formOf({}, 2000)), std::invalid_argument);
    EXPECT_THROW(Rewritten(text, formOf(DataType::Binary32, 1999)), std::invalid_argument);
    EXPECT_THROW(Rewritten(text, formOf(DataType::Float32, 1991)), std::invalid_argument);
    EXPECT_THROW(Rewritten(text, formOf(DataType::Float32)), std::invalid_argument);
    EXPECT_NO_THROW(Rewritten(text, formOf(DataType::Float32, 2013)));
    const Surveyed old("1,0,5\r\n", ofRevision(cfgFor(1, 0, DataType::Ascii), 1997));
    EXPECT_NO_THROW(Rewritten(old, formOf({}, 1997)));
    const Surveyed early(recordOfSingle(1, 0, 0.5F), cfgFor(1, 0, DataType::Float32)); // as some recorders do
    EXPECT_EQ(Rewritten(early, {}).header.dataType, DataType::Float32);
}

TEST(PlanForStandard, OfARecordingWithoutDataIsItsHeader) {
    const ReadCfg cfg = scaledBy(cfgFor(1, 1, DataType::Ascii), 2.0, 1.0);
    const OutputPlan plan = planForStandard({}, cfg, {}, formOf(DataType::Binary, 2013));
    EXPECT_EQ(plan.header.revision, 2013);
    EXPECT_EQ(plan.header.dataType, DataType::Binary);
    EXPECT_EQ(plan.header.analog[0].a, 2.0);
}

TEST(PlanForLibrary, WritesRawValuesAsTheyAreDecoded) {
    ReadCfg cfg = cfgFor(2, 17, DataType::Binary32, 250.0, 10);
    DataFacts facts;
    facts.type = DataType::Binary32;
    facts.libraryType = DataType::Ascii;
    const DataOutput output = planForLibrary(cfg.header, facts).output;
    EXPECT_EQ(output.type, DataType::Ascii);
    EXPECT_EQ(output.statuses, 17U);
    EXPECT_EQ(output.channels.size(), 2U);
    EXPECT_TRUE(output.keepsMarkers);
    EXPECT_FALSE(output.renumbers);
    EXPECT_FALSE(output.computesStamps);
    EXPECT_FALSE(output.mayLeaveStampsOut);
    ASSERT_EQ(output.stampSteps.size(), 1U);
    EXPECT_EQ(output.stampSteps[0].second, 4000.0);
}

} // namespace
