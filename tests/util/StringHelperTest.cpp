#include "StringHelper.h"

#include "support/WhatOf.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <stdexcept>
#include <string>
#include <vector>

using OrvComtradeLib::StringHelper;
using orvtest::whatOf;
using Texts = std::vector<std::string>;

TEST(StringHelperSplit, FieldsAreTheTextsBetweenSeparators) {
    const struct {
        const char* why;
        std::string text;
        char separator;
        Texts expected;
    } rows[] = {
        // How many fields
        {"an empty text has no field", "", ',', {}},
        {"a text without separator is one field", "abc", ',', {"abc"}},
        {"a lone separator is one empty field", ",", ',', {""}},
        {"two separators in a row enclose an empty field", "a,,b", ',', {"a", "", "b"}},
        {"a leading separator gives an empty first field", ",a", ',', {"", "a"}},
        {"a separator at the end gives no empty last field", "a,b,", ',', {"a", "b"}},
        {"of two separators at the end one gives a field", "a,b,,", ',', {"a", "b", ""}},
        {"only separators", ",,,", ',', {"", "", ""}},
        // Nothing is trimmed
        {"a carriage return stays in the last field", "a,b\r", ',', {"a", "b\r"}},
        {"a carriage return behind the last separator is a field", "a,b,\r", ',', {"a", "b", "\r"}},
        {"blanks and tabs stay", " a ,\tb\t, ", ',', {" a ", "\tb\t", " "}},
        {"a line feed is no separator of its own", "a\nb,c\n", ',', {"a\nb", "c\n"}},
        // The separator
        {"another separator", "a;b,c;d", ';', {"a", "b,c", "d"}},
        {"a blank as separator", "1 22  3", ' ', {"1", "22", "", "3"}},
        {"a line feed as separator", "one\ntwo\n", '\n', {"one", "two"}},
        {"a byte above 0x7F as separator", "x\xFFy", '\xFF', {"x", "y"}},
        {"a zero byte as separator", std::string("a\0b", 3), '\0', {"a", "b"}},
        // Any byte
        {"a zero byte is an ordinary character", std::string("a\0b,c", 5), ',', {std::string("a\0b", 3), "c"}},
        {"Cyrillic letters a and b", "\xD0\xB0,\xD0\xB1", ',', {"\xD0\xB0", "\xD0\xB1"}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(StringHelper::split(row.text, row.separator), row.expected) << row.why;
}

TEST(StringHelperSplit, LongTextsKeepEveryField) {
    std::string text;
    for (int i = 0; i < 50000; ++i)
        text += "ab,";
    const Texts fields = StringHelper::split(text, ',');
    ASSERT_EQ(fields.size(), 50000U);
    EXPECT_EQ(fields.front(), "ab");
    EXPECT_EQ(fields.back(), "ab");
}

TEST(StringHelperJoin, OneSeparatorStandsBetweenNeighbours) {
    const struct {
        const char* why;
        char separator;
        Texts parts;
        std::string expected;
    } rows[] = {
        {"no parts", ',', {}, ""},
        {"one part has no separator", ',', {"x"}, "x"},
        {"one empty part", ',', {""}, ""},
        {"two empty parts", ',', {"", ""}, ","},
        {"an empty part in the middle keeps its separator", ',', {"a", "", "b"}, "a,,b"},
        {"an empty first part", ',', {"", "a"}, ",a"},
        {"an empty last part", ',', {"a", ""}, "a,"},
        {"another separator", ';', {"a", "b", "c"}, "a;b;c"},
        {"parts are not trimmed or escaped", ',', {" a,b ", "c\r"}, " a,b ,c\r"},
        {"a zero byte as separator", '\0', {"a", "b"}, std::string("a\0b", 3)},
        {"zero bytes in parts", ',', {std::string("\0", 1), "b"}, std::string("\0,b", 3)},
    };
    for (const auto& row : rows)
        EXPECT_EQ(StringHelper::join(row.separator, row.parts), row.expected) << row.why;
}

TEST(StringHelperJoin, PartsAreLeftAsTheyWere) {
    const Texts parts = {"a", "b"};
    StringHelper::join(',', parts);
    EXPECT_EQ(parts, (Texts{"a", "b"}));
}

TEST(StringHelperToLower, LowersAsciiLettersOnly) {
    const struct {
        const char* why;
        std::string text;
        std::string expected;
    } rows[] = {
        {"empty", "", ""},
        {"every ASCII letter", "ABCDEFGHIJKLMNOPQRSTUVWXYZ", "abcdefghijklmnopqrstuvwxyz"},
        {"lower case stays", "abcdefghijklmnopqrstuvwxyz", "abcdefghijklmnopqrstuvwxyz"},
        {"the neighbours of the letters stay", "@[`{09 ._\t\r\n", "@[`{09 ._\t\r\n"},
        {"mixed", "Float32 .CFG", "float32 .cfg"},
        {"a Cyrillic capital A keeps its bytes", "\xD0\x90", "\xD0\x90"},
        {"letters behind a zero byte are lowered too", std::string("A\0B", 3), std::string("a\0b", 3)},
    };
    for (const auto& row : rows)
        EXPECT_EQ(StringHelper::toLower(row.text), row.expected) << row.why;
}

TEST(StringHelperToLower, BytesAbove7FStayInTheCLocale) {
    for (int byte = 0x80; byte <= 0xFF; ++byte) {
        const std::string text(1, static_cast<char>(byte));
        EXPECT_EQ(StringHelper::toLower(text), text) << "byte " << byte;
    }
}

TEST(StringHelperToLower, CallersTextStays) {
    const std::string text = "CFG";
    EXPECT_EQ(StringHelper::toLower(text), "cfg");
    EXPECT_EQ(text, "CFG");
}

TEST(StringHelperToInt, ReadsTheIntegerAtTheStart) {
    const struct {
        const char* why;
        std::string text;
        int expected;
    } rows[] = {
        {"digits", "42", 42},
        {"leading blank", " 42", 42},
        {"every kind of leading white space", " \t\n\v\f\r7", 7},
        {"plus sign", "+5", 5},
        {"minus sign", "-5", -5},
        {"minus zero", "-0", 0},
        {"what follows the digits is ignored", "12abc", 12},
        {"a suffix letter", "16D", 16},
        {"a carriage return behind", "1999\r", 1999},
        {"a decimal point ends it", "3.9", 3},
        {"base 10 whatever the prefix: leading zeros", "010", 10},
        {"base 10 whatever the prefix: 0x", "0x1F", 0},
        {"a zero byte ends it", std::string("1\0002", 3), 1},
        {"largest", "2147483647", 2147483647},
        {"smallest", "-2147483648", -2147483647 - 1},
        {"leading zeros do not count as length", "000000000000000000000000000001", 1},
    };
    for (const auto& row : rows)
        EXPECT_EQ(StringHelper::toInt(row.text), row.expected) << row.why;
}

TEST(StringHelperToInt, TextWithoutDigitsIsInvalidArgumentStoi) {
    for (const std::string text : {"", "x", " ", "-", "+", "- 1", "--1", "+-1", ",1", ".5", "A1", "\xD0\xB0", "\r"})
        EXPECT_EQ(whatOf<std::invalid_argument>([&] { StringHelper::toInt(text); }), "stoi") << '"' << text << '"';
}

TEST(StringHelperToInt, ValueBeyond32BitsIsOutOfRangeStoi) {
    const struct {
        const char* why;
        std::string text;
    } rows[] = {
        {"one above the largest", "2147483648"},
        {"one below the smallest", "-2147483649"},
        {"three milliards", "3000000000"},
        {"low 32 bits zero", "4294967296"},
        {"beyond 64 bits, where strtol itself reports the range", "99999999999999999999"},
        {"beyond 64 bits, negative", "-99999999999999999999"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(whatOf<std::out_of_range>([&] { StringHelper::toInt(row.text); }), "stoi") << row.why;
}

TEST(StringHelperToInt, KeepsErrnoOnSuccess) {
    for (const int before : {0, EDOM, ERANGE}) {
        errno = before;
        const int value = StringHelper::toInt("42");
        const int after = errno;
        EXPECT_EQ(value, 42) << "with errno " << before;
        EXPECT_EQ(after, before);
    }
}
