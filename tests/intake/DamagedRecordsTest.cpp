// Binary data of which bytes or records are lost, added or repeated: what stands before the damage is read, and none of
// what is damaged without a finding.

#include "intake/dataSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace OrvComtradeIntake;
using orvtest::cfgFor;
using orvtest::LittleEndianBytes;
using orvtest::record16;
using orvtest::Surveyed;
using orvtest::wholeOf;

constexpr std::size_t kLength = 18; // 8 + 4 * 2 + 2
constexpr std::uint32_t kCount = 20;

/// A record of four analog channels and 16 status channels.
std::string record(std::uint32_t number) {
    const std::uint32_t mix = number * 2654435761U;
    LittleEndianBytes bytes;
    bytes.u32(number).u32(5000000 + 1000 * number);
    for (std::uint32_t channel = 0; channel < 4; ++channel) {
        bytes.u16(static_cast<std::uint16_t>(mix >> 4 * channel) & 0x7FFFU);
    }
    return bytes.u16(static_cast<std::uint16_t>(mix)).bytes();
}

std::string recordsUpTo(std::uint32_t last, std::uint32_t first = 1) {
    std::string all;
    for (std::uint32_t number = first; number <= last; ++number) {
        all += record(number);
    }
    return all;
}

ReadCfg cfgOf(double rate = 1000.0, std::uint64_t samples = kCount) {
    return cfgFor(4, 16, DataType::Binary, rate, samples);
}

/// How many of the first records are read as they were written.
std::uint64_t countSound(const Surveyed& survey) {
    const Surveyed whole(recordsUpTo(kCount), cfgOf());
    const Block found = wholeOf(survey);
    const Block meant = wholeOf(whole);
    for (std::size_t row = 0; row < found.rows; ++row) {
        bool isSame = row < meant.rows && found.numbers[row] == meant.numbers[row] &&
                      found.states[row] == meant.states[row] && found.stamps[row] == meant.stamps[row];
        for (std::size_t channel = 0; isSame && channel < 4; ++channel) {
            isSame = found.raw[channel * found.rows + row] == meant.raw[channel * meant.rows + row];
        }
        if (!isSame) {
            return row;
        }
    }
    return found.rows;
}

TEST(DamagedRecords, BytesLostAnywhereEndTheSamplesBeforeThem) {
    const std::string whole = recordsUpTo(kCount);
    for (const std::size_t lost : {std::size_t{1}, std::size_t{2}, std::size_t{7}, kLength - 1}) {
        for (std::size_t at = 3 * kLength; at + lost <= whole.size(); ++at) {
            const Surveyed survey(whole.substr(0, at) + whole.substr(at + lost), cfgOf());
            const std::string where = std::to_string(lost) + " at " + std::to_string(at);
            ASSERT_TRUE(survey.facts) << where;
            const std::uint64_t damaged = at / kLength; // 0-based
            const bool isInLast = at + lost > whole.size() - kLength;
            ASSERT_NE(survey.find(isInLast ? "record-cut" : "shifted-records"), nullptr) << where << survey.codes();
            if (isInLast && damaged + 1 != kCount) {
                continue; // in the last two: what is left looks like one that is cut
            }
            EXPECT_LE(survey.samples(), damaged) << where;
            EXPECT_GE(survey.samples() + 1, damaged) << where;
            EXPECT_EQ(countSound(survey), survey.samples()) << where;
            EXPECT_EQ(survey.libraryReads(), isInLast) << where;
        }
    }
}

TEST(DamagedRecords, BytesAddedAnywhereEndTheSamplesBeforeThem) {
    const std::string whole = recordsUpTo(kCount);
    for (const std::size_t added : {std::size_t{1}, std::size_t{3}, kLength - 1}) {
        for (std::size_t at = 3 * kLength; at < whole.size() - kLength; ++at) {
            const Surveyed survey(whole.substr(0, at) + std::string(added, '\x77') + whole.substr(at), cfgOf());
            const std::string where = std::to_string(added) + " at " + std::to_string(at);
            ASSERT_TRUE(survey.facts) << where;
            ASSERT_NE(survey.find("shifted-records"), nullptr) << where << survey.codes();
            EXPECT_LE(survey.samples(), at / kLength) << where;
            EXPECT_GE(survey.samples() + 1, at / kLength) << where;
            EXPECT_EQ(countSound(survey), survey.samples()) << where;
        }
    }
}

TEST(DamagedRecords, AtTheBeginningAreAnErrorInAnyCase) {
    const std::string whole = recordsUpTo(kCount);
    for (std::size_t at = 0; at < 3 * kLength; ++at) {
        const Surveyed lost(whole.substr(0, at) + whole.substr(at + 1), cfgOf());
        EXPECT_TRUE(orvtest::hasError(lost.findings)) << at << lost.codes();
        EXPECT_TRUE(!lost.facts || countSound(lost) == lost.samples()) << at << lost.codes();
        const Surveyed added(whole.substr(0, at) + "\x77" + whole.substr(at), cfgOf());
        EXPECT_TRUE(orvtest::hasError(added.findings)) << at << added.codes();
        EXPECT_TRUE(!added.facts || countSound(added) == added.samples()) << at << added.codes();
    }
    const Surveyed lost(whole.substr(1), cfgOf());
    ASSERT_EQ(lost.codes(), "shifted-records");
    EXPECT_EQ(lost.findings[0].found, "sample number 3");
    EXPECT_EQ(lost.findings[0].place.offset, 35U);
}

TEST(DamagedRecords, ShowWhereTheyBegin) {
    const std::string whole = recordsUpTo(kCount);
    const Surveyed lost(whole.substr(0, 100) + whole.substr(103), cfgOf());
    const Finding* const finding = lost.find("shifted-records");
    ASSERT_NE(finding, nullptr);
    EXPECT_EQ(finding->severity, Severity::Error);
    EXPECT_EQ(finding->place.offset, 90U); // record 6
    EXPECT_EQ(finding->found, "the following records 3 bytes too early");
    EXPECT_EQ(finding->repair, "read up to record 5");
    EXPECT_EQ(finding->expected, "record 6");
    const Surveyed added(whole.substr(0, 100) + "xy" + whole.substr(100), cfgOf());
    ASSERT_NE(added.find("shifted-records"), nullptr);
    EXPECT_EQ(added.find("shifted-records")->found, "the following records 2 bytes too late");
}

TEST(DamagedRecords, LeaveNoTraceInTheTimesOfTheOthers) {
    // The stamp of the damaged record reads as 0, lower than all others.
    std::string data = recordsUpTo(10);
    data += LittleEndianBytes().u32(11).u32(0).bytes() + record(11).substr(9) + recordsUpTo(kCount, 12);
    const Surveyed survey(data, cfgOf(0.0));
    ASSERT_NE(survey.find("shifted-records"), nullptr) << survey.codes();
    EXPECT_EQ(survey.samples(), 10U);
    EXPECT_EQ(survey.facts->stamps.origin, 5001000);
    EXPECT_EQ(survey.find("stamp-backwards"), nullptr);
}

TEST(DamagedRecords, BehindManyBlocksAreFoundAsWell) {
    constexpr std::uint32_t count = 20000; // of which a block holds some 3600
    const std::string whole = recordsUpTo(count);
    for (const std::uint32_t damaged : {3640U, 3641U, 7281U, 15000U}) {
        const std::size_t at = damaged * kLength + 9;
        const Surveyed survey(whole.substr(0, at) + whole.substr(at + 1), cfgOf(1000.0, count));
        ASSERT_NE(survey.find("shifted-records"), nullptr) << damaged;
        EXPECT_EQ(survey.samples(), damaged);
    }
}

struct JumpRow {
    const char* why;
    std::string data;
    std::uint64_t declared;
    std::uint64_t samples;
    const char* codes;
    std::uint64_t places;
};

TEST(DamagedRecords, LostAndRepeatedOnesAreErrors) {
    const JumpRow rows[] = {
        {"one lost", recordsUpTo(9) + recordsUpTo(20, 11), 20, 19, "number-jump stamps-disagree", 1},
        {"fifty lost", recordsUpTo(9) + recordsUpTo(80, 60), 80, 30, "number-jump stamps-disagree", 1},
        {"the first lost", recordsUpTo(20, 5), 20, 16, "", 0},
        {"the last lost", recordsUpTo(18), 20, 18, "", 0},
        {"one repeated", recordsUpTo(9) + recordsUpTo(20, 9), 21, 21, "number-jump", 1},
        {"many repeated", recordsUpTo(9) + recordsUpTo(20, 3), 27, 27, "number-jump stamps-disagree", 1},
        {"one lost, another repeated", recordsUpTo(9) + recordsUpTo(15, 11) + recordsUpTo(20, 15), 20, 20,
         "number-jump", 2},
        {"two changed places", recordsUpTo(9) + record(11) + record(10) + recordsUpTo(20, 12), 20, 20,
         "number-jump stamps-disagree", 3},
        {"one overwritten", recordsUpTo(9) + std::string(kLength, '\x42') + recordsUpTo(20, 11), 20, 20,
         "number-jump stamps-disagree", 2},
    };
    for (const JumpRow& row : rows) {
        const Surveyed survey(row.data, cfgOf(1000.0, row.declared));
        EXPECT_EQ(survey.samples(), row.samples) << row.why;
        ASSERT_EQ(survey.codes(), row.codes) << row.why;
        if (row.places != 0) {
            EXPECT_EQ(survey.findings[0].severity, Severity::Error) << row.why;
            EXPECT_EQ(survey.findings[0].places, row.places) << row.why;
        }
    }
    const Surveyed survey(recordsUpTo(9) + recordsUpTo(20, 11), cfgOf());
    EXPECT_EQ(survey.findings[0].found, "11 after 9 in record 10");
    EXPECT_EQ(survey.findings[0].place.offset, 162U);
    EXPECT_EQ(survey.findings[0].place.field, "n");
}

TEST(DamagedRecords, ValueThatReadsLikeTheNextNumberIsNoShift) {
    const std::string like = LittleEndianBytes().u32(9).u32(5009000).u16(7).u16(10).u16(0).u16(7).u16(1).bytes();
    const Surveyed survey(recordsUpTo(8) + like + recordsUpTo(20, 11), cfgOf(1000.0, 19));
    EXPECT_EQ(survey.samples(), 19U);
    EXPECT_EQ(survey.codes(), "number-jump stamps-disagree");
    const Surveyed last(recordsUpTo(8) + like + record(11), cfgOf(1000.0, 10));
    EXPECT_EQ(last.samples(), 10U);
    EXPECT_EQ(last.find("shifted-records"), nullptr);
}

TEST(DamagedRecords, AnOddFirstNumberIsNoShiftWhereStampsCountSamples) {
    std::string data = record16(0, 0, 5);
    for (std::uint32_t i = 1; i < 20; ++i) {
        data += record16(i + 1, i, 5);
    }
    const Surveyed survey(data, cfgFor(1, 0, DataType::Binary, 1000.0, 20));
    EXPECT_EQ(survey.samples(), 20U);
    EXPECT_EQ(survey.codes(), "number-jump");
}

TEST(DamagedRecords, StrayBytesBehindAllThatAreDeclaredAreNoShift) {
    const std::string data = record16(1, 2, 5) + record16(2, 3, 5) + "abcd"; // the last stamp reads like number 3
    const Surveyed survey(data, cfgFor(1, 0, DataType::Binary, 1000.0, 2));
    EXPECT_EQ(survey.samples(), 2U);
    EXPECT_EQ(survey.codes(), "stray-bytes");
}

TEST(DamagedRecords, BeyondTheDeclaredNumberAreNoSamples) {
    struct Row {
        const char* why;
        std::string more;
        std::uint64_t samples;
        const char* codes;
    };
    const Row rows[] = {
        {"numbers go on", recordsUpTo(23, 21), 23, ""},
        {"numbers begin anew", recordsUpTo(3), 20, "stray-bytes"},
        {"numbers go on, then not", record(21) + record(40) + record(41), 21, "stray-bytes"},
        {"the last one again", record(20), 20, "stray-bytes"},
        {"zero bytes", std::string(3 * kLength, '\0'), 20, "stray-bytes"},
        {"0x1A", "\x1A", 20, "stray-bytes"},
        {"part of one", record(21).substr(0, 5), 20, "stray-bytes"},
    };
    for (const Row& row : rows) {
        const Surveyed survey(recordsUpTo(20) + row.more, cfgOf());
        EXPECT_EQ(survey.samples(), row.samples) << row.why;
        EXPECT_EQ(survey.codes(), row.codes) << row.why;
        EXPECT_EQ(countSound(survey), 20U) << row.why;
    }
}

TEST(DamagedRecords, ShowHowManyBytesAreLeftOut) {
    const struct {
        std::string more;
        std::uint64_t declared;
        const char* found;
    } rows[] = {
        {recordsUpTo(3), 20, "54 bytes after record 20 that are not records"},
        {"12345", 20, "5 bytes after record 20"},
        {"12345", 21, "5 bytes after record 20"},
    };
    for (const auto& row : rows) {
        const Surveyed survey(recordsUpTo(20) + row.more, cfgOf(1000.0, row.declared));
        ASSERT_EQ(survey.findings.size(), 1U);
        EXPECT_EQ(survey.findings[0].found, row.found);
        EXPECT_EQ(survey.findings[0].repair, "skipped");
        EXPECT_EQ(survey.findings[0].place.offset, 20 * kLength);
    }
}

TEST(DamagedRecords, ConstantNumbersAndACutRecordAreNoShift) {
    std::string data;
    for (std::uint32_t i = 0; i < 10; ++i) {
        data += record16(0, 1000 * i, 0);
    }
    for (std::size_t length = data.size() - 9; length < data.size(); ++length) {
        const Surveyed survey(data.substr(0, length), cfgFor(1, 0, DataType::Binary, 1000.0, 10));
        EXPECT_EQ(survey.samples(), 9U) << length;
        EXPECT_EQ(survey.codes(), "record-cut") << length;
    }
}

TEST(DamagedRecords, CutAnywhereAreThoseThatAreWhole) {
    const std::string whole = recordsUpTo(kCount);
    for (std::size_t length = kLength; length < whole.size(); ++length) {
        const Surveyed survey(whole.substr(0, length), cfgOf());
        EXPECT_EQ(survey.samples(), length / kLength);
        EXPECT_EQ(countSound(survey), length / kLength);
        EXPECT_EQ(survey.codes(), length % kLength == 0 ? "" : "record-cut") << length;
    }
}

TEST(DamagedRecords, ThatMakeNoSenseAreNotRead) {
    std::mt19937 random(3);
    std::string noise;
    for (int i = 0; i < 3000; ++i) {
        noise += static_cast<char>(random() & 0xFFU);
    }
    // Sound at first, so that the form is that of records.
    const Surveyed survey(recordsUpTo(64) + noise, cfgOf(1000.0, 230));
    EXPECT_FALSE(survey.facts);
    EXPECT_NE(survey.find("data-mismatch"), nullptr) << survey.codes();
    Options any;
    any.acceptsAnyNumbers = true;
    const Surveyed forced(recordsUpTo(64) + noise, cfgOf(1000.0, 230), any);
    EXPECT_EQ(forced.samples(), 230U);
    EXPECT_NE(forced.find("number-jump"), nullptr);
}

TEST(DamagedRecords, OneChangedByteNeverGoesUnnoticedInANumber) {
    const std::string whole = recordsUpTo(kCount);
    for (std::uint32_t i = 3; i < kCount; ++i) {
        for (std::size_t byte = 0; byte < 4; ++byte) {
            std::string changed = whole;
            changed[i * kLength + byte] = static_cast<char>(changed[i * kLength + byte] ^ '\x10');
            const Surveyed survey(changed, cfgOf());
            EXPECT_EQ(survey.samples(), kCount);
            EXPECT_EQ(survey.codes(), "number-jump") << i << ' ' << byte;
        }
    }
}

} // namespace
