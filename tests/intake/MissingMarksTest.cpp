#include "missingMarks.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <vector>

using namespace OrvComtradeIntake;

namespace {

template <class Mark, class Bits> void expectFound(Bits bits, bool isFound) {
    for (std::size_t channels = sizeof(Bits) == 2 ? 8 : 4; channels < 40; ++channels) {
        for (std::size_t channel = 0; channel < channels; ++channel) {
            const std::size_t length = channels * sizeof(Bits);
            std::vector<char> records(5 * (length + 3), '\1');
            std::memcpy(records.data() + 3 * (length + 3) + channel * sizeof(Bits), &bits, sizeof bits);
            const AnalogBlock block{records.data(), length + 3, length, 5};
            EXPECT_EQ(findMark<Mark>(block, 0), isFound ? 3U : 5U) << channels << ' ' << channel;
            EXPECT_EQ(findMark<Mark>(block, 4), 5U) << channels << ' ' << channel;
        }
    }
}

} // namespace

TEST(MissingMarks, AreFoundInEveryChannel) {
    expectFound<Mark16>(std::uint16_t{0x8000}, true);
    expectFound<Mark32>(std::uint32_t{0x80000000}, true);
    for (const std::uint32_t mark : {0x7FC00000U, 0xFFC00000U, 0x7F800001U, 0xFF7FFFFFU}) {
        expectFound<MarkFloat>(mark, true);
    }
}

TEST(MissingMarks, AreNoOtherValues) {
    expectFound<Mark16>(std::uint16_t{0x8001}, false);
    expectFound<Mark16>(std::uint16_t{0x7FFF}, false);
    expectFound<Mark32>(std::uint32_t{0x80000001}, false);
    expectFound<MarkFloat>(std::uint32_t{0x7F7FFFFE}, false);
    expectFound<MarkFloat>(std::uint32_t{0x80000000}, false);
}

TEST(MissingMarks, AreSearchedValueByValueInNarrowRecords) {
    const std::vector<char> records(40, '\1');
    EXPECT_EQ(findMark<Mark16>({records.data(), 10, 8, 4}, 2), 2U);
}
