#include "CfgSupport.h"
#include "support/utf16.h"
#include "text/encoding.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

using namespace OrvComtradeIntake;
using orvtest::CfgLines;

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
        read.codes += (read.codes.empty() ? "" : " ") + each.code;
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
        {"CR LF", "a\r\nb\r\n", "1@0[a]2@3[b]", ""},
        {"no line end at the end", "a\r\nb", "1@0[a]2@3[b]", ""},
        {"LF", "a\nb\n", "1@0[a]2@2[b]", "line-ends"},
        {"LF in one place", "a\r\nb\nc\r\n", "1@0[a]2@3[b]3@5[c]", "line-ends"},
        {"CR CR LF", "a\r\r\nb\r\n", "1@0[a]2@4[b]", "line-ends"},
        {"CR", "a\rb\r", "1@0[a]2@2[b]", "line-ends"},
        {"CR within", "a\rb\r\nc\r\n", "1@0[a b]2@5[c]", "control-characters"},
        {"blank line within", "a\r\n\r\n \r\nb\r\n", "1@0[a]4@8[b]", "blank-lines"},
        {"blank lines at the end", "a\r\nb\r\n\r\n\r\n", "1@0[a]2@3[b]", ""},
        {"0x1A on its own line", "a\r\nb\r\n\x1A\x1A", "1@0[a]2@3[b]", ""},
        {"0x1A behind the last line", "a\r\nb\x1A\x1A\r\n", "1@0[a]2@3[b  ]", ""},
        {"0x1A behind another line", "a\x1A\r\nb\r\n", "1@0[a ]2@4[b]", "control-characters"},
        {"zero bytes within", std::string("a\0\0,b\r\nc\r\n", 10), "1@0[a  ,b]2@7[c]", "control-characters"},
        {"byte-order mark",
         "\xEF\xBB\xBF"
         "a\r\nb\r\n",
         "1@3[a]2@6[b]", "byte-order-mark"},
        {"two of them, a blank line between",
         "\xEF\xBB\xBF\r\n\xEF\xBB\xBF"
         "a\r\n",
         "2@8[a]", "byte-order-mark blank-lines"},
        {"blanks are kept", " a \t\r\nb \r\n", "1@0[ a \t]2@6[b ]", ""},
        {"empty", "", "", ""},
        {"blank", " \r\n\x1A", "", ""},
        {"a byte of CP1251 that stands for nothing", "\xAD\r\n\xCF\xF3\xF1\xEA\r\n",
         "1@0[ ]2@3[\xD0\x9F\xD1\x83\xD1\x81\xD0\xBA]", "encoding"},
    };
    for (const auto& row : rows) {
        const ReadText read = readText(row.bytes);
        EXPECT_EQ(joined(read.text), row.lines) << row.why;
        EXPECT_EQ(read.codes, row.codes) << row.why;
    }
}

TEST(ReadCfgText, CountsFromTheSectionOfACombinedFile) {
    EXPECT_EQ(joined(readText("a\r\nb\r\n", {}, 100, 7).text), "7@100[a]8@103[b]");
}

TEST(ReadCfgText, ManyLineEndsAreOneFinding) {
    const ReadText read = readText("a\r\nb\nc\n");
    ASSERT_EQ(read.findings.size(), 1U);
    EXPECT_EQ(read.findings[0].severity, Severity::Note);
    EXPECT_EQ(read.findings[0].places, 2U);
    EXPECT_EQ(read.findings[0].place.line, 2U);
    EXPECT_EQ(read.findings[0].found, "LF");
}

TEST(ReadCfgText, EveryFindingShowsWhatWasFoundAndHowItIsRead) {
    const struct {
        std::string bytes;
        const char* found;
        const char* repair;
    } rows[] = {
        {"a\nb\n", "LF", ""},
        {"a\rb\r", "CR", ""},
        {"a\r\r\nb\r\n", "CR CR LF", ""},
        {"a\r\n\r\nb\r\n", "a blank line", "skipped"},
        {"a\x01\r\nb\r\n", "a\\x01", "read as blanks"},
        {"\xEF\xBB\xBF"
         "a\r\n",
         "a UTF-8 byte-order mark", "skipped"},
        {"\xD0\x9F\xD0\x9F\xD0\x9F\xD0\x9F\xD0\x9F\xD0\x9F\xD0\x9F\xD0\x9F\xD0\r\n",
         "\xD0\x9F\xD0\x9F\xD0\x9F\xD0\x9F\xD0\x9F\xD0\x9F\xD0\x9F\xD0\x9F\\xD0", "invalid bytes replaced by U+FFFD"},
        {std::string("a\0\r\0\n\0", 6), "UTF-16LE", "converted to UTF-8"},
    };
    for (const auto& row : rows) {
        const ReadText read = readText(row.bytes);
        ASSERT_EQ(read.findings.size(), 1U) << read.codes;
        EXPECT_EQ(read.findings[0].found, row.found) << read.codes;
        EXPECT_EQ(read.findings[0].repair, row.repair) << read.codes;
    }
}

TEST(ReadCfgText, ReadsUtf16) {
    const std::string text = "S,\xC3\x9C,1999\r\n2,\xE7\x94\xB5,1\r\n3,\xF0\x9F\x98\x80,4\r\n";
    const std::u16string units = u"S,\u00DC,1999\r\n2,\u7535,1\r\n3,\U0001F600,4\r\n";
    for (const bool isLittle : {true, false}) {
        for (const bool isMarked : {true, false}) {
            const ReadText read = readText(orvtest::utf16((isMarked ? u"\uFEFF" : u"") + units, isLittle));
            EXPECT_EQ(read.codes, "encoding");
            EXPECT_EQ(read.text.encoding, isLittle ? "UTF-16LE" : "UTF-16BE");
            const std::string first = isMarked ? "1@2" : "1@0";
            const std::string second = isMarked ? "2@22" : "2@20";
            const std::string third = isMarked ? "3@36" : "3@34";
            EXPECT_EQ(joined(read.text),
                      first + "[S,\xC3\x9C,1999]" + second + "[2,\xE7\x94\xB5,1]" + third + "[3,\xF0\x9F\x98\x80,4]");
            EXPECT_EQ(read.text.lines.at(2).fieldEnds, (std::vector<std::size_t>{4, 10, 12}));
        }
    }
}

TEST(ReadCfgText, Utf16ThatIsCutInACharacterIsDamaged) {
    const std::string lone("S\0,\0\x3D\xD8,\0"
                           "1\0\n\0"
                           "2",
                           13);
    const ReadText read = readText(lone);
    ASSERT_EQ(read.codes, "encoding damaged-text line-ends");
    EXPECT_EQ(read.findings[1].found, "invalid characters");
    EXPECT_EQ(read.findings[1].repair, "replaced by U+FFFD");
    EXPECT_EQ(joined(read.text), "1@0[S,\xEF\xBF\xBD,1]2@12[\xEF\xBF\xBD]");
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
        {"UTF-8 with one name cut in a character",
         "\xD0\x9F\xD1\x83\xD1\x81\xD0\xBA,\xD0\x9F\xD1\x83\xD1\x81\xD0\xBA\xD0\n", "UTF-8",
         "\xD0\x9F\xD1\x83\xD1\x81\xD0\xBA,\xD0\x9F\xD1\x83\xD1\x81\xD0\xBA\xEF\xBF\xBD"},
    };
    expectTexts(rows);
}

TEST(ReadCfgText, TellsAccentsInNamesFromRussianByWhatMakesWords) {
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
        {"Czech",
         "Rozvodna T\xF8inec,P\xF8"
         "et\xED\x9E"
         "en\xED,P\xF9soben\xED ochrany\n",
         nullptr,
         "Rozvodna T\xC5\x99inec,P\xC5\x99"
         "et\xC3\xAD\xC5\xBE"
         "en\xC3\xAD,P\xC5\xAFsoben\xC3\xAD ochrany"},
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

TEST(ReadCfgText, IsUtf8WithOneDamagedCharacterAmongEightWholeOnes) {
    const std::string letter = "\xD0\x9F";
    const struct {
        const char* why;
        std::size_t letters;
        const char* encoding;
    } rows[] = {{"as many as that", 16, "UTF-8"}, {"one letter fewer", 15, "CP1251"}};
    for (const auto& row : rows) {
        std::string text = "\xD0,\xD0,";
        for (std::size_t i = 0; i < row.letters; ++i) {
            text += letter;
        }
        EXPECT_EQ(detectEncoding(text), row.encoding) << row.why;
    }
}

TEST(ReadCfgText, KnowsOtherLanguagesByTheirLettersFromTwoHundredOnAlone) {
    std::string text;
    for (int word = 0; word < 20; ++word) {
        text += "\xC4\xE9\xE1\xEA\xFC\xF0\xF4\xE7\xF2\xE1 "; // ten letters of Greek
    }
    EXPECT_EQ(detectEncoding(text), "ISO-8859-7") << "200 letters";
    EXPECT_EQ(detectEncoding(text.substr(1)), "CP1251") << "199 letters";
}

TEST(ReadCfgText, KnowsTheEncodingHoweverMuchAsciiComesFirst) {
    std::string text;
    while (text.size() < 1100000) {
        text += "1,Ua,A,Bus,V,0.5,0.25,0,-32767,32767,1,1,S\n";
    }
    EXPECT_EQ(readText(text + "\x82\xE5\xAE\xA4 \x80\x8F\x82\n").text.encoding, "CP866");
}

TEST(ReadCfgText, TheFindingNamesTheEncodingAndCountsTheLines) {
    const ReadText read = readText("Ma\xDFstab\r\nx\r\nMa\xDFstab\r\n");
    ASSERT_EQ(read.findings.size(), 1U);
    EXPECT_EQ(read.findings[0].code, "encoding");
    EXPECT_EQ(read.findings[0].severity, Severity::Warning);
    EXPECT_EQ(read.findings[0].found, "WINDOWS-1252");
    EXPECT_EQ(read.findings[0].expected, "UTF-8");
    EXPECT_EQ(read.findings[0].repair, "converted to UTF-8");
    EXPECT_EQ(read.findings[0].places, 2U);
}

TEST(ReadCfgText, TheCallersEncodingWins) {
    const std::string bytes = "S\r\n1,\xE0,,,0\r\n";
    EXPECT_EQ(readText(bytes, "CP1251").text.lines[1].text, "1,\xD0\xB0,,,0");
    EXPECT_EQ(readText(bytes, "CP866").text.lines[1].text, "1,\xD1\x80,,,0");
    EXPECT_EQ(readText(bytes, "ISO-8859-1").text.lines[1].text, "1,\xC3\xA0,,,0");
    EXPECT_EQ(readText(bytes, "CP850").text.lines[1].text, "1,\xC3\x93,,,0");
    EXPECT_EQ(readText(bytes, "KOI8-R").text.lines[1].text, "1,\xD0\xAE,,,0");
    EXPECT_EQ(readText(bytes, "KOI8-R").text.encoding, "KOI8-R");
}

TEST(ReadCfgText, WhatTheCallersEncodingDoesNotDefineIsReplaced) {
    const ReadText read = readText("S\r\n1,\xFF\xFF,,,0\r\n", "GB18030");
    EXPECT_EQ(read.text.lines[1].text, "1,\xEF\xBF\xBD\xEF\xBF\xBD,,,0");
    EXPECT_EQ(read.codes, "damaged-text encoding");
}

TEST(ReadCfgText, AnUnknownEncodingIsRefused) {
    for (const char* name : {"NO-SUCH-CODE", "UTF-8//TRANSLIT", "/"})
        EXPECT_THROW(readText("a\n", name), std::invalid_argument) << name;
}

TEST(ReadCfgText, ConvertedLinesKeepThePlacesOfTheirFields) {
    CfgLines lines;
    lines.analog = "1,\xCF\xF3\xF1\xEA,A,Bus,V,,0,0,-32767,32767,1,1,S";
    const auto read = lines.read();
    const Finding* const finding = read.finding("field-empty", "a");
    ASSERT_NE(finding, nullptr);
    EXPECT_EQ(finding->place.line, 3U);
    EXPECT_EQ(finding->place.offset, 10U + 9U + 15U);
}

TEST(ReadCfgText, PlacesInUtf16AreThoseInTheFile) {
    CfgLines lines;
    lines.analog = "1,Ua,A,Bus,V,,0,0,-32767,32767,1,1,S";
    std::string wide;
    for (const char character : lines.text()) {
        wide.append({character, '\0'});
    }
    const auto read = orvtest::readBytes(wide);
    EXPECT_EQ(read.codes(), "encoding field-empty:a");
    EXPECT_EQ(read.findings.at(1).place.offset, 2 * (10U + 9U + 13U));
}
