#include "text/highBytes.h"

#include <gtest/gtest.h>

#include <string>

using namespace OrvComtradeIntake;

namespace {

struct Row {
    const char* why;
    std::string text;
    bool expected;
};

std::string times(int count, const std::string& pair) {
    std::string text;
    for (int i = 0; i < count; ++i) {
        text += pair;
    }
    return text;
}

} // namespace

TEST(HighBytes, AreChineseInPairsThatAreCommonAndNoCapitalsOfCp1251) {
    const Row rows[] = {
        {"four pairs of five are common", times(4, "\xB0\xA1") + "\x90\xA1", true},
        {"three of four", times(3, "\xB0\xA1") + "\x90\xA1", false},
        {"a third is not in capitals", "\xB0\xA1" + times(2, "\xC0\xC0"), true},
        {"a quarter", "\xB0\xA1" + times(3, "\xC0\xC0"), false},
        {"a pair above the capitals counts with the others", times(2, "\xB0\xA1") + times(4, "\xC0\xC0") + "\xE0\xC0",
         true},
        {"an odd byte", "\xB0\xA1\xB0", false},
        {"the first common character", "\xB0\xA1", true},
        {"a row below", "\xAF\xA1", false},
        {"a place below", "\xB0\xA0", false},
        {"the last row of common ones", "\xD7\xA1", true},
        {"a row above", "\xD8\xA1", false},
        {"the first pair of capitals", "\xC0\xC0", false},
        {"a row below the capitals", "\xBF\xC0", true},
        {"a place below the capitals", "\xC0\xBF", true},
        {"the last capital", "\xC0\xDF", false},
        {"a place above the capitals", "\xC0\xE0", true},
        {"none at all", "Ua", false},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(HighBytes(row.text).isChineseText(), row.expected) << row.why;
    }
}

TEST(HighBytes, AreSymbolsAloneOrBesideALetter) {
    const Row rows[] = {
        {"degree", "\xB0", true},
        {"degree before a letter",
         "\xB0"
         "C",
         true},
        {"degree behind a letter", "C\xB0", true},
        {"beside two letters",
         "\xB0"
         "Cx",
         false},
        {"two of them", "\xB0\xB0", false},
        {"the first symbol", "\xA1", true},
        {"a byte below", "\xA0", false},
        {"the last symbol", "\xBF", true},
        {"a byte above", "\xC0", false},
        {"a symbol and a letter", "\xB0,\xC0", false},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(HighBytes(row.text).isSymbols(), row.expected) << row.why;
    }
}

TEST(HighBytes, AreWesternTextIfMoreAreAccentsThanLettersOfOtherWords) {
    const Row rows[] = {
        {"an accent", "ab\xE4", true},
        {"in front",
         "\xE4"
         "ab",
         true},
        {"between",
         "a\xE4"
         "b",
         true},
        {"beside one letter", "a\xE4", false},
        {"two together", "abc\xE4\xE4", true},
        {"two together beside as many letters", "ab\xE4\xE4", false},
        {"three together", "abcd\xE4\xE4\xE4", false},
        {"as many accents as letters of words", "abc\xE4\xE4,\xE4\xE4", false},
        {"one more", "abc\xE4\xE4,ab\xE4,\xE4\xE4", true},
        {"a letter of its own is no word", "ab\xE4,\xC2", true},
        {"a sign beside a letter is no word", "ab\xE4,m\xB3", true},
        {"the first of them",
         "ab\xE4,\xB0"
         "C",
         true},
        {"a byte below them",
         "ab\xE4,\xAF"
         "C",
         false},
        {"a byte behind them",
         "ab\xE4,\xB4"
         "C",
         false},
        {"micro",
         "ab\xE4,\xB5"
         "A",
         true},
        {"a byte behind it",
         "ab\xE4,\xB6"
         "A",
         false},
        {"none at all", "Ua", false},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(HighBytes(row.text).isWesternText(), row.expected) << row.why;
    }
}
