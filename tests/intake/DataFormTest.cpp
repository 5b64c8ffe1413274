// In which form data are, whatever the configuration says: text or records, of which type, how far apart.

#include "data/DataLayout.h"
#include "data/recordForm.h"
#include "intake/dataSupport.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace OrvComtradeIntake;
using orvtest::cfgFor;
using orvtest::codesOf;
using orvtest::findingOf;
using orvtest::LittleEndianBytes;
using orvtest::record16;

/// What is judged of some bytes.
struct Judged {
    Judged(const std::string& bytes, const ReadCfg& cfg, bool acceptsAny = false) {
        Findings found;
        form = formOf(ByteSource::ofMemory(bytes, "a.dat"), cfg, acceptsAny, found);
        findings = found.take();
    }

    std::string codes() const { return codesOf(findings); }
    std::string found() const { return findings.empty() ? "" : findings.front().found; }

    std::optional<DataForm> form;
    std::vector<Finding> findings;
};

/// Records of three analog channels and 20 status channels.
struct Records {
    DataType type = DataType::Binary;
    std::uint32_t count = 0;
    std::uint32_t first = 1; ///< sample number
    std::uint32_t step = 1;  ///< from one number to the next
    std::size_t padding = 0; ///< bytes behind each record
    bool isBigEndian = false;

    std::string bytes() const {
        std::string all;
        for (std::uint32_t i = 0; i < count; ++i) {
            all += _field(first + i * step) + _field(1000 * i);
            for (std::uint32_t channel = 0; channel < 3; ++channel) {
                all += _value(channel * 700 + i * 13);
            }
            all += LittleEndianBytes().u16(0x8001).u16(0x0005).bytes() + std::string(padding, '\xA5');
        }
        return all;
    }

private:
    std::string _field(std::uint32_t value) const {
        std::string bytes = LittleEndianBytes().u32(value).bytes();
        return isBigEndian ? std::string(bytes.rbegin(), bytes.rend()) : bytes;
    }

    std::string _value(std::uint32_t value) const {
        switch (type) {
        case DataType::Binary:
            return LittleEndianBytes().u16(static_cast<std::uint16_t>(value)).bytes();
        case DataType::Float32:
            return LittleEndianBytes().f32(static_cast<float>(value) * 0.25F).bytes();
        default:
            return LittleEndianBytes().u32(value).bytes();
        }
    }
};

std::string recordsOf(DataType type, std::uint32_t count) {
    Records records;
    records.type = type;
    records.count = count;
    return records.bytes();
}

ReadCfg cfgOfRecords(DataType type, std::uint64_t samples = 0) {
    return cfgFor(3, 20, type, 1000.0, samples);
}

constexpr std::size_t kNarrow = 18; // 8 + 3 * 2 + 2 * 2
constexpr std::size_t kWide = 24;   // 8 + 3 * 4 + 2 * 2

std::string gzipLike(std::size_t length) {
    std::string bytes("\x1F\x8B\x08\x00\x00\x00\x00\x00\x00\x03", 10);
    std::mt19937 random(7);
    while (bytes.size() < length) {
        bytes += static_cast<char>(random() & 0xFFU);
    }
    return bytes;
}

TEST(DataFormOf, IsTheDeclaredOneWhereNumbersGoOn) {
    for (const DataType type : {DataType::Binary, DataType::Binary32, DataType::Float32}) {
        for (std::uint32_t count = 1; count < 200; count = 2 * count + 1) {
            const Judged judged(recordsOf(type, count), cfgOfRecords(type, count));
            ASSERT_TRUE(judged.form) << count;
            EXPECT_EQ(judged.form->type, type);
            EXPECT_EQ(judged.form->stride, type == DataType::Binary ? kNarrow : kWide);
            EXPECT_EQ(judged.codes(), "") << count;
        }
    }
}

TEST(DataFormOf, PaddingOfUpTo16BytesIsFoundWhateverTheNumberOfRecords) {
    for (const DataType type : {DataType::Binary, DataType::Float32}) {
        for (std::size_t padding = 1; padding <= 16; ++padding) {
            for (std::uint32_t count = 2; count <= 10; ++count) {
                Records records;
                records.type = type;
                records.count = count;
                records.padding = padding;
                const Judged judged(records.bytes(), cfgOfRecords(type, count));
                const std::size_t length = type == DataType::Binary ? kNarrow : kWide;
                ASSERT_TRUE(judged.form) << padding << ' ' << count << ' ' << judged.codes();
                EXPECT_EQ(judged.form->type, type) << padding << ' ' << count;
                EXPECT_EQ(judged.form->stride, length + padding) << count;
                ASSERT_EQ(judged.codes(), "record-padding") << padding << ' ' << count;
                EXPECT_EQ(judged.found(), "records of " + std::to_string(length + padding) + " bytes");
            }
        }
    }
}

TEST(DataFormOf, BytesThatChangeAreNoPadding) {
    std::string bytes;
    for (std::uint32_t i = 1; i <= 5; ++i) {
        const auto value = static_cast<std::uint16_t>(100 * i);
        bytes += LittleEndianBytes().u32(i).u32(1000 * i).u16(5).u16(6).u16(value).bytes();
    }
    const Judged judged(bytes, cfgFor(2, 0, DataType::Binary, 1000.0, 5));
    EXPECT_FALSE(judged.form);
    ASSERT_EQ(judged.codes(), "record-layout");
    EXPECT_EQ(judged.found(), "records of 14 bytes");
}

TEST(DataFormOf, NumbersThatGoOnHereAndThereShowNoPadding) {
    std::string bytes;
    for (const std::uint32_t number : {1U, 2U, 3U, 40U, 41U, 42U, 90U, 91U, 92U, 93U}) {
        bytes += record16(number, 1000, 5) + std::string(2, '\0');
    }
    EXPECT_FALSE(Judged(bytes, cfgFor(1, 0, DataType::Binary, 1000.0, 10)).form);
}

TEST(DataFormOf, MorePaddingIsAnotherLayout) {
    Records records;
    records.count = 10;
    records.padding = 17;
    const Judged judged(records.bytes(), cfgOfRecords(DataType::Binary, 10));
    EXPECT_FALSE(judged.form);
    ASSERT_EQ(judged.codes(), "record-layout");
    EXPECT_EQ(judged.found(), "records of 35 bytes");
}

TEST(DataFormOf, TwoRecordsWhoseNumbersJumpHaveNoPadding) {
    // The stamp of the second record is as far from the first number as the number of a padded one would be.
    const std::string bytes = LittleEndianBytes().u32(1).u32(0).u16(5).u32(3).u32(2).u16(5).bytes();
    const Judged judged(bytes, cfgFor(1, 0, DataType::Binary, 1000.0, 2));
    ASSERT_TRUE(judged.form);
    EXPECT_EQ(judged.form->stride, 10U);
    EXPECT_EQ(judged.codes(), "");
}

struct TypeRow {
    const char* why;
    DataType declared;
    DataType type; ///< of the data
    std::size_t stride;
    const char* found;
};

TEST(DataFormOf, TypeIsThatAtWhoseLengthTheNumbersGoOn) {
    const TypeRow rows[] = {
        {"16 bits under BINARY32", DataType::Binary32, DataType::Binary, kNarrow, "records with integers of 16 bits"},
        {"16 bits under FLOAT32", DataType::Float32, DataType::Binary, kNarrow, "records with integers of 16 bits"},
        {"32 bits under BINARY", DataType::Binary, DataType::Binary32, kWide, "records with integers of 32 bits"},
        {"singles under BINARY", DataType::Binary, DataType::Float32, kWide, "records with singles"},
        {"16 bits under a text word", DataType::Ascii, DataType::Binary, kNarrow, "records with integers of 16 bits"},
        {"32 bits under a text word", DataType::Ascii, DataType::Binary32, kWide, "records with integers of 32 bits"},
        {"singles under a text word", DataType::Ascii, DataType::Float32, kWide, "records with singles"},
    };
    for (const TypeRow& row : rows) {
        for (const std::uint32_t count : {2U, 3U, 10U, 100U}) {
            const Judged judged(recordsOf(row.type, count), cfgOfRecords(row.declared, count));
            ASSERT_TRUE(judged.form) << row.why << ' ' << count;
            EXPECT_EQ(judged.form->type, row.type) << row.why << ' ' << count;
            EXPECT_EQ(judged.form->stride, row.stride) << row.why << ' ' << count;
            ASSERT_EQ(judged.codes(), "type-word") << row.why << ' ' << count;
            EXPECT_EQ(judged.found(), row.found) << row.why;
        }
    }
}

TEST(DataFormOf, TypeOfTheSameLengthIsTheDeclaredOne) {
    const Judged integers(recordsOf(DataType::Binary32, 10), cfgOfRecords(DataType::Float32, 10));
    EXPECT_EQ(integers.form->type, DataType::Float32);
    const Judged singles(recordsOf(DataType::Float32, 10), cfgOfRecords(DataType::Binary32, 10));
    EXPECT_EQ(singles.form->type, DataType::Binary32);
}

struct TextRow {
    const char* why;
    std::string bytes;
};

TEST(DataFormOf, TextUnderABinaryWordIsText) {
    const std::string lines = "1,0,5,-6,7\r\n2,1000,6,-7,8\r\n3,2000,7,-8,9\r\n";
    const TextRow rows[] = {
        {"lines", lines},
        {"with a byte-order mark", "\xEF\xBB\xBF" + lines},
        {"with decimals and exponents", "1,0,5.25,-6e3,+7\r\n"},
        {"with headings", "n,t,Ua,Ub,Uc\r\n" + lines},
        {"with headings in another alphabet", "\xCD\xEE\xEC\xE5\xF0,\xC2\xF0\xE5\xEC\xFF,a,b,c\r\n" + lines},
        {"with 0x1A", lines + "\x1A"},
        {"one line, open", "1,0,5,-6,7"},
    };
    for (const DataType declared : {DataType::Binary, DataType::Binary32, DataType::Float32}) {
        for (const TextRow& row : rows) {
            const std::size_t length = DataLayout(cfgFor(3, 0, declared).header).recordLength();
            for (const std::uint64_t samples : {std::uint64_t{3}, std::uint64_t{row.bytes.size() / length}}) {
                const Judged judged(row.bytes, cfgFor(3, 0, declared, 1000.0, samples));
                ASSERT_TRUE(judged.form) << row.why << ' ' << samples;
                EXPECT_EQ(judged.form->type, DataType::Ascii) << row.why << ' ' << samples;
                EXPECT_EQ(judged.codes(), "type-word") << row.why;
                EXPECT_EQ(judged.found(), "lines of text") << row.why;
            }
        }
    }
}

TEST(DataFormOf, RecordsThatLookLikeTextAreRecordsWhereTheirNumbersGoOn) {
    std::string bytes;
    for (std::uint32_t i = 0; i < 3; ++i) {
        bytes += LittleEndianBytes().u32(0x2C303030 + i).u32(0x31313131).u16(0x2C31).bytes();
    }
    const Judged judged(bytes, cfgFor(1, 0, DataType::Binary));
    EXPECT_EQ(judged.form->type, DataType::Binary);
    EXPECT_EQ(judged.codes(), "");
}

TEST(DataFormOf, TextUnderItsWordIsTextWhateverItHolds) {
    const std::string line = "1,0,5,-6,7\r\n";
    const TextRow rows[] = {
        {"a line", line},
        {"nothing", ""},
        {"zero bytes in front", std::string(300, '\0') + line},
        {"more zero bytes than are looked at", std::string(300000, '\0') + line},
        {"headings in another alphabet",
         "\xD0\x9D\xD0\xBE\xD0\xBC\xD0\xB5\xD1\x80,\xD0\x92\xD1\x80\xD0\xB5\xD0\xBC\xD1\x8F\r\n" + line},
        {"no text of numbers at all", "this is no recording\r\n"},
    };
    for (const TextRow& row : rows) {
        const Judged judged(row.bytes, cfgFor(3, 0, DataType::Ascii));
        ASSERT_TRUE(judged.form) << row.why;
        EXPECT_EQ(judged.form->type, DataType::Ascii) << row.why;
        EXPECT_EQ(judged.codes(), "") << row.why;
    }
}

TEST(DataFormOf, Utf16IsAnError) {
    const std::string little("1\0,\0"
                             "0\0,\0"
                             "5\0\n\0",
                             12);
    const std::string big("\0"
                          "1\0,\0"
                          "0\0,\0"
                          "5\0\n",
                          12);
    for (const std::string& bytes : {little, "\xFF\xFE" + little, big, "\xFE\xFF" + big}) {
        const Judged judged(bytes, cfgFor(1, 0, DataType::Ascii));
        EXPECT_FALSE(judged.form);
        ASSERT_EQ(judged.codes(), "data-mismatch");
        EXPECT_EQ(judged.found(), "UTF-16");
    }
}

TEST(DataFormOf, NumberThatReadsLikeAMarkOfUtf16IsANumber) {
    Records records;
    records.first = 0xFEFF;
    records.count = 5;
    EXPECT_EQ(Judged(records.bytes(), cfgOfRecords(DataType::Ascii)).form->type, DataType::Binary);
}

struct RefusedRow {
    const char* why;
    std::string bytes;
    const char* code;
    const char* found;
};

TEST(DataFormOf, RecordsOfAnotherLayoutAreAnError) {
    const auto of = [](std::uint32_t count, std::size_t length) {
        std::string bytes;
        for (std::uint32_t i = 1; i <= count; ++i) {
            std::string record = LittleEndianBytes().u32(i).u32(1000 * i).bytes();
            record.resize(length, '\x5B');
            bytes += record;
        }
        return bytes;
    };
    Records bigEndian;
    bigEndian.count = 4;
    bigEndian.isBigEndian = true;
    const RefusedRow rows[] = {
        {"one byte less: states in one byte", of(10, 17), "record-layout", "records of 17 bytes"},
        {"four records", of(4, 14), "record-layout", "records of 14 bytes"},
        {"a smaller one", of(100, 9), "record-layout", "records of 9 bytes"},
        {"a larger one", of(100, 60), "record-layout", "records of 60 bytes"},
        {"a much larger one", of(20, 900), "record-layout", "records of 900 bytes"},
        {"the high byte first", bigEndian.bytes(), "record-layout", "numbers with the high byte first"},
        {"zero bytes", std::string(58800, '\0'), "data-mismatch", "the same byte throughout"},
        {"bytes of 0xFF", std::string(1800, '\xFF'), "data-mismatch", "the same byte throughout"},
        {"no numbers", "\x05\xA0\x31\x07" + std::string(50, '\x91') + gzipLike(300), "data-mismatch",
         "sample numbers 120692741, 2442236305, 2442236305"},
    };
    for (const RefusedRow& row : rows) {
        const Judged judged(row.bytes, cfgOfRecords(DataType::Binary));
        EXPECT_FALSE(judged.form) << row.why;
        ASSERT_EQ(judged.codes(), row.code) << row.why;
        EXPECT_EQ(judged.findings[0].severity, Severity::Error) << row.why;
        EXPECT_EQ(judged.found(), row.found) << row.why;
        const Judged forced(row.bytes, cfgOfRecords(DataType::Binary), true);
        ASSERT_TRUE(forced.form) << row.why;
        EXPECT_EQ(forced.form->stride, kNarrow) << row.why;
        EXPECT_EQ(forced.codes(), row.code) << row.why;
    }
}

TEST(DataFormOf, BytesOfOtherFilesAreAnErrorUnderEveryWord) {
    for (const DataType declared : {DataType::Ascii, DataType::Binary, DataType::Binary32, DataType::Float32}) {
        for (const std::size_t length : {std::size_t{200}, std::size_t{3000}, std::size_t{400000}}) {
            const Judged judged(gzipLike(length), cfgOfRecords(declared));
            EXPECT_FALSE(judged.form) << length;
            EXPECT_EQ(judged.codes(), "data-mismatch") << length;
        }
    }
}

TEST(DataFormOf, RandomBytesAreAnErrorUnderEveryWord) {
    std::mt19937 random(1);
    for (int i = 0; i < 200; ++i) {
        std::string bytes;
        for (std::size_t length = 10 * kWide + random() % 500; bytes.size() < length;) {
            bytes += static_cast<char>(random() & 0xFFU);
        }
        for (const DataType declared : {DataType::Ascii, DataType::Binary, DataType::Binary32, DataType::Float32}) {
            EXPECT_FALSE(Judged(bytes, cfgOfRecords(declared)).form) << i;
        }
    }
}

TEST(DataFormOf, RecordersMayLeaveNumbersAlone) {
    struct Row {
        const char* why;
        std::uint32_t first;
        std::uint32_t step;
    };
    const Row rows[] = {
        {"numbers of 0", 0, 0},
        {"the same number", 7, 0},
        {"every tenth", 10, 10},
        {"downwards", 1000, UINT32_MAX},
        {"from 0", 0, 1},
        {"from the middle", 70000, 1},
        {"over the end", 0xFFFFFFF0, 1},
        {"as many as there are in 16 bits", 65530, 1},
    };
    for (const Row& row : rows) {
        for (const std::uint32_t count : {3U, 40U}) {
            Records records;
            records.count = count;
            records.first = row.first;
            records.step = row.step;
            const Judged judged(records.bytes(), cfgOfRecords(DataType::Binary, count));
            ASSERT_TRUE(judged.form) << row.why;
            EXPECT_EQ(judged.form->stride, kNarrow) << row.why;
            EXPECT_EQ(judged.codes(), "") << row.why;
        }
    }
}

TEST(DataFormOf, ChannelThatCountsIsNoShiftWhereNumbersAreLeftAlone) {
    std::string bytes;
    for (std::uint32_t i = 1; i <= 10; ++i) {
        bytes += LittleEndianBytes().u32(0).u32(1000 * i).u16(static_cast<std::uint16_t>(i)).u16(0).bytes();
    }
    const Judged judged(bytes, cfgFor(2, 0, DataType::Binary, 1000.0, 10));
    ASSERT_TRUE(judged.form);
    EXPECT_EQ(judged.codes(), "");
}

TEST(DataFormOf, StampsThatCountSamplesAreNoShiftedNumbers) {
    std::string bytes;
    for (std::uint32_t i = 1; i <= 10; ++i) {
        bytes += record16(10 * i, i, 5);
    }
    const Judged judged(bytes, cfgFor(1, 0, DataType::Binary, 1000.0, 10));
    ASSERT_TRUE(judged.form);
    EXPECT_EQ(judged.codes(), "");
}

TEST(DataFormOf, NumbersMakeSenseWhereMoreThanHalfOfTheirStepsAreTheFirst) {
    const struct {
        std::uint32_t third;
        bool makeSense;
    } rows[] = {{30, true}, {31, false}};
    for (const auto& row : rows) {
        const std::string bytes =
            record16(10, 0, 5) + record16(20, 0, 5) + record16(row.third, 0, 5) + record16(77, 0, 5);
        EXPECT_EQ(Judged(bytes, cfgFor(1, 0, DataType::Binary, 1000.0, 4)).form.has_value(), row.makeSense);
    }
}

TEST(DataFormOf, FewJumpsAreForTheSurvey) {
    const std::string ten = recordsOf(DataType::Binary, 10);
    const std::string without = ten.substr(0, 4 * kNarrow) + ten.substr(6 * kNarrow);
    const Judged judged(without, cfgOfRecords(DataType::Binary, 10));
    ASSERT_TRUE(judged.form);
    EXPECT_EQ(judged.codes(), "");
}

TEST(DataFormOf, ThreeNumbersInARowAreRecordsWhateverFollows) {
    EXPECT_FALSE(Judged(recordsOf(DataType::Binary, 2) + gzipLike(900), cfgOfRecords(DataType::Binary, 50)).form);
    EXPECT_TRUE(Judged(recordsOf(DataType::Binary, 3) + gzipLike(900), cfgOfRecords(DataType::Binary, 50)).form);
}

TEST(DataFormOf, ValuesThatReadLikeTextMakeNoText) {
    std::string bytes;
    for (std::uint32_t i = 1; i <= 50; ++i) {
        bytes += LittleEndianBytes().u32(i).u32(1000 * i).bytes() + "12,45,78.0,12-4\n";
    }
    EXPECT_EQ(Judged(bytes, cfgFor(8, 0, DataType::Ascii)).form->type, DataType::Binary);
}

TEST(DataFormOf, SinglesMayHaveMissingValuesAmongThem) {
    std::string bytes = recordsOf(DataType::Float32, 20);
    bytes.replace(5 * kWide + 8, 4, "\xFF\xFF\x7F\xFF");
    EXPECT_EQ(Judged(bytes, cfgOfRecords(DataType::Binary, 20)).form->type, DataType::Float32);
}

TEST(DataFormOf, LessThanARecordIsNone) {
    for (std::size_t length = 0; length < kNarrow; ++length) {
        const Judged judged(recordsOf(DataType::Binary, 1).substr(0, length), cfgOfRecords(DataType::Binary));
        EXPECT_FALSE(judged.form) << length;
        ASSERT_EQ(judged.codes(), "no-samples") << length;
        EXPECT_EQ(judged.findings[0].expected, "records of 18 bytes (3 analog and 20 status channels)");
    }
}

TEST(DataFormOf, EveryPrefixOfRecordsHasTheirForm) {
    const std::string bytes = recordsOf(DataType::Float32, 5);
    for (std::size_t length = kWide; length <= bytes.size(); ++length) {
        const Judged judged(bytes.substr(0, length), cfgOfRecords(DataType::Float32, 5));
        ASSERT_TRUE(judged.form) << length;
        EXPECT_EQ(judged.form->stride, kWide) << length;
        EXPECT_EQ(judged.codes(), "") << length;
    }
}

} // namespace
