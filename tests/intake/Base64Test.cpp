#include "files/base64.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using OrvComtradeIntake::Base64Decoder;
using OrvComtradeIntake::ByteSource;
using OrvComtradeIntake::decodedBase64;
using OrvComtradeIntake::looksLikeBase64;

struct Row {
    const char* why;
    std::string text;
    std::string expected;
};

std::string decode(const std::string& text, std::size_t pieceLength) {
    Base64Decoder decoder;
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); i += pieceLength) {
        decoder.decode(std::string_view(text).substr(i, pieceLength), bytes);
    }
    decoder.finish(bytes);
    return bytes;
}

const Row kRows[] = {
    // The test vectors of RFC 4648, section 10
    {"nothing", "", ""},
    {"one byte", "Zg==", "f"},
    {"two bytes", "Zm8=", "fo"},
    {"three bytes", "Zm9v", "foo"},
    {"four bytes", "Zm9vYg==", "foob"},
    {"five bytes", "Zm9vYmE=", "fooba"},
    {"six bytes", "Zm9vYmFy", "foobar"},
    // As devices write it
    {"lines with quotation marks, each encoded for itself", "\"Zm9vYg==\"\r\n\"YXI=\"\r\n", "foobar"},
    {"line ends within a group", "Zm\n9v\r\nYm Fy", "foobar"},
    {"no padding at the end", "Zm9vYg", "foob"},
    {"all letters of the alphabet", "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/",
     std::string("\x00\x10\x83\x10\x51\x87\x20\x92\x8B\x30\xD3\x8F\x41\x14\x93\x51\x55\x97\x61\x96\x9B\x71\xD7\x9F"
                 "\x82\x18\xA3\x92\x59\xA7\xA2\x9A\xAB\xB2\xDB\xAF\xC3\x1C\xB3\xD3\x5D\xB7\xE3\x9E\xBB\xF3\xDF\xBF",
                 48)},
    {"one letter alone gives no byte", "Z", ""},
};

TEST(Base64Decode, GivesTheBytesInPiecesOfAnyLength) {
    for (const Row& row : kRows) {
        for (const std::size_t pieceLength : {1U, 2U, 3U, 5U, 64U, 1000U}) {
            EXPECT_EQ(decode(row.text, pieceLength), row.expected) << row.why << ", pieces of " << pieceLength;
        }
    }
}

TEST(LooksLikeBase64, IsFalseForBytesOutsideOfItsAlphabet) {
    EXPECT_TRUE(looksLikeBase64("\"AQAA+/==\"\r\n"));
    EXPECT_FALSE(looksLikeBase64("1,0,5,-3"));
    EXPECT_FALSE(looksLikeBase64(std::string_view("AAAA\0AAAA", 9)));
    EXPECT_FALSE(looksLikeBase64("AAAA\xE9"));
}

TEST(LooksLikeBase64, IsFalseWithoutALetterOfIt) {
    EXPECT_FALSE(looksLikeBase64(""));
    EXPECT_FALSE(looksLikeBase64(" \r\n\"\"=="));
}

TEST(DecodedBase64, DecodesTextOfAnyLength) {
    std::string text;
    std::string expected;
    for (int line = 0; line < 20000; ++line) { // several blocks, which end within groups
        text += "Zm9v\r\n";
        expected += "foo";
    }
    EXPECT_TRUE(decodedBase64(ByteSource::ofMemory(text + "Zg", "a")) == expected + "f");
}

} // namespace
