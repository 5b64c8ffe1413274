#include "SamplingRate.h"

#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>
#include <string>

namespace {

using OrvComtradeLib::SamplingRate;

TEST(SamplingRateParse, TakesRateAndLastSampleNumber) {
    struct {
        const char* why;
        const char* line;
        double rate;
        unsigned long endSample;
    } const rows[] = {
        // Plain lines
        {"plain", "1000,500", 1000.0, 500},
        {"no fixed rate", "0,1200", 0.0, 1200},
        {"fraction", "1200.5,7", 1200.5, 7},
        // Number forms of the standard conversions
        {"blanks in front", " 1000, 500", 1000.0, 500},
        {"text behind the numbers", "1000Hz,500\r", 1000.0, 500},
        {"the last sample number stops at the point", "1000,12.9", 1000.0, 12},
        {"exponent in the rate only", "1e3,1e3", 1000.0, 1},
        {"hexadecimal rate", "0x10,16", 16.0, 16},
        {"hexadecimal last sample number ends at the x", "16,0x10", 16.0, 0},
        {"signs", "-50,+9", -50.0, 9},
        {"a negative number wraps", "1000,-1", 1000.0, 18446744073709551615UL},
        {"largest number", "1000,9223372036854775807", 1000.0, 9223372036854775807UL},
        {"smallest number wraps", "1000,-9223372036854775808", 1000.0, 9223372036854775808UL},
        {"infinite rate", "inf,3", HUGE_VAL, 3},
        // Fields
        {"more fields are ignored", "1000,500,x,y", 1000.0, 500},
    };
    for (const auto& row : rows) {
        const SamplingRate entry{std::string(row.line)};
        EXPECT_EQ(entry.rate, row.rate) << row.why;
        EXPECT_EQ(entry.endSample, row.endSample) << row.why;
    }
}

TEST(SamplingRateParse, TakesNotANumber) {
    EXPECT_TRUE(std::isnan(SamplingRate("nan,3").rate));
}

TEST(SamplingRateParse, NumberThatDoesNotConvertThrows) {
    struct {
        const char* why;
        const char* line;
        const char* what;
        bool outOfRange;
    } const rows[] = {
        {"no rate", "x,5", "stod", false},
        {"empty rate", ",5", "stod", false},
        {"rate of a carriage return", "\r,5", "stod", false},
        {"rate overflows", "1e999,5", "stod", true},
        {"rate underflows", "1e-999,5", "stod", true},
        {"no last sample number", "1000,x", "stol", false},
        {"empty last sample number", "1000,,5", "stol", false},
        {"blank last sample number", "1000, ", "stol", false},
        {"last sample number out of range", "1000,9223372036854775808", "stol", true},
        {"last sample number below the range", "1000,-9223372036854775809", "stol", true},
        {"the rate is converted first", "x,y", "stod", false},
    };
    for (const auto& row : rows) {
        try {
            const SamplingRate entry{std::string(row.line)};
            ADD_FAILURE() << row.why << ": no exception, rate " << entry.rate;
        } catch (const std::invalid_argument& error) {
            EXPECT_FALSE(row.outOfRange) << row.why;
            EXPECT_STREQ(error.what(), row.what) << row.why;
        } catch (const std::out_of_range& error) {
            EXPECT_TRUE(row.outOfRange) << row.why;
            EXPECT_STREQ(error.what(), row.what) << row.why;
        }
    }
}

TEST(SamplingRateParse, LineOfFewerThanTwoFieldsIsOutOfRange) {
    for (const char* const line : {"", "1000", "1000,", ",", "x"}) {
        EXPECT_THROW(SamplingRate{std::string(line)}, std::out_of_range) << '"' << line << '"';
    }
}

TEST(SamplingRateGetDuration, IsSampleCountOverRate) {
    const SamplingRate entry("2000,1500");
    EXPECT_EQ(entry.getDuration(0), 0.0);
    EXPECT_EQ(entry.getDuration(200), 0.1);
    EXPECT_EQ(entry.getDuration(1300), 0.65);
    EXPECT_EQ(SamplingRate("3,10").getDuration(2), 0.66666666666666663);
}

TEST(SamplingRateGetDuration, IsCappedAtTheLastSampleNumber) {
    const SamplingRate entry("2000,1500");
    EXPECT_EQ(entry.getDuration(1499), 0.7495);
    EXPECT_EQ(entry.getDuration(1500), 0.75);
    EXPECT_EQ(entry.getDuration(1501), 0.75);
    EXPECT_EQ(entry.getDuration(18446744073709551615UL), 0.75);
}

TEST(SamplingRateGetDuration, CountsAreUnsigned) {
    const SamplingRate entry("1000,-1");
    EXPECT_EQ(entry.getDuration(18446744073709551615UL), 18446744073709552.0);
    EXPECT_EQ(entry.getDuration(5), 0.005);
    EXPECT_EQ(SamplingRate("1000,9").getDuration(9223372036854775808UL), 0.009);
}

TEST(SamplingRateGetDuration, RateThatIsNotPositiveGivesMinusOne) {
    for (const char* const line : {"0,1200", "-0.0,1200", "-1000,1200", "nan,1200", "-inf,1200"}) {
        const SamplingRate entry{std::string(line)};
        EXPECT_EQ(entry.getDuration(0), -1.0) << line;
        EXPECT_EQ(entry.getDuration(1200), -1.0) << line;
    }
}

TEST(SamplingRateGetDuration, TinyRateStillCounts) {
    EXPECT_EQ(SamplingRate("0.0000005,10").getDuration(1), 2000000.0);
}

TEST(SamplingRateGetDuration, InfiniteRateGivesNoTime) {
    EXPECT_EQ(SamplingRate("inf,10").getDuration(10), 0.0);
}

} // namespace
