#include "CfgSupport.h"
#include "encoding.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

using namespace OrvComtradeIntake;
using intakeTest::CfgLines;
using intakeTest::readCfg;

namespace {

struct ReadText {
    CfgText text;
    std::vector<Finding> findings;
    std::string codes;
};

ReadText readText(const std::string& bytes, const std::string& encoding = {}, std::uint64_t offset = 0,
                  std::size_t firstLine = 1) {
    Findings findings;
    ReadText read;
    read.text = readCfgText(bytes, "x.cfg", offset, firstLine, encoding, findings);
    read.findings = findings.take();
    for (const Finding& each : read.findings)
        read.codes += (read.codes.empty() ? "" : " ") + each.code + (each.mended ? "*" : "");
    return read;
}

std::string joined(const CfgText& text) {
    std::string all;
    for (const TextLine& line : text.lines)
        all += std::to_string(line.number) + '@' + std::to_string(line.offset) + '[' + line.text + ']';
    return all;
}

} // namespace

TEST(ReadCfgText, CutsLinesAndKeepsTheirPlaces) {
    const struct {
        const char* why;
        std::string bytes;
        const char* lines;
        const char* codes;
    } rows[] = {
        {"LF", "a\nb\n", "1@0[a]2@2[b]", ""},
        {"no line end at the end", "a\nb", "1@0[a]2@2[b]", ""},
        {"CR LF", "a\r\nb\r\n", "1@0[a]2@3[b]", "line-ends*"},
        {"CR LF, but for the last", "a\r\nb", "1@0[a]2@3[b]", "line-ends*"},
        {"CR only at the very end", "a\nb\r", "1@0[a]2@2[b]", "line-ends*"},
        {"CR CR LF", "a\r\r\nb\n", "1@0[a]2@4[b]", "line-ends*"},
        {"CR", "a\rb\r", "1@0[a]2@2[b]", "line-ends*"},
        {"CR within", "a\rb\nc\n", "1@0[a b]2@4[c]", "substitute-character*"},
        {"blank line within", "a\n\n \nb\n", "1@0[a]4@5[b]", "blank-line*"},
        {"blank lines at the end", "a\nb\n\n\n", "1@0[a]2@2[b]", "blank-line"},
        {"0x1A on its own line", "a\nb\n\x1A\x1A", "1@0[a]2@2[b]", "substitute-character"},
        {"0x1A behind the last line", "a\nb\x1A\x1A\n", "1@0[a]2@2[b  ]", "substitute-character"},
        {"0x1A behind another line", "a\x1A\nb\n", "1@0[a ]2@3[b]", "substitute-character*"},
        {"zero bytes within", std::string("a\0\0,b\nc\n", 8), "1@0[a  ,b]2@6[c]", "substitute-character*"},
        {"byte-order mark",
         "\xEF\xBB\xBF"
         "a\nb\n",
         "1@3[a]2@5[b]", "byte-order-mark*"},
        {"blanks are kept", " a \t\nb \n", "1@0[ a \t]2@5[b ]", ""},
        {"empty", "", "", ""},
        {"blank", " \r\n\x1A", "", "line-ends* substitute-character"},
    };
    for (const auto& row : rows) {
        const ReadText read = readText(row.bytes);
        EXPECT_EQ(joined(read.text), row.lines) << row.why;
        EXPECT_EQ(read.codes, row.codes) << row.why;
    }
}

TEST(ReadCfgText, TellsWhetherBlankLinesFollow) {
    EXPECT_FALSE(readText("a\nb\n").text.endsBlank);
    EXPECT_FALSE(readText("a\nb\x1A").text.endsBlank);
    EXPECT_TRUE(readText("a\nb\n\n").text.endsBlank);
    EXPECT_TRUE(readText("a\nb\n\x1A").text.endsBlank);
}

TEST(ReadCfgText, CountsFromTheSectionOfACombinedFile) {
    EXPECT_EQ(joined(readText("a\nb\n", {}, 100, 7).text), "7@100[a]8@102[b]");
}

TEST(ReadCfgText, ManyLineEndsAreOneFinding) {
    const ReadText read = readText("a\r\nb\r\nc\r\n");
    ASSERT_EQ(read.findings.size(), 1U);
    EXPECT_EQ(read.findings[0].places, 3U);
    EXPECT_EQ(read.findings[0].line, 1U);
}

TEST(ReadCfgText, KnowsTheEncodingOfTheWholeText) {
    // Names as a recorder would write them, and what they are in UTF-8.
    const struct {
        const char* why;
        std::string bytes;
        const char* encoding;
        const char* text;
    } rows[] = {
        {"ASCII", "Line 1,A\n", "ASCII", "Line 1,A"},
        {"UTF-8", "\xD0\x9F\xD1\x83\xD1\x81\xD0\xBA\n", "UTF-8", "\xD0\x9F\xD1\x83\xD1\x81\xD0\xBA"},
        {"CP1251, Pusk BCh perem.", "\xCF\xF3\xF1\xEA \xC2\xD7 \xEF\xE5\xF0\xE5\xEC.\n", "CP1251",
         "\xD0\x9F\xD1\x83\xD1\x81\xD0\xBA \xD0\x92\xD0\xA7 \xD0\xBF\xD0\xB5\xD1\x80\xD0\xB5\xD0\xBC."},
        {"CP866, Vkhod APV", "\x82\xE5\xAE\xA4 \x80\x8F\x82\n", "CP866",
         "\xD0\x92\xD1\x85\xD0\xBE\xD0\xB4 \xD0\x90\xD0\x9F\xD0\x92"},
        {"GBK, 220kV line", "220kV\xCF\xDF\xC2\xB7\n1,\xBF\xAA\xB9\xD8\xC1\xBF\n2,\xBF\xAA\xB9\xD8\xC1\xBF\n",
         "GB18030", "220kV\xE7\xBA\xBF\xE8\xB7\xAF"},
        {"Latin-1, Estacao de Medicao", "Esta\xE7\xE3o de Medi\xE7\xE3o,Oscil\xF3grafo\n", "ISO-8859-1",
         "Esta\xC3\xA7\xC3\xA3o de Medi\xC3\xA7\xC3\xA3o,Oscil\xC3\xB3grafo"},
        {"Latin-1, one word", "Subesta\xE7\xE3o Norte\n", nullptr, "Subesta\xC3\xA7\xC3\xA3o Norte"},
        {"Latin-1, umlauts",
         "\xDC"
         "berstrom Schutzger\xE4t\n",
         nullptr,
         "\xC3\x9C"
         "berstrom Schutzger\xC3\xA4t"},
        {"degree sign",
         "1,T,,,\xB0"
         "C\n",
         nullptr,
         "1,T,,,\xC2\xB0"
         "C"},
        {"micro sign",
         "1,I,,,\xB5"
         "A\n",
         nullptr,
         "1,I,,,\xC2\xB5"
         "A"},
        {"CP850, Schutzgeraet",
         "Schutzger\x84t \x81"
         "berstrom\n",
         "CP850",
         "Schutzger\xC3\xA4t \xC3\xBC"
         "berstrom"},
        {"UTF-8 with one name cut in a character",
         "\xD0\x9F\xD1\x83\xD1\x81\xD0\xBA,\xD0\x9F\xD1\x83\xD1\x81\xD0\xBA\xD0\n", "UTF-8",
         "\xD0\x9F\xD1\x83\xD1\x81\xD0\xBA,\xD0\x9F\xD1\x83\xD1\x81\xD0\xBA\xEF\xBF\xBD"},
    };
    for (const auto& row : rows) {
        const ReadText read = readText(row.bytes);
        if (row.encoding != nullptr) {
            EXPECT_EQ(read.text.encoding, row.encoding) << row.why;
        }
        ASSERT_FALSE(read.text.lines.empty()) << row.why;
        EXPECT_EQ(read.text.lines[0].text, row.text) << row.why;
    }
}

TEST(ReadCfgText, MendsOnlyWhereTheLibraryReadsOtherwise) {
    const std::string channel = "1,\xCF\xF3\xF1\xEA,,,0\n"; // CP1251, which the library converts in channel lines
    EXPECT_EQ(readText("S\n" + channel).codes, "encoding");
    EXPECT_EQ(readText(channel + channel).codes, "encoding* encoding");
}

TEST(ReadCfgText, TheCallersEncodingWins) {
    const std::string bytes = "S\n1,\xE0,,,0\n";
    EXPECT_EQ(readText(bytes, "CP1251").text.lines[1].text, "1,\xD0\xB0,,,0");
    EXPECT_EQ(readText(bytes, "CP866").text.lines[1].text, "1,\xD1\x80,,,0");
    EXPECT_EQ(readText(bytes, "ISO-8859-1").text.lines[1].text, "1,\xC3\xA0,,,0");
    EXPECT_EQ(readText(bytes, "KOI8-R").text.lines[1].text, "1,\xD0\xAE,,,0");
    EXPECT_EQ(readText(bytes, "KOI8-R").text.encoding, "KOI8-R");
}

TEST(ReadCfgText, WhatTheCallersEncodingDoesNotDefineIsReplaced) {
    const ReadText read = readText("S\n1,\xFF\xFF,,,0\n", "GB18030");
    EXPECT_EQ(read.text.lines[1].text, "1,\xEF\xBF\xBD\xEF\xBF\xBD,,,0");
    EXPECT_EQ(read.codes, "encoding*");
}

TEST(ReadCfgText, AnUnknownEncodingIsRefused) {
    for (const char* name : {"NO-SUCH-CODE", "UTF-8//TRANSLIT", "/"})
        EXPECT_THROW(readText("a\n", name), std::invalid_argument) << name;
}

TEST(ReadCfgText, ConvertedLinesKeepThePlacesOfTheirFields) {
    CfgLines lines;
    lines.analog = "1,\xCF\xF3\xF1\xEA,A,Bus,V,,0,0,-32767,32767,1,1,S";
    const auto read = readCfg(lines.text());
    const Finding* const finding = read.finding("field-empty", "a");
    ASSERT_NE(finding, nullptr);
    EXPECT_EQ(finding->line, 3U);
    EXPECT_EQ(finding->offset, lines.station.size() + 1 + lines.counts.size() + 1 + lines.analog.find(",,") + 1);
}
