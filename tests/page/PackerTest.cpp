#include "Packer.h"

#include "PackedColumns.h"
#include "base64.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

namespace orvtest {
namespace {

using OrvComtradePage::base64;
using OrvComtradePage::Packed;
using OrvComtradePage::PackedColumns;
using OrvComtradePage::Packer;
using OrvComtradePage::ValueColumn;

Packed packed(const std::vector<double>& values) {
    ValueColumn column;
    column.append(values.data(), values.size());
    return Packer().pack(column);
}

TEST(Base64, IsThatOfRfc4648) {
    EXPECT_EQ(base64(""), "");
    EXPECT_EQ(base64("f"), "Zg==");
    EXPECT_EQ(base64("fo"), "Zm8=");
    EXPECT_EQ(base64("foo"), "Zm9v");
    EXPECT_EQ(base64("foobar"), "Zm9vYmFy");
    EXPECT_EQ(base64("\xFF\xFE\x00"), "//4=");
}

TEST(PackerPack, SaysWhatTheNumbersAre) {
    EXPECT_STREQ(packed({1, 2, 3}).type, "i16");
    EXPECT_EQ(packed({1, 2, 3}).count, 3U);
    EXPECT_EQ(packed({1, 2, 3}).base64, base64(std::string("\x2A\0\0\0\x42", 5))) << "as WordPackerTest has it";
    EXPECT_STREQ(packed({100000}).type, "i32");
    EXPECT_STREQ(packed({0.5}).type, "f32");
    EXPECT_STREQ(packed({0.1}).type, "f64");
    EXPECT_EQ(packed({}).count, 0U);
    EXPECT_EQ(packed({}).base64, "");
}

TEST(PackerPack, KeepsSignsAndBits) {
    // 0xFFFF0000 would be the lowest of 16 bits without its sign; -1.5 is 0xBFC00000, 0.1 is 0x3FB999999999999A.
    EXPECT_EQ(packed({-32768}).base64, base64(std::string("\xFF\xFF\0\0\x10", 5)));
    EXPECT_EQ(packed({-1.5}).base64, base64(std::string("\xFF\xFF\x7F\x80\x20", 5)));
    EXPECT_EQ(packed({0.1}).base64, base64(std::string("\xCB\xCC\xCC\xCC\x32\x33\x73\x7F\x20", 9)))
        << "the lower word, then the upper one";
}

TEST(PackerPack, DeflatesFewLevelsButNotANoisyWave) {
    std::vector<double> wave;
    std::vector<double> levels;
    unsigned state = 1;
    for (int i = 0; i < 20000; ++i) {
        state = state * 1664525U + 1013904223U;
        wave.push_back(std::round(20000.0 * std::sin(i * 0.01)) + (state >> 20U) % 8);
        levels.push_back(static_cast<double>((state >> 16U) % 3) * 7777.0);
    }
    EXPECT_EQ(packed(wave).inflatedBytes, 0U);
    EXPECT_LT(packed(wave).base64.size(), 20000U) << "half of the integers";
    EXPECT_EQ(packed(levels).inflatedBytes, 20000U * 15 / 8 + 313) << "2 * 7777 takes 15 bits with its sign";
    EXPECT_LT(packed(levels).base64.size(), 15000U);
}

TEST(PackedColumns, AreTheSameInTheSameOrderOnAnyNumberOfThreads) {
    std::vector<ValueColumn> columns(7);
    for (std::size_t channel = 0; channel < columns.size(); ++channel) {
        std::vector<double> values;
        for (int i = 0; i < 60000; ++i) {
            values.push_back(std::round(static_cast<double>(channel) * 3000.0 * std::sin(i * 0.01)));
        }
        columns[channel].append(values.data(), values.size());
    }
    for (const std::size_t threads : {0U, 1U, 2U, 3U, 20U}) {
        PackedColumns packed(columns, threads);
        for (const ValueColumn& column : columns) {
            EXPECT_EQ(packed.next().base64, Packer().pack(column).base64) << threads;
        }
    }
}

TEST(PackerPack, IsTheSameEveryTime) {
    const std::vector<double> values = {5, 4, 300, -7};
    EXPECT_EQ(packed(values).base64, packed(values).base64);
}

} // namespace
} // namespace orvtest
