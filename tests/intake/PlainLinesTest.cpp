#include "plainLines.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

using namespace OrvComtradeIntake;

namespace {

DataLayout layoutOf(std::size_t analogs, std::size_t statuses) {
    Configuration configuration;
    configuration.analog.resize(analogs);
    configuration.status.resize(statuses);
    return DataLayout(configuration);
}

/// The text where a reader has it: behind a line end, with room around it.
class Buffer {
public:
    explicit Buffer(const std::string& text) : _bytes(PlainLines::kSlack, '\n'), _length(text.size()) {
        _bytes += text;
        _bytes.append(PlainLines::kSlack, '9');
    }

    const char* begin() const { return _bytes.data() + PlainLines::kSlack; }
    const char* end() const { return begin() + _length; }

private:
    std::string _bytes;
    std::size_t _length;
};

/// How many lines are taken, by either width of vectors.
struct Taken {
    std::uint64_t usual = 0;
    std::uint64_t wide = 0;
};

std::uint64_t countTaken(const DataLayout& layout, const std::string& text, bool wide) {
    const Buffer buffer(text);
    const LineRun run = PlainLines(layout, wide).take(buffer.begin(), buffer.end(), UINT64_MAX);
    EXPECT_EQ(run.begin, buffer.begin());
    EXPECT_EQ(static_cast<std::uint64_t>(std::count(run.begin, run.end, '\n')), run.count);
    if (run.count != 0) {
        EXPECT_EQ(std::find(run.last, run.end, '\n') + 1, run.end);
        EXPECT_TRUE(run.last == run.begin || run.last[-1] == '\n');
    }
    return run.count;
}

Taken take(const DataLayout& layout, const std::string& text) {
    const std::uint64_t usual = countTaken(layout, text, false);
    return {usual, hasWideVectors() ? countTaken(layout, text, true) : usual};
}

bool isPlainInteger(const std::string& column) {
    const std::string digits = column.substr(column[0] == '-' ? 1 : 0);
    return !digits.empty() && digits.size() <= 18 && digits.find_first_not_of("0123456789") == std::string::npos &&
           digits.find("99999") == std::string::npos;
}

/// The same in plain words. Text with a number of 99999 or with such digits may be refused.
bool isPlain(const DataLayout& layout, const std::string& line) {
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
        if (isState ? columns[i] != "0" && columns[i] != "1" : !isPlainInteger(columns[i])) {
            return false;
        }
    }
    return true;
}

std::string drawColumn() {
    static const std::vector<std::string> odd = {"",
                                                 "99999",
                                                 "-99999",
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
    if (*rc::gen::inRange(0, 40) == 0) {
        return *rc::gen::elementOf(odd);
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

} // namespace

TEST(PlainLines, TakeIntegersAndStates) {
    const std::string text = "1,0,5,-6,7,1,0\n2,1000,0,99998,-1,0,0\r\n3,2000,-123456789012345678,9999,1,1,1\n";
    EXPECT_EQ(take(layoutOf(3, 2), text).usual, 3U);
    EXPECT_EQ(take(layoutOf(3, 2), text).wide, 3U);
}

TEST(PlainLines, TakeNoMoreThanWanted) {
    const Buffer buffer("1,0,5,1\n2,1,5,1\n3,2,5,1\n");
    const LineRun run = PlainLines(layoutOf(1, 1)).take(buffer.begin(), buffer.end(), 2);
    EXPECT_EQ(run.count, 2U);
    EXPECT_EQ(run.last - run.begin, 8);
    EXPECT_EQ(run.end - run.begin, 16);
}

TEST(PlainLines, LeaveALineThatIsNotAllThere) {
    EXPECT_EQ(take(layoutOf(1, 1), "1,0,5,1\n2,1,5,1").wide, 1U);
    EXPECT_EQ(take(layoutOf(1, 1), "").usual, 0U);
}

TEST(PlainLines, StopBeforeWhatIsNotPlain) {
    const char* const lines[] = {"2,0,99999,1", "2,0,,1",
                                 "2,0,1.5,1",   "2,0,+5,1",
                                 "2,0,--5,1",   "2,0,5-,1",
                                 "2,0,-,1",     "2,0, 5,1",
                                 "2,0,5,2",     "2,0,5,01",
                                 "2,0,5",       "2,0,5,1,",
                                 "2,0,5,1,1",   "-2,0,5,1",
                                 "2,0,5,",      "2,0,\x80,1",
                                 "2,0,5:,1",    ",0,5,1",
                                 "2,0\n,5,1",   "2\n0,5,1",
                                 "2,0,5,1\r\r", "2,0,9999999999999999999,1"};
    for (const std::string line : lines) {
        const Taken taken = take(layoutOf(1, 1), "1,0,5,1\n" + line + "\n3,0,5,1\n");
        EXPECT_EQ(taken.usual, 1U) << line;
        EXPECT_EQ(taken.wide, 1U) << line;
    }
}

RC_GTEST_PROP(PlainLines, AreTheLinesUpToTheFirstThatIsNotPlain, ()) {
    const DataLayout layout = layoutOf(*rc::gen::inRange<std::size_t>(0, 40), *rc::gen::inRange<std::size_t>(0, 40));
    std::string text;
    std::uint64_t plain = 0;
    bool isOver = false;
    for (int i = *rc::gen::inRange(0, 50); i > 0; --i) {
        const std::string line = drawLine(layout);
        isOver = isOver || !isPlain(layout, line);
        plain += isOver ? 0 : 1;
        text += line + *rc::gen::element<std::string>("\n", "\r\n");
    }
    const Taken taken = take(layout, text);
    RC_ASSERT(taken.usual == plain);
    RC_ASSERT(taken.wide == plain);
}
