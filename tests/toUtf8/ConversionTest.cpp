#include "toUtf8.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <stdexcept>
#include <string>

namespace {

constexpr std::uint32_t kUndefined = 0;

struct CodePoints {
    unsigned int byte;
    std::uint32_t in866;
    const char* utf8From866;
    std::uint32_t in1251;
    const char* utf8From1251;
};

const CodePoints kPublished[] = {
#include "code_points.inc"
};

constexpr unsigned int kUndefinedIn1251 = 0x98;
constexpr unsigned int kSoftHyphenIn1251 = 0xAD;

std::string from866(const std::string& bytes) {
    return toUtf8::from866(bytes.data(), bytes.size());
}

std::string from1251(const std::string& bytes) {
    return toUtf8::from1251(bytes.data(), bytes.size());
}

std::string ascii() {
    std::string bytes;
    for (int byte = 0x00; byte < 0x80; ++byte)
        bytes += static_cast<char>(byte);
    return bytes;
}

} // namespace

TEST(CodePoints, ListHoldsEveryByteFrom80InOrder) {
    ASSERT_EQ(std::size(kPublished), 128U);
    for (std::size_t i = 0; i < 128; ++i)
        EXPECT_EQ(kPublished[i].byte, 0x80 + i);
    EXPECT_EQ(kPublished[0].in866, 0x0410U);
    EXPECT_EQ(kPublished[127].in866, 0x00A0U);
    EXPECT_EQ(kPublished[0].in1251, 0x0402U);
    EXPECT_EQ(kPublished[127].in1251, 0x044FU);
    EXPECT_EQ(kPublished[kUndefinedIn1251 - 0x80].in1251, kUndefined);
    EXPECT_EQ(kPublished[kSoftHyphenIn1251 - 0x80].in1251, 0x00ADU);
}

TEST(From866, EveryByteFrom80IsThePublishedCharacter) {
    for (const CodePoints& published : kPublished) {
        const std::string byte(1, static_cast<char>(published.byte));
        EXPECT_EQ(from866(byte), published.utf8From866) << std::hex << "byte " << published.byte;
    }
}

TEST(From1251, EveryByteFrom80ButTwoIsThePublishedCharacter) {
    for (const CodePoints& published : kPublished) {
        if (published.byte == kUndefinedIn1251 || published.byte == kSoftHyphenIn1251)
            continue;
        ASSERT_NE(published.in1251, kUndefined);
        const std::string byte(1, static_cast<char>(published.byte));
        EXPECT_EQ(from1251(byte), published.utf8From1251) << std::hex << "byte " << published.byte;
    }
}

TEST(From1251, UndefinedByteAndSoftHyphenAreASpaceEach) {
    EXPECT_EQ(from1251("\x98"), " ");
    EXPECT_EQ(from1251("\xAD"), " ");
    EXPECT_EQ(from1251("a\x98\xAD\x98z"), "a   z");
}

TEST(From866, AsciiIsCopiedZeroByteIncluded) {
    EXPECT_EQ(from866(ascii()), ascii());
}

TEST(From1251, AsciiIsCopiedZeroByteIncluded) {
    EXPECT_EQ(from1251(ascii()), ascii());
}

TEST(From866, CharactersOfEveryLengthFollowEachOther) {
    EXPECT_EQ(from866("a\x8F\xB0\xFA\xFC+\xFF="), "a\xD0\x9F\xE2\x96\x91\xC2\xB7\xE2\x84\x96+\xC2\xA0=");
    EXPECT_EQ(from866("\xFF"), "\xC2\xA0");
    EXPECT_EQ(from866("\xFA"), "\xC2\xB7");
    EXPECT_EQ(from866("\xB0"), "\xE2\x96\x91");
}

TEST(From1251, CharactersOfEveryLengthFollowEachOther) {
    EXPECT_EQ(from1251("a\xCF\xF0\x88\xB9=\xA0+"), "a\xD0\x9F\xD1\x80\xE2\x82\xAC\xE2\x84\x96=\xC2\xA0+");
}

TEST(From866, NullOrNothingIsEmpty) {
    EXPECT_EQ(toUtf8::from866(nullptr, 0), "");
    EXPECT_EQ(toUtf8::from866(nullptr, 5), "");
    EXPECT_EQ(toUtf8::from866("\x80", 0), "");
}

TEST(From1251, NullOrNothingIsEmpty) {
    EXPECT_EQ(toUtf8::from1251(nullptr, 0), "");
    EXPECT_EQ(toUtf8::from1251(nullptr, 5), "");
    EXPECT_EQ(toUtf8::from1251("\x80", 0), "");
}

TEST(From866, LengthBoundsTheTextNotAZeroByte) {
    EXPECT_EQ(toUtf8::from866("\x80\x81\x82", 2), "\xD0\x90\xD0\x91");
    EXPECT_EQ(from866(std::string("\x80\0\x81", 3)), std::string("\xD0\x90\0\xD0\x91", 5));
}

TEST(From1251, LengthBoundsTheTextNotAZeroByte) {
    EXPECT_EQ(toUtf8::from1251("\xC0\xC1\xC2", 2), "\xD0\x90\xD0\x91");
    EXPECT_EQ(from1251(std::string("\xC0\0\xC1", 3)), std::string("\xD0\x90\0\xD0\x91", 5));
}

TEST(From866, LengthBeyondTheLargestStringIsLengthError) {
    EXPECT_THROW(toUtf8::from866("x", static_cast<std::size_t>(-1)), std::length_error);
}

TEST(From1251, LengthBeyondTheLargestStringIsLengthError) {
    EXPECT_THROW(toUtf8::from1251("x", static_cast<std::size_t>(-1)), std::length_error);
}
