// How ASCII data are cut into lines, and how a line is understood.

#include "data/LineParser.h"

#include "data/LibraryLine.h"
#include "data/LineReader.h"
#include "intake/dataSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace OrvComtradeIntake;
using orvtest::cfgFor;

Header headerFor(std::size_t analogs, std::size_t statuses, int revision = 1999) {
    Header header = cfgFor(analogs, statuses, DataType::Ascii).header;
    header.revision = revision;
    return header;
}

/// Reads a line that has nothing but its slack behind it, so that a sanitizer sees what is read beyond.
AsciiSample parsed(const std::string& line, const Header& header, char slack = '9') {
    std::vector<char> bytes(line.begin(), line.end());
    bytes.insert(bytes.end(), LineParser::kSlack, slack);
    AsciiSample sample;
    LineParser(header).read({bytes.data(), line.size()}, sample);
    return sample;
}

std::string textOf(const Decimal& value) {
    const Decimal number = value.normalised();
    return (number.negative ? "-" : "") + std::to_string(number.mantissa) +
           (number.exponent == 0 ? "" : "e" + std::to_string(number.exponent));
}

/// "number stamp | values | states": what is missing is "-".
std::string textOf(const AsciiSample& sample) {
    const auto orNone = [](const std::optional<std::int64_t>& value) { return value ? std::to_string(*value) : "-"; };
    std::string text = orNone(sample.number) + " " + orNone(sample.stamp) + " |";
    for (const AnalogField& field : sample.analog) {
        text += " " + (field.missing ? "-" : textOf(field.value));
    }
    return text + " | " + std::string(sample.status.begin(), sample.status.end());
}

/// Faults as "name@field:offset", with the number of those in a row.
std::string faultsOf(const AsciiSample& sample) {
    constexpr const char* names[] = {"blank",    "control-line", "bad-line",      "short",    "empty",  "bad",
                                     "state",    "decimals",     "decimal-stamp", "overlong", "blanks", "mark",
                                     "controls", "line-end",     "trailing",      "surplus"};
    static_assert(sizeof names / sizeof *names == static_cast<std::size_t>(LineFault::Count));
    std::string text;
    for (const FieldFault& fault : sample.faults) {
        text += std::string(text.empty() ? "" : " ") + names[static_cast<std::size_t>(fault.fault)] + "@" +
                std::to_string(fault.field) + ":" + std::to_string(fault.offset) +
                (fault.count == 1 ? "" : "x" + std::to_string(fault.count));
    }
    return text;
}

struct ValueRow {
    const char* why;
    const char* column;
    const char* meant; ///< "-": missing
    const char* fault; ///< until 2013
};

TEST(LineParserRead, UnderstandsEveryColumn) {
    const ValueRow rows[] = {
        {"an integer", "5", "5", ""},
        {"a negative one", "-5", "-5", ""},
        {"zero", "0", "0", ""},
        {"zero with a minus sign", "-0", "0", ""},
        {"zeros in front", "000005", "5", ""},
        {"more zeros than digits are counted", "0000000000000000000000000000000000000001", "1", ""},
        {"blanks around it", " \t5  ", "5", ""},
        {"18 digits", "123456789012345678", "123456789012345678", ""},
        {"19 digits", "1234567890123456789", "1234567890123456789", ""},
        {"the greatest integer", "9223372036854775807", "9223372036854775807", ""},
        {"one more", "9223372036854775808", "9223372036854775808", ""},
        {"more than 64 bits", "18446744073709551620", "1844674407370955162e1", ""},
        {"a plus sign", "+5", "5", "decimals"},
        {"a point", "12.5", "125e-1", "decimals"},
        {"nothing behind the point", "5.", "5", "decimals"},
        {"nothing before the point", "-.25", "-25e-2", "decimals"},
        {"zeros behind the point", "5.000", "5", "decimals"},
        {"an exponent", "1.5e3", "15e2", "decimals"},
        {"a great one with signs", "-1.5E+12", "-15e11", "decimals"},
        {"a small one", "15e-4", "15e-4", "decimals"},
        {"18 digits about a point", "123456789.012345678", "123456789012345678e-9", "decimals"},
        {"missing", "99999", "-", ""},
        {"missing, with zeros in front", "0099999", "-", ""},
        {"missing, with a point", "99999.00", "-", "decimals"},
        {"its opposite", "-99999", "-99999", ""},
        {"nearly missing", "99998.7", "999987e-1", "decimals"},
        {"nothing", "", "-", "empty"},
        {"blanks", "  ", "-", "empty"},
        {"a word", "abc", "-", "bad"},
        {"not a number", "NaN", "-", "bad"},
        {"infinity", "inf", "-", "bad"},
        {"asterisks", "*****", "-", "bad"},
        {"a minus sign", "-", "-", "bad"},
        {"two of them", "--5", "-", "bad"},
        {"one behind it", "5-", "-", "bad"},
        {"a point", ".", "-", "bad"},
        {"two points", "1.2.3", "-", "bad"},
        {"an exponent without digits", "1e", "-", "bad"},
        {"two numbers", "5 6", "-", "bad"},
        {"a fraction", "5/6", "-", "bad"},
        {"hexadecimal", "0x10", "-", "bad"},
        {"a unit", "5V", "-", "bad"},
        {"too large for a measured value", "1e60", "-", "bad"},
        {"the largest exponent that is read", "9e59", "9e59", "decimals"},
        {"bytes above ASCII", "\xFF", "-", "bad"},
    };
    for (const ValueRow& row : rows) {
        for (const char slack : {'9', '.', ',', '\n'}) {
            const std::string line = std::string("7,1000,") + row.column + ",1";
            const AsciiSample sample = parsed(line, headerFor(1, 1), slack);
            EXPECT_EQ(sample.kind, LineKind::Whole) << row.why;
            EXPECT_EQ(textOf(sample), std::string("7 1000 | ") + row.meant + " | 1") << row.why;
            EXPECT_EQ(faultsOf(sample), *row.fault == '\0' ? "" : row.fault + std::string("@2:7")) << row.why;
            const AsciiSample last = parsed(std::string("7,1000,") + row.column, headerFor(1, 0), slack);
            EXPECT_EQ(textOf(last), std::string("7 1000 | ") + row.meant + " | ") << row.why;
        }
    }
}

TEST(LineParserRead, EmptyValueIsNoFaultSince2013) {
    for (const char* const line : {"7,1000,,1", "7,1000, ,1"}) {
        const AsciiSample sample = parsed(line, headerFor(1, 1, 2013));
        EXPECT_EQ(textOf(sample), "7 1000 | - | 1");
        EXPECT_EQ(faultsOf(sample), "");
    }
    EXPECT_EQ(faultsOf(parsed("7,1000,5,", headerFor(1, 1, 2013))), "empty@3:9");
    EXPECT_EQ(parsed(",,,", headerFor(1, 1, 2013)).kind, LineKind::Bad);
    EXPECT_EQ(parsed("1,,,", headerFor(2, 0, 2013)).kind, LineKind::Whole);
}

TEST(LineParserRead, UnderstandsEveryState) {
    const ValueRow rows[] = {
        {"0", "0", "0", ""},
        {"1", "1", "1", ""},
        {"blanks around it", " 1 ", "1", ""},
        {"two digits", "01", "1", "state"},
        {"zeros", "00", "0", "state"},
        {"another number", "2", "1", "state"},
        {"a minus sign", "-1", "1", "state"},
        {"a plus sign", "+0", "0", "state"},
        {"a point", "1.0", "1", "state"},
        {"zero with a point", "0.0", "0", "state"},
        {"text behind 0", "0EOF", "0", "state"},
        {"text behind 1", "1EOF", "1", "state"},
        {"a word", "ON", "1", "state"},
        {"nothing", "", "0", "empty"},
        {"blanks", "  ", "0", "empty"},
    };
    for (const ValueRow& row : rows) {
        const AsciiSample sample = parsed(std::string("7,1000,5,") + row.column + ",1", headerFor(1, 2));
        EXPECT_EQ(textOf(sample), std::string("7 1000 | 5 | ") + row.meant + "1") << row.why;
        EXPECT_EQ(faultsOf(sample), *row.fault == '\0' ? "" : row.fault + std::string("@3:9")) << row.why;
    }
}

struct HeadRow {
    const char* why;
    const char* head;
    const char* meant;
    const char* faults;
};

TEST(LineParserRead, UnderstandsEveryNumberAndStamp) {
    const HeadRow rows[] = {
        {"integers", "1,0", "1 0", ""},
        {"negative ones", "-1,-200", "-1 -200", ""},
        {"18 digits", "123456789012345678,123456789012345678", "123456789012345678 123456789012345678", ""},
        {"64 bits", "9199999999999999999,9199999999999999999", "9199999999999999999 9199999999999999999", ""},
        {"more", "9300000000000000000,9300000000000000000", "- -", "bad@0:0 overlong@1:20"},
        {"far more", "1e30,-1e30", "- -", "decimals@0:0 bad@0:0 decimal-stamp@1:5 overlong@1:5"},
        {"no stamp", "1,", "1 -", ""},
        {"blanks for a stamp", "1,  ", "1 -", ""},
        {"no number", ",0", "- 0", "empty@0:0"},
        {"a number with a point", "1.0,0", "1 0", "decimals@0:0"},
        {"a number that is rounded", "2.5,0", "3 0", "decimals@0:0"},
        {"a stamp with decimals", "1,0.25", "1 0", "decimal-stamp@1:2"},
        {"a stamp with an exponent", "1,1.5e3", "1 1500", "decimal-stamp@1:2"},
        {"a stamp that is no number", "1,x", "1 -", "bad@1:2"},
        {"a number that is none", "x,0", "- 0", "bad@0:0"},
        {"blanks around them", " 1 , 0 ", "1 0", ""},
    };
    for (const HeadRow& row : rows) {
        const AsciiSample sample = parsed(std::string(row.head) + ",5,1", headerFor(1, 1));
        EXPECT_EQ(sample.kind, LineKind::Whole) << row.why;
        EXPECT_EQ(textOf(sample), std::string(row.meant) + " | 5 | 1") << row.why;
        EXPECT_EQ(faultsOf(sample), row.faults) << row.why;
    }
}

TEST(LineParserRead, KeepsTheDecimalsOfStamps) {
    const AsciiSample decimals = parsed("1,0.25,5", headerFor(1, 0));
    EXPECT_EQ(scaledStamp(decimals, 0), 0);
    EXPECT_EQ(scaledStamp(decimals, 1), 3);
    EXPECT_EQ(scaledStamp(decimals, 2), 25);
    const AsciiSample whole = parsed("1,-7,5", headerFor(1, 0));
    EXPECT_EQ(scaledStamp(whole, 3), -7000);
    EXPECT_EQ(scaledStamp(parsed("1,,5", headerFor(1, 0)), 3), std::nullopt);
}

struct LineRow {
    const char* why;
    std::string line;
    LineKind kind;
    const char* meant;
    const char* faults;
};

TEST(LineParserRead, UnderstandsEveryLine) {
    const LineRow rows[] = {
        // 2 analog and 2 status channels
        {"no byte", "", LineKind::Blank, "", ""},
        {"blanks", " \t ", LineKind::Blank, "", ""},
        {"CR", "\r", LineKind::Blank, "", ""},
        {"0x1A", "\x1A", LineKind::Bad, "", "control-line@0:0"},
        {"zero bytes", std::string(3, '\0'), LineKind::Bad, "", "control-line@0:0"},
        {"text", "end of data", LineKind::Bad, "", "bad-line@0:0"},
        {"headings", "n,t,Ua,Ub,Trip,Start", LineKind::Bad, "", "bad-line@0:0"},
        {"commas", ",,,,,", LineKind::Bad, "", "bad-line@0:0"},
        {"text with one number", "1,x,y,z,u,v", LineKind::Whole, "1 - | - - | 11", "bad@1:2x3 state@4:8x2"},
        {"one column", "1", LineKind::Bad, "", "bad-line@0:0"},
        {"two columns", "1,0", LineKind::Short, "1 0 | - - | 00", ""},
        {"two, no number", "x,0", LineKind::Bad, "", "bad-line@0:0"},
        {"one too few", "1,0,5,-3,1", LineKind::Short, "1 0 | 5 -3 | 10", ""},
        {"one too many", "1,0,5,-3,1,0,7", LineKind::Whole, "1 0 | 5 -3 | 10", "surplus@6:13"},
        {"a comma too many", "1,0,5,-3,1,0,", LineKind::Whole, "1 0 | 5 -3 | 10", "trailing@6:13"},
        {"commas and blanks too many", "1,0,5,-3,1,0, , ,", LineKind::Whole, "1 0 | 5 -3 | 10", "trailing@6:13"},
        {"commas, then a column", "1,0,5,-3,1,0,,,7", LineKind::Whole, "1 0 | 5 -3 | 10", "surplus@6:13"},
        {"separated by blanks", "1 0 5 -3 1 0", LineKind::Whole, "1 0 | 5 -3 | 10", "blanks@0:0"},
        {"by several", " 1\t0  5   -3 1 0 ", LineKind::Whole, "1 0 | 5 -3 | 10", "blanks@0:0"},
        {"by blanks and commas", "1 0, 5 -3 ,1 0", LineKind::Whole, "1 0 | 5 -3 | 10", "blanks@0:0"},
        {"by blanks, with decimals", "1 0 5.5 -3 1 0", LineKind::Whole, "1 0 | 55e-1 -3 | 10",
         "decimals@2:4 blanks@0:0"},
        {"by blanks, one too many", "1 0 5 -3 1 0 7", LineKind::Whole, "1 0 | 5 -3 | 10", "surplus@6:13 blanks@0:0"},
        {"by blanks, too few", "1 0 5", LineKind::Bad, "", "bad-line@0:0"},
        {"by semicolons", "1;0;5;-3;1;0", LineKind::Bad, "", "bad-line@0:0"},
        {"CR inside", "1,0,5\r,-3,1,0", LineKind::Whole, "1 0 | 5 -3 | 10", "controls@0:5"},
        {"CR for a comma", "1,0,5\r-3,1,0", LineKind::Whole, "1 0 | 5 -3 | 10", "blanks@0:0 controls@0:5"},
        {"0x1A inside", "1,0,5,-3,1\x1A,0", LineKind::Whole, "1 0 | 5 -3 | 10", "controls@0:10"},
        {"zero bytes inside", std::string("1,0,\0005,-3,1,0", 14), LineKind::Whole, "1 0 | 5 -3 | 10", "controls@0:4"},
        {"a zero byte inside a number", std::string("1,0,5\0006,-3,1,0", 15), LineKind::Whole, "1 0 | - -3 | 10",
         "bad@2:4 controls@0:5"},
    };
    for (const LineRow& row : rows) {
        const AsciiSample sample = parsed(row.line, headerFor(2, 2));
        EXPECT_EQ(sample.kind, row.kind) << row.why;
        EXPECT_EQ(faultsOf(sample), row.faults) << row.why;
        if (row.kind == LineKind::Whole || row.kind == LineKind::Short) {
            EXPECT_EQ(textOf(sample), row.meant) << row.why;
        }
    }
}

TEST(LineParserRead, EveryPrefixOfALineIsShortOrWhole) {
    const std::string line = "12,3000,-456,78901234567890,99999,1,0,1";
    const Header header = headerFor(3, 3);
    for (std::size_t length = 0; length <= line.size(); ++length) {
        const std::string prefix = line.substr(0, length);
        const auto commas = std::count(prefix.begin(), prefix.end(), ',');
        const AsciiSample sample = parsed(prefix, header);
        if (length == 0) {
            EXPECT_EQ(sample.kind, LineKind::Blank);
        } else if (commas == 0) {
            EXPECT_EQ(sample.kind, LineKind::Bad) << prefix;
        } else {
            EXPECT_EQ(sample.kind, commas < 7 ? LineKind::Short : LineKind::Whole) << prefix;
            EXPECT_EQ(sample.number, 12) << prefix;
        }
    }
}

TEST(LineParserRead, LeavesChannelsAloneThatALineWithoutSampleDoesNotReach) {
    const Header header = headerFor(3, 2);
    AsciiSample sample = parsed("1,0,7,8,9,1,1", header);
    std::string line = "x,5,6";
    line.append(LineParser::kSlack, '\n');
    LineParser(header).read(std::string_view(line).substr(0, 5), sample);
    EXPECT_EQ(textOf(sample), "- 5 | 6 8 9 | 11");
    EXPECT_EQ(sample.kind, LineKind::Bad);
    EXPECT_EQ(sample.absent, 4U);
}

TEST(LineParserRead, RandomBytesAreReadWithinTheirBounds) {
    std::mt19937 random(5);
    constexpr std::string_view usual = "0123456789,,,,,,--..eE+ 99999\r\x1A";
    for (int i = 0; i < 30000; ++i) {
        std::string line;
        for (std::size_t length = random() % 60; line.size() < length;) {
            line += random() % 20 == 0 ? static_cast<char>(random() & 0xFFU) : usual[random() % usual.size()];
        }
        const std::size_t analogs = random() % 5;
        const std::size_t statuses = random() % 5;
        const AsciiSample sample = parsed(line, headerFor(analogs, statuses, random() % 2 == 0 ? 1991 : 2013));
        if (sample.kind == LineKind::Whole || sample.kind == LineKind::Short) {
            EXPECT_EQ(sample.analog.size(), analogs);
            EXPECT_EQ(sample.status.size(), statuses);
        }
        for (const FieldFault& fault : sample.faults) {
            EXPECT_LE(fault.offset, line.size());
        }
    }
}

TEST(ColumnsIn, CountsColumnsOfAnyLine) {
    struct Row {
        const char* line;
        std::size_t columns;
    };
    const Row rows[] = {{"", 0},     {" \r", 0},    {"1", 1},   {"1,2", 2},
                        {"1,2,", 3}, {"1 2\t3", 3}, {"a;b", 1}, {" 1, 2 ", 2}};
    for (const Row& row : rows) {
        EXPECT_EQ(columnsIn(row.line), row.columns) << row.line;
    }
}

TEST(FieldName, IsThatOfTheStandard) {
    const DataLayout layout(headerFor(3, 2), DataType::Ascii);
    const char* const names[] = {"n", "timestamp", "A1", "A2", "A3", "D1", "D2", "column 8", "column 9"};
    for (std::size_t field = 0; field < 9; ++field) {
        EXPECT_EQ(fieldName(field, layout), names[field]);
    }
}

TEST(LibraryLineReads, OnlyWhatTheLibraryTakesForTheSameSample) {
    struct Row {
        const char* why;
        const char* line;
        bool byRate;
        bool byStamps;
    };
    const Row rows[] = {
        {"integers", "1,0,5,-3,1,0", true, true},
        {"a great stamp", "1,4294967295,5,-3,1,0", true, true},
        {"a stamp of more than 32 bits", "1,4294967296,5,-3,1,0", true, false},
        {"a negative stamp", "1,-1,5,-3,1,0", true, false},
        {"no stamp", "1,,5,-3,1,0", false, false},
        {"a stamp with decimals", "1,0.5,5,-3,1,0", false, false},
        {"decimals", "1,0,5.5,-3,1,0", false, false},
        {"a plus sign", "1,0,+5,-3,1,0", false, false},
        {"a missing value", "1,0,99999,-3,1,0", true, true},
        {"nothing for a value", "1,0,,-3,1,0", false, false},
        {"more columns", "1,0,5,-3,1,0,7", true, true},
        {"fewer columns", "1,0,5,-3,1", false, false},
        {"a state of two digits", "1,0,5,-3,01,0", false, false},
        {"more than 64 bits", "1,0,18446744073709551621,-3,1,0", false, false},
        {"text behind the last state", "1,0,5,-3,1,0EOF", true, true},
    };
    const Header header = headerFor(2, 2);
    const LibraryLine library{DataLayout(header, DataType::Ascii)};
    for (const Row& row : rows) {
        const AsciiSample meant = parsed(row.line, header);
        EXPECT_EQ(library.reads(row.line, false, meant), row.byRate) << row.why;
        EXPECT_EQ(library.reads(row.line, true, meant), row.byStamps) << row.why;
    }
}

/// Lines as "number@position:text", a "<" behind those with CR and an "." behind the open one.
std::string linesOf(const std::string& bytes, std::size_t longest = 100) {
    LineReader reader(ByteSource::ofMemory(bytes, "a.dat"), longest);
    DataLine line;
    std::string text;
    while (reader.next(line)) {
        text += (text.empty() ? "" : " ") + std::to_string(line.number) + "@" + std::to_string(line.position) + ":" +
                std::string(line.text) + (line.hasReturn ? "<" : "") + (line.isLast ? "." : "");
    }
    return text;
}

TEST(LineReaderNext, CutsAtLineEnds) {
    struct Row {
        const char* why;
        std::string bytes;
        std::string lines;
        LineReader::LineEnd lineEnd;
    };
    using LineEnd = LineReader::LineEnd;
    const Row rows[] = {
        {"nothing", "", "", LineEnd::CrLf},
        {"one open line", "ab", "1@0:ab.", LineEnd::CrLf},
        {"LF", "ab\nc\n", "1@0:ab 2@3:c", LineEnd::Lf},
        {"CR LF", "ab\r\nc\r\n", "1@0:ab< 2@4:c<", LineEnd::CrLf},
        {"CR CR LF", "ab\r\r\nc\r\r\n", "1@0:ab< 2@5:c<", LineEnd::CrCrLf},
        {"CR", "ab\rc\r", "1@0:ab 2@3:c", LineEnd::Cr},
        {"CR inside lines of LF", "a\rb\nc\n", "1@0:a\rb 2@4:c", LineEnd::Lf},
        {"blank lines", "\n\r\n\n", "1@0: 2@1:< 3@3:", LineEnd::Lf},
        {"an open line behind others", "a\nb", "1@0:a 2@2:b.", LineEnd::Lf},
        {"CR at the end of the data", "a\nb\r", "1@0:a 2@2:b<.", LineEnd::Lf},
        {"CR LF in the first line alone", "a\r\nb\n", "1@0:a< 2@3:b", LineEnd::CrLf},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(linesOf(row.bytes), row.lines) << row.why;
        EXPECT_EQ(LineReader(ByteSource::ofMemory(row.bytes, "a.dat"), 100).lineEnd(), row.lineEnd) << row.why;
    }
}

TEST(LineReaderNext, GivesEveryLineWhereverBlocksEnd) {
    std::mt19937 random(11);
    for (const std::size_t longest : {std::size_t{50}, std::size_t{300000}}) {
        std::string bytes;
        std::vector<std::size_t> lengths;
        while (bytes.size() < 400000) {
            lengths.push_back(random() % 40 == 0 ? random() % 60000 : random() % 50);
            bytes += std::string(lengths.back(), 'x') + "\n";
        }
        LineReader reader(ByteSource::ofMemory(bytes, "a.dat"), longest);
        DataLine line;
        std::uint64_t position = 0;
        for (std::size_t i = 0; i < lengths.size(); ++i) {
            ASSERT_TRUE(reader.next(line));
            EXPECT_EQ(line.number, i + 1);
            EXPECT_EQ(line.position, position);
            EXPECT_EQ(line.text.substr(0, longest), std::string(std::min(lengths[i], longest), 'x'));
            position += lengths[i] + 1;
        }
        EXPECT_FALSE(reader.next(line));
    }
}

TEST(LineReaderNext, PassesOverTheRestOfALineThatIsTooLong) {
    const std::string tooLong(200000, 'x');
    LineReader reader(ByteSource::ofText("a\n" + tooLong + "\nb\n", "a.dat", 0), 100);
    DataLine line;
    ASSERT_TRUE(reader.next(line));
    ASSERT_TRUE(reader.next(line));
    EXPECT_GE(line.text.size(), 100U);
    EXPECT_LT(line.text.size(), tooLong.size());
    ASSERT_TRUE(reader.next(line));
    EXPECT_EQ(line.text, "b");
    EXPECT_EQ(line.number, 3U);
    EXPECT_EQ(line.position, 200003U);
    EXPECT_FALSE(reader.next(line));
}

TEST(LineReaderNext, LineBehindManyZeroBytesIsALineOfItsOwn) {
    LineReader reader(ByteSource::ofText("a\n" + std::string(200000, '\0') + "b\n", "a.dat", 0), 100);
    DataLine line;
    ASSERT_TRUE(reader.next(line));
    ASSERT_TRUE(reader.next(line));
    ASSERT_TRUE(reader.next(line));
    EXPECT_EQ(line.text, "b");
    EXPECT_EQ(line.position, 200002U);
}

} // namespace
