#include "combinedFile.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace {

using OrvComtradeIntake::CombinedFile;
using OrvComtradeIntake::Finding;
using OrvComtradeIntake::Findings;
using OrvComtradeIntake::readCombinedFile;
using OrvComtradeIntake::Severity;

/// Writes a .cff, reads it, and keeps what was found.
struct Reading {
    explicit Reading(const std::string& bytes) : file(folder.write("a.cff", bytes)), all(bytes) {
        Findings told;
        combined = readCombinedFile(file, told);
        findings = told.take();
    }

    std::string data() const {
        return all.substr(static_cast<std::size_t>(combined->data->offset),
                          static_cast<std::size_t>(combined->data->length));
    }

    orvtest::TempDir folder;
    std::string file;
    std::string all;
    std::optional<CombinedFile> combined;
    std::vector<Finding> findings;
};

TEST(ReadCombinedFile, FindsConfigurationAndTextData) {
    const Reading reading("--- file type: CFG ---\nS,R,2013\n1,1A,0D\n--- file type: INF ---\nx\n"
                          "--- file type: HDR ---\n--- file type: DAT ASCII ---\n1,0,5\n2,1,6\n");
    ASSERT_TRUE(reading.combined);
    EXPECT_EQ(reading.combined->cfg, "S,R,2013\n1,1A,0D\n");
    EXPECT_EQ(reading.combined->cfgOffset, 23U);
    EXPECT_EQ(reading.combined->cfgLine, 2U);
    ASSERT_TRUE(reading.combined->data);
    EXPECT_EQ(reading.data(), "1,0,5\n2,1,6\n");
    EXPECT_EQ(reading.combined->data->file, reading.file);
    EXPECT_FALSE(reading.combined->data->wholeFile);
    EXPECT_FALSE(reading.combined->data->base64);
    ASSERT_EQ(reading.findings.size(), 1U);
    EXPECT_EQ(reading.findings[0].code, "cff");
    EXPECT_EQ(reading.findings[0].severity, Severity::Note);
    EXPECT_TRUE(reading.findings[0].mended);
}

TEST(ReadCombinedFile, TakesAByteOrderMarkAndCarriageReturns) {
    const Reading reading(
        "\xEF\xBB\xBF--- file type: CFG ---\r\nS,R,2013\r\n--- file type: DAT ASCII ---\r\n1,0,5\r\n");
    ASSERT_TRUE(reading.combined);
    EXPECT_EQ(reading.combined->cfg, "S,R,2013\r\n");
    EXPECT_EQ(reading.combined->cfgOffset, 27U);
    EXPECT_EQ(reading.combined->cfgLine, 2U);
    EXPECT_EQ(reading.data(), "1,0,5\r\n");
}

TEST(ReadCombinedFile, TakesCarriageReturnsAlone) {
    const Reading reading("--- file type: CFG ---\rS,R,2013\r--- file type: DAT ASCII ---\r1,0,5\r");
    ASSERT_TRUE(reading.combined);
    EXPECT_EQ(reading.combined->cfg, "S,R,2013\r");
    EXPECT_EQ(reading.data(), "1,0,5\r");
}

TEST(ReadCombinedFile, TakesSectionsInAnyOrder) {
    const Reading reading("--- file type: DAT BINARY: 5 ---\na\nb\rc\n--- file type: HDR ---\n"
                          "--- file type: CFG ---\nS,R,2013\n");
    ASSERT_TRUE(reading.combined);
    EXPECT_EQ(reading.combined->cfg, "S,R,2013\n");
    EXPECT_EQ(reading.data(), "a\nb\rc");
}

TEST(ReadCombinedFile, PassesOverDeclaredBytesWhateverTheyHold) {
    const std::string data = "\n--- file type: CFG ---\n\xFF"; // 25 bytes
    const Reading reading("--- file type: CFG ---\nS,R,2013\n--- file type: DAT FLOAT32: 25 ---\n" + data + "\r\n");
    ASSERT_TRUE(reading.combined);
    EXPECT_EQ(reading.combined->cfg, "S,R,2013\n");
    EXPECT_EQ(reading.data(), data);
}

TEST(ReadCombinedFile, TakesBinaryDataOfNoDeclaredLengthToTheEnd) {
    const Reading reading("--- file type: CFG ---\nS,R,2013\n--- file type: DAT BINARY ---\n\x01\x02\n\x03");
    ASSERT_TRUE(reading.combined);
    EXPECT_EQ(reading.data(), "\x01\x02\n\x03");
}

TEST(ReadCombinedFile, TellsDataThatAreShorterThanDeclared) {
    const Reading reading("--- file type: CFG ---\nS,R,2013\n--- file type: DAT BINARY: 100 ---\n\x01\x02\x03");
    ASSERT_TRUE(reading.combined);
    EXPECT_EQ(reading.combined->data->length, 3U);
    ASSERT_EQ(reading.findings.size(), 2U);
    EXPECT_EQ(reading.findings[1].code, "cff");
    EXPECT_EQ(reading.findings[1].severity, Severity::Warning);
    EXPECT_EQ(reading.findings[1].line, 3U);
    EXPECT_EQ(reading.findings[1].found, "3 bytes");
    EXPECT_EQ(reading.findings[1].expected, "100 bytes");
}

struct HeaderRow {
    const char* why;
    std::string header;
    bool base64;
};

TEST(ReadCombinedFile, TakesHeadersAsDevicesWriteThem) {
    const HeaderRow rows[] = {
        {"standard", "--- file type: DAT ASCII ---", false},
        {"lower case", "--- file type: dat ascii ---", false},
        {"upper case", "--- FILE TYPE: DAT ASCII ---", false},
        {"blanks", "---   file type :  DAT   ASCII  ---  ", false},
        {"no end", "--- file type: DAT ASCII", false},
        {"no format", "--- file type: DAT ---", false},
        {"base64", "--- file type: DAT BINARY base64 ---", true},
        {"base64 by its form", "--- file type: DAT BINARY ---", true},
        {"base64 with a length", "--- file type: DAT BINARY base64: 6 ---", true},
    };
    for (const HeaderRow& row : rows) {
        const Reading reading("--- file type: CFG ---\nS,R,2013\n" + row.header + "\n\"AQAA\"\n");
        ASSERT_TRUE(reading.combined) << row.why;
        EXPECT_EQ(reading.combined->cfg, "S,R,2013\n") << row.why;
        ASSERT_TRUE(reading.combined->data) << row.why;
        EXPECT_EQ(reading.data(), "\"AQAA\"\n") << row.why;
        EXPECT_EQ(reading.combined->data->base64, row.base64) << row.why;
    }
}

TEST(ReadCombinedFile, TakesBase64OfADeclaredLength) {
    const std::string text = "AQAAAAAAAAAKAAAA\r\nAgAAAOgDAAAUAAEA\r\n"; // two records of 12 bytes
    for (const char* const length : {"24", "36", "1000"}) {
        const Reading reading(std::string("--- file type: DAT BINARY: ") + length + " ---\r\n" + text +
                              "--- file type: CFG ---\r\nS,R,2013\r\n");
        ASSERT_TRUE(reading.combined) << length;
        EXPECT_EQ(reading.combined->cfg, "S,R,2013\r\n") << length;
        EXPECT_EQ(reading.data(), text) << length;
        EXPECT_TRUE(reading.combined->data->base64) << length;
        EXPECT_EQ(reading.combined->dataFormat, "BINARY") << length;
        ASSERT_EQ(reading.findings.size(), 2U) << length;
        EXPECT_EQ(reading.findings[1].code, "base64") << length;
    }
}

TEST(ReadCombinedFile, HasNoDataWhereThereIsNoSuchSection) {
    const Reading reading("--- file type: CFG ---\nS,R,2013\n");
    ASSERT_TRUE(reading.combined);
    EXPECT_FALSE(reading.combined->data);
}

TEST(ReadCombinedFile, IsAnErrorWithoutAConfiguration) {
    const Reading reading("--- file type: DAT ASCII ---\n1,0,5\n");
    EXPECT_FALSE(reading.combined);
    ASSERT_EQ(reading.findings.size(), 1U);
    EXPECT_EQ(reading.findings[0].code, "no-cfg");
    EXPECT_EQ(reading.findings[0].severity, Severity::Error);
}

TEST(ReadCombinedFile, IsAnErrorForAFileThatIsNotThere) {
    Findings findings;
    EXPECT_FALSE(readCombinedFile("/nowhere/a.cff", findings));
    EXPECT_TRUE(findings.anyError());
}

TEST(ReadCombinedFile, TakesLinesAcrossBlocksAndLongerThanAny) {
    const std::string filler(200000, 'x');
    const Reading reading("--- file type: INF ---\n" + filler + "\n--- file type: CFG ---\nS,R,2013\n" +
                          "--- file type: DAT ASCII ---\n1,0,5\n");
    ASSERT_TRUE(reading.combined);
    EXPECT_EQ(reading.combined->cfg, "S,R,2013\n");
    EXPECT_EQ(reading.combined->cfgLine, 4U);
    EXPECT_EQ(reading.data(), "1,0,5\n");
}

} // namespace
