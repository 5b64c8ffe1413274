// What stands for a missing value, and the runs of samples that have none.

#include "data/missingValues.h"
#include "intake/dataSupport.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <utility>
#include <vector>

using namespace OrvComtradeIntake;
using orvtest::textOf;

namespace {

template <class Mark, class Bits> void expectFound(Bits bits, bool isFound) {
    for (std::size_t channels = 1; channels < 40; ++channels) {
        for (std::size_t channel = 0; channel < channels; ++channel) {
            const std::size_t length = channels * sizeof(Bits);
            std::vector<char> records(5 * (length + 3) - 3, '\1');
            std::memcpy(records.data() + 3 * (length + 3) + channel * sizeof(Bits), &bits, sizeof bits);
            const AnalogBlock block{records.data(), length + 3, length, 5};
            ASSERT_EQ(findMark<Mark>(block, 0), isFound ? 3U : 5U) << channels << ' ' << channel;
            ASSERT_EQ(findMark<Mark>(block, 3), isFound ? 3U : 5U) << channels << ' ' << channel;
            ASSERT_EQ(findMark<Mark>(block, 4), 5U) << channels << ' ' << channel;
        }
    }
}

} // namespace

TEST(MissingMarks, AreFoundInEveryChannel) {
    expectFound<Mark16>(std::uint16_t{0x8000}, true);
    expectFound<Mark32>(std::uint32_t{0x80000000}, true);
    for (const std::uint32_t mark : {0x7FC00000U, 0xFFC00000U, 0x7F800001U, 0xFFFFFFFFU, 0xFF7FFFFFU}) {
        expectFound<MarkFloat>(mark, true);
    }
}

TEST(MissingMarks, AreNoOtherValues) {
    expectFound<Mark16>(std::uint16_t{0x8001}, false);
    expectFound<Mark16>(std::uint16_t{0x7FFF}, false);
    expectFound<Mark16>(std::uint16_t{0x0080}, false);
    expectFound<Mark32>(std::uint32_t{0x80000001}, false);
    expectFound<Mark32>(std::uint32_t{0x00000080}, false);
    for (const std::uint32_t value : {0x7F7FFFFEU, 0x7F7FFFFFU, 0x7F800000U, 0xFF800000U, 0xFF7FFFFEU, 0x80000000U}) {
        expectFound<MarkFloat>(value, false);
    }
}

TEST(MissingMarks, NoChannelsHaveNone) {
    const std::vector<char> records(40, '\x80');
    EXPECT_EQ(findMark<Mark16>({records.data(), 10, 0, 4}, 0), 4U);
}

TEST(MissingRuns, AreTheSamplesOfEachChannelThatFollowOneAnother) {
    MissingRuns runs(3);
    const std::vector<std::pair<std::size_t, std::uint64_t>> missing = {{2, 0}, {0, 1}, {2, 1}, {0, 2},
                                                                        {2, 5}, {0, 7}, {2, 6}};
    for (const auto& [channel, sample] : missing) {
        runs.add(channel, sample);
    }
    EXPECT_EQ(textOf(runs.take(100)), "0:1+2 0:7+1 2:0+2 2:5+2");
}

TEST(MissingRuns, EndWithTheSamples) {
    for (std::uint64_t samples = 0; samples < 6; ++samples) {
        MissingRuns runs(1);
        for (std::uint64_t sample = 2; sample < 6; ++sample) {
            runs.add(0, sample);
        }
        EXPECT_EQ(textOf(runs.take(samples)), samples <= 2 ? "" : "0:2+" + std::to_string(samples - 2));
    }
}

TEST(MissingRuns, OfOneChannelAreThoseOfAll) {
    const std::vector<MissingRun> all = {{0, 1, 2}, {0, 9, 1}, {2, 0, 5}};
    const auto text = [&all](std::size_t channel, std::uint64_t first = 0, std::uint64_t end = UINT64_MAX) {
        const auto runs = runsOf(all, channel, first, end);
        return textOf({runs.begin(), runs.end()});
    };
    EXPECT_EQ(text(0), "0:1+2 0:9+1");
    EXPECT_EQ(text(1), "");
    EXPECT_EQ(text(2), "2:0+5");
    EXPECT_EQ(text(0, 2, 9), "0:1+2");
    EXPECT_EQ(text(0, 3, 10), "0:9+1");
    EXPECT_EQ(text(0, 3, 9), "");
    EXPECT_TRUE(runsOf({}, 0).empty());
}

TEST(MissingCursor, ShowsWhatAWalkOverTheSamplesFinds) {
    std::mt19937 random(8);
    for (int round = 0; round < 100; ++round) {
        std::vector<bool> isMissing;
        MissingRuns runs(2);
        for (std::uint64_t sample = 0; sample < 60; ++sample) {
            isMissing.push_back(random() % 3 == 0);
            if (isMissing.back()) {
                runs.add(1, sample);
            }
        }
        const std::vector<MissingRun> all = runs.take(60);
        MissingCursor cursor(all, 1);
        for (std::uint64_t sample = random() % 10; sample < 60; sample += 1 + random() % 3) {
            ASSERT_EQ(cursor.isMissing(sample), isMissing[sample]) << sample;
        }
    }
}

TEST(MissingCode, IsThatOfTheRevision) {
    struct Row {
        const char* why;
        int revision;
        double min;
        double max;
        std::int64_t code;
        bool isMissing;
    };
    const Row rows[] = {
        {"1991", 1991, -32767, 32767, 999999, true},
        {"before 1999", 1998, -32767, 32767, 999999, true},
        {"1999", 1999, -32767, 32767, 99999, true},
        {"2013", 2013, -32767, 32767, 99999, true},
        {"1999, whatever the range", 1999, -1e6, 1e6, 99999, true},
        {"1991, inside a range", 1991, -1e6, 1e6, 999999, false},
        {"1991, at the upper end of one", 1991, -1e6, 999999, 999999, true},
        {"1991, at the lower end of one", 1991, 999999, 1e7, 999999, true},
    };
    for (const Row& row : rows) {
        Header header = orvtest::cfgFor(1, 0, DataType::Ascii).header;
        header.revision = row.revision;
        header.analog[0].min = row.min;
        header.analog[0].max = row.max;
        const MissingCode code(header);
        EXPECT_EQ(code.number(), row.code) << row.why;
        EXPECT_EQ(code.isMissing(row.code, 0), row.isMissing) << row.why;
        EXPECT_FALSE(code.isMissing(row.code == 99999 ? 999999 : 99999, 0)) << row.why;
        EXPECT_FALSE(code.isMissing(-row.code, 0)) << row.why;
    }
}
