#include "base/numbers.h"

#include <gtest/gtest.h>

#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>

using namespace OrvComtradeIntake;

TEST(ReadNumber, TakesWhatDevicesWrite) {
    const struct {
        const char* why;
        std::string field;
        NumberForm form;
        double value;
    } rows[] = {
        {"decimal", "0.25", NumberForm::Good, 0.25},
        {"blanks around", "  -12 ", NumberForm::Good, -12.0},
        {"plus sign", "+9.5", NumberForm::Good, 9.5},
        {"trailing point", "1920.", NumberForm::Good, 1920.0},
        {"leading point", ".5", NumberForm::Good, 0.5},
        {"exponent", "-1.021247e+002", NumberForm::Good, -102.1247},
        {"carriage return behind", "1\r", NumberForm::Good, 1.0},
        {"zero byte in front",
         std::string("\0"
                     "1",
                     2),
         NumberForm::Good, 1.0},
        {"0x1A in front",
         "\x1A"
         "1",
         NumberForm::Good, 1.0},
        {"unit behind", "50 Hz", NumberForm::Odd, 50.0},
        {"the first byte above ASCII behind", "50\x80", NumberForm::Odd, 50.0},
        {"the last byte of ASCII behind", "50~", NumberForm::Malformed, 0.0},
        {"exponent of Fortran", "1.5D-03", NumberForm::Odd, 0.0015},
        {"exponent of Fortran, too small for full precision", "1D-310", NumberForm::Odd, 0.0},
        {"exponent of Fortran, far too small", "1D-999", NumberForm::Odd, 0.0},
        {"exponent of Fortran, too large", "1D999", NumberForm::Malformed, 0.0},
        {"exponent of Fortran and a unit", "1D3 kV", NumberForm::Malformed, 0.0},
        {"too small for full precision", "1e-310", NumberForm::Odd, 0.0},
        {"far too small", "1e-999", NumberForm::Odd, 0.0},
        {"empty", "", NumberForm::Empty, 0.0},
        {"blanks", " \t", NumberForm::Empty, 0.0},
        {"decimal comma", "0,5", NumberForm::Malformed, 0.0},
        {"word", "abc", NumberForm::Malformed, 0.0},
        {"infinity", "inf", NumberForm::Malformed, 0.0},
        {"not a number", "nan", NumberForm::Malformed, 0.0},
        {"too large", "1e999", NumberForm::Malformed, 0.0},
        {"hexadecimal", "0x1F", NumberForm::Malformed, 0.0},
        {"a fraction", "1/2", NumberForm::Malformed, 0.0},
        {"two points", "1.5.2", NumberForm::Malformed, 0.0},
        {"two signs", "+-1", NumberForm::Malformed, 0.0},
        {"sign alone", "-", NumberForm::Malformed, 0.0},
        {"point alone", ".", NumberForm::Malformed, 0.0},
        {"sign and point", "-.", NumberForm::Malformed, 0.0},
        {"many digits", "3.14159265358979312", NumberForm::Good, 3.14159265358979312},
        {"the last exact integer", "9007199254740992", NumberForm::Good, 9007199254740992.0},
        {"one beyond it", "9007199254740993", NumberForm::Good, 9007199254740992.0},
        {"all digits behind the point", ".00000000000000001", NumberForm::Good, 1e-17},
        {"the greatest of 19 digits", "9999999999999999999", NumberForm::Good, 1e19},
    };
    for (const auto& row : rows) {
        const ReadNumber read = readNumber(row.field);
        EXPECT_EQ(static_cast<int>(read.form), static_cast<int>(row.form)) << row.why;
        EXPECT_EQ(read.value, row.value) << row.why;
    }
}

TEST(ReadNumber, RoundsOnceWhateverTheNumberOfDigits) {
    std::mt19937_64 draw(20261121);
    for (int i = 0; i < 20000; ++i) {
        std::string text = std::to_string(draw() >> (draw() % 64));
        text.insert(draw() % (text.size() + 1), draw() % 4 == 0 ? "" : ".");
        text.insert(0, draw() % 2 == 0 ? "-" : "");
        double value = 0.0;
        long double precise = 0.0L;
        std::from_chars(text.data(), text.data() + text.size(), value);
        std::from_chars(text.data(), text.data() + text.size(), precise);
        const ReadNumber read = readNumber(text);
        ASSERT_EQ(static_cast<int>(read.form), static_cast<int>(NumberForm::Good)) << text;
        ASSERT_EQ(read.value, value) << text;
        ASSERT_EQ(read.precise, precise) << text;
        ASSERT_EQ(std::signbit(read.value), text[0] == '-') << text;
    }
}

TEST(ReadNumber, IsIndependentOfTheLocale) {
    const std::string before = std::setlocale(LC_NUMERIC, nullptr);
    for (const char* locale : {"de_DE.UTF-8", "ru_RU.UTF-8", "C.UTF-8"}) {
        std::setlocale(LC_NUMERIC, locale);
        EXPECT_EQ(readNumber("1.5").value, 1.5);
        EXPECT_EQ(static_cast<double>(readNumber("1.5").precise), 1.5);
        EXPECT_EQ(numberText(1.5), "1.5");
        EXPECT_EQ(numberText(1.5L), "1.5");
    }
    std::setlocale(LC_NUMERIC, before.c_str());
}

TEST(ReadCount, TakesWholeNumbersOnly) {
    const struct {
        const char* field;
        bool isCount;
        std::uint64_t count;
    } rows[] = {
        {"1300", true, 1300},
        {" 202 ", true, 202},
        {"+5", true, 5},
        {"006000", true, 6000},
        {"5.0", true, 5},
        {"0.0", true, 0},
        {"1.3e3", true, 1300},
        {"9223372036854775807", true, 9223372036854775807U},
        {"9223372036854775808", false, 0},
        {"99999999999999999999", false, 0},
        {"-1", false, 0},
        {"1.5", false, 0},
        {"", false, 0},
        {"8A", false, 0},
        {"1e30", false, 0},
    };
    for (const auto& row : rows) {
        const auto count = readCount(row.field);
        EXPECT_EQ(count.has_value(), row.isCount) << row.field;
        EXPECT_EQ(count.value_or(0), row.count) << row.field;
    }
}

TEST(NumberText, IsTheShortestThatReadsBack) {
    EXPECT_EQ(numberText(0.000361849), "0.000361849");
    EXPECT_EQ(numberText(100000.0), "100000");
    EXPECT_EQ(numberText(-0.0), "0");
    EXPECT_EQ(numberText(1e300), "1e+300");
    EXPECT_EQ(numberText(1e-7), "0.0000001");
    EXPECT_EQ(numberText(1.5e-9), "1.5e-09");
    EXPECT_EQ(numberText(0.1 + 0.2), "0.30000000000000004");
}

TEST(NumberText, IsFiniteAndOfFullPrecision) {
    EXPECT_EQ(numberText(std::numeric_limits<double>::infinity()), "1.7976931348623157e+308");
    EXPECT_EQ(numberText(-std::numeric_limits<double>::infinity()), "-1.7976931348623157e+308");
    EXPECT_EQ(numberText(std::numeric_limits<double>::quiet_NaN()), "0");
    EXPECT_EQ(numberText(std::numeric_limits<double>::denorm_min()), "0");
    EXPECT_EQ(numberText(std::numeric_limits<long double>::max()), "1.7976931348623157e+308");
    EXPECT_EQ(numberText(std::numeric_limits<long double>::min()), "0");
}

TEST(NumberText, OfAScaledFactorIsThatOfTheDecimalProduct) {
    EXPECT_EQ(numberText(readNumber("0.000361849").precise * 1000.0L), "0.361849");
    EXPECT_EQ(numberText(readNumber("0.0203250").precise * 1000.0L), "20.325");
    EXPECT_EQ(numberText(readNumber("16.493").precise * 0.001L), "0.016493");
}

// Halfway between two doubles to the last bit of a long double: rounded twice it would be another number.
TEST(NumberText, RoundsADecimalTextOnceOnly) {
    const ReadNumber halfway = readNumber("9007199254740993");
    EXPECT_EQ(numberText(halfway.precise), "9.007199254740993e+15");
}
