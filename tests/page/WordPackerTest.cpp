#include "WordPacker.h"

#include "support/fixedSeed.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <string>
#include <string_view>
#include <vector>

namespace orvtest {
namespace {

using OrvComtradePage::WordPacker;

using Words = std::vector<std::uint32_t>;

std::string packedOf(const Words& words) {
    WordPacker packer;
    for (std::size_t begin = 0; begin < words.size(); begin += WordPacker::kBlock) {
        packer.add(words.data() + begin, std::min(WordPacker::kBlock, words.size() - begin));
    }
    return packer.take();
}

std::string bytes(std::string_view text) {
    return std::string(text);
}

/// Bit by bit, as the header says.
Words unpacked(const std::string& packed, std::size_t count) {
    const std::size_t blocks = (count + 63) / 64;
    Words words;
    std::size_t begin = 0; // bits
    for (std::size_t block = 0; block < blocks; ++block) {
        const unsigned head = static_cast<unsigned char>(packed.at(packed.size() - blocks + block));
        const unsigned width = head & 63U;
        const std::size_t length = std::min<std::size_t>(64, count - words.size());
        for (std::size_t i = 0; i < length; ++i) {
            std::uint32_t folded = 0;
            for (std::size_t bit = 0; bit < width; ++bit) {
                const std::size_t at = begin + i * width + bit;
                const auto byte = static_cast<unsigned char>(packed.at(at / 8));
                folded |= static_cast<std::uint32_t>(byte >> at % 8 & 1U) << bit;
            }
            const auto before = [&](std::size_t back) { return words.size() < back ? 0 : words[words.size() - back]; };
            std::uint32_t word = folded >> 1U ^ (0U - (folded & 1U));
            const unsigned order = head >> 6U;
            word += order == 1 ? before(1) : 0;
            word += order == 2 ? 2 * before(1) - before(2) : 0;
            word += order == 3 ? 3 * before(1) - 3 * before(2) + before(3) : 0;
            words.push_back(word);
        }
        begin += (length * width + 31) / 32 * 32;
    }
    EXPECT_EQ(begin / 8 + blocks, packed.size());
    return words;
}

struct Row {
    const char* why;
    Words words;
    std::string expected;
};

TEST(WordPackerTake, IsTheDifferencesOfTheNarrowestOrderThenAByteForEachBlock) {
    const std::vector<Row> rows = {
        {"nothing", {}, ""},
        {"zeros take no bits", {0, 0, 0}, bytes({"\x00", 1})},
        {"levels around zero stay as they are: 2, 1, 2, 0 of 2 bits", {1, 0U - 1, 1, 0}, bytes({"\x26\0\0\0\x02", 5})},
        {"a line from 1 has differences of 1: 2, 2, 2 of 2 bits", {1, 2, 3}, bytes({"\x2A\0\0\0\x42", 5})},
        {"a parabola has second differences: 0, 2, 2, 2, 2 of 2 bits",
         {0, 1, 3, 6, 10},
         bytes({"\xA8\x02\0\0\x82", 5})},
        {"the lowest integer is the widest: 2^32 - 1", {0x80000000U}, bytes({"\xFF\xFF\xFF\xFF\x20", 5})},
        {"both ends of 32 bits stay as they are",
         {0x7FFFFFFFU, 0x80000000U},
         bytes({"\xFE\xFF\xFF\xFF\xFF\xFF\xFF\xFF\x20", 9})},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(packedOf(row.words), row.expected) << row.why;
        EXPECT_EQ(unpacked(row.expected, row.words.size()), row.words) << row.why;
    }
}

TEST(WordPackerTake, WholeBytesAreOfTheLowestOrderThatFits) {
    WordPacker packer(8);
    const Words words = {1, 2, 3};
    packer.add(words.data(), words.size());
    const std::string expected = bytes({"\x02\x04\x06\0\x08", 5});
    EXPECT_EQ(packer.take(), expected);
    EXPECT_EQ(unpacked(expected, words.size()), words);
}

TEST(WordPackerTake, BlocksGoOnFromTheWordsBeforeThem) {
    Words line(130);
    std::iota(line.begin(), line.end(), 1000U);
    const std::string packed = packedOf(line);
    EXPECT_EQ(packed.substr(packed.size() - 3), bytes({"\x4B\x80\x80", 3})) << "1000 takes 11 bits, what follows none";
    EXPECT_EQ(packed.size(), 64U * 11 / 8 + 3);
    EXPECT_EQ(unpacked(packed, line.size()), line);
}

RC_GTEST_PROP(WordPackerTake, HoldsAnyWords, ()) {
    const auto span = *rc::gen::element(1U, 3U, 1000U, 70000U, 0xFFFFFFFFU);
    const auto count = *rc::gen::inRange<std::size_t>(0, 300);
    Words words = *rc::gen::container<Words>(count, rc::gen::arbitrary<std::uint32_t>());
    std::uint32_t sum = *rc::gen::arbitrary<std::uint32_t>();
    const bool areSummed = *rc::gen::arbitrary<bool>();
    for (std::uint32_t& word : words) {
        word %= span;
        sum += word;
        word = areSummed ? sum : word;
    }
    RC_ASSERT(unpacked(packedOf(words), words.size()) == words);
}

} // namespace
} // namespace orvtest
