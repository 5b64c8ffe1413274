// Values beside the ranges of their channels, and channels that never change.

#include "data/valueCheck.h"

#include "data/ChannelRange.h"
#include "intake/dataSupport.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace {

using namespace OrvComtradeIntake;
using orvtest::cfgFor;
using orvtest::codesOf;
using orvtest::record16;
using orvtest::record32;
using orvtest::recordOfSingle;
using orvtest::Surveyed;

/// A channel line.
struct Line {
    double min = 0.0;
    double max = 0.0;
    double a = 1.0;
    double b = 0.0;
};

std::vector<Finding> checked(const std::string& data, ReadCfg cfg, const std::vector<Line>& lines) {
    for (std::size_t i = 0; i < lines.size(); ++i) {
        AnalogInfo& channel = cfg.header.analog[i];
        channel.min = lines[i].min;
        channel.max = lines[i].max;
        channel.a = lines[i].a;
        channel.b = lines[i].b;
        cfg.analog[i].hasRange = true;
    }
    const Surveyed survey(data, cfg);
    Findings findings;
    checkValues(survey.source, survey.cfg, *survey.facts, findings);
    return findings.take();
}

/// Lines of one channel with these values, and as many more of 1 and 2 as make 40.
std::string linesWith(const std::vector<std::string>& values) {
    std::string data;
    for (std::size_t i = 0; i < 40; ++i) {
        data += std::to_string(i + 1) + "," + std::to_string(1000 * i) + "," +
                (i < values.size() ? values[i]
                 : i % 2 == 0      ? "1"
                                   : "2") +
                "\r\n";
    }
    return data;
}

std::string textOf(const std::vector<Finding>& findings) {
    std::string text;
    for (const Finding& finding : findings) {
        text += (text.empty() ? "" : "; ") + finding.place.field + " " + finding.found + ", " + finding.expected +
                " (" + std::to_string(finding.places) + ")";
    }
    return text;
}

struct RangeRow {
    const char* why;
    Line line;
    std::vector<std::string> values;
    const char* found;
};

TEST(CheckValues, ReportsThoseOutsideTheRangeOfTheirChannel) {
    const RangeRow rows[] = {
        {"one above", {-100, 100}, {"5", "102"}, "A1 102 in sample 2, -100 to 100 (1)"},
        {"one below", {-100, 100}, {"5", "6", "-102"}, "A1 -102 in sample 3, -100 to 100 (1)"},
        {"four of forty", {-100, 100}, {"102", "-200", "300", "102"}, "A1 102 in sample 1, -100 to 100 (4)"},
        {"a range above 0", {1, 100}, {"5", "-5"}, "A1 -5 in sample 2, 1 to 100 (1)"},
        {"a range below 0", {-100, 90}, {"-102"}, "A1 -102 in sample 1, -100 to 90 (1)"},
        {"decimals", {-9.5, 9.5}, {"99.5"}, "A1 99.5 in sample 1, -9.5 to 9.5 (1)"},
        {"the end of an encoding at one side alone", {-32767, 100}, {"102"}, "A1 102 in sample 1, -32767 to 100 (1)"},
        {"with a factor, the value beyond the range as well",
         {-100, 100, 0.5},
         {"5", "1000"},
         "A1 1000 in sample 2, -100 to 100 (1)"},
    };
    for (const RangeRow& row : rows) {
        const std::vector<Finding> findings = checked(linesWith(row.values), cfgFor(1, 0, DataType::Ascii), {row.line});
        ASSERT_EQ(codesOf(findings), "value-out-of-range") << row.why;
        EXPECT_EQ(findings[0].severity, Severity::Warning) << row.why;
        EXPECT_EQ(textOf(findings), row.found) << row.why;
    }
}

TEST(CheckValues, ToleratesWhatRecordersDo) {
    const RangeRow rows[] = {
        {"within", {-100, 100}, {"100", "-100", "0"}, ""},
        {"more than a tenth outside: a range of other values", {-100, 100}, {"102", "-200", "300", "102", "103"}, ""},
        {"values that leave it by rounding", {-99.5, 99.5}, {"100", "-100"}, ""},
        {"integers that leave it by one", {-100, 100}, {"101", "-101"}, ""},
        {"singles that leave it by rounding", {-1e7, 1e7}, {"10000001", "-10000001"}, ""},
        {"an invalid range", {100, -100}, {"5000"}, ""},
        {"a range of nothing", {0, 0}, {"5000"}, ""},
        {"a range of one value", {5, 5}, {"5000"}, ""},
        {"16 bits", {-32767, 32767}, {"40000"}, ""},
        {"16 bits, all of them", {-32768, 32767}, {"40000"}, ""},
        {"16 bits without a sign", {0, 65535}, {"-5"}, ""},
        {"five digits", {-99998, 99998}, {"200000"}, ""},
        {"six digits", {-999999, 999999}, {"2000000"}, ""},
        {"32 bits", {-2147483648.0, 2147483647.0}, {"3000000000"}, ""},
        {"the largest singles", {-3.4e38, 3.4e38}, {"1e39"}, ""},
        {"an encoding in the unit", {-327.67, 327.67, 0.01}, {"500"}, ""},
        {"the same with an offset", {-317.67, 337.67, 0.01, 10}, {"500"}, ""},
        {"a range that the values in the unit fill", {-100, 100, 0.1}, {"900"}, ""},
        {"missing values", {-100, 100}, {"99999", "99999"}, ""},
    };
    for (const RangeRow& row : rows) {
        EXPECT_EQ(textOf(checked(linesWith(row.values), cfgFor(1, 0, DataType::Ascii), {row.line})), "") << row.why;
    }
}

TEST(CheckValues, NeedsARange) {
    const Surveyed survey(linesWith({"5000"}), cfgFor(1, 0, DataType::Ascii));
    Findings findings;
    checkValues(survey.source, survey.cfg, *survey.facts, findings);
    EXPECT_TRUE(findings.all().empty());
}

TEST(CheckValues, ShowsTheRecordOfTheFirstOne) {
    std::string data;
    for (std::uint32_t i = 0; i < 40; ++i) {
        data += record16(i + 1, 1000 * i, i == 30 ? 0x8000 : static_cast<std::uint16_t>(i >= 32 && i < 34 ? 500 : i));
    }
    const std::vector<Finding> findings = checked(data, cfgFor(1, 0, DataType::Binary), {{-100, 100}});
    EXPECT_EQ(textOf(findings), "A1 500 in sample 33, -100 to 100 (2)");
    EXPECT_EQ(findings[0].place.offset, 320U);
}

TEST(CheckValues, TakesIntegersOf32BitsAsRecorded) {
    std::string data;
    for (std::uint32_t i = 0; i < 40; ++i) {
        data += record32(i + 1, 1000 * i, i == 0 ? 99999 : i == 1 ? 20000001 : i);
    }
    const Surveyed survey(data, cfgFor(1, 0, DataType::Binary32));
    ASSERT_EQ(survey.facts->exponents, std::vector<int>{1}); // the library gets them times ten
    const std::vector<Finding> findings = checked(data, cfgFor(1, 0, DataType::Binary32), {{-5, 500000}});
    EXPECT_EQ(textOf(findings), "A1 20000001 in sample 2, -5 to 500000 (1)");
}

TEST(CheckValues, CountsThoseOfLaterBlocks) {
    std::string data;
    for (int i = 0; i < 20000; ++i) {
        data += std::to_string(i + 1) + "," + std::to_string(1000 * i) + "," + (i == 5000 || i == 15000 ? "102" : "1") +
                "\r\n";
    }
    EXPECT_EQ(textOf(checked(data, cfgFor(1, 0, DataType::Ascii), {{-100, 100}})),
              "A1 102 in sample 5001, -100 to 100 (2)");
}

TEST(CheckValues, FindsWhatNeverChanges) {
    struct Row {
        const char* why;
        std::string data;
        const char* codes;
        const char* field;
        std::uint64_t places;
    };
    const Row rows[] = {
        {"all change", "1,0,1,2\r\n2,1000,3,4\r\n3,2000,5,6\r\n", "", "", 0},
        {"one does not", "1,0,1,7\r\n2,1000,3,7\r\n3,2000,5,7\r\n", "constant-channel", "A2", 1},
        {"one of 0", "1,0,0,1\r\n2,1000,0,2\r\n3,2000,0,3\r\n", "constant-channel", "A1", 1},
        {"neither changes", "1,0,1,7\r\n2,1000,1,7\r\n3,2000,1,7\r\n", "", "", 0},
        {"all are 0", "1,0,0,0\r\n2,1000,0,0\r\n3,2000,-0,0\r\n", "all-zero", "", 1},
        {"one sample of 0", "1,0,0,0\r\n", "all-zero", "", 1},
        {"too few to tell", "1,0,1,7\r\n2,1000,3,7\r\n", "", "", 0},
        {"too few that are not missing", "1,0,1,7\r\n2,1000,3,7\r\n3,2000,4,99999\r\n", "", "", 0},
        {"missing ones in between", "1,0,1,7\r\n2,1000,3,7\r\n3,2000,4,99999\r\n4,3000,4,7\r\n", "constant-channel",
         "A2", 1},
        {"all are missing", "1,0,99999,99999\r\n2,1000,99999,99999\r\n3,2000,99999,99999\r\n", "", "", 0},
    };
    for (const Row& row : rows) {
        const std::vector<Finding> findings = checked(row.data, cfgFor(2, 0, DataType::Ascii), {});
        ASSERT_EQ(codesOf(findings), row.codes) << row.why;
        if (!findings.empty()) {
            EXPECT_EQ(findings[0].severity, Severity::Note) << row.why;
            EXPECT_EQ(findings[0].place.field, row.field) << row.why;
            EXPECT_EQ(findings[0].places, row.places) << row.why;
        }
    }
    const std::vector<Finding> three =
        checked("1,0,1,7,8\r\n2,1000,3,7,8\r\n3,2000,5,7,8\r\n", cfgFor(3, 0, DataType::Ascii), {});
    ASSERT_EQ(codesOf(three), "constant-channel");
    EXPECT_EQ(three[0].places, 2U);
}

TEST(CheckValues, NeedsAnAnalogChannel) {
    EXPECT_TRUE(checked("1,0,1\r\n2,1000,1\r\n3,2000,1\r\n", cfgFor(0, 1, DataType::Ascii), {}).empty());
}

TEST(ChannelRange, KnowsTheEndsOfEncodings) {
    struct Row {
        const char* why;
        Line line;
        bool isOfEncoding;
    };
    const Row rows[] = {
        {"16 bits", {-32767, 32767}, true},
        {"nearly", {-32768.4, 32766.6}, true},
        {"not quite", {-32000, 32000}, false},
        {"one end", {-32767, 32000}, false},
        {"in the unit", {-655.34, 655.34, 0.02}, true},
        {"in the unit, rounded", {-655.33, 655.33, 0.02}, true},
        {"in a negative unit", {-655.34, 655.34, -0.02}, true},
        {"no unit", {-655.34, 655.34, 0.0}, false},
        {"singles", {-3.4e38, 3.4e38}, true},
    };
    for (const Row& row : rows) {
        AnalogInfo channel;
        channel.min = row.line.min;
        channel.max = row.line.max;
        channel.a = row.line.a;
        channel.b = row.line.b;
        EXPECT_EQ(ChannelRange(channel, true).of({}) == RangeOf::Encoding, row.isOfEncoding) << row.why;
    }
}

TEST(CheckValues, ReportsInfiniteValuesByChannel) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    const std::string data = recordOfSingle(1, 0, 1.0F) + recordOfSingle(2, 1000, kInfinity) +
                             recordOfSingle(3, 2000, 2.0F) + recordOfSingle(4, 3000, -kInfinity);
    const std::vector<Finding> findings = checked(data, cfgFor(1, 0, DataType::Float32), {{}});
    ASSERT_EQ(codesOf(findings), "infinite-values");
    EXPECT_EQ(textOf(findings), "A1 infinity in sample 2, finite values (2)");
    EXPECT_EQ(findings[0].place.offset, 12U);
    EXPECT_EQ(findings[0].severity, Severity::Warning);
}

TEST(CheckValues, ReportsValuesThatTheFactorMakesInfinite) {
    const std::vector<Finding> findings =
        checked(linesWith({"1", "10", "-10"}), cfgFor(1, 0, DataType::Ascii), {{0, 0, 1e308}});
    EXPECT_EQ(codesOf(findings), "infinite-values");
    EXPECT_EQ(textOf(findings), "A1 infinity in sample 2, finite values (21)") << "10, -10, and 2 in 19 samples";
}

} // namespace
