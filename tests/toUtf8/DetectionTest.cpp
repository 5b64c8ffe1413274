#include "toUtf8.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdio>
#include <ostream>
#include <string>

using toUtf8::DetectRusCodePages;

namespace {

/// What isUtf8Seq counted and how far it moved the cursor.
struct Consumed {
    int count;
    std::ptrdiff_t bytes;
};

bool operator==(const Consumed& left, const Consumed& right) {
    return left.count == right.count && left.bytes == right.bytes;
}

std::ostream& operator<<(std::ostream& out, const Consumed& run) {
    return out << run.count << " sequences in " << run.bytes << " bytes";
}

Consumed runAt(const char* text) {
    const char* cursor = text;
    const int count = toUtf8::isUtf8Seq(cursor);
    return {count, cursor - text};
}

Consumed runIn(const std::string& text) {
    return runAt(text.c_str());
}

char byteOf(unsigned int value) {
    return static_cast<char>(value);
}

struct Counters {
    int cp866;
    int cp1251;
    int utf8;
    int utf8MaxRun;
};

bool operator==(const Counters& left, const Counters& right) {
    return left.cp866 == right.cp866 && left.cp1251 == right.cp1251 && left.utf8 == right.utf8 &&
           left.utf8MaxRun == right.utf8MaxRun;
}

std::ostream& operator<<(std::ostream& out, const Counters& counters) {
    return out << "CP866 " << counters.cp866 << ", CP1251 " << counters.cp1251 << ", UTF-8 " << counters.utf8
               << ", longest run " << counters.utf8MaxRun;
}

Counters countersOf(const DetectRusCodePages& detector) {
    return {detector.cp866Count, detector.cp1251Count, detector.utf8Count, detector.utf8MaxRun};
}

Counters analysed(const char* data, std::size_t length) {
    DetectRusCodePages detector;
    detector.analize(data, length);
    return countersOf(detector);
}

Counters analysed(const std::string& text) {
    return analysed(text.data(), text.size());
}

DetectRusCodePages detectorWith(int cp866, int cp1251, int utf8) {
    DetectRusCodePages detector;
    detector.cp866Count = cp866;
    detector.cp1251Count = cp1251;
    detector.utf8Count = utf8;
    return detector;
}

} // namespace

TEST(IsUtf8Seq, CountsRunsAndStopsAtTheFirstByteNotConsumed) {
    const struct {
        const char* why;
        std::string text;
        Consumed expected;
    } rows[] = {
        // Runs
        {"empty", "", {0, 0}},
        {"one sequence", "\xD0\x9F", {1, 2}},
        {"three sequences of two bytes", "\xD0\x90\xD0\x91\xD0\x92", {3, 6}},
        {"sequences of every length", "\xD0\x90\xE2\x84\x96\xF0\x9F\x98\x80", {3, 9}},
        {"ASCII ends the run", "\xD0\x90,\xD0\x91", {1, 2}},
        {"ASCII at the start is no sequence", "A\xD0\x90", {0, 0}},
        {"a zero byte ends the run", std::string("\xD0\x90\0\xD0\x91", 5), {1, 2}},
        {"a bad byte ends the run", "\xD0\x90\xFF\xD0\x91", {1, 2}},
        {"a cut sequence ends the run before its first byte", "\xD0\x90\xD0", {1, 2}},
        // Two bytes: C2..DF 80..BF
        {"lowest", "\xC2\x80", {1, 2}},
        {"highest", "\xDF\xBF", {1, 2}},
        {"over-long C0", "\xC0\x80", {0, 0}},
        {"over-long C1", "\xC1\xBF", {0, 0}},
        {"second byte 7F", "\xC2\x7F", {0, 0}},
        {"second byte C0", "\xDF\xC0", {0, 0}},
        {"cut by the end", "\xC2", {0, 0}},
        // E0 A0..BF 80..BF
        {"lowest", "\xE0\xA0\x80", {1, 3}},
        {"highest", "\xE0\xBF\xBF", {1, 3}},
        {"over-long", "\xE0\x9F\xBF", {0, 0}},
        {"second byte C0", "\xE0\xC0\x80", {0, 0}},
        {"third byte 7F", "\xE0\xA0\x7F", {0, 0}},
        {"third byte C0", "\xE0\xA0\xC0", {0, 0}},
        {"cut after one byte", "\xE0", {0, 0}},
        {"cut after two bytes", "\xE0\xA0", {0, 0}},
        // E1..EC 80..BF 80..BF
        {"lowest", "\xE1\x80\x80", {1, 3}},
        {"highest", "\xEC\xBF\xBF", {1, 3}},
        {"second byte 7F", "\xE1\x7F\x80", {0, 0}},
        {"second byte C0", "\xEC\xC0\x80", {0, 0}},
        {"third byte 7F", "\xE1\x80\x7F", {0, 0}},
        {"third byte C0", "\xEC\xBF\xC0", {0, 0}},
        {"cut after two bytes", "\xE1\x80", {0, 0}},
        // ED 80..9F 80..BF
        {"lowest", "\xED\x80\x80", {1, 3}},
        {"highest", "\xED\x9F\xBF", {1, 3}},
        {"first surrogate", "\xED\xA0\x80", {0, 0}},
        {"last surrogate", "\xED\xBF\xBF", {0, 0}},
        {"second byte 7F", "\xED\x7F\x80", {0, 0}},
        {"third byte 7F", "\xED\x80\x7F", {0, 0}},
        {"third byte C0", "\xED\x80\xC0", {0, 0}},
        // EE..EF 80..BF 80..BF
        {"lowest", "\xEE\x80\x80", {1, 3}},
        {"highest", "\xEF\xBF\xBF", {1, 3}},
        {"second byte 7F", "\xEE\x7F\xBF", {0, 0}},
        {"second byte C0", "\xEF\xC0\x80", {0, 0}},
        {"third byte C0", "\xEF\xBF\xC0", {0, 0}},
        // F0 90..BF 80..BF 80..BF
        {"lowest", "\xF0\x90\x80\x80", {1, 4}},
        {"highest", "\xF0\xBF\xBF\xBF", {1, 4}},
        {"over-long", "\xF0\x8F\xBF\xBF", {0, 0}},
        {"second byte C0", "\xF0\xC0\x80\x80", {0, 0}},
        {"third byte 7F", "\xF0\x90\x7F\x80", {0, 0}},
        {"fourth byte 7F", "\xF0\x90\x80\x7F", {0, 0}},
        {"fourth byte C0", "\xF0\x90\x80\xC0", {0, 0}},
        {"cut after one byte", "\xF0", {0, 0}},
        {"cut after two bytes", "\xF0\x90", {0, 0}},
        {"cut after three bytes", "\xF0\x90\x80", {0, 0}},
        // F1..F3 80..BF 80..BF 80..BF
        {"lowest", "\xF1\x80\x80\x80", {1, 4}},
        {"highest", "\xF3\xBF\xBF\xBF", {1, 4}},
        {"second byte 7F", "\xF1\x7F\x80\x80", {0, 0}},
        {"second byte C0", "\xF3\xC0\x80\x80", {0, 0}},
        {"third byte C0", "\xF1\x80\xC0\x80", {0, 0}},
        {"fourth byte C0", "\xF3\xBF\xBF\xC0", {0, 0}},
        {"cut after three bytes", "\xF1\x80\x80", {0, 0}},
        // F4 80..8F 80..BF 80..BF
        {"lowest", "\xF4\x80\x80\x80", {1, 4}},
        {"highest of all", "\xF4\x8F\xBF\xBF", {1, 4}},
        {"beyond the last code point", "\xF4\x90\x80\x80", {0, 0}},
        {"second byte 7F", "\xF4\x7F\x80\x80", {0, 0}},
        {"third byte 7F", "\xF4\x80\x7F\x80", {0, 0}},
        {"fourth byte 7F", "\xF4\x80\x80\x7F", {0, 0}},
        // No lead bytes
        {"continuation byte alone", "\x80\x80", {0, 0}},
        {"last continuation byte alone", "\xBF\xBF", {0, 0}},
        {"F5", "\xF5\x80\x80\x80", {0, 0}},
        {"F8, once a lead of five bytes", "\xF8\x88\x80\x80\x80", {0, 0}},
        {"FE", "\xFE\x80\x80\x80", {0, 0}},
        {"FF", "\xFF\x80\x80\x80", {0, 0}},
    };
    for (const auto& row : rows) {
        std::string bytes;
        for (const char c : row.text) {
            char digits[4];
            std::snprintf(digits, sizeof digits, "%02X ", static_cast<unsigned int>(static_cast<unsigned char>(c)));
            bytes += digits;
        }
        EXPECT_EQ(runIn(row.text), row.expected) << row.why << ": " << bytes;
    }
}

TEST(IsUtf8Seq, EverySequenceCutByAZeroByteIsLeftWhole) {
    for (const std::string whole : {"\xC2\x80", "\xE0\xA0\x80", "\xE1\x80\x80", "\xED\x9F\xBF", "\xF0\x90\x80\x80",
                                    "\xF1\x80\x80\x80", "\xF4\x8F\xBF\xBF"}) {
        for (std::size_t cut = 1; cut < whole.size(); ++cut) {
            std::string text = "\xD0\x90" + whole;
            text[2 + cut] = '\0';
            EXPECT_EQ(runIn(text), (Consumed{1, 2})) << "cut after " << cut << " of " << whole.size() << " bytes";
        }
    }
}

TEST(IsUtf8Seq, EveryCodePointButTheSurrogatesIsOneSequence) {
    for (unsigned int point = 0x80; point <= 0x10FFFF; ++point) {
        char text[5] = {};
        std::ptrdiff_t length = 0;
        if (point < 0x800) {
            text[length++] = byteOf(0xC0 + point / 0x40);
        } else if (point < 0x10000) {
            text[length++] = byteOf(0xE0 + point / 0x1000);
            text[length++] = byteOf(0x80 + point / 0x40 % 0x40);
        } else {
            text[length++] = byteOf(0xF0 + point / 0x40000);
            text[length++] = byteOf(0x80 + point / 0x1000 % 0x40);
            text[length++] = byteOf(0x80 + point / 0x40 % 0x40);
        }
        text[length++] = byteOf(0x80 + point % 0x40);
        const bool surrogate = point >= 0xD800 && point <= 0xDFFF;
        const Consumed expected = surrogate ? Consumed{0, 0} : Consumed{1, length};
        ASSERT_EQ(runAt(text), expected) << std::hex << "code point " << point;
    }
}

// Together with the case above the numbers prove that nothing else is accepted: there are 1920 code points of two
// bytes and 61440 of three.
TEST(IsUtf8Seq, NoOtherTwoOrThreeBytesAreASequence) {
    int ofTwo = 0;
    int ofThree = 0;
    char text[4] = {};
    for (unsigned int first = 0x01; first <= 0xFF; ++first) {
        text[0] = byteOf(first);
        for (unsigned int second = 0x00; second <= 0xFF; ++second) {
            text[1] = byteOf(second);
            text[2] = '\0';
            ofTwo += runAt(text) == Consumed{1, 2} ? 1 : 0;
            for (unsigned int third = 0x00; third <= 0xFF; ++third) {
                text[2] = byteOf(third);
                ofThree += runAt(text) == Consumed{1, 3} ? 1 : 0;
            }
        }
    }
    EXPECT_EQ(ofTwo, 1920);
    EXPECT_EQ(ofThree, 61440);
}

// Of the 1048576 code points of four bytes two in 64 end in 80 or BF.
TEST(IsUtf8Seq, NoOtherFourBytesAreASequence) {
    int ofFour = 0;
    char text[5] = {};
    for (unsigned int first = 0xE0; first <= 0xFF; ++first) {
        text[0] = byteOf(first);
        for (unsigned int second = 0x00; second <= 0xFF; ++second) {
            text[1] = byteOf(second);
            for (unsigned int third = 0x00; third <= 0xFF; ++third) {
                text[2] = byteOf(third);
                for (const unsigned int fourth : {0x00U, 0x7FU, 0x80U, 0xBFU, 0xC0U, 0xFFU}) {
                    text[3] = byteOf(fourth);
                    ofFour += runAt(text) == Consumed{1, 4} ? 1 : 0;
                }
            }
        }
    }
    EXPECT_EQ(ofFour, 32768);
}

TEST(IsUtf8Seq, NullCursorIsNoSequence) {
    const char* cursor = nullptr;
    EXPECT_EQ(toUtf8::isUtf8Seq(cursor), 0);
    EXPECT_EQ(cursor, nullptr);
}

TEST(Analize, SingleByteCountsByItsRange) {
    const struct {
        const char* why;
        unsigned int first;
        unsigned int last;
        Counters expected;
    } ranges[] = {
        {"ASCII counts nowhere", 0x00, 0x7F, {0, 0, 0, 0}},
        {"CP866 letters, and the shade character B0", 0x80, 0xB0, {1, 0, 0, 0}},
        {"B1 to BF count nowhere", 0xB1, 0xBF, {0, 0, 0, 0}},
        {"CP1251 letters", 0xC0, 0xDF, {0, 1, 0, 0}},
        {"letters of both", 0xE0, 0xF2, {1, 1, 0, 0}},
        {"CP1251 letters", 0xF3, 0xFF, {0, 1, 0, 0}},
    };
    unsigned int next = 0;
    for (const auto& range : ranges) {
        ASSERT_EQ(range.first, next);
        for (unsigned int byte = range.first; byte <= range.last; ++byte)
            EXPECT_EQ(analysed(std::string(1, byteOf(byte))), range.expected) << range.why << ", byte " << byte;
        next = range.last + 1;
    }
    EXPECT_EQ(next, 0x100U);
}

TEST(Analize, CountsEveryByteOfTheText) {
    const struct {
        const char* why;
        std::string text;
        Counters expected;
    } rows[] = {
        {"empty", "", {0, 0, 0, 0}},
        {"ASCII", "1,Ua,A,Bus 1,kV\r", {0, 0, 0, 0}},
        {"one UTF-8 letter", "\xD0\x9F", {0, 0, 1, 1}},
        {"sequences of two, three and four bytes count once each",
         "\xD0\x9F\xE2\x84\x96\xF0\x9F\x98\x80",
         {0, 0, 3, 3}},
        {"the longest run, not the last", "\xD0\x9F\xD0\x9F,\xD0\x9F", {0, 0, 3, 2}},
        {"the longest run, not the first", "\xD0\x9F,\xD0\x9F\xD0\x9F\xD0\x9F,\xD0\x9F\xD0\x9F", {0, 0, 6, 3}},
        {"over-long C0 80: CP1251, then CP866", "\xC0\x80", {1, 1, 0, 0}},
        {"surrogate ED A0 80: both, then CP866 twice", "\xED\xA0\x80", {3, 1, 0, 0}},
        {"F5 80 80 80", "\xF5\x80\x80\x80", {3, 1, 0, 0}},
        {"a continuation byte from B1 behind a bad lead counts nowhere", "\xC0\xBF", {0, 1, 0, 0}},
        {"after a bad byte the next position is tried", "\xD0\xD0\x9F", {0, 1, 1, 1}},
        {"a byte of 80 to B0 is skipped alone", "\x80\xD0\x9F", {1, 0, 1, 1}},
        {"lead at the very end", "\xD0\x9F\xD0", {0, 1, 1, 1}},
        {"a cut sequence of three bytes", "\xE2\x84", {2, 1, 0, 0}},
        {"the walk goes on behind a zero byte", std::string("\x80\0\xCF\0\xD0\x9F", 6), {1, 1, 1, 1}},
        {"a zero byte cuts a sequence", std::string("\xD0\0\x9F", 3), {1, 1, 0, 0}},
        {"CP866 word", "\x8F\xE3\xE1\xAA", {4, 2, 0, 0}},
        {"CP1251 word", "\xCF\xF3\xF1\xEA", {2, 4, 0, 0}},
        {"the self-test's ten bytes", "\x80\xF2\xD0\x90\xD0\x91\xD0\x92\xD0\xD0", {2, 3, 3, 3}},
        {"the self-test's seven bytes", "\xF2\xD0\x90\xD0\x91\xD0\xD0", {1, 3, 2, 2}},
        {"the self-test's four bytes", "\x80\xF2\xD0\x90", {2, 1, 1, 1}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(analysed(row.text), row.expected) << row.why;
}

TEST(Analize, StartsFromZeroEveryTime) {
    DetectRusCodePages detector;
    detector.analize("\x80\xCF\xD0\x9F\xD0\x9F", 6);
    ASSERT_EQ(countersOf(detector), (Counters{1, 1, 2, 2}));
    detector.analize("\xD0\x9F", 2);
    EXPECT_EQ(countersOf(detector), (Counters{0, 0, 1, 1}));
    detector.analize("abc", 3);
    EXPECT_EQ(countersOf(detector), (Counters{0, 0, 0, 0}));
}

TEST(Analize, NullGivesZeroCounters) {
    DetectRusCodePages detector;
    detector.analize("\x80\xCF\xD0\x9F", 4);
    detector.analize(nullptr, 4);
    EXPECT_EQ(countersOf(detector), (Counters{0, 0, 0, 0}));
}

TEST(Analize, BytesBeyondTheLengthAreNotCounted) {
    EXPECT_EQ(analysed("\x80\x80\x80", 2), (Counters{2, 0, 0, 0}));
    EXPECT_EQ(analysed("\x80\xCF", 0), (Counters{0, 0, 0, 0}));
    EXPECT_EQ(analysed("a\xCF", 1), (Counters{0, 0, 0, 0}));
}

TEST(Analize, SequenceThatRunsPastTheLengthCountsInFull) {
    EXPECT_EQ(analysed("\xD0\x9F", 1), (Counters{0, 0, 1, 1}));
    EXPECT_EQ(analysed("a\xE2\x84\x96\x80", 2), (Counters{0, 0, 1, 1}));
}

TEST(ConvertSC, CountersDecide) {
    enum class Page { Cp866, Utf8, Cp1251 };
    const struct {
        const char* why;
        int cp866;
        int cp1251;
        int utf8;
        Page expected;
    } rows[] = {
        // Ties
        {"all zero", 0, 0, 0, Page::Utf8},
        {"all equal", 2, 2, 2, Page::Utf8},
        {"CP866 and CP1251", 1, 1, 0, Page::Cp866},
        {"CP866 and CP1251 above UTF-8", 5, 5, 4, Page::Cp866},
        {"UTF-8 and CP866", 1, 0, 1, Page::Utf8},
        {"UTF-8 and CP1251", 0, 1, 1, Page::Utf8},
        {"UTF-8 and CP1251 above CP866", 1, 3, 3, Page::Utf8},
        {"UTF-8 and CP866 above CP1251", 3, 1, 3, Page::Utf8},
        {"UTF-8 and CP866 below CP1251", 3, 4, 3, Page::Cp1251},
        // One alone
        {"CP866 alone", 1, 0, 0, Page::Cp866},
        {"CP1251 alone", 0, 1, 0, Page::Cp1251},
        {"UTF-8 alone", 0, 0, 1, Page::Utf8},
        // Every order of three
        {"866 > 1251 > UTF-8", 3, 2, 1, Page::Cp866},
        {"866 > UTF-8 > 1251", 3, 1, 2, Page::Cp866},
        {"1251 > 866 > UTF-8", 2, 3, 1, Page::Cp1251},
        {"1251 > UTF-8 > 866", 1, 3, 2, Page::Cp1251},
        {"UTF-8 > 866 > 1251", 2, 1, 3, Page::Utf8},
        {"UTF-8 > 1251 > 866", 1, 2, 3, Page::Utf8},
        // By one
        {"CP866 one below CP1251", 4, 5, 0, Page::Cp1251},
        {"CP866 one above UTF-8", 5, 0, 4, Page::Cp866},
        {"UTF-8 one below CP1251", 0, 5, 4, Page::Cp1251},
        // Signed
        {"a negative CP866 count is below zero", -1, 0, 0, Page::Utf8},
        {"a negative UTF-8 count is below zero", 0, 0, -1, Page::Cp866},
        {"a negative CP1251 count is below zero", 0, -1, 0, Page::Utf8},
        {"large counts", 2147483647, 2147483647, -1, Page::Cp866},
    };
    // E0 is the Cyrillic small er in CP866 and the small a in CP1251.
    const std::string bytes = "\xE0";
    for (const auto& row : rows) {
        const DetectRusCodePages detector = detectorWith(row.cp866, row.cp1251, row.utf8);
        const char* expected = row.expected == Page::Cp866    ? "\xD1\x80"
                               : row.expected == Page::Cp1251 ? "\xD0\xB0"
                                                              : "\xE0";
        EXPECT_EQ(detector.convertSC(bytes, bytes.data(), bytes.size()), expected) << row.why;
    }
}

TEST(ConvertSC, NothingAtAllIsTheEmptyText) {
    EXPECT_EQ(toUtf8::DetectRusCodePages().convertSC("", nullptr, 0), "");
}

TEST(ConvertSC, LongestRunTakesNoPart) {
    DetectRusCodePages detector = detectorWith(0, 1, 0);
    detector.utf8MaxRun = 100;
    EXPECT_EQ(detector.convertSC("\xE0", "\xE0", 1), "\xD0\xB0");
    detector = detectorWith(1, 1, 0);
    detector.utf8MaxRun = 100;
    EXPECT_EQ(detector.convertSC("\xE0", "\xE0", 1), "\xD1\x80");
}

TEST(ConvertSC, Utf8GivesTheSourceOrElseTheBytes) {
    const DetectRusCodePages utf8 = detectorWith(0, 0, 1);
    EXPECT_EQ(utf8.convertSC("source", "bytes", 5), "source");
    EXPECT_EQ(utf8.convertSC("", "bytes", 5), "bytes");
    EXPECT_EQ(utf8.convertSC("", "bytes", 3), "byt");
    EXPECT_EQ(utf8.convertSC("", "a\0b", 3), std::string("a\0b", 3));
    EXPECT_EQ(utf8.convertSC("", "bytes", 0), "");
    EXPECT_EQ(utf8.convertSC(std::string("a\0b", 3), "x", 1), std::string("a\0b", 3));
}

TEST(ConvertSC, CodePagesAreReadFromTheBytesNotTheSource) {
    EXPECT_EQ(detectorWith(1, 0, 0).convertSC("source", "\x80\x81z", 2), "\xD0\x90\xD0\x91");
    EXPECT_EQ(detectorWith(0, 1, 0).convertSC("source", "\xC0\xC1z", 2), "\xD0\x90\xD0\x91");
    EXPECT_EQ(detectorWith(1, 0, 0).convertSC("source", nullptr, 2), "");
    EXPECT_EQ(detectorWith(0, 1, 0).convertSC("source", nullptr, 2), "");
}

TEST(DetectAndConvert, EveryTextComesOutInUtf8) {
    const struct {
        const char* why;
        std::string text;
        std::string expected;
    } rows[] = {
        // Unchanged
        {"empty", "", ""},
        {"ASCII", "1,Ua,A,Bus 1,kV,0.01\r", "1,Ua,A,Bus 1,kV,0.01\r"},
        {"ASCII with a zero byte", std::string("a\0b", 3), std::string("a\0b", 3)},
        {"UTF-8 capital pe", "\xD0\x9F", "\xD0\x9F"},
        {"UTF-8 word among ASCII", "1,\xD0\xA2\xD0\xBE\xD0\xBA,A", "1,\xD0\xA2\xD0\xBE\xD0\xBA,A"},
        {"UTF-8 degree sign", "\xC2\xB0 C", "\xC2\xB0 C"},
        {"bytes that count nowhere stay, whatever they mean", "\xB1\xBF", "\xB1\xBF"},
        // CP1251
        {"capital pe", "\xCF", "\xD0\x9F"},
        {"word", "\xD2\xEE\xEA", "\xD0\xA2\xD0\xBE\xD0\xBA"},
        {"a soft hyphen becomes a space", "\xCF\xCF\xAD\xCF", "\xD0\x9F\xD0\x9F \xD0\x9F"},
        {"over-long C0 with B1, which counts nowhere", "\xC0\xB1", "\xD0\x90\xC2\xB1"},
        // CP866
        {"capital pe", "\x8F", "\xD0\x9F"},
        {"word", "\x92\xAE\xAA", "\xD0\xA2\xD0\xBE\xD0\xBA"},
        {"B0 alone is the shade character", "\xB0", "\xE2\x96\x91"},
        {"E0 counts for both and the tie goes to CP866", "\xE0", "\xD1\x80"},
        {"F2 too", "\xF2", "\xD0\x84"},
        {"over-long C0 80: a tie", "\xC0\x80", "\xE2\x94\x94\xD0\x90"},
        {"surrogate ED A0 80", "\xED\xA0\x80", "\xD1\x8D\xD0\xB0\xD0\x90"},
        // Mixtures
        {"two letters of UTF-8 against one of CP1251", "\xD0\x9F\xD0\x9F,\xCF", "\xD0\x9F\xD0\x9F,\xCF"},
        {"ten bytes: UTF-8 and CP1251 three each", "\x80\xF2\xD0\x90\xD0\x91\xD0\x92\xD0\xD0",
         "\x80\xF2\xD0\x90\xD0\x91\xD0\x92\xD0\xD0"},
        {"seven bytes: CP1251", "\xF2\xD0\x90\xD0\x91\xD0\xD0",
         "\xD1\x82\xD0\xA0\xD1\x92\xD0\xA0\xE2\x80\x98\xD0\xA0\xD0\xA0"},
        {"four bytes: CP866", "\x80\xF2\xD0\x90", "\xD0\x90\xD0\x84\xE2\x95\xA8\xD0\xA0"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(toUtf8::detectAndConvert(row.text), row.expected) << row.why;
}

TEST(DetectAndConvert, CallersTextStays) {
    const std::string text = "\xCF";
    toUtf8::detectAndConvert(text);
    EXPECT_EQ(text, "\xCF");
}
