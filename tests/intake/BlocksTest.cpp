// Samples, decoded block by block: any part of a recording is that part of the whole.

#include "data/Blocks.h"

#include "intake/dataSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace OrvComtradeIntake;
using orvtest::allOf;
using orvtest::blocksOf;
using orvtest::cfgFor;
using orvtest::LittleEndianBytes;
using orvtest::record16;
using orvtest::record32;
using orvtest::recordOfSingle;
using orvtest::stamped;
using orvtest::Surveyed;
using orvtest::wholeOf;

bool isSame(double left, double right) {
    return std::memcmp(&left, &right, sizeof left) == 0 || (std::isnan(left) && std::isnan(right));
}

/// Where a part differs from the whole, or nothing.
std::string firstDifference(const std::vector<Block>& part, const Block& whole, const BlockRange& range,
                            std::size_t statuses) {
    std::uint64_t sample = std::min<std::uint64_t>(range.first, whole.rows);
    for (const Block& block : part) {
        if (block.first != sample || block.rows == 0 || block.rows > range.mostRows ||
            block.numbers.size() != block.rows || block.stamps.size() != block.rows ||
            block.raw.size() != block.rows * range.analog.size() || block.stateWords != (statuses + 63) / 64 ||
            block.states.size() != block.rows * block.stateWords) {
            return "shape at " + std::to_string(sample);
        }
        for (std::size_t row = 0; row < block.rows; ++row, ++sample) {
            const auto at = static_cast<std::size_t>(sample);
            if (block.numbers[row] != whole.numbers[at] || block.stamps[row] != whole.stamps[at]) {
                return "number or stamp of " + std::to_string(sample);
            }
            for (std::size_t column = 0; column < range.analog.size(); ++column) {
                if (!isSame(block.raw[column * block.rows + row], whole.raw[range.analog[column] * whole.rows + at])) {
                    return "value of " + std::to_string(sample);
                }
            }
            for (std::size_t channel = 0; channel < statuses; ++channel) {
                if (block.state(row, channel) != whole.state(at, channel)) {
                    return "state of " + std::to_string(sample);
                }
            }
        }
    }
    const std::uint64_t most = whole.rows - std::min<std::uint64_t>(range.first, whole.rows);
    return sample == std::min<std::uint64_t>(range.first, whole.rows) + std::min(range.count, most) ? "" : "length";
}

/// Samples of three analog and `statuses` status channels, of every kind that a text may have.
std::string textWith(std::size_t samples, std::size_t statuses, bool hasOddLines) {
    std::mt19937 random(static_cast<std::uint32_t>(samples + statuses));
    std::string text;
    for (std::size_t i = 0; i < samples; ++i) {
        const auto kind = hasOddLines ? random() % 6 : 0;
        text += kind == 5 ? "\r\n" : "";
        text += std::to_string(i + 1) + "," + (kind == 1 ? "" : std::to_string(1000 * i + 500));
        for (std::uint32_t channel = 0; channel < 3; ++channel) {
            text += kind == 2 ? ", " : ",";
            text += kind == 3 ? "99999" : kind == 4 && channel == 1 ? "" : std::to_string(random() % 2000);
        }
        for (std::size_t channel = 0; channel < statuses; ++channel) {
            text += random() % 2 == 0 ? ",0" : ",1";
        }
        text += "\r\n";
    }
    return text;
}

std::string recordsWith(std::size_t samples, std::size_t statuses, DataType type) {
    std::mt19937 random(static_cast<std::uint32_t>(samples + statuses));
    LittleEndianBytes bytes;
    for (std::size_t i = 0; i < samples; ++i) {
        const bool hasStamp = random() % 8 != 0 || i == 0;
        bytes.u32(static_cast<std::uint32_t>(i + 1))
            .u32(hasStamp ? static_cast<std::uint32_t>(1000 * i + 500) : 0xFFFFFFFF);
        for (std::uint32_t channel = 0; channel < 3; ++channel) {
            if (type == DataType::Binary) {
                bytes.u16(static_cast<std::uint16_t>(random()));
            } else if (type == DataType::Binary32) {
                bytes.u32(static_cast<std::uint32_t>(random()));
            } else {
                bytes.f32(static_cast<float>(random() % 100000) / 64.0F);
            }
        }
        for (std::size_t word = 0; word < (statuses + 15) / 16; ++word) {
            bytes.u16(static_cast<std::uint16_t>(random()));
        }
    }
    return bytes.bytes();
}

void expectPartsOf(const Surveyed& surveyed, const std::string& why, int rounds = 40) {
    ASSERT_TRUE(surveyed.facts) << why;
    const Block whole = wholeOf(surveyed);
    ASSERT_EQ(whole.numbers.size(), surveyed.facts->samples) << why;
    const std::size_t statuses = surveyed.cfg.header.status.size();
    std::mt19937 random(1);
    for (int round = 0; round < rounds; ++round) {
        BlockRange range;
        for (std::size_t i = random() % 5; i > 0; --i) {
            range.analog.push_back(random() % 3); // in any order, again and again
        }
        range.first = random() % (whole.rows + 2);
        range.count = random() % 3 == 0 ? std::numeric_limits<std::uint64_t>::max() : random() % (whole.rows + 2);
        range.mostRows = round % 4 == 0 ? 10000 : 1 + random() % 9;
        EXPECT_EQ(firstDifference(blocksOf(surveyed, range), whole, range, statuses), "")
            << why << ": " << range.first << " " << range.count << " " << range.mostRows;
    }
}

TEST(Blocks, OfAnyRangeAreThatPartOfTheText) {
    for (const std::size_t statuses : {0U, 5U, 64U, 70U}) {
        for (const double rate : {1000.0, 0.0}) {
            for (const bool hasOddLines : {false, true}) {
                const ReadCfg cfg = cfgFor(3, statuses, DataType::Ascii, rate, 60);
                expectPartsOf(Surveyed(textWith(60, statuses, hasOddLines), cfg),
                              std::to_string(statuses) + (hasOddLines ? " odd" : " plain"));
            }
        }
    }
}

TEST(Blocks, OfAnyRangeAreThatPartOfTheRecords) {
    for (const DataType type : {DataType::Binary, DataType::Binary32, DataType::Float32}) {
        for (const std::size_t statuses : {0U, 5U, 64U, 70U}) {
            for (const double rate : {1000.0, 0.0}) {
                const ReadCfg cfg = cfgFor(3, statuses, type, rate, 60);
                expectPartsOf(Surveyed(recordsWith(60, statuses, type), cfg), typeWord(type));
            }
        }
    }
}

TEST(Blocks, AreTheSameWhereverTheReadingOfTheFileIsCut) {
    for (const double rate : {1000.0, 0.0}) { // more than one buffer
        expectPartsOf(Surveyed(textWith(4000, 3, false), cfgFor(3, 3, DataType::Ascii, rate, 4000)), "plain", 8);
        expectPartsOf(Surveyed(textWith(4000, 3, true), cfgFor(3, 3, DataType::Ascii, rate, 4000)), "odd", 8);
        expectPartsOf(Surveyed(recordsWith(9000, 3, DataType::Binary), cfgFor(3, 3, DataType::Binary, rate, 9000)),
                      "records", 8);
    }
}

TEST(Blocks, FastLinesAndOthersGiveTheSame) {
    const std::string plain = textWith(50, 70, false);
    std::string odd; // a blank, and no line is plain
    for (std::size_t at = 0; at < plain.size(); ++at) {
        odd += plain[at];
        odd += plain[at] == '\n' && at + 1 != plain.size() ? " " : "";
    }
    const ReadCfg cfg = cfgFor(3, 70, DataType::Ascii, 1000.0, 50);
    const Surveyed one(plain, cfg);
    const Surveyed other(" " + odd, cfg);
    EXPECT_EQ(firstDifference({wholeOf(other)}, wholeOf(one), allOf(one), 70), "");
}

TEST(Blocks, HoldWhatTheTextSays) {
    const Surveyed surveyed("1,0,5,-3,1,0\r\n2,,99999,7,0,1\r\nx,2000,,1e3,1,1\r\n", cfgFor(2, 2, DataType::Ascii));
    const Block block = wholeOf(surveyed);
    EXPECT_EQ(block.first, 0U);
    EXPECT_EQ(block.numbers, (std::vector<std::int64_t>{1, 2, 3}));
    EXPECT_EQ(block.stamps, (std::vector<std::int64_t>{0, kNoStamp, 2000}));
    EXPECT_EQ(block.raw, (std::vector<double>{5, 99999, 99999, -3, 7, 1000}));
    EXPECT_EQ(block.states, (std::vector<std::uint64_t>{1, 2, 3}));
}

TEST(Blocks, HoldDecimalsTimesTheirPowerOfTen) {
    const Surveyed surveyed("1,0,12.5,7\r\n2,1000,-0.25,99999\r\n3,2000,,8\r\n", cfgFor(2, 0, DataType::Ascii));
    EXPECT_EQ(surveyed.facts->exponents, (std::vector<int>{3, 0}));
    EXPECT_EQ(wholeOf(surveyed).raw, (std::vector<double>{12500, -250, 99999, 7, 99999, 8}));
    const Surveyed beside("1,0,0.5,999999\r\n", cfgFor(2, 0, DataType::Ascii));
    EXPECT_EQ(wholeOf(beside).raw, (std::vector<double>{50, 999999}));
}

TEST(Blocks, NoRoundedValueLooksMissing) {
    for (const int revision : {1991, 1999}) {
        ReadCfg cfg = cfgFor(1, 0, DataType::Ascii);
        cfg.header.revision = revision;
        // The greatest value of the channel makes the others multiples of 0.01.
        const Surveyed surveyed("1,0,9e13\r\n2,1000,999.9925\r\n3,2000,9999.9925\r\n4,3000,0.0025\r\n", cfg);
        EXPECT_EQ(surveyed.facts->exponents, std::vector<int>{2}) << revision;
        EXPECT_EQ(wholeOf(surveyed).raw, (std::vector<double>{9e15, 99998, 999998, 0})) << revision;
        EXPECT_TRUE(surveyed.facts->missing.empty()) << revision;
    }
}

TEST(Blocks, NumberBeyondAllThatIsMeasuredLeavesTheOthersTheirDigits) {
    const Surveyed surveyed("1,0,1002\r\n2,1000,-2000.25\r\n3,2000,-3.4e38\r\n4,3000,10021003100410051006\r\n",
                            cfgFor(1, 0, DataType::Ascii));
    EXPECT_EQ(surveyed.facts->exponents, std::vector<int>{3});
    EXPECT_EQ(wholeOf(surveyed).raw, (std::vector<double>{1002000, -2000250, -3.4e41, 10021003100410051006e3}));
    const Surveyed integers("1,0,1002\r\n2,1000,12" + std::string(56, '0') + "\r\n", cfgFor(1, 0, DataType::Ascii));
    EXPECT_TRUE(integers.facts->exponents.empty()); // as great as a text may have it
    EXPECT_EQ(wholeOf(integers).raw, (std::vector<double>{1002, 1.2e57}));
    EXPECT_FALSE(integers.libraryReads());
}

TEST(Blocks, HoldWhatRecordsSay) {
    const Surveyed narrow(record16(1, 0, 5) + record16(2, 0xFFFFFFFF, 0x8000) + record16(4, 3000, 0xFFFF),
                          cfgFor(1, 0, DataType::Binary));
    EXPECT_EQ(wholeOf(narrow).numbers, (std::vector<std::int64_t>{1, 2, 4}));
    EXPECT_EQ(wholeOf(narrow).stamps, (std::vector<std::int64_t>{0, kNoStamp, 3000}));
    EXPECT_EQ(wholeOf(narrow).raw, (std::vector<double>{5, -32768, -1}));
    const Surveyed single(recordOfSingle(1, 0, 0.5F) + record32(2, 1000, 0xFF7FFFFF) + record32(3, 2000, 0x7F800000),
                          cfgFor(1, 0, DataType::Float32));
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(wholeOf(single).raw, (std::vector<double>{0.5, -3.4028234663852886e38, infinity}));
}

TEST(Blocks, IntegersOf32BitsAreAsTheLibraryGetsThem) {
    const ReadCfg cfg = cfgFor(1, 0, DataType::Binary32);
    const Block exact = wholeOf(Surveyed(record32(1, 0, 99999) + record32(2, 1000, 0x80000000), cfg));
    EXPECT_EQ(exact.raw[0], 99999.0);
    EXPECT_TRUE(std::isnan(exact.raw[1]));
    const Surveyed asText(record32(1, 0, 99999) + record32(2, 1000, 0x80000000) + record32(3, 2000, 0x7FFFFFFF), cfg);
    EXPECT_EQ(wholeOf(asText).raw, (std::vector<double>{999990, 99999, 21474836470}));
}

TEST(Blocks, StatesBehindTheLastChannelAreNone) {
    std::string data = LittleEndianBytes().u32(1).u32(0).u16(0xFFFF).u16(0xFFFF).bytes();
    data += LittleEndianBytes().u32(2).u32(1000).u16(0x0001).u16(0xFFFE).bytes();
    const Block block = wholeOf(Surveyed(data, cfgFor(0, 17, DataType::Binary)));
    EXPECT_EQ(block.states, (std::vector<std::uint64_t>{0x1FFFF, 0x00001}));
    EXPECT_TRUE(block.state(0, 16));
    EXPECT_FALSE(block.state(1, 16));
}

TEST(Blocks, StampsCountFromTheLowestWhereTimesComeFromThem) {
    struct Row {
        const char* why;
        std::vector<std::uint32_t> stamps;
        std::vector<std::int64_t> planned;
    };
    const Row rows[] = {
        {"from 0", {0, 100, 250}, {0, 100, 250}},
        {"from another", {700, 800, 950}, {0, 100, 250}},
        {"a missing one", {700, 0xFFFFFFFF, 900}, {0, 100, 200}},
        {"the first missing", {0xFFFFFFFF, 800, 900}, {0, 100, 200}},
        {"the last missing", {700, 800, 0xFFFFFFFF}, {0, 100, 200}},
        {"begun again", {4294967000, 704, 1704}, {0, 1000, 2000}},
        {"half the range on, behind a new begin", {0xFFFFFFF0, 0x10, 0x80000010}, {0, 0x20, 0x80000020}},
        {"lower ones in between", {500, 300, 600}, {200, 0, 300}},
    };
    for (const Row& row : rows) {
        const Surveyed surveyed(stamped(row.stamps), cfgFor(1, 0, DataType::Binary, 0.0, row.stamps.size()));
        EXPECT_EQ(wholeOf(surveyed).stamps, row.planned) << row.why;
    }
}

TEST(Blocks, EndWhereTheDataHaveBecomeShorter) {
    for (const DataType type : {DataType::Ascii, DataType::Binary}) {
        const std::string data = type == DataType::Ascii ? textWith(20, 5, false) : recordsWith(20, 5, type);
        const Surveyed surveyed(data, cfgFor(3, 5, type));
        const ByteSource shorter = surveyed.source.part(0, data.size() / 2);
        const auto reader = readBlocks(shorter, surveyed.cfg.header, *surveyed.facts, allOf(surveyed, 1000));
        Block block;
        ASSERT_TRUE(reader->next(block));
        EXPECT_GT(block.rows, 5U);
        EXPECT_LT(block.rows, 20U);
        EXPECT_EQ(firstDifference({block}, wholeOf(surveyed), {{0, 1, 2}, 0, block.rows, 1000}, 5), "");
        EXPECT_FALSE(reader->next(block));
        BlockRange behind = allOf(surveyed, 1000);
        behind.first = 19;
        EXPECT_FALSE(readBlocks(shorter, surveyed.cfg.header, *surveyed.facts, behind)->next(block));
    }
}

TEST(RowsOfBlock, StayInTheCache) {
    EXPECT_EQ(rowsOfBlock(0), 4096U);
    EXPECT_EQ(rowsOfBlock(100), 324U);
    EXPECT_EQ(rowsOfBlock(1000000), 16U);
}

} // namespace
