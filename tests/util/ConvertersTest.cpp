#include "Converters.h"

#include <gtest/gtest.h>

#include <string>

using OrvComtradeLib::Converters;
namespace Enums = OrvComtradeLib::Enums;

TEST(ConvertersToDataFileType, WordIsComparedWholeAndLowered) {
    const struct {
        const char* why;
        std::string word;
        int expected;
    } rows[] = {
        // Known words, in any case
        {"ascii", "ascii", 0},
        {"upper case", "ASCII", 0},
        {"binary", "binary", 1},
        {"capitalised", "Binary", 1},
        {"upper case", "BINARY", 1},
        {"odd case", "bInArY", 1},
        {"float32", "float32", 3},
        {"upper case", "FLOAT32", 3},
        {"capitalised", "Float32", 3},
        // No word yields Binary32
        {"binary32 is no known word", "binary32", 0},
        {"nor in upper case", "BINARY32", 0},
        {"nor capitalised", "Binary32", 0},
        {"the text with the capital Y is lowered before it is compared", "binaryY32", 0},
        {"its lower case is not compared with", "binaryy32", 0},
        {"its upper case neither", "BINARYY32", 0},
        // Whole and untrimmed
        {"trailing blank", "binary ", 0},
        {"leading blank", " binary", 0},
        {"the carriage return of a CRLF file", "BINARY\r", 0},
        {"carriage return behind float32", "float32\r", 0},
        {"trailing tab", "float32\t", 0},
        {"prefix", "binar", 0},
        {"surplus", "float32x", 0},
        {"a zero byte behind the word", std::string("binary\0", 7), 0},
        // Unknown
        {"empty", "", 0},
        {"float alone", "float", 0},
        {"float64", "float64", 0},
        {"unknown word", "xyz", 0},
        {"a number", "1", 0},
    };
    for (const auto& row : rows) {
        std::string word = row.word;
        EXPECT_EQ(static_cast<int>(Converters::toDataFileType(word)), row.expected)
            << row.why << ": \"" << row.word << '"';
    }
}

TEST(ConvertersToDataFileType, ArgumentIsNotChanged) {
    for (const std::string before : {"ASCII", "BINARY", "FLOAT32", "Unknown\r", ""}) {
        std::string word = before;
        Converters::toDataFileType(word);
        EXPECT_EQ(word, before);
    }
}

TEST(ConvertersToDataFileType, EnumeratorsNameTheResults) {
    std::string ascii = "ascii";
    std::string binary = "binary";
    std::string float32 = "float32";
    EXPECT_EQ(Converters::toDataFileType(ascii), Enums::Ascii);
    EXPECT_EQ(Converters::toDataFileType(binary), Enums::Binary);
    EXPECT_EQ(Converters::toDataFileType(float32), Enums::Float32);
}
