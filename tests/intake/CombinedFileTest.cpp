#include "files/combinedFile.h"

#include "files/TextLines.h"
#include "files/sectionHeading.h"
#include "support/TempDir.h"
#include "support/utf16.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

using OrvComtradeIntake::ByteSource;
using OrvComtradeIntake::CombinedFile;
using OrvComtradeIntake::Finding;
using OrvComtradeIntake::Findings;
using OrvComtradeIntake::isCombinedFile;
using OrvComtradeIntake::readCombinedFile;
using OrvComtradeIntake::SectionHeading;
using OrvComtradeIntake::sectionHeading;
using OrvComtradeIntake::Severity;
using OrvComtradeIntake::TextLines;
using orvtest::utf16;

/// Reads bytes as a .cff, and keeps what was found.
struct Reading {
    explicit Reading(const std::string& bytes) : all(bytes) {
        Findings collected;
        combined = readCombinedFile(ByteSource::ofMemory(all, "a.cff"), collected);
        findings = collected.take();
    }
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;

    std::string cfg() const { return combined ? combined->cfg.all() : "none"; }
    std::string data() const { return combined && combined->data ? combined->data->all() : "none"; }

    /// "code: found" of each finding.
    std::vector<std::string> texts() const {
        std::vector<std::string> texts;
        for (const Finding& finding : findings) {
            texts.push_back(finding.code + ": " + finding.found);
        }
        return texts;
    }

    std::string all;
    std::optional<CombinedFile> combined;
    std::vector<Finding> findings;
};

using Texts = std::vector<std::string>;

const std::string kCfg = "--- file type: CFG ---\nS,R,2013\n";

TEST(ReadCombinedFile, FindsConfigurationAndTextData) {
    const Reading reading("--- file type: CFG ---\nS,R,2013\n1,1A,0D\n--- file type: INF ---\nx\n"
                          "--- file type: HDR ---\n--- file type: DAT ASCII ---\n1,0,5\n2,1,6\n");
    ASSERT_TRUE(reading.combined);
    EXPECT_EQ(reading.cfg(), "S,R,2013\n1,1A,0D\n");
    EXPECT_EQ(reading.combined->cfg.offsetInFile(0), 23U);
    EXPECT_EQ(reading.combined->cfg.name(), "a.cff");
    EXPECT_EQ(reading.combined->cfg.lineInFile(1), 2U);
    EXPECT_EQ(reading.data(), "1,0,5\n2,1,6\n");
    EXPECT_EQ(reading.combined->data->name(), "a.cff");
    EXPECT_EQ(reading.combined->data->pathOfWholeFile(), "");
    EXPECT_EQ(reading.combined->dataFormat, "ASCII");
    EXPECT_EQ(reading.combined->inf.all(), "x\n");
    EXPECT_EQ(reading.combined->hdr.all(), "");
    EXPECT_EQ(reading.texts(), Texts{});
}

TEST(ReadCombinedFile, TakesAByteOrderMarkAndCarriageReturns) {
    const Reading reading(
        "\xEF\xBB\xBF--- file type: CFG ---\r\nS,R,2013\r\n--- file type: DAT ASCII ---\r\n1,0,5\r\n");
    ASSERT_TRUE(reading.combined);
    EXPECT_EQ(reading.cfg(), "S,R,2013\r\n");
    EXPECT_EQ(reading.combined->cfg.offsetInFile(0), 27U);
    EXPECT_EQ(reading.combined->cfg.lineInFile(1), 2U);
    EXPECT_EQ(reading.data(), "1,0,5\r\n");
}

TEST(ReadCombinedFile, TakesCarriageReturnsAlone) {
    const Reading reading("--- file type: CFG ---\rS,R,2013\r--- file type: DAT ASCII ---\r1,0,5\r");
    EXPECT_EQ(reading.cfg(), "S,R,2013\r");
    EXPECT_EQ(reading.data(), "1,0,5\r");
}

TEST(ReadCombinedFile, TakesSectionsInAnyOrder) {
    const Reading reading("--- file type: DAT BINARY: 5 ---\na\nb\rc\n--- file type: HDR ---\n" + kCfg);
    EXPECT_EQ(reading.cfg(), "S,R,2013\n");
    EXPECT_EQ(reading.data(), "a\nb\rc");
    EXPECT_EQ(reading.texts(), Texts{});
}

TEST(ReadCombinedFile, TakesTheFirstSectionOfEachKindAndReportsOthers) {
    const Reading reading(kCfg + "--- file type: DAT ASCII ---\n1,0,5\n--- file type: DAT ASCII ---\n2,1,6\n" +
                          "--- file type: XYZ ---\nz\n--- file type: XYZ ---\n");
    EXPECT_EQ(reading.data(), "1,0,5\n");
    EXPECT_EQ(reading.texts(), Texts{"section-heading: --- file type: DAT ASCII ---"});
    EXPECT_EQ(reading.findings.at(0).place.line, 5U);
    EXPECT_EQ(reading.findings.at(0).expected, "one section of each kind");
}

// Byte counts

TEST(ReadCombinedFile, TakesBinaryDataOfNoDeclaredLengthToTheEnd) {
    const Reading reading(kCfg + "--- file type: DAT BINARY ---\n\x01\x02\n\x03");
    EXPECT_EQ(reading.data(), "\x01\x02\n\x03");
    EXPECT_EQ(reading.texts(), Texts{});
}

struct CountRow {
    const char* why;
    std::string count;  ///< in the heading
    std::string behind; ///< what follows the heading
    std::string data;
    std::string cfg;
    Texts texts;
};

TEST(ReadCombinedFile, FollowsAByteCountWhereASectionEndsThere) {
    const std::string looksLikeOne = "\n--- file type: INF ---\n\xFF"; // 25 bytes
    const CountRow rows[] = {
        // Right
        {"bytes that look like a heading", "25", looksLikeOne + "\r\n" + kCfg, looksLikeOne, "S,R,2013\n", {}},
        {"the heading right behind", "3", "\x01\x02\x03" + kCfg, "\x01\x02\x03", "S,R,2013\n", {}},
        {"line ends and blanks between", "3", "\x01\x02\x03 \r\n\t\n\x1A\n" + kCfg, "\x01\x02\x03", "S,R,2013\n", {}},
        {"no data", "0", kCfg, "", "S,R,2013\n", {}},
        {"a heading with a wrong end",
         "3",
         "\x01\x02\x03\n--- file type: CFG\nS,R,2013\n",
         "\x01\x02\x03",
         "S,R,2013\n",
         {"section-heading: --- file type: CFG"}},
        // Wrong
        {"one too small", "2", "\x01\x02\x03\n" + kCfg, "\x01\x02\x03\n", "S,R,2013\n", {"section-length: 4 bytes"}},
        {"one too large", "5", "\x01\x02\x03\n" + kCfg, "\x01\x02\x03\n", "S,R,2013\n", {"section-length: 4 bytes"}},
        {"up to a dash of the heading",
         "6",
         "\x01\x02\x03\n" + kCfg,
         "\x01\x02\x03\n",
         "S,R,2013\n",
         {"section-length: 4 bytes"}},
        {"up to the words of the heading",
         "8",
         "\x01\x02\x03\n" + kCfg,
         "\x01\x02\x03\n",
         "S,R,2013\n",
         {"section-length: 4 bytes"}},
        {"too large by the next section",
         "20",
         "\x01\x02\x03\n" + kCfg,
         "\x01\x02\x03\n",
         "S,R,2013\n",
         {"section-length: 4 bytes"}},
        {"larger than the file",
         "100",
         "\x01\x02\x03\n" + kCfg,
         "\x01\x02\x03\n",
         "S,R,2013\n",
         {"section-length: 4 bytes"}},
        {"up to the largest offset",
         "18446744073709551615",
         "\x01\n" + kCfg,
         "\x01\n",
         "S,R,2013\n",
         {"section-length: 2 bytes"}},
        {"so large that a sum of 64 bits would lead to the first heading again",
         "18446744073709551564",
         "\x01\n" + kCfg,
         "\x01\n",
         "S,R,2013\n",
         {"section-length: 2 bytes"}},
        {"larger than any number",
         "99999999999999999999999",
         "\x01\n" + kCfg,
         "\x01\n",
         "S,R,2013\n",
         {"section-length: 2 bytes"}},
    };
    for (const CountRow& row : rows) {
        const Reading reading("--- file type: DAT BINARY: " + row.count + " ---\n" + row.behind);
        EXPECT_EQ(reading.data(), row.data) << row.why;
        EXPECT_EQ(reading.cfg(), row.cfg) << row.why;
        EXPECT_EQ(reading.texts(), row.texts) << row.why;
    }
}

TEST(ReadCombinedFile, FollowsAByteCountToTheEndOfTheFile) {
    const CountRow rows[] = {
        {"all of it", "3", "\x01\x02\x03", "\x01\x02\x03", "", {}},
        {"what looks like a heading too",
         "26",
         "--- file type: INF ---\n\x01\n\xFF",
         "--- file type: INF ---\n\x01\n\xFF",
         "",
         {}},
        {"a line end behind", "3", "\x01\x02\x03\r\n", "\x01\x02\x03", "", {}},
        {"an end mark, often", "3", "\x01\x02\x03" + std::string(500, '\x1A'), "\x01\x02\x03", "", {}},
        {"bytes behind it", "3", "\x01\x02\x03\x04\x05", "\x01\x02\x03\x04\x05", "", {"section-length: 5 bytes"}},
        {"one byte short", "4", "\x01\x02\x03", "\x01\x02\x03", "", {"section-length: 3 bytes"}},
        {"cut", "100", "\x01\x02\x03", "\x01\x02\x03", "", {"section-length: 3 bytes"}},
    };
    for (const CountRow& row : rows) {
        const Reading reading(kCfg + "--- file type: DAT FLOAT32: " + row.count + " ---\n" + row.behind);
        EXPECT_EQ(reading.data(), row.data) << row.why;
        EXPECT_EQ(reading.texts(), row.texts) << row.why;
    }
}

TEST(ReadCombinedFile, ReportsWhereAWrongByteCountStands) {
    const Reading reading(kCfg + "--- file type: DAT BINARY: 100 ---\n\x01\x02\x03");
    ASSERT_EQ(reading.findings.size(), 1U);
    const Finding& finding = reading.findings[0];
    EXPECT_EQ(finding.code, "section-length");
    EXPECT_EQ(finding.severity, Severity::Warning);
    EXPECT_EQ(finding.place.file, "a.cff");
    EXPECT_EQ(finding.place.line, 3U);
    EXPECT_EQ(finding.place.field, "DAT");
    EXPECT_EQ(finding.place.offset, 32U);
    EXPECT_EQ(finding.expected, "100 bytes as declared by the heading");
    EXPECT_EQ(finding.repair, "all of them are read");
}

TEST(ReadCombinedFile, CountsNoBytesOfText) {
    const Reading reading(kCfg + "--- file type: DAT ASCII: 3 ---\n1,0,5\n2,1,6\n");
    EXPECT_EQ(reading.data(), "1,0,5\n2,1,6\n");
    EXPECT_EQ(reading.texts(), Texts{});
}

// Headings

struct HeadingRow {
    const char* why;
    std::string line;
    std::string kind; ///< empty: no heading
    std::string format = {};
    std::optional<std::uint64_t> count = {};
    bool isRight = true;
};

TEST(SectionHeading, IsTakenAsDevicesWriteIt) {
    const HeadingRow rows[] = {
        {"standard", "--- file type: DAT ASCII ---", "DAT", "ASCII"},
        {"lower case", "--- file type: dat ascii ---", "DAT", "ASCII"},
        {"upper case", "--- FILE TYPE: DAT ASCII ---", "DAT", "ASCII"},
        {"blanks", "---   file type :  DAT   ASCII  ---  ", "DAT", "ASCII"},
        {"no blanks", "---file type:CFG---", "CFG"},
        {"blanks before it, a tab and a carriage return", " \t--- file type: CFG ---\t\r", "CFG"},
        {"a byte-order mark", "\xEF\xBB\xBF--- file type: CFG ---", "CFG"},
        {"two of them", "\xEF\xBB\xBF \xEF\xBB\xBF--- file type: CFG ---", "CFG"},
        {"no format", "--- file type: DAT ---", "DAT"},
        {"a byte count", "--- file type: DAT BINARY: 4214 ---", "DAT", "BINARY", 4214},
        {"a byte count without blanks", "--- file type:DAT BINARY32:4214---", "DAT", "BINARY32", 4214},
        {"a byte count with a word", "--- file type: DAT BINARY: 4214 bytes ---", "DAT", "BINARY", 4214},
        {"a byte count alone", "--- file type: DAT: 4214 ---", "DAT", "", 4214},
        {"a type in two words", "--- file type: DAT BINARY 32: 4214 ---", "DAT", "BINARY 32", 4214},
        {"a byte count larger than any number", "--- file type: DAT BINARY: 18446744073709551616 ---", "DAT", "BINARY",
         UINT64_MAX},
        {"a byte count that is none", "--- file type: DAT BINARY: many ---", "DAT", "BINARY"},
        {"base64", "--- file type: DAT BINARY base64 ---", "DAT", "BINARY BASE64"},
        {"another section", "--- file type: XYZ ---", "XYZ"},
        {"as long as any", "--- file type: DAT " + std::string(177, 'x') + " ---", "DAT", std::string(177, 'X')},
        // With other dashes
        {"none at the end", "--- file type: DAT ASCII", "DAT", "ASCII", {}, false},
        {"none at the front", "file type: DAT ASCII ---", "DAT", "ASCII", {}, false},
        {"two", "-- file type: DAT BINARY: 12 --", "DAT", "BINARY", 12, false},
        {"five at the end", "--- file type: INF -----", "INF", "", {}, false},
        {"many", "---------- file type: HDR ----------", "HDR", "", {}, false},
        // None
        {"no dashes", "file type: DAT ASCII", ""},
        {"another section with other dashes", "-- file type: XYZ --", ""},
        {"another section without a colon", "--- file type of this ---", ""},
        {"no section", "--- file type: ---", ""},
        {"another word", "--- filter type: CFG ---", ""},
        {"a longer word", "--- file type: CFGX DAT --", ""},
        {"a station of this name", "--- file type: CFG ---,R,2013", ""},
        {"a station of this name, by its last field too", "--- file type: CFG ---,R ---", ""},
        {"longer than any", "--- file type: DAT " + std::string(178, 'x') + " ---", ""},
        {"a line of data", "-1,0,5", ""},
        {"dashes", "------", ""},
        {"nothing", "", ""},
    };
    for (const HeadingRow& row : rows) {
        const std::optional<SectionHeading> heading = sectionHeading(row.line);
        ASSERT_EQ(heading.has_value(), !row.kind.empty()) << row.why;
        if (heading) {
            EXPECT_EQ(heading->kind, row.kind) << row.why;
            EXPECT_EQ(heading->format, row.format) << row.why;
            EXPECT_EQ(heading->byteCount, row.count) << row.why;
            EXPECT_EQ(heading->isRight, row.isRight) << row.why;
        }
    }
}

TEST(ReadCombinedFile, ReportsHeadingsWithOtherDashes) {
    const Reading reading(kCfg + "-- file type: HDR --\nh\n----- file type: DAT ASCII\n1,0,5\n");
    EXPECT_EQ(reading.cfg(), "S,R,2013\n");
    EXPECT_EQ(reading.combined->hdr.all(), "h\n");
    EXPECT_EQ(reading.data(), "1,0,5\n");
    EXPECT_EQ(reading.texts(), (Texts{"section-heading: -- file type: HDR --", //
                                      "section-heading: ----- file type: DAT ASCII"}));
    EXPECT_EQ(reading.findings.at(1).severity, Severity::Warning);
    EXPECT_EQ(reading.findings.at(1).place.line, 5U);
    EXPECT_EQ(reading.findings.at(1).place.offset, 55U);
    EXPECT_EQ(reading.findings.at(1).repair, "read as the heading of a section");
}

// Base64

TEST(ReadCombinedFile, DecodesBase64) {
    const std::string text = "AQAAAAAAAAAKAAAA\r\nAgAAAOgDAAAUAAEA\r\n"; // two records of 12 bytes
    const std::string records("\1\0\0\0\0\0\0\0\12\0\0\0\2\0\0\0\xE8\3\0\0\24\0\1\0", 24);
    for (const char* const format :
         {"BINARY base64", "BINARY base64: 6", "BINARY", "BINARY: 24", "BINARY: 36", "BINARY: 1000"}) {
        const Reading reading(std::string("--- file type: DAT ") + format + " ---\r\n" + text + kCfg);
        EXPECT_EQ(reading.cfg(), "S,R,2013\n") << format;
        EXPECT_TRUE(reading.data() == records) << format;
        EXPECT_EQ(reading.combined->dataFormat, "BINARY") << format;
        EXPECT_EQ(reading.texts(), Texts{"base64: base64 text"}) << format;
        EXPECT_EQ(reading.findings.at(0).place.line, 1U) << format;
        EXPECT_EQ(reading.combined->data->offsetInFile(23), reading.all.find("AQAA")) << format;
    }
}

TEST(ReadCombinedFile, KnowsBase64ByItsForm) {
    const struct {
        const char* why;
        std::string format;
        std::string data;
        std::string expected;
    } rows[] = {
        {"quotation marks", "BINARY", "\"AQAA\"\n", std::string("\1\0\0", 3)},
        {"letters alone, as long as a record", "BINARY: 10", "AAAABBBBCC", std::string("\0\0\0\4\x10\x41\x08", 7)},
        {"shorter than any record", "BINARY: 9", "AAAABBBBC", "AAAABBBBC"},
        {"nothing", "BINARY", "\r\n", "\r\n"},
        {"text", "ASCII", "12345678\n", "12345678\n"},
        {"no format", "", "12345678\n", "12345678\n"},
        {"a byte that is not of it, late", "BINARY", std::string(4095, 'A') + '\x01', std::string(4095, 'A') + '\x01'},
    };
    for (const auto& row : rows) {
        const Reading reading(kCfg + "--- file type: DAT " + row.format + " ---\n" + row.data);
        EXPECT_TRUE(reading.data() == row.expected) << row.why;
    }
}

// UTF-16

TEST(ReadCombinedFile, ReadsTextsInUtf16) {
    const std::u16string text = u"--- file type: CFG ---\r\n\u7535,R,2013\r\n--- file type: HDR ---\r\n\u7535\r\n"
                                u"--- file type: INF ---\r\n--- file type: DAT ASCII ---\r\n1,0,5\r\n2,1,6\r\n";
    for (const bool isLittle : {true, false}) {
        const std::string mark = isLittle ? "\xFF\xFE" : "\xFE\xFF";
        for (const std::string& before : {std::string(), mark, mark + mark}) {
            const Reading reading(before + utf16(text, isLittle));
            ASSERT_TRUE(reading.combined) << before.size();
            EXPECT_TRUE(isCombinedFile(ByteSource::ofMemory(reading.all, "a")));
            EXPECT_EQ(reading.texts(), Texts{});
            EXPECT_EQ(reading.cfg(), mark + utf16(u"\u7535,R,2013\r\n", isLittle));
            EXPECT_EQ(reading.combined->cfg.offsetInFile(2), before.size() + 48);
            EXPECT_EQ(reading.combined->cfg.lineInFile(1), 2U);
            EXPECT_EQ(reading.combined->hdr.all(), mark + utf16(u"\u7535\r\n", isLittle));
            EXPECT_EQ(reading.combined->inf.all(), "");
            EXPECT_EQ(reading.data(), "1,0,5\r\n2,1,6\r\n");
            EXPECT_EQ(reading.combined->data->offsetInFile(7), reading.all.size() - 14);
            EXPECT_EQ(reading.combined->data->lineInFile(2), 8U);
        }
    }
}

TEST(ReadCombinedFile, DecodesBase64InUtf16) {
    const Reading reading(utf16(kCfg + "--- file type: DAT BINARY base64 ---\nAQAA\n", true));
    EXPECT_EQ(reading.data(), std::string("\1\0\0", 3));
    EXPECT_EQ(reading.texts(), Texts{"base64: base64 text"});
}

TEST(ReadCombinedFile, RefusesBinaryDataInUtf16) {
    const Reading reading(utf16(kCfg + "--- file type: DAT BINARY: 6 ---\n", true) + "\1\2\3\4\5\6");
    ASSERT_TRUE(reading.combined);
    EXPECT_FALSE(reading.combined->data);
    EXPECT_EQ(reading.texts(), Texts{"no-samples: binary data in a file in UTF-16"});
    EXPECT_EQ(reading.findings.at(0).severity, Severity::Error);
    EXPECT_EQ(reading.findings.at(0).place.line, 3U);
    EXPECT_EQ(reading.findings.at(0).place.offset, 64U);
}

TEST(ReadCombinedFile, ShowsACutInACharacterOfUtf16) {
    const std::string all = utf16(kCfg + "--- file type: DAT ASCII ---\n1,0,57", false);
    EXPECT_EQ(Reading(all.substr(0, all.size() - 1)).data(), "1,0,5?");
    EXPECT_EQ(Reading(utf16(kCfg + "--- file type: DAT ASCII ---\n", false) + utf16(u"1,0,\u7535", false)).data(),
              "1,0,?");
}

TEST(ReadCombinedFile, TakesNoZeroBytesOfDataForUtf16) {
    const Reading reading("--- file type: DAT BINARY: 12 ---\n" + std::string("\1\0\2\0\3\0\4\0\5\0\6\0", 12) + kCfg);
    EXPECT_EQ(reading.cfg(), "S,R,2013\n");
    EXPECT_EQ(reading.texts(), Texts{});
}

// What is missing

TEST(ReadCombinedFile, HasNoDataWhereThereIsNoSuchSection) {
    const Reading reading(kCfg);
    ASSERT_TRUE(reading.combined);
    EXPECT_FALSE(reading.combined->data);
    EXPECT_EQ(reading.texts(), Texts{});
}

TEST(ReadCombinedFile, IsAnErrorWithoutAConfiguration) {
    EXPECT_EQ(Reading("--- file type: HDR ---\n--- file type: DAT ASCII ---\n1,0,5\n").texts(),
              Texts{"no-cfg: only HDR, DAT"});
    const Reading reading("S,R,2013\n");
    EXPECT_FALSE(reading.combined);
    EXPECT_EQ(reading.texts(), Texts{"no-cfg: no heading of a section"});
    EXPECT_EQ(reading.findings.at(0).severity, Severity::Error);
}

TEST(ReadCombinedFile, TakesLinesAcrossBlocksAndLongerThanAny) {
    for (std::size_t length = 65400; length < 65540; ++length) { // headings on both sides of the end of a block
        const Reading reading("--- file type: INF ---\r\n" + std::string(length, 'x') + "\r\n" + kCfg +
                              "--- file type: DAT ASCII ---\r\n1,0,5\r\n");
        ASSERT_EQ(reading.cfg(), "S,R,2013\n") << length;
        ASSERT_EQ(reading.combined->cfg.lineInFile(1), 4U) << length;
        ASSERT_EQ(reading.data(), "1,0,5\r\n") << length;
    }
}

TEST(ReadCombinedFile, GivesTheSameForAFileAsForItsBytes) {
    const std::string bytes = kCfg + "--- file type: DAT BINARY: 6 ---\n\x01\x02\x03\x04\x05\x06\n";
    const orvtest::TempDir folder;
    Findings findings;
    const std::optional<CombinedFile> file = readCombinedFile(ByteSource::ofFile(folder.write("a", bytes)), findings);
    const Reading reading(bytes);
    ASSERT_TRUE(file && file->data);
    EXPECT_EQ(file->cfg.all(), reading.cfg());
    EXPECT_EQ(file->data->all(), reading.data());
    EXPECT_EQ(file->data->offsetInFile(0), reading.combined->data->offsetInFile(0));
}

TEST(ReadCombinedFile, TakesEveryPrefixOfOneForARecordingOrAnError) {
    const std::string all = "\xEF\xBB\xBF--- file type: CFG ---\r\nS,R,2013\r\n--- file type: HDR ---\r\nh\r\n"
                            "--- file type: DAT BINARY: 12 ---\r\n\1\2\3\4\5\6\7\x8\x9\xA\xB\xC\r\n"
                            "--- file type: INF ---\r\ni\r\n";
    for (std::size_t length = 0; length <= all.size(); ++length) {
        const Reading reading(all.substr(0, length));
        ASSERT_EQ(reading.combined.has_value(), length >= 21) << length; // up to "CFG"
        EXPECT_EQ(!reading.combined, reading.texts() == Texts{"no-cfg: no heading of a section"}) << length;
        const bool isWhole = reading.data() == "none" || reading.data() == "\1\2\3\4\5\6\7\x8\x9\xA\xB\xC";
        EXPECT_TRUE(isWhole || !reading.findings.empty()) << length;
    }
}

TEST(IsCombinedFile, LooksAtTheFirstLineThatIsNotBlank) {
    EXPECT_TRUE(isCombinedFile(ByteSource::ofMemory("\xEF\xBB\xBF--- file type: CFG ---\r\n", "a")));
    EXPECT_TRUE(isCombinedFile(ByteSource::ofMemory("\n \r\n--- FILE TYPE: DAT ASCII ---", "a")));
    EXPECT_FALSE(isCombinedFile(ByteSource::ofMemory("S,R,2013\n--- file type: CFG ---\r\n", "a")));
    EXPECT_FALSE(isCombinedFile(ByteSource::ofMemory("", "a")));
}

// Lines

std::vector<std::string> linesOf(const std::string& bytes) {
    TextLines lines(ByteSource::ofMemory(bytes, "a"));
    std::vector<std::string> texts;
    while (const std::optional<TextLines::Line> line = lines.next()) {
        texts.emplace_back(line->text);
        EXPECT_EQ(bytes.compare(line->begin, line->text.size(), line->text), 0);
    }
    return texts;
}

TEST(TextLines, EndAsThoseOfAConfigurationAndOfData) {
    EXPECT_EQ(linesOf("a\nb\r\nc\rd\n\ne\r\r\n\rf"), (Texts{"a", "b", "c", "d", "", "e", "", "f"}));
    EXPECT_EQ(linesOf("a\r\rb\r\r\r\nc\r\r"), (Texts{"a", "", "b", "", "c", ""})); // one CR more is a line of its own
    EXPECT_EQ(linesOf(""), Texts{});
    EXPECT_EQ(linesOf("\n"), Texts{""});
}

TEST(TextLines, HaveNoTextWhereTheyAreLong) {
    EXPECT_EQ(linesOf(std::string(255, 'x') + "\n" + std::string(256, 'y') + "\nz"),
              (Texts{std::string(255, 'x'), "", "z"}));
}

TEST(TextLines, EndWhereABlockBegins) {
    EXPECT_EQ(linesOf("\ra\rb"), (Texts{"", "a", "b"}));
    EXPECT_EQ(linesOf("\na\nb"), (Texts{"", "a", "b"}));
    EXPECT_EQ(linesOf(std::string(65536, 'x') + "\ry"), (Texts{"", "y"}));
    EXPECT_EQ(linesOf(std::string(65536, 'x') + "\ny"), (Texts{"", "y"}));
}

TEST(TextLines, EndWithBothCharactersAtTheEndOfABlock) {
    const std::size_t block = 65536;
    EXPECT_EQ(linesOf(std::string(block - 1, 'x') + "\r\nz"), (Texts{"", "z"}));
    EXPECT_EQ(linesOf(std::string(block - 1, 'x') + "\rz"), (Texts{"", "z"}));
    EXPECT_EQ(linesOf(std::string(block, 'x') + "\r\nz"), (Texts{"", "z"}));
    EXPECT_EQ(linesOf(std::string(block - 1, 'x') + "\r"), Texts{""});
    EXPECT_EQ(linesOf(std::string(block - 1, 'x') + "\r\r\nz"), (Texts{"", "z"}));
    EXPECT_EQ(linesOf(std::string(block - 2, 'x') + "\r\r\nz"), (Texts{"", "z"}));
}

TEST(TextLinesNext, EndsLinesAtEveryLineEndWhereverABlockEnds) {
    for (const std::size_t before : {0U, 65529U, 65530U, 65531U, 65532U, 65533U, 65534U}) {
        const std::string text = std::string(before, ' ') + "a\r\nb\rc\nd\r\r\ne\r\rf";
        TextLines lines(ByteSource::ofMemory(text, "a.cff"));
        std::string found;
        while (const std::optional<TextLines::Line> line = lines.next()) {
            const std::string_view shown =
                line->text.substr(std::min(line->text.size(), line->text.find_first_not_of(' ')));
            found.append(shown).append(std::to_string(line->next - before)).append(" ");
        }
        EXPECT_EQ(found, before < TextLines::kLong ? "a3 b5 c7 d11 e13 14 f15 " : "3 b5 c7 d11 e13 14 f15 ") << before;
    }
}

} // namespace
