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

struct EncodedRow {
    const char* why;
    std::string bytes;
    const char* encoding; ///< nothing where several give the same text
    const char* text;
};

template <std::size_t Count> void expectTexts(const EncodedRow (&rows)[Count]) {
    for (const EncodedRow& row : rows) {
        const ReadText read = readText(row.bytes);
        if (row.encoding != nullptr) {
            EXPECT_EQ(read.text.encoding, row.encoding) << row.why;
        }
        ASSERT_FALSE(read.text.lines.empty()) << row.why;
        EXPECT_EQ(read.text.lines[0].text, row.text) << row.why;
    }
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
    const EncodedRow rows[] = {
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
    expectTexts(rows);
}

TEST(ReadCfgText, TellsAccentsInNamesFromRussianAndCodePagesByWhatMakesWords) {
    const EncodedRow rows[] = {
        {"German",
         "Leistungsschalter ge\xF6"
         "ffnet\n",
         "WINDOWS-1252",
         "Leistungsschalter ge\xC3\xB6"
         "ffnet"},
        {"German, sharp s", "Ma\xDFstab\n", "WINDOWS-1252", "Ma\xC3\x9Fstab"},
        {"German, capitals", "\xDC> L1,\xDC>> L2,AUSL\xD6SUNG,GER\xC4T\n", "WINDOWS-1252",
         "\xC3\x9C> L1,\xC3\x9C>> L2,AUSL\xC3\x96SUNG,GER\xC3\x84T"},
        {"German beside a degree sign",
         "\xDC"
         "berstrom,Temp.,\xB0"
         "C\n",
         nullptr,
         "\xC3\x9C"
         "berstrom,Temp.,\xC2\xB0"
         "C"},
        {"German, code page of DOS",
         "\x9A"
         "berstrom L1,Ausl\x94sung,St\x94rung\n",
         "CP850",
         "\xC3\x9C"
         "berstrom L1,Ausl\xC3\xB6sung,St\xC3\xB6rung"},
        {"French",
         "D\xE9"
         "faut \xE0 la terre,D\xE9"
         "clenchement g\xE9n\xE9ral\n",
         nullptr,
         "D\xC3\xA9"
         "faut \xC3\xA0 la terre,D\xC3\xA9"
         "clenchement g\xC3\xA9n\xC3\xA9ral"},
        {"French, capitals",
         "D\xC9"
         "FAUT,D\xC9"
         "CLENCHEMENT G\xC9N\xC9RAL\n",
         nullptr,
         "D\xC3\x89"
         "FAUT,D\xC3\x89"
         "CLENCHEMENT G\xC3\x89N\xC3\x89RAL"},
        {"Spanish", "Subestaci\xF3n,L\xEDnea 1,Tensi\xF3n\n", nullptr,
         "Subestaci\xC3\xB3n,L\xC3\xADnea 1,Tensi\xC3\xB3n"},
        {"Portuguese", "Subesta\xE7\xE3o Norte,Disjuntor n\xE3o pronto\n", nullptr,
         "Subesta\xC3\xA7\xC3\xA3o Norte,Disjuntor n\xC3\xA3o pronto"},
        {"Portuguese, code page of DOS", "Subesta\x87\xC6o,Tens\xC6o\n", "CP850",
         "Subesta\xC3\xA7\xC3\xA3o,Tens\xC3\xA3o"},
        {"Polish",
         "Wy\xB3\xB9"
         "cznik,Za\xB3\xB9"
         "czony\n",
         nullptr,
         "Wy\xC5\x82\xC4\x85"
         "cznik,Za\xC5\x82\xC4\x85"
         "czony"},
        {"Polish, capitals",
         "ZA\xA3\xA5"
         "CZONY,WY\xA3\xA5"
         "CZNIK,PR\xA5"
         "D\n",
         "WINDOWS-1250",
         "ZA\xC5\x81\xC4\x84"
         "CZONY,WY\xC5\x81\xC4\x84"
         "CZNIK,PR\xC4\x84"
         "D"},
        {"Polish, one word in capitals",
         "ZA\xA3\xA5"
         "CZONY\n",
         "WINDOWS-1250",
         "ZA\xC5\x81\xC4\x84"
         "CZONY"},
        {"Polish, code page of DOS",
         "Wy\x88\xA5"
         "cznik,Pr\xA5"
         "d,Napi\xA9"
         "cie\n",
         "CP852",
         "Wy\xC5\x82\xC4\x85"
         "cznik,Pr\xC4\x85"
         "d,Napi\xC4\x99"
         "cie"},
        {"Czech",
         "Rozvodna T\xF8inec,P\xF8"
         "et\xED\x9E"
         "en\xED,P\xF9soben\xED ochrany\n",
         nullptr,
         "Rozvodna T\xC5\x99inec,P\xC5\x99"
         "et\xC3\xAD\xC5\xBE"
         "en\xC3\xAD,P\xC5\xAFsoben\xC3\xAD ochrany"},
        {"Czech, code page of DOS",
         "Vyp\xA1na\x9F,Nap\xD8t\xA1,P\xFD"
         "et\xA1\xA7"
         "en\xA1\n",
         "CP852",
         "Vyp\xC3\xADna\xC4\x8D,Nap\xC4\x9Bt\xC3\xAD,P\xC5\x99"
         "et\xC3\xAD\xC5\xBE"
         "en\xC3\xAD"},
        {"Swedish", "\xD6verstr\xF6m,\xC5tg\xE4rd,Sp\xE4nning\n", nullptr,
         "\xC3\x96verstr\xC3\xB6m,\xC3\x85tg\xC3\xA4rd,Sp\xC3\xA4nning"},
        {"Russian", "\xCF\xF3\xF1\xEA \xC1\xD7,\xD2\xEE\xEA \xF4\xE0\xE7\xFB \xC0,\xC4\xC7\xD8\n", "CP1251",
         "\xD0\x9F\xD1\x83\xD1\x81\xD0\xBA \xD0\x91\xD0\xA7,\xD0\xA2\xD0\xBE\xD0\xBA \xD1\x84\xD0\xB0\xD0\xB7\xD1\x8B "
         "\xD0\x90,\xD0\x94\xD0\x97\xD0\xA8"},
        {"Russian, code page of DOS", "\x8F\xE3\xE1\xAA \x81\x97,\x92\xAE\xAA \xE4\xA0\xA7\xEB \x80,\x84\x87\x98\n",
         "CP866",
         "\xD0\x9F\xD1\x83\xD1\x81\xD0\xBA \xD0\x91\xD0\xA7,\xD0\xA2\xD0\xBE\xD0\xBA \xD1\x84\xD0\xB0\xD0\xB7\xD1\x8B "
         "\xD0\x90,\xD0\x94\xD0\x97\xD0\xA8"},
        {"Russian letters behind Latin ones",
         "Ua \xE4"
         "A,Ub \xE4"
         "B,Imax \xE4"
         "C\n",
         "CP866",
         "Ua \xD1\x84"
         "A,Ub \xD1\x84"
         "B,Imax \xD1\x84"
         "C"},
        {"Russian units", "1,Uab,,,\xC2\n", "CP1251", "1,Uab,,,\xD0\x92"},
        {"Russian beside a degree sign",
         "\xD2\xE5\xEC\xEF\xE5\xF0\xE0\xF2\xF3\xF0\xE0 \xD2"
         "1,,\xB0"
         "C\n",
         "CP1251",
         "\xD0\xA2\xD0\xB5\xD0\xBC\xD0\xBF\xD0\xB5\xD1\x80\xD0\xB0\xD1\x82\xD1\x83\xD1\x80\xD0\xB0 \xD0\xA2"
         "1,,\xC2\xB0"
         "C"},
        {"Chinese",
         "A\xCF\xE0\xB5\xE7\xC1\xF7,B\xCF\xE0\xB5\xE7\xD1\xB9,\xBF\xAA\xB9\xD8\xC1\xBF"
         "1\n",
         "GB18030",
         "A\xE7\x9B\xB8\xE7\x94\xB5\xE6\xB5\x81,B\xE7\x9B\xB8\xE7\x94\xB5\xE5\x8E\x8B,"
         "\xE5\xBC\x80\xE5\x85\xB3\xE9\x87\x8F"
         "1"},
    };
    expectTexts(rows);
}

TEST(ReadCfgText, TheFindingNamesTheEncoding) {
    const ReadText read = readText("Ma\xDFstab\n");
    ASSERT_EQ(read.findings.size(), 1U);
    EXPECT_EQ(read.findings[0].found, "WINDOWS-1252, which the library reads otherwise here");
    EXPECT_EQ(read.findings[0].done, "converted to UTF-8");
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
