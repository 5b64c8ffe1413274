// The fast look for lines in which nothing is wrong.

#include "data/FastLines.h"

#include "data/LibraryLine.h"
#include "data/LineParser.h"
#include "intake/dataSupport.h"
#include "support/fixedSeed.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

using namespace OrvComtradeIntake;

namespace {

Header headerFor(std::size_t analogs, std::size_t statuses) {
    return orvtest::cfgFor(analogs, statuses, DataType::Ascii).header;
}

DataLayout layoutOf(std::size_t analogs, std::size_t statuses) {
    return DataLayout(headerFor(analogs, statuses), DataType::Ascii);
}

/// The text where a reader has it: behind a line end, with room around it that holds no more than it must.
class Buffer {
public:
    explicit Buffer(const std::string& text) : _bytes(FastLines::kSlack, '\n'), _length(text.size()) {
        _bytes.insert(_bytes.end(), text.begin(), text.end());
        _bytes.insert(_bytes.end(), FastLines::kSlack, '9');
    }

    const char* begin() const { return _bytes.data() + FastLines::kSlack; }
    const char* end() const { return begin() + _length; }

private:
    std::vector<char> _bytes;
    std::size_t _length;
};

std::uint64_t countTaken(const DataLayout& layout, const std::string& text) {
    const Buffer buffer(text);
    FastLines lines(layout);
    const LineRun run = lines.take(buffer.begin(), buffer.end(), UINT64_MAX);
    EXPECT_EQ(run.begin, buffer.begin());
    EXPECT_EQ(static_cast<std::uint64_t>(std::count(run.begin, run.end, '\n')), run.count);
    const char* begin = run.begin;
    for (std::uint64_t i = 0; i < run.count; ++i) {
        EXPECT_EQ(run.begins[i], begin);
        begin = std::find(begin, run.end, '\n') + 1;
    }
    EXPECT_EQ(begin, run.end);
    return run.count;
}

bool isFastInteger(const std::string& column) {
    const std::string digits = column.substr(column[0] == '-' ? 1 : 0);
    return !digits.empty() && digits.size() <= 18 && digits.find_first_not_of("0123456789") == std::string::npos &&
           digits.find("99999") == std::string::npos;
}

/// The same in plain words. Text with a number of 99999 or with such digits may be refused.
bool isFast(const DataLayout& layout, const std::string& line) {
    std::vector<std::string> columns(1);
    for (const char byte : line) {
        if (byte == ',') {
            columns.emplace_back();
        } else {
            columns.back() += byte;
        }
    }
    if (columns.size() != layout.fields() || columns[0][0] == '-') {
        return false;
    }
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const bool isState = i >= 2 + layout.analogs;
        if (isState ? columns[i] != "0" && columns[i] != "1" : !isFastInteger(columns[i])) {
            return false;
        }
    }
    return true;
}

const std::vector<std::string> kOddColumns = {"",
                                              "99999",
                                              "-99999",
                                              "999999",
                                              "9999",
                                              "99990",
                                              "1.5",
                                              "+1",
                                              "-",
                                              "--1",
                                              "1-",
                                              " 1",
                                              "1 ",
                                              "\x80",
                                              "12:3",
                                              "1/2",
                                              "1e5",
                                              "12345678",
                                              "123456789012345678",
                                              "1234567890123456789",
                                              "-123456789012345678",
                                              "00000000000000000000",
                                              std::string("\0", 1)};

std::string drawColumn() {
    if (*rc::gen::inRange(0, 40) == 0) {
        return *rc::gen::elementOf(kOddColumns);
    }
    return std::to_string(*rc::gen::inRange(-40000, 40000));
}

std::string drawLine(const DataLayout& layout) {
    std::string line =
        std::to_string(*rc::gen::inRange(1, 100000)) + ',' + std::to_string(*rc::gen::inRange(0, 2000000));
    for (std::size_t i = 0; i < layout.analogs; ++i) {
        line += ',' + drawColumn();
    }
    for (std::size_t i = 0; i < layout.statuses; ++i) {
        line += *rc::gen::inRange(0, 200) == 0 ? *rc::gen::element<std::string>(",2", ",", ",00", ";1", ",-", "")
                                               : *rc::gen::element<std::string>(",0", ",1");
    }
    return line;
}

/// Whether the line is read without a fault, the library reads the same, and so does whoever takes it for fast.
bool isReadByAll(const std::string& line, const Header& header) {
    const Buffer buffer(line + "\n");
    const std::string_view text(buffer.begin(), line.size());
    AsciiSample sample;
    LineParser(header).read(text, sample);
    const bool isGood = sample.kind == LineKind::Whole && sample.faults.empty() && !sample.hasDecimals &&
                        LibraryLine(DataLayout(header, DataType::Ascii)).reads(text, false, sample);
    const char* at = buffer.begin();
    if (!isGood || takeInteger(at) != sample.number || takeInteger(at) != sample.stamp) {
        return false;
    }
    for (const AnalogField& field : sample.analog) {
        if (field.missing || takeInteger(at) != field.value.scaled(0)) {
            return false;
        }
    }
    for (const char state : sample.status) {
        if (*at != state) {
            return false;
        }
        at += 2;
    }
    return true;
}

} // namespace

TEST(FastLines, TakeIntegersAndStates) {
    const std::string text = "1,0,5,-6,7,1,0\n2,1000,0,99998,-1,0,0\r\n3,2000,-123456789012345678,9999,1,1,1\n";
    EXPECT_EQ(countTaken(layoutOf(3, 2), text), 3U);
}

TEST(FastLines, TakeRecordingsWithoutChannelsOfAKind) {
    EXPECT_EQ(countTaken(layoutOf(0, 3), "1,0,1,0,1\n2,1000,0,0,0\r\n"), 2U);
    EXPECT_EQ(countTaken(layoutOf(2, 0), "1,0,-1,0\n2,1000,0,-7\r\n"), 2U);
    EXPECT_EQ(countTaken(layoutOf(0, 0), "1,0\n2,1000\r\n"), 2U);
}

TEST(FastLines, TakeNoMoreThanWanted) {
    const Buffer buffer("1,0,5,1\n2,1,5,1\n3,2,5,1\n");
    FastLines lines(layoutOf(1, 1));
    const LineRun run = lines.take(buffer.begin(), buffer.end(), 2);
    EXPECT_EQ(run.count, 2U);
    EXPECT_EQ(run.end - run.begin, 16);
    EXPECT_EQ(lines.take(buffer.begin(), buffer.end(), 0).count, 0U);
}

TEST(FastLines, LeaveALineThatIsNotAllThere) {
    EXPECT_EQ(countTaken(layoutOf(1, 1), "1,0,5,1\n2,1,5,1"), 1U);
    EXPECT_EQ(countTaken(layoutOf(1, 1), ""), 0U);
}

TEST(FastLines, StopBeforeWhatIsNotFast) {
    const char* const lines[] = {"2,0,99999,1",
                                 "2,0,,1",
                                 "2,0,1.5,1",
                                 "2,0,+5,1",
                                 "2,0,--5,1",
                                 "2,0,5-,1",
                                 "2,0,-,1",
                                 "2,0, 5,1",
                                 "2,0,5,2",
                                 "2,0,5,01",
                                 "2,0,5",
                                 "2,0,5,1,",
                                 "2,0,5,1,1",
                                 "-2,0,5,1",
                                 "2,0,5,",
                                 "2,0,\x80,1",
                                 "2,0,5:,1",
                                 ",0,5,1",
                                 "2,0\n,5,1",
                                 "2\n0,5,1",
                                 "2,0,5,1\r\r",
                                 "2,0,9999999999999999999,1",
                                 "",
                                 "\x1A",
                                 "2,,5,1",
                                 "2,-,5,1",
                                 "2,0,5,1 ",
                                 "2,0,999999,1"};
    for (const std::string line : lines) {
        EXPECT_EQ(countTaken(layoutOf(1, 1), "1,0,5,1\n" + line + "\n3,0,5,1\n"), 1U) << line;
    }
}

/// Whatever byte stands in a line wherever, among any number of lines: what is taken is read by all.
TEST(FastLines, TakeNoLineWithAnOddByteAnywhere) {
    const Header header = headerFor(3, 5);
    const std::string good = "12,3450,-67,890123,4,1,0,0,1,1";
    for (std::size_t at = 0; at < good.size(); ++at) {
        for (int code = 0; code < 256; ++code) {
            std::string line = good;
            line[at] = static_cast<char>(code);
            if (line[at] == '\n') {
                continue; // two lines
            }
            for (const std::size_t before : {std::size_t{0}, std::size_t{5}}) {
                std::string text;
                for (std::size_t i = 0; i < before; ++i) {
                    text += good + "\n";
                }
                const std::uint64_t taken = countTaken(layoutOf(3, 5), text + line + "\n" + good + "\n");
                ASSERT_TRUE(taken == before || taken == before + 2) << at << ' ' << code;
                ASSERT_EQ(taken != before, isFast(layoutOf(3, 5), line)) << at << ' ' << code;
                ASSERT_TRUE(taken == before || isReadByAll(line, header)) << at << ' ' << code;
            }
        }
    }
}

TEST(FastLines, TakeIntegersOfUpTo18DigitsWhereverTheyStand) {
    for (std::size_t before = 1; before < 40; ++before) {
        for (std::size_t digits = 1; digits < 30; ++digits) {
            const std::string head = "1,0," + std::string(std::min<std::size_t>(before, 18), '1') + ",";
            const std::string line = head + "-" + std::string(digits, '7') + "," + std::string(before % 18 + 1, '2');
            EXPECT_EQ(countTaken(layoutOf(3, 0), line + "\n"), digits <= 18 ? 1U : 0U) << line;
        }
    }
}

TEST(FastLines, TakeNoMissingValueWhereverItStands) {
    for (std::size_t before = 1; before < 20; ++before) {
        for (const char* const code : {"99999", "999999", "-99999"}) {
            const std::string line = "1,0," + std::string(std::min<std::size_t>(before, 18), '1') + ',' +
                                     std::string(before > 18 ? 1 : 2, '3') + ',' + code + ",5";
            EXPECT_EQ(countTaken(layoutOf(4, 0), line + "\n"), 0U) << line;
        }
    }
}

TEST(FastLines, RandomBytesAreReadWithinTheirBounds) {
    std::mt19937 random(9);
    constexpr std::string_view usual = "0123456789,,,,,,,0,1,0,1\n\n\r-";
    for (int i = 0; i < 20000; ++i) {
        std::string text;
        for (std::size_t length = random() % 200; text.size() < length;) {
            text += random() % 100 == 0 ? static_cast<char>(random() & 0xFFU) : usual[random() % usual.size()];
        }
        const std::size_t statuses = random() % 4;
        countTaken(layoutOf(random() % 4, statuses), text);
    }
}

RC_GTEST_PROP(FastLines, AreTheLinesUpToTheFirstThatIsNotFast, ()) {
    const Header header = headerFor(*rc::gen::inRange<std::size_t>(0, 40), *rc::gen::inRange<std::size_t>(0, 40));
    const DataLayout layout(header, DataType::Ascii);
    std::string text;
    std::uint64_t fast = 0;
    bool isOver = false;
    for (int i = *rc::gen::inRange(0, 50); i > 0; --i) {
        const std::string line = drawLine(layout);
        isOver = isOver || !isFast(layout, line);
        fast += isOver ? 0 : 1;
        text += line + *rc::gen::element<std::string>("\n", "\r\n");
        RC_ASSERT(isOver || isReadByAll(line, header));
    }
    RC_ASSERT(countTaken(layout, text) == fast);
}
