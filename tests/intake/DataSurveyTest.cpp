#include "dataSurvey.h"

#include "intake/intakeSupport.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace {

using namespace OrvComtradeIntake;
using orvtest::configurationOf;
using orvtest::sameRuns;
using orvtest::Surveyed;
using orvtest::TempDir;

struct Survey : Surveyed {
    Survey(const std::string& data, const Configuration& configuration, bool base64 = false)
        : file(folder.write("a.dat", data)) {
        DataSource source = orvtest::wholeFile(file);
        source.base64 = base64;
        static_cast<Surveyed&>(*this) = orvtest::survey(source, configuration);
    }

    TempDir folder;
    std::string file;
};

Configuration ascii(std::size_t analogs, std::size_t statuses, std::uint64_t samples, double rate = 1000.0) {
    return configurationOf(analogs, statuses, DataEncoding::Ascii, rate, samples);
}

Configuration binary(std::uint64_t samples, double rate = 1000.0) {
    return configurationOf(1, 0, DataEncoding::Binary, rate, samples);
}

/// A record of one analog channel of 16 bits and no status channel.
std::string record16(std::uint32_t number, std::uint32_t stamp, std::uint16_t bits) {
    return orvtest::LittleEndianBytes().u32(number).u32(stamp).u16(bits).bytes();
}

/// A record of one analog channel of 32 bits and no status channel.
std::string record32(std::uint32_t number, std::uint32_t bits) {
    return orvtest::LittleEndianBytes().u32(number).u32(0).u32(bits).bytes();
}

struct CleanRow {
    const char* why;
    std::string data;
    std::uint64_t samples;
};

TEST(SurveyAscii, LeavesWhatTheLibraryReadsRightly) {
    const CleanRow rows[] = {
        // 2 analog and 2 status channels
        {"plain lines", "1,0,5,-3,1,0\n2,1000,6,-4,0,1\n", 2},
        {"CR LF", "1,0,5,-3,1,0\r\n2,1000,6,-4,0,1\r\n", 2},
        {"no line end at the end", "1,0,5,-3,1,0\n2,1000,6,-4,0,1", 2},
        {"parted by blanks", "1 0 5 -3 1 0\n2\t1000 6 -4 0 1\n", 2},
        {"blanks behind commas", "1, 0, 5, -3, 1, 0\n", 1},
        {"zeros in front", "0001,000000,0005,-0003,1,0\n", 1},
        {"a comma at the end", "1,0,5,-3,1,0,\n", 1},
        {"more columns", "1,0,5,-3,1,0,9,9\n", 1},
        {"empty lines", "1,0,5,-3,1,0\n\n\n2,1000,6,-4,0,1\n", 2},
        {"a blank line at the end", "1,0,5,-3,1,0\r\n\r\n", 1},
        {"0x1A at the end", "1,0,5,-3,1,0\r\n\x1A", 1},
        {"0x1A behind the last column", "1,0,5,-3,1,0\x1A", 1},
        {"zero bytes behind the last column", "1,0,5,-3,1,0" + std::string(4096, '\0'), 1},
        {"zero bytes behind the last line", "1,0,5,-3,1,0\n" + std::string(200000, '\0'), 1},
        {"text behind the last line", "1,0,5,-3,1,0\nEND OF FILE, 1 sample\n", 1},
        {"text behind the last column", "1,0,5,-3,1,0EOF", 1},
        {"CR behind a comma", "1,0,5,\r-3,1,0\n2,1000,6,-4,0,1\n", 2},
        {"CR in front of the last column", "1,0,5,-3,1,\r0\n2,1000,6,-4,0,1\n", 2},
        {"CR CR LF", "1,0,5,-3,1,0\r\r\n2,1000,6,-4,0,1\r\r\n", 2},
        {"LF CR", "1,0,5,-3,1,0\n\r2,1000,6,-4,0,1\n\r", 2},
        {"the largest integers", "1,0,9223372036854775807,-9223372036854775807,1,0\n", 1},
        {"a short line at the end", "1,0,5,-3,1,0\n2,1000,6,-4", 1},
        {"negative time stamps that do not count", "1,-41663,5,-3,1,0\n", 1},
    };
    for (const CleanRow& row : rows) {
        const Survey survey(row.data, ascii(2, 2, row.samples));
        EXPECT_TRUE(survey.survey.asItStands) << row.why;
        EXPECT_FALSE(survey.anyMended()) << row.why;
        EXPECT_EQ(survey.survey.samples, row.samples) << row.why;
        EXPECT_TRUE(survey.survey.missing.empty()) << row.why;
        EXPECT_TRUE(survey.survey.exponents.empty()) << row.why;
    }
}

struct FindingRow {
    const char* why;
    std::string data;
    std::string code;
    Severity severity;
    std::size_t line;
    std::string field;
    std::uint64_t offset;
    std::uint64_t places;
    bool mended;
};

TEST(SurveyAscii, SaysWhereAndWhat) {
    const std::string first = "1,0,5,-3,1,0\n"; // 13 bytes
    const FindingRow rows[] = {
        {"decimals", first + "2,0,5,3.5,1,0\n3,0,5,4.5,1,0\n", "decimals", Severity::Warning, 2, "A2", 19, 2, true},
        {"plus sign", first + "2,0,+5,-3,1,0\n", "decimals", Severity::Warning, 2, "A1", 17, 1, true},
        {"empty value", first + "2,0,,-3,1,0\n", "empty-data-field", Severity::Warning, 2, "A1", 17, 1, true},
        {"empty stamp", "1,,5,-3,1,0\n", "empty-data-field", Severity::Warning, 1, "timestamp", 2, 1, true},
        {"empty number", ",0,5,-3,1,0\n", "empty-data-field", Severity::Warning, 1, "n", 0, 1, true},
        {"empty state", first + "2,0,5,-3,1,,\n", "empty-data-field", Severity::Warning, 2, "D2", 24, 1, true},
        {"no number", first + "2,0,5,*,1,0\n", "bad-data-line", Severity::Warning, 2, "A2", 19, 1, true},
        {"blanks before a comma", first + "2,0,5 ,-3,1,0\n", "blanks", Severity::Warning, 2, "", 13, 1, true},
        {"short line", "1,0,5\n2,0,5,-3,1,0\n", "short-data-line", Severity::Warning, 1, "", 0, 1, true},
        {"short line at the end", first + "2,0,5\n", "record-cut", Severity::Warning, 2, "", 13, 1, false},
        {"empty line", first + "\n2,0,5,-3,1,0\n", "blank-data-line", Severity::Note, 2, "", 13, 1, false},
        {"blank line", first + " \n2,0,5,-3,1,0\n", "blank-data-line", Severity::Warning, 2, "", 13, 1, true},
        {"0x1A", first + "\x1A\n2,0,5,-3,1,0\n", "substitute-character", Severity::Warning, 2, "", 13, 1, true},
        {"0x1A at the end", first + "\x1A", "substitute-character", Severity::Note, 2, "", 13, 1, false},
        {"text", "n,t,Ua,Ub,Trip,Start\n" + first, "bad-data-line", Severity::Warning, 1, "", 0, 1, true},
        {"CR alone", "1,0,5,-3,1,0\r2,0,5,-3,1,0\r", "line-ends", Severity::Warning, 2, "", 13, 1, true},
        {"missing value", first + "2,0,5,99999,1,0\n", "missing-values", Severity::Note, 2, "A2", 13, 1, false},
        {"state 01", first + "2,0,5,-3,01,0\n", "status-value", Severity::Warning, 2, "D1", 22, 1, true},
        {"state 00", first + "2,0,5,-3,00,1\n", "status-value", Severity::Warning, 2, "D1", 22, 1, true},
        {"state +1", first + "2,0,5,-3,0,+1\n", "status-value", Severity::Note, 2, "D2", 24, 1, false},
        {"states 1.0 and 0.0", first + "2,0,5,-3,1.0,0.0\n", "status-value", Severity::Warning, 2, "D1", 22, 2, true},
        {"state of text", first + "2,0,5,-3,ON,0\n", "status-value", Severity::Warning, 2, "D1", 22, 1, true},
        {"comma at the end", first + "2,0,5,-3,1,0,\n3,0,5,-3,1,0,\n", "surplus-columns", Severity::Note, 2, "column 7",
         26, 2, false},
        {"commas and blanks at the end", "1,0,5,-3,1,0, ,\n", "surplus-columns", Severity::Note, 1, "column 7", 13, 1,
         false},
        {"more columns", first + "2,0,5,-3,1,0,9,9\n3,0,5,-3,1,0,9\n", "surplus-columns", Severity::Warning, 2,
         "column 7", 26, 2, false},
        {"more columns by blanks", first + "2 0 5 -3 1 0 9\n", "surplus-columns", Severity::Warning, 2, "column 7", 26,
         1, false},
        {"byte-order mark", "\xEF\xBB\xBF" + first, "byte-order-mark", Severity::Warning, 1, "", 0, 1, true},
        {"CR alone once", first + "2,0,5,-3,1,0\r3,0,5,-3,1,0\n", "line-ends", Severity::Warning, 3, "", 26, 1, true},
        {"CR behind a comma", first + "2,0,5,\r-3,1,0\n", "carriage-return", Severity::Note, 2, "", 19, 1, false},
        {"CR before a comma", first + "2,0,5\r,-3,1,0\n", "carriage-return", Severity::Warning, 2, "", 18, 1, true},
        {"CR behind the number", first + "2\r,0,5,-3,1,0\n", "carriage-return", Severity::Warning, 2, "", 14, 1, true},
        {"CR for a comma", first + "2,0,5\r-3,1,0\n", "carriage-return", Severity::Note, 2, "", 18, 1, false},
        {"CR in a value", first + "2,0,5\r5,-3,1,0\n", "bad-data-line", Severity::Warning, 2, "A1", 17, 1, true},
        {"CR CR LF", "1,0,5,-3,1,0\r\r\n2,0,5,-3,1,0\r\r\n", "carriage-return", Severity::Note, 2, "", 13, 2, false},
        {"0x1A within a line", first + "2,0,5\x1A,-3,1,0\n", "substitute-character", Severity::Warning, 2, "", 18, 1,
         true},
        {"0x1A in front of a line", first + "\x1A" + first, "substitute-character", Severity::Warning, 2, "", 13, 1,
         true},
        {"0x1A behind a column", "1,0,5,-3,1,0\x1A", "substitute-character", Severity::Note, 1, "", 12, 1, false},
        {"zero bytes at the end", first + std::string(4096, '\0'), "substitute-character", Severity::Note, 2, "", 13, 1,
         false},
        {"more zero bytes than a line may have", first + std::string(200000, '\0') + first, "substitute-character",
         Severity::Warning, 2, "", 13, 1, true},
        {"text behind the last column", "1,0,5,-3,1,0EOF\n", "status-value", Severity::Note, 1, "D2", 11, 1, false},
        {"text at the end", first + "END OF FILE, 1 of 1 samples\n", "bad-data-line", Severity::Note, 2, "", 13, 1,
         false},
        {"values of unlike size", "1,0,1e18,1.5,1,0\n2,0,0.123,1e17,1,0\n", "rounded", Severity::Warning, 0, "A1", 0, 2,
         true},
    };
    for (const FindingRow& row : rows) {
        const Survey survey(row.data, ascii(2, 2, 0));
        const Finding* const finding = survey.find(row.code);
        ASSERT_NE(finding, nullptr) << row.why;
        EXPECT_EQ(finding->severity, row.severity) << row.why;
        EXPECT_EQ(finding->file, survey.file) << row.why;
        EXPECT_EQ(finding->line, row.line) << row.why;
        EXPECT_EQ(finding->field, row.field) << row.why;
        EXPECT_EQ(finding->offset, row.offset) << row.why;
        EXPECT_EQ(finding->places, row.places) << row.why;
        EXPECT_EQ(finding->mended, row.mended) << row.why;
        EXPECT_EQ(survey.survey.asItStands, !row.mended) << row.why;
    }
}

TEST(SurveyAscii, TellsEachFaultOnce) {
    const std::string good = "1,0,5,-3,1,0\n";
    struct Row {
        const char* why;
        std::string data;
        std::vector<std::string> codes;
    };
    const Row rows[] = {
        {"states of many kinds", "1,0,5,-3,01,1.0\n2,0,5,-3,x,+1\n3,0,5,-3,1,0\n", {"status-value", "status-value"}},
        {"a comma at the end of every line", "1,0,5,-3,1,0,\n2,0,5,-3,1,0,\n3,0,5,-3,1,0,\n", {"surplus-columns"}},
        {"commas at the end of decimals", "1,0,5.5,-3,1,0,\n2,0,5.5,-3,1,0,\n", {"decimals", "surplus-columns"}},
        {"byte-order mark", "\xEF\xBB\xBF" + good, {"byte-order-mark"}},
        {"byte-order mark before headings", "\xEF\xBB\xBFn,t,A,B,C,D\n" + good, {"bad-data-line", "byte-order-mark"}},
        {"CR once for LF", "1,0,5,-3,1,0\r2,0,5,-3,1,0\n", {"line-ends"}},
        {"CR for every LF", "1,0,5,-3,1,0\r2,0,5,-3,1,0\r", {"line-ends"}},
        {"CR before every comma", "1\r,0\r,5\r,-3\r,1\r,0\n", {"carriage-return"}},
        {"0x1A at the end", good + "\x1A", {"substitute-character"}},
        {"zero bytes at the end", good + std::string(200000, '\0'), {"substitute-character"}},
        {"lines of text at the end", good + "EOF\n----\n", {"bad-data-line"}},
        {"text behind 0x1A", good + "\x1Aold text of the disk,1,2\n", {"bad-data-line"}},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(Survey(row.data, ascii(2, 2, 0)).codes(), row.codes) << row.why;
    }
}

TEST(SurveyAscii, SaysHowFarValuesOfUnlikeSizeAreRounded) {
    const Survey survey("1,0,7,1e18\n2,0,7,0.123\n", ascii(2, 0, 2));
    const Finding* const told = survey.find("rounded");
    ASSERT_NE(told, nullptr);
    EXPECT_EQ(told->field, "A2");
    EXPECT_EQ(told->places, 1U);
    EXPECT_EQ(told->found, "values with 19 digits before the point and 3 behind it");
    EXPECT_EQ(told->done, "rounded to multiples of 10^3");
    EXPECT_EQ(Survey("1,0,7,123456789.5\n2,0,7,0.123\n", ascii(2, 0, 2)).find("rounded"), nullptr);
}

struct CountRow {
    const char* why;
    std::string data;
    std::uint64_t declared;
    std::uint64_t samples;
    bool leftOut; ///< lines, which is told
};

TEST(SurveyAscii, CountsSamples) {
    const CountRow rows[] = {
        {"as declared", "1,0,5\n2,0,5\n", 2, 2, false},
        {"fewer", "1,0,5\n2,0,5\n", 885, 2, false},
        {"none declared", "1,0,5\n2,0,5\n", 0, 2, false},
        {"more, numbers go on", "1,0,5\n2,0,5\n3,0,5\n", 1, 3, false},
        {"more, numbers do not go on", "1,0,5\n2,0,5\n7,0,5\n", 1, 2, true},
        {"more, none of them a sample", "1,0,5\nend of data\n", 1, 1, false},
        {"a comma at the end of each", "1,0,5,\n2,0,5,\n", 2, 2, false},
        {"CR inside one", "1,\r0,5\n2,0,5\n", 2, 2, false},
        {"numbers that jump within the declared ones", "10,0,5\n20,0,5\n", 2, 2, false},
    };
    for (const CountRow& row : rows) {
        const Survey survey(row.data, ascii(1, 0, row.declared));
        EXPECT_EQ(survey.survey.samples, row.samples) << row.why;
        EXPECT_TRUE(survey.survey.asItStands) << row.why;
        EXPECT_EQ(survey.find("sample-count") != nullptr, row.leftOut) << row.why;
    }
}

TEST(SurveyAscii, TakesAsManySamplesAsLengthsOfRatesSumTo) {
    Configuration configuration = ascii(1, 0, 0);
    configuration.rates = {{1000.0, 2}, {500.0, 2}};
    EXPECT_EQ(Survey("1,0,5\n2,0,5\n1,0,5\n2,0,5\n", configuration).survey.samples, 4U);
    EXPECT_EQ(Survey("1,0,5\n2,0,5\n1,0,5\n2,0,5\n9,0,5\n", configuration).survey.samples, 2U);
}

TEST(SurveyAscii, ListsMissingValuesByChannelAsRuns) {
    const Survey survey("1,0,5,99999\n2,0,99999,99999\n3,0,99999,7\n4,0,5,99999\n", ascii(2, 0, 4));
    EXPECT_TRUE(survey.survey.asItStands);
    EXPECT_TRUE(sameRuns(survey.survey.missing, {{0, 1, 2}, {1, 0, 2}, {1, 3, 1}}));
    ASSERT_NE(survey.find("missing-values"), nullptr);
    EXPECT_EQ(survey.find("missing-values")->places, 5U);
}

TEST(SurveyAscii, TakesNoOtherNumberForAMissingValue) {
    const Survey survey("1,99999,-99999,999990,199999,9999,99998\n", ascii(5, 0, 1));
    EXPECT_TRUE(survey.survey.missing.empty());
}

TEST(SurveyAscii, IsAnErrorWithoutAWholeLine) {
    for (const std::string data : {"", "\n\n", "1,0\n2,0\n", "not data at all\n", "\x1A"}) {
        const Survey survey(data, ascii(2, 2, 5));
        EXPECT_EQ(survey.survey.samples, 0U) << data;
        EXPECT_FALSE(survey.survey.asItStands) << data;
        ASSERT_EQ(survey.codes(), std::vector<std::string>{"no-data"}) << data;
        EXPECT_EQ(survey.findings[0].severity, Severity::Error) << data;
    }
}

TEST(SurveyAscii, ShowsTheFirstLineWhereNoneIsWhole) {
    struct Row {
        std::string data;
        std::string found;
        std::size_t line;
        std::uint64_t offset;
    };
    const Row rows[] = {
        {"\n1;0;5\n", "no line with 6 columns of numbers; the first line, \"1;0;5\", has 1", 2, 1},
        {"1,0\n2,0\n", "no line with 6 columns of numbers; the first line, \"1,0\", has 2", 1, 0},
        {"a b\x01\n", "no line with 6 columns of numbers; the first line, \"a b\\x01\", has 2", 1, 0},
        {std::string(100000, 'x'),
         "no line with 6 columns of numbers; the first line, \"" + std::string(40, 'x') + "...\", has 1", 1, 0},
        {"\xEF\xBB\xBFx,y\n", "no line with 6 columns of numbers; the first line, \"x,y\", has 2", 1, 3},
        {"", "no line with 6 columns of numbers; the data are empty", 0, 0},
        {" \n\x1A", "no line with 6 columns of numbers; only blanks, 0x1A or zero bytes", 0, 0},
    };
    for (const Row& row : rows) {
        const Survey survey(row.data, ascii(2, 2, 5));
        ASSERT_EQ(survey.codes(), std::vector<std::string>{"no-data"}) << row.data;
        EXPECT_EQ(survey.findings[0].found, row.found);
        EXPECT_EQ(survey.findings[0].line, row.line) << row.data;
        EXPECT_EQ(survey.findings[0].offset, row.offset) << row.data;
    }
}

TEST(SurveyAscii, IsAnErrorWhereOnlyChanceMakesALineASample) {
    std::string noise;
    for (int i = 0; i < 22; ++i) {
        noise += "#\n";
    }
    const std::string like = "?,0,5,6,0,1\n";
    EXPECT_EQ(Survey(noise + like, ascii(2, 2, 1)).codes(), std::vector<std::string>{"no-data"});
    EXPECT_EQ(Survey(noise + "1,0,5,6,0,1\n", ascii(2, 2, 1)).survey.samples, 1U);
    EXPECT_EQ(Survey(noise.substr(0, 38) + like, ascii(2, 2, 1)).survey.samples, 1U);
}

TEST(SurveyAscii, IsAnErrorForUtf16) {
    const std::string text("1\0,\0"
                           "0\0,\0"
                           "5\0\n\0",
                           12);
    for (const std::string& data : {text, "\xFF\xFE" + text, std::string("\xFE\xFF\0", 3) + text}) {
        const Survey survey(data, ascii(1, 0, 1));
        ASSERT_EQ(survey.codes(), std::vector<std::string>{"unreadable"});
        EXPECT_EQ(survey.findings[0].severity, Severity::Error);
        EXPECT_EQ(survey.findings[0].found, "UTF-16");
    }
}

TEST(SurveyAscii, SaysWhereLinesAreThatItLeavesOut) {
    const Survey survey("1,0,5\n2,0,5\n7,0,5\n", ascii(1, 0, 2));
    ASSERT_EQ(survey.codes(), std::vector<std::string>{"sample-count"});
    EXPECT_EQ(survey.findings[0].line, 3U);
    EXPECT_EQ(survey.findings[0].offset, 12U);
}

TEST(SurveyAscii, TakesLinesOfAnyLengthAcrossBlocks) {
    std::string data;
    std::string line;
    for (int i = 0; i < 3000; ++i) {
        line += "," + std::to_string(i);
    }
    for (int sample = 1; sample <= 100; ++sample) {
        data += std::to_string(sample) + ",0" + line + "\r\n";
    }
    const Survey survey(data, ascii(3000, 0, 100));
    EXPECT_EQ(survey.survey.samples, 100U);
    EXPECT_TRUE(survey.survey.asItStands);
    EXPECT_TRUE(survey.findings.empty());
}

TEST(SurveyAscii, PassesOverTheRestOfALineThatNeverEnds) {
    const std::string data = "1,0,5\n" + std::string(1000000, 'x') + "\n2,0,5\n";
    const Survey survey(data, ascii(1, 0, 2));
    EXPECT_EQ(survey.survey.samples, 2U);
    EXPECT_FALSE(survey.survey.asItStands);
}

TEST(SurveyBinary, LeavesWhatTheLibraryReadsRightly) {
    const Survey survey(record16(1, 0, 5) + record16(2, 1000, 0x7FFF), binary(2));
    EXPECT_TRUE(survey.survey.asItStands);
    EXPECT_EQ(survey.survey.samples, 2U);
    EXPECT_EQ(survey.survey.encoding, DataEncoding::Binary);
    EXPECT_TRUE(survey.findings.empty());
}

TEST(SurveyBinary, CountsRecords) {
    const std::string two = record16(1, 0, 5) + record16(2, 0, 5);
    struct Row {
        const char* why;
        std::string data;
        std::uint64_t declared;
        std::uint64_t samples;
        bool asItStands;
        std::vector<std::string> codes;
    };
    const Row rows[] = {
        {"fewer", two, 5, 2, true, {}},
        {"none declared", two, 0, 2, true, {}},
        {"more, numbers go on", two, 1, 2, true, {}},
        {"more, numbers do not go on", two + record16(9, 0, 5), 2, 2, false, {"sample-count"}},
        {"stray bytes", two + "abc", 2, 2, true, {"stray-bytes"}},
        {"a record cut short", two + "abc", 3, 2, true, {"record-cut"}},
    };
    for (const Row& row : rows) {
        const Survey survey(row.data, binary(row.declared));
        EXPECT_EQ(survey.survey.samples, row.samples) << row.why;
        EXPECT_EQ(survey.survey.asItStands, row.asItStands) << row.why;
        EXPECT_EQ(survey.codes(), row.codes) << row.why;
        EXPECT_EQ(survey.anyMended(), !row.asItStands) << row.why;
    }
}

TEST(SurveyBinary, TakesAsManyRecordsAsLengthsOfRatesSumTo) {
    Configuration configuration = binary(0);
    configuration.rates = {{1000.0, 1}, {500.0, 2}};
    const Survey survey(record16(1, 0, 5) + record16(1, 0, 5) + record16(2, 0, 5), configuration);
    EXPECT_EQ(survey.survey.samples, 3U);
    EXPECT_TRUE(survey.survey.asItStands);
}

TEST(SurveyBinary, FindsRecordsWithPadding) {
    const Survey survey(record16(1, 0, 5) + "ab" + record16(2, 0, 5) + "cd" + record16(3, 0, 5) + "ef" +
                            record16(4, 0, 5) + "gh" + record16(5, 0, 5) + "ij",
                        binary(5));
    EXPECT_EQ(survey.survey.samples, 5U);
    EXPECT_EQ(survey.survey.recordStride, 12U);
    EXPECT_FALSE(survey.survey.asItStands);
    EXPECT_EQ(survey.codes(), std::vector<std::string>{"record-padding"});
}

TEST(SurveyBinary, FindsMissingValuesOfEachEncoding) {
    struct Row {
        const char* why;
        DataEncoding encoding;
        std::string data;
        bool missing;
    };
    const Row rows[] = {
        {"0x8000", DataEncoding::Binary, record16(1, 0, 0x8000), true},
        {"0x8001", DataEncoding::Binary, record16(1, 0, 0x8001), false},
        {"0x80000000", DataEncoding::Binary32, record32(1, 0x80000000), true},
        {"0x80000001", DataEncoding::Binary32, record32(1, 0x80000001), false},
        {"quiet NaN", DataEncoding::Float32, record32(1, 0x7FC00000), true},
        {"signalling NaN", DataEncoding::Float32, record32(1, 0x7F800001), true},
        {"negative NaN", DataEncoding::Float32, record32(1, 0xFFC00000), true},
        {"largest negative single", DataEncoding::Float32, record32(1, 0xFF7FFFFF), true},
        {"largest single", DataEncoding::Float32, record32(1, 0x7F7FFFFF), false},
        {"infinity", DataEncoding::Float32, record32(1, 0x7F800000), false},
        {"zero with a minus sign", DataEncoding::Float32, record32(1, 0x80000000), false},
    };
    for (const Row& row : rows) {
        const Survey survey(row.data, configurationOf(1, 0, row.encoding, 1000.0, 1));
        EXPECT_EQ(survey.survey.missing.size(), row.missing ? 1U : 0U) << row.why;
        EXPECT_EQ(survey.find("missing-values") != nullptr, row.missing) << row.why;
    }
}

TEST(SurveyBinary, SaysWhereTheFirstMissingValueIs) {
    const Survey survey(record16(1, 0, 5) + record16(2, 0, 0x8000), binary(2));
    ASSERT_EQ(survey.findings.size(), 1U);
    EXPECT_EQ(survey.findings[0].field, "A1");
    EXPECT_EQ(survey.findings[0].found, "record 2");
    EXPECT_EQ(survey.findings[0].offset, 18U);
}

TEST(SurveyBinary, IsAnErrorWithoutAWholeRecord) {
    for (const std::string data : {"", "123456789"}) {
        const Survey survey(data, binary(1));
        EXPECT_EQ(survey.survey.samples, 0U);
        EXPECT_EQ(survey.codes(), std::vector<std::string>{"no-data"});
        EXPECT_EQ(survey.findings[0].severity, Severity::Error);
    }
}

TEST(SurveyBinary, ReadsStampsOnlyWhereTimesComeFromThem) {
    const std::string data = record16(1, 0xFFFFFFFF, 5) + record16(2, 100, 5) + record16(3, 0, 5);
    EXPECT_TRUE(Survey(data, binary(3)).findings.empty());
    EXPECT_FALSE(Survey(data, binary(3, 0.0)).survey.asItStands);
}

std::string stamped(const std::vector<std::uint32_t>& stamps) {
    std::string data;
    std::uint32_t number = 0;
    for (const std::uint32_t stamp : stamps) {
        data += record16(++number, stamp, 5);
    }
    return data;
}

TEST(SurveyStamps, TellsWhatIsOdd) {
    struct Row {
        const char* why;
        std::vector<std::uint32_t> stamps;
        std::vector<std::string> codes;
        std::string place;
        bool asItStands;
    };
    const Row rows[] = {
        {"even", {0, 100, 200, 300}, {}, "", true},
        {"the highest", {0xFFFFFF00, 0xFFFFFFFE}, {}, "", true},
        {"missing", {0, 0xFFFFFFFF, 200}, {"stamp-missing"}, "record 2, no time stamp", false},
        {"wrap", {0xFFFFFF00, 0xFFFFFF80, 0}, {"stamp-wrap"}, "record 3, begins again from 0", false},
        {"backwards", {0, 200, 100, 300}, {"stamp-backwards"}, "record 3, lower than the one before", true},
        {"gap", {0, 100, 200, 1300, 1400}, {"stamp-gap"}, "record 4, more than ten times the usual step", true},
        {"no gap: ten times the step", {0, 100, 200, 1200, 1300}, {}, "", true},
    };
    for (const Row& row : rows) {
        const Survey survey(stamped(row.stamps), binary(row.stamps.size(), 0.0));
        EXPECT_EQ(survey.codes(), row.codes) << row.why;
        EXPECT_EQ(survey.survey.asItStands, row.asItStands) << row.why;
        EXPECT_EQ(survey.anyMended(), !row.asItStands) << row.why;
        EXPECT_EQ(survey.findings.empty() ? "" : survey.findings[0].found, row.place) << row.why;
    }
}

TEST(SurveyStamps, TellsWhatIsOddOfATextAndWhatIsDone) {
    struct Row {
        const char* why;
        std::string data;
        std::string code;
        std::size_t line;
        std::uint64_t places;
        std::string found;
        std::string expected;
        std::string done;
    };
    const char* const decimals = "a decimal point, a plus sign or an exponent";
    const Row rows[] = {
        {"decimals", "1,0,5\n2,0.25,6\n3,0.5,7\n", "stamp-decimals", 2, 2, decimals, "an integer", "written times 100"},
        {"decimals that are whole", "1,0,5\n2,+100,6\n3,200.0,7\n", "stamp-decimals", 2, 2, decimals, "an integer",
         "written as whole counts"},
        {"more digits than fit", "1,0,5\n2,0.123456789012,6\n3,8000.5,7\n", "stamp-decimals", 2, 2, decimals,
         "an integer", "written times 100000, rounded"},
        {"more digits than are read", "1,0,5\n2,1.0000000000000000000000001,6\n", "stamp-decimals", 2, 1, decimals,
         "an integer", "written as whole counts, rounded"},
        {"decimals of wide stamps", "1,0.5,5\n2,50000000000,6\n", "stamp-decimals", 1, 1, decimals, "an integer",
         "written divided by 100, rounded"},
        {"negative", "1,-200,5\n2,-100,6\n3,0,7\n", "stamp-negative", 1, 2, "a negative time stamp",
         "a time stamp of 0 or more", "counted from -200, which becomes 0"},
        {"negative decimals", "1,0,5\n2,-0.5,6\n", "stamp-negative", 2, 1, "a negative time stamp",
         "a time stamp of 0 or more", "counted from -0.5, which becomes 0; written times 10"},
        {"wide", "1,0,5\n2,50000000000,6\n", "stamp-wide", 0, 1, "sample 2, more than 32 bits",
         "a time stamp below 4294967295", "written divided by 100"},
        {"wide in a line that is not plain", "1,0,5\n2, 50000000000,6\n", "stamp-wide", 2, 1, "more than 32 bits",
         "a time stamp below 4294967295", "written divided by 100"},
        {"more than 64 bits", "1,0,5\n2,99999999999999999999,6\n3,200,7\n", "stamp-overlong", 2, 1, "more than 64 bits",
         "a time stamp below 4294967295", "taken as missing"},
        {"wide beside more than 64 bits", "1,0,5\n2,99999999999999999999,6\n3,50000000000,7\n", "stamp-wide", 0, 1,
         "sample 3, more than 32 bits", "a time stamp below 4294967295", "written divided by 100"},
        {"begins again", "1,4294967000,5\n2,704,6\n", "stamp-wrap", 0, 1, "sample 2, begins again from 0",
         "a time stamp that goes on", "written divided by 10"},
    };
    for (const Row& row : rows) {
        const Survey survey(row.data, ascii(1, 0, 0, 0.0));
        const Finding* const told = survey.find(row.code);
        ASSERT_NE(told, nullptr) << row.why;
        EXPECT_EQ(told->severity, Severity::Warning) << row.why;
        EXPECT_EQ(told->line, row.line) << row.why;
        EXPECT_EQ(told->field, "timestamp") << row.why;
        EXPECT_EQ(told->places, row.places) << row.why;
        EXPECT_EQ(told->found, row.found) << row.why;
        EXPECT_EQ(told->expected, row.expected) << row.why;
        EXPECT_EQ(told->done, row.done) << row.why;
        EXPECT_TRUE(told->mended) << row.why;
        EXPECT_FALSE(survey.survey.asItStands) << row.why;
        EXPECT_EQ(survey.find("blanks"), nullptr) << row.why;
        EXPECT_EQ(survey.find("decimals"), nullptr) << row.why;
    }
}

TEST(SurveyStamps, MindsNoStampWhereTheRateIsKnown) {
    struct Row {
        const char* why;
        std::string data;
        std::vector<std::string> codes;
    };
    const Row rows[] = {
        {"negative", "1,-200,5\n2,-100,6\n", {}},
        {"wide", "1,50000000000,5\n2, 50000000000,6\n", {}},
        {"constant", "1,0,5\n2,0,6\n", {}},
        {"more than 64 bits", "1,99999999999999999999,5\n2,0,6\n", {"stamp-overlong"}},
    };
    for (const Row& row : rows) {
        const Survey survey(row.data, ascii(1, 0, 2));
        EXPECT_EQ(survey.codes(), row.codes) << row.why;
        EXPECT_TRUE(survey.survey.asItStands) << row.why;
        EXPECT_FALSE(survey.anyMended()) << row.why;
    }
    // The library reads no line with such a stamp.
    const Survey decimals("1,0,5\n2,0.25,6\n", ascii(1, 0, 2));
    ASSERT_EQ(decimals.codes(), std::vector<std::string>{"stamp-decimals"});
    EXPECT_EQ(decimals.findings[0].done, "rounded: times come from the sampling rate");
    EXPECT_EQ(decimals.findings[0].line, 2U);
    EXPECT_EQ(decimals.findings[0].offset, 8U);
    EXPECT_TRUE(decimals.findings[0].mended);
}

TEST(SurveyStamps, TellsWhereEverySampleHasTheSameTime) {
    const Survey text("1,0,5\n2,0,6\n3,0,7\n", ascii(1, 0, 3, 0.0));
    const Survey records(stamped({700, 700}), binary(2, 0.0));
    for (const Survey* survey : {&text, &records}) {
        ASSERT_EQ(survey->codes(), std::vector<std::string>{"stamp-constant"});
        const Finding& told = survey->findings[0];
        EXPECT_EQ(told.severity, Severity::Warning);
        EXPECT_EQ(told.field, "timestamp");
        EXPECT_EQ(told.found, "the same time stamp in every sample");
        EXPECT_EQ(told.expected, "time stamps that go on");
        EXPECT_EQ(told.done, "");
        EXPECT_FALSE(told.mended);
        EXPECT_TRUE(survey->survey.asItStands);
    }
    EXPECT_TRUE(Survey("1,0,5\n", ascii(1, 0, 1, 0.0)).findings.empty());
    EXPECT_TRUE(Survey("1,0,5\n2,0,6\n3,1,7\n", ascii(1, 0, 3, 0.0)).findings.empty());
}

TEST(SurveyStamps, IsAnErrorWhereNothingTellsTheTimes) {
    const Survey text("1,,5\n2,,6\n", ascii(1, 0, 2, 0.0));
    const Survey records(stamped({0xFFFFFFFF, 0xFFFFFFFF}), binary(2, 0.0));
    for (const Survey* survey : {&text, &records}) {
        const Finding* const told = survey->find("stamp-missing");
        ASSERT_NE(told, nullptr);
        EXPECT_EQ(told->severity, Severity::Error);
        EXPECT_EQ(told->places, 2U);
        EXPECT_FALSE(told->mended);
        EXPECT_FALSE(survey->survey.asItStands);
    }
}

TEST(SurveyStamps, TakesTheGapsOfALongRecordingByItsUsualStep) {
    std::vector<std::uint32_t> stamps;
    for (std::uint32_t i = 0; i < 3000; ++i) {
        stamps.push_back(i * 100 + (i >= 2000 ? 5000 : 0));
    }
    const Survey survey(stamped(stamps), binary(3000, 0.0));
    ASSERT_EQ(survey.codes(), std::vector<std::string>{"stamp-gap"});
    EXPECT_EQ(survey.findings[0].places, 1U);
    EXPECT_EQ(survey.findings[0].offset, 20004U); // 2000 records of 10 bytes, and the number
}

TEST(SurveyData, IsAnErrorForAFileThatCannotBeRead) {
    DataSource source;
    source.file = "/nowhere/a.dat";
    source.length = 100;
    const Surveyed surveyed = orvtest::survey(source, ascii(1, 0, 1));
    EXPECT_EQ(surveyed.codes(), std::vector<std::string>{"unreadable"});
    EXPECT_EQ(surveyed.findings[0].severity, Severity::Error);
}

TEST(SurveyData, BoundsItsMemoryByTheDataNotByWhatIsDeclared) {
    EXPECT_EQ(Survey("1,0,5\n", ascii(1, 0, UINT64_MAX)).survey.samples, 1U);
    EXPECT_EQ(Survey(record16(1, 0, 5), binary(UINT64_MAX)).survey.samples, 1U);
}

} // namespace
