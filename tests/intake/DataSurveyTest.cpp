// What a survey finds in data: how many samples, how they are to be read, and every fault with its place.

#include "data/LineFaults.h"
#include "data/Stamps.h"
#include "data/binarySurvey.h"
#include "intake/dataSupport.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <system_error>
#include <vector>

namespace {

using namespace OrvComtradeIntake;
using orvtest::cfgFor;
using orvtest::LittleEndianBytes;
using orvtest::record16;
using orvtest::record32;
using orvtest::stamped;
using orvtest::Surveyed;
using orvtest::TempDir;
using orvtest::textOf;

const std::string kManyZeros(200000, '\0');

ReadCfg ascii(std::size_t analogs, std::size_t statuses, std::uint64_t samples = 0, double rate = 1000.0) {
    return cfgFor(analogs, statuses, DataType::Ascii, rate, samples);
}

ReadCfg ofRevision(ReadCfg cfg, int revision) {
    cfg.header.revision = revision;
    return cfg;
}

ReadCfg binary(std::uint64_t samples, double rate = 1000.0) {
    return cfgFor(1, 0, DataType::Binary, rate, samples);
}

ReadCfg withRates(ReadCfg cfg, const std::vector<RateInfo>& rates) {
    cfg.header.rates = rates;
    cfg.header.samplesDeclared = rates.back().endSample;
    return cfg;
}

/// Lines that end with LF have that finding besides.
struct SampleRow {
    const char* why;
    std::string data;
    std::uint64_t samples;
    const char* codes;
};

TEST(SurveyAscii, LeavesWhatTheLibraryReadsRightly) {
    const SampleRow rows[] = {
        // 2 analog and 2 status channels
        {"plain lines", "1,0,5,-3,1,0\n2,1000,6,-4,0,1\n", 2, ""},
        {"CR LF", "1,0,5,-3,1,0\r\n2,1000,6,-4,0,1\r\n", 2, ""},
        {"no line end at the end", "1,0,5,-3,1,0\n2,1000,6,-4,0,1", 2, ""},
        {"separated by blanks", "1 0 5 -3 1 0\n2\t1000 6 -4 0 1\n", 2, "separators"},
        {"blanks behind commas", "1, 0, 5, -3, 1, 0\n", 1, ""},
        {"zeros in front", "0001,000000,0005,-0003,1,0\n", 1, ""},
        {"a comma at the end", "1,0,5,-3,1,0,\n", 1, "extra-text"},
        {"more columns", "1,0,5,-3,1,0,9,9\n", 1, "surplus-columns"},
        {"empty lines", "1,0,5,-3,1,0\n\n\n2,1000,6,-4,0,1\n", 2, "blank-lines"},
        {"a blank line at the end", "1,0,5,-3,1,0\r\n\r\n", 1, ""},
        {"0x1A at the end", "1,0,5,-3,1,0\r\n\x1A", 1, ""},
        {"0x1A behind the last column", "1,0,5,-3,1,0\x1A", 1, ""},
        {"zero bytes behind the last column", "1,0,5,-3,1,0" + std::string(4096, '\0'), 1, ""},
        {"zero bytes behind the last line", "1,0,5,-3,1,0\n" + kManyZeros, 1, ""},
        {"text behind the last line", "1,0,5,-3,1,0\nEND OF FILE, 1 sample\n", 1, "bad-data-line"},
        {"text behind the last column", "1,0,5,-3,1,0EOF", 1, "status-value"},
        {"CR behind a comma", "1,0,5,\r-3,1,0\n2,1000,6,-4,0,1\n", 2, "control-characters"},
        {"CR in front of the last column", "1,0,5,-3,1,\r0\n2,1000,6,-4,0,1\n", 2, "control-characters"},
        {"CR CR LF", "1,0,5,-3,1,0\r\r\n2,1000,6,-4,0,1\r\r\n", 2, ""},
        {"LF CR", "1,0,5,-3,1,0\n\r2,1000,6,-4,0,1\n\r", 2, "control-characters"},
        {"the largest integers", "1,0,9223372036854775807,-9223372036854775807,1,0\n", 1, ""},
        {"a short line at the end", "1,0,5,-3,1,0\n2,1000,6,-4", 1, "record-cut"},
        {"negative time stamps that do not count", "1,-41663,5,-3,1,0\n", 1, ""},
    };
    for (const SampleRow& row : rows) {
        const Surveyed survey(row.data, ascii(2, 2, row.samples));
        EXPECT_TRUE(survey.libraryReads()) << row.why;
        EXPECT_EQ(survey.samples(), row.samples) << row.why;
        EXPECT_EQ(survey.codesBesideLineEnds(), row.codes) << row.why;
        ASSERT_TRUE(survey.facts) << row.why;
        EXPECT_TRUE(survey.facts->missing.empty()) << row.why;
        EXPECT_TRUE(survey.facts->exponents.empty()) << row.why;
    }
}

TEST(SurveyAscii, FindsNothingInWhatTheStandardAllows) {
    const SampleRow rows[] = {
        // 2 analog and 2 status channels
        {"CR LF", "1,0,5,-3,1,0\r\n2,1000,6,-4,0,1\r\n", 2, ""},
        {"no line end at all", "1,0,5,-3,1,0", 1, ""},
        {"0x1A in a line of its own", "1,0,5,-3,1,0\r\n\x1A", 1, ""},
        {"0x1A and CR LF", "1,0,5,-3,1,0\r\n\x1A\r\n", 1, ""},
        {"0x1A behind the last column", "1,0,5,-3,1,0\x1A", 1, ""},
        {"blanks around columns", " 1 ,\t0, 5 ,-3 , 1 , 0 \r\n", 1, ""},
        {"no stamp where a rate gives the times", "1,,5,-3,1,0\r\n2,,6,-4,0,1\r\n", 2, ""},
        {"stamps as the rate makes them", "1,7,5,-3,1,0\r\n2,1007,6,-4,0,1\r\n3,2007,6,-4,0,1\r\n", 3, ""},
    };
    for (const SampleRow& row : rows) {
        const Surveyed survey(row.data, ascii(2, 2, row.samples));
        EXPECT_EQ(survey.samples(), row.samples) << row.why;
        EXPECT_EQ(survey.codes(), row.codes) << row.why;
    }
}

struct FindingRow {
    const char* why;
    std::string data;
    const char* code;
    Severity severity;
    std::size_t line;
    const char* field;
    std::uint64_t offset;
    std::uint64_t places;
    bool libraryReads;
};

TEST(SurveyAscii, FindingsHaveTheirPlaces) {
    const std::string first = "1,0,5,-3,1,0\n"; // 13 bytes
    constexpr auto note = Severity::Note;
    constexpr auto warning = Severity::Warning;
    const FindingRow rows[] = {
        {"decimals", first + "2,0,5,3.5,1,0\n3,0,5,4.5,1,0\n", "decimals", note, 2, "A2", 19, 2, false},
        {"plus sign", first + "2,0,+5,-3,1,0\n", "decimals", note, 2, "A1", 17, 1, false},
        {"empty value", first + "2,0,,-3,1,0\n", "empty-data-field", warning, 2, "A1", 17, 1, false},
        {"empty number", ",0,5,-3,1,0\n", "empty-data-field", warning, 1, "n", 0, 1, false},
        {"empty state", first + "2,0,5,-3,1,,\n", "empty-data-field", warning, 2, "D2", 24, 1, false},
        {"no number", first + "2,0,5,*,1,0\n", "bad-data-line", warning, 2, "A2", 19, 1, false},
        {"short line", "1,0,5\n2,0,5,-3,1,0\n", "short-data-line", warning, 1, "DAT", 0, 1, false},
        {"short line at the end", first + "2,0,5\n", "record-cut", warning, 2, "", 13, 1, true},
        {"empty line", first + "\n2,0,5,-3,1,0\n", "blank-lines", note, 2, "DAT", 13, 1, true},
        {"blank line", first + " \n2,0,5,-3,1,0\n", "blank-lines", note, 2, "DAT", 13, 1, false},
        {"0x1A", first + "\x1A\n2,0,5,-3,1,0\n", "control-characters", warning, 2, "DAT", 13, 1, false},
        {"text", "n,t,Ua,Ub,Trip,Start\n" + first, "bad-data-line", warning, 1, "DAT", 0, 1, false},
        {"LF alone", first, "line-ends", note, 1, "DAT", 0, 1, true},
        {"CR alone", "1,0,5,-3,1,0\r2,0,5,-3,1,0\r", "line-ends", note, 1, "DAT", 0, 1, false},
        {"CR CR LF", "1,0,5,-3,1,0\r\r\n2,0,5,-3,1,0\r\r\n", "line-ends", note, 1, "DAT", 0, 1, true},
        {"CR alone once", "1,0,5,-3,1,0\r\n2,0,5,-3,1,0\r3,0,5,-3,1,0\r\n", "line-ends", note, 2, "DAT", 27, 1, false},
        {"missing value", first + "2,0,5,99999,1,0\n", "missing-values", note, 0, "A2", 0, 1, true},
        {"state 01", first + "2,0,5,-3,01,0\n", "status-value", warning, 2, "D1", 22, 1, false},
        {"state 00", first + "2,0,5,-3,00,1\n", "status-value", warning, 2, "D1", 22, 1, false},
        {"state +1", first + "2,0,5,-3,0,+1\n", "status-value", warning, 2, "D2", 24, 1, true},
        {"states 1.0 and 0.0", first + "2,0,5,-3,1.0,0.0\n", "status-value", warning, 2, "D1", 22, 2, false},
        {"state of text", first + "2,0,5,-3,ON,0\n", "status-value", warning, 2, "D1", 22, 1, false},
        {"comma at the end", first + "2,0,5,-3,1,0,\n3,0,5,-3,1,0,\n", "extra-text", note, 2, "column 7", 26, 2, true},
        {"commas and blanks at the end", "1,0,5,-3,1,0, ,\n", "extra-text", note, 1, "column 7", 13, 1, true},
        {"more columns", first + "2,0,5,-3,1,0,9,9\n3,0,5,-3,1,0,9\n", "surplus-columns", warning, 2, "column 7", 26, 2,
         true},
        {"more columns by blanks", first + "2 0 5 -3 1 0 9\n", "surplus-columns", warning, 2, "column 7", 26, 1, true},
        {"byte-order mark", "\xEF\xBB\xBF" + first, "byte-order-mark", note, 1, "DAT", 0, 1, false},
        {"CR behind a comma", first + "2,0,5,\r-3,1,0\n", "control-characters", warning, 2, "DAT", 19, 1, true},
        {"CR before a comma", first + "2,0,5\r,-3,1,0\n", "control-characters", warning, 2, "DAT", 18, 1, false},
        {"CR behind the number", first + "2\r,0,5,-3,1,0\n", "control-characters", warning, 2, "DAT", 14, 1, false},
        {"CR for a comma", first + "2,0,5\r-3,1,0\n", "control-characters", warning, 2, "DAT", 18, 1, true},
        {"CR in a value", first + "2,0,5\r5,-3,1,0\n", "bad-data-line", warning, 2, "A1", 17, 1, false},
        {"0x1A within a line", first + "2,0,5\x1A,-3,1,0\n", "control-characters", warning, 2, "DAT", 18, 1, false},
        {"0x1A in front of a line", first + "\x1A" + first, "control-characters", warning, 2, "DAT", 13, 1, false},
        {"0x1A behind a column and a line end", first + "2,0,5,-3,1,0\x1A\n", "control-characters", warning, 2, "DAT",
         25, 1, true},
        {"more zero bytes than a line may have", first + kManyZeros + first, "control-characters", warning, 2, "DAT",
         13, 1, false},
        {"text behind the last column", "1,0,5,-3,1,0EOF\n", "status-value", warning, 1, "D2", 11, 1, true},
        {"text at the end", first + "END OF FILE, 1 of 1 samples\n", "bad-data-line", warning, 2, "DAT", 13, 1, true},
        {"a number that jumps", first + "7,0,5,-3,1,0\n", "number-jump", Severity::Error, 2, "n", 13, 1, true},
    };
    for (const FindingRow& row : rows) {
        const Surveyed survey(row.data, ascii(2, 2));
        const Finding* const finding = survey.find(row.code);
        ASSERT_NE(finding, nullptr) << row.why << ": " << survey.codes();
        EXPECT_EQ(finding->severity, row.severity) << row.why;
        EXPECT_EQ(finding->place.file, "a.dat") << row.why;
        EXPECT_EQ(finding->place.line, row.line) << row.why;
        EXPECT_EQ(finding->place.field, row.field) << row.why;
        EXPECT_EQ(finding->place.offset, row.offset) << row.why;
        EXPECT_EQ(finding->places, row.places) << row.why;
        EXPECT_EQ(survey.libraryReads(), row.libraryReads) << row.why;
    }
}

TEST(SurveyAscii, SaysOfEachFaultWhatItIsAndHowItIsRead) {
    std::string reported;
    for (std::size_t fault = 0; fault < static_cast<std::size_t>(LineFault::Count); ++fault) {
        LineFaults faults;
        faults.add({static_cast<LineFault>(fault), 3, 0}, 1, 0);
        Findings findings;
        faults.report(ByteSource::ofText("", "a.dat", 0), DataLayout(ascii(2, 2).header, DataType::Ascii), false,
                      findings);
        for (const Finding& finding : findings.take()) {
            reported += finding.code + " " + finding.place.field + ": " + finding.found + ": " + finding.repair + "\n";
        }
    }
    EXPECT_EQ(reported,
              "blank-lines DAT: a blank line: skipped\n"
              "control-characters DAT: 0x1A or zero bytes: skipped\n"
              "bad-data-line DAT: a line that is not a sample: skipped\n"
              "short-data-line DAT: fewer columns than channels: the others read as missing values and states of 0\n"
              "empty-data-field A2: nothing: read as a missing value or state 0; sample numbers are counted\n"
              "bad-data-line A2: text that is not a number: read as a missing value; sample numbers are counted\n"
              "status-value A2: neither 0 nor 1: read as 0 if it is zero, otherwise as 1\n"
              "decimals A2: a decimal point, a plus sign or an exponent: read exactly\n"
              "stamp-decimals A2: a decimal point, a plus sign or an exponent: read exactly\n"
              "stamp-range A2: more than 64 bits: read as missing\n"
              "separators DAT: columns separated by blanks: read as separate columns\n"
              "byte-order-mark DAT: a UTF-8 byte-order mark: skipped\n"
              "control-characters DAT: CR, 0x1A or zero bytes in a line: read as blanks\n"
              "line-ends DAT: CR alone: read as a line end\n"
              "extra-text A2: a comma after the last column: skipped\n"
              "surplus-columns A2: more columns than channels: the first ones are read\n");
}

TEST(SurveyAscii, FindsEachFaultOnce) {
    const std::string good = "1,0,5,-3,1,0\n";
    struct Row {
        const char* why;
        std::string data;
        const char* codes;
    };
    const Row rows[] = {
        {"states of many kinds", "1,0,5,-3,01,1.0\n2,0,5,-3,x,+1\n3,0,5,-3,1,0\n", "status-value"},
        {"a comma at the end of every line", "1,0,5,-3,1,0,\n2,0,5,-3,1,0,\n3,0,5,-3,1,0,\n", "extra-text"},
        {"commas at the end of decimals", "1,0,5.5,-3,1,0,\n2,0,5.5,-3,1,0,\n", "decimals extra-text"},
        {"byte-order mark", "\xEF\xBB\xBF" + good, "byte-order-mark"},
        {"byte-order mark before headings", "\xEF\xBB\xBFn,t,A,B,C,D\n" + good, "bad-data-line byte-order-mark"},
        {"byte-order mark before a line that CR divides",
         "\xEF\xBB\xBF"
         "1,0,5,-3,1,0\r2,0,5,-3,1,0\n3,0,5,-3,1,0\n",
         "byte-order-mark"},
        {"CR once for LF", "1,0,5,-3,1,0\r2,0,5,-3,1,0\n", ""},
        {"CR for every LF", "1,0,5,-3,1,0\r2,0,5,-3,1,0\r", ""},
        {"CR before every comma", "1\r,0\r,5\r,-3\r,1\r,0\n", "control-characters"},
        {"0x1A at the end", good + "\x1A", ""},
        {"zero bytes at the end", good + kManyZeros, ""},
        {"lines of text at the end", good + "EOF\n----\n", "bad-data-line"},
        {"text behind 0x1A", good + "\x1Aold text of the disk,1,2\n", "bad-data-line"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(Surveyed(row.data, ascii(2, 2)).codesBesideLineEnds(), row.codes) << row.why;
    }
}

TEST(SurveyAscii, DecimalsAreAFaultUntil2013) {
    const std::string data = "1,0,5.5,+3,1,0\r\n2,1000,,4e2,1,0\r\n";
    const Surveyed before(data, ascii(2, 2));
    EXPECT_EQ(before.codes(), "empty-data-field decimals missing-values");
    const Surveyed since(data, ofRevision(ascii(2, 2), 2013));
    EXPECT_EQ(since.codes(), "missing-values");
    for (const Surveyed* survey : {&before, &since}) {
        EXPECT_EQ(survey->facts->exponents, (std::vector<int>{2, 0}));
        EXPECT_EQ(textOf(survey->facts->missing), "0:1+1");
    }
}

TEST(SurveyAscii, CountsSamples) {
    const SampleRow rows[] = {
        {"as declared", "1,0,5\n2,0,5\n", 2, ""},
        {"numbers that jump within the declared ones", "10,0,5\n20,0,5\n", 2, "number-jump"},
        {"a comma at the end of each", "1,0,5,\n2,0,5,\n", 2, "extra-text"},
        {"CR inside one", "1,\r0,5\n2,0,5\n", 2, "control-characters"},
        {"CR divides one", "1,0,5\r2,0,6\n", 2, ""},
    };
    for (const SampleRow& row : rows) {
        const Surveyed survey(row.data, ascii(1, 0, 2));
        EXPECT_EQ(survey.samples(), row.samples) << row.why;
        EXPECT_EQ(survey.codesBesideLineEnds(), row.codes) << row.why;
    }
}

TEST(SurveyAscii, LinesBeyondTheDeclaredNumberAreSamplesWhileTheirNumbersGoOn) {
    struct Row {
        const char* why;
        std::string data;
        std::uint64_t declared;
        std::uint64_t samples;
        const char* codes;
    };
    const Row rows[] = {
        {"fewer", "1,0,5\n2,0,5\n", 885, 2, ""},
        {"none declared", "1,0,5\n2,0,5\n", 0, 2, ""},
        {"more, numbers go on", "1,0,5\n2,0,5\n3,0,5\n", 1, 3, ""},
        {"more, numbers do not go on", "1,0,5\n2,0,5\n7,0,5\n", 1, 2, "stray-bytes"},
        {"more, behind one with a fault", "1,0,5,\n2,0,5\n7,0,5\n", 2, 2, "extra-text stray-bytes"},
        {"more, of which the first has faults of its own", "1,0,5\n2,0,5\n7,0,x\n", 2, 2, "stray-bytes"},
        {"more, none of them a sample", "1,0,5\nend of data\n", 1, 1, "bad-data-line"},
        {"more, of which the first is not plain", "1,0,5\n 2,0,5\n3,0,5\n", 1, 3, ""},
    };
    for (const Row& row : rows) {
        const Surveyed survey(row.data, ascii(1, 0, row.declared));
        EXPECT_EQ(survey.samples(), row.samples) << row.why;
        EXPECT_EQ(survey.codesBesideLineEnds(), row.codes) << row.why;
        EXPECT_TRUE(survey.libraryReads()) << row.why;
    }
    const Surveyed survey("1,0,5\n2,0,5\n7,0,5\n", ascii(1, 0, 2));
    const Finding* const finding = survey.find("stray-bytes");
    ASSERT_NE(finding, nullptr);
    EXPECT_EQ(finding->place.line, 3U);
    EXPECT_EQ(finding->place.offset, 12U);
}

TEST(SurveyAscii, TakesAsManySamplesAsLengthsOfRatesSumTo) {
    const ReadCfg cfg = withRates(ascii(1, 0), {{1000.0, 2}, {500.0, 2}});
    EXPECT_EQ(Surveyed("1,0,5\n2,0,5\n1,0,5\n2,0,5\n", cfg).samples(), 4U);
    EXPECT_EQ(Surveyed("1,0,5\n2,0,5\n1,0,5\n2,0,5\n9,0,5\n", cfg).samples(), 2U);
}

TEST(SurveyAscii, ListsMissingValuesByChannelAsRuns) {
    const Surveyed survey("1,0,5,99999\n2,0,99999,99999\n3,0,99999,7\n4,0,5,99999\n", ascii(2, 0, 4));
    EXPECT_TRUE(survey.libraryReads());
    EXPECT_EQ(textOf(survey.facts->missing), "0:1+2 1:0+2 1:3+1");
    const Finding* const finding = survey.find("missing-values");
    ASSERT_NE(finding, nullptr);
    EXPECT_EQ(finding->places, 5U);
    EXPECT_EQ(finding->place.field, "A2");
    EXPECT_EQ(finding->found, "99999 or nothing in A1, A2, first in sample 1");
}

TEST(SurveyAscii, TheNumberForAMissingValueIsThatOfTheRevision) {
    struct Row {
        const char* why;
        int revision;
        double min;
        double max;
        const char* missing; ///< of 99999 in A1, of 999999 in A2
    };
    const Row rows[] = {
        {"since 1999", 1999, 0, 0, "0:0+1"},
        {"since 2013", 2013, 0, 0, "0:0+1"},
        {"a year between", 2001, 0, 0, "0:0+1"},
        {"in 1991", 1991, 0, 0, "1:0+1"},
        {"a year before 1999", 1997, 0, 0, "1:0+1"},
        {"in 1991, a value of a wide range", 1991, -2000000, 2000000, ""},
        {"in 1991, the end of the range", 1991, -999999, 999999, "1:0+1"},
    };
    for (const Row& row : rows) {
        ReadCfg cfg = ofRevision(ascii(2, 0, 1), row.revision);
        for (AnalogInfo& channel : cfg.header.analog) {
            channel.min = row.min;
            channel.max = row.max;
        }
        const Surveyed survey("1,0,99999,999999\r\n", cfg);
        EXPECT_EQ(textOf(survey.facts->missing), row.missing) << row.why;
    }
}

TEST(SurveyAscii, TakesNoOtherNumberForAMissingValue) {
    const Surveyed survey("1,99999,-99999,999990,199999,9999,99998\n", ascii(5, 0, 1));
    EXPECT_TRUE(survey.facts->missing.empty());
}

TEST(SurveyAscii, ShortLineIsMissingValuesWhereAnotherLineFollows) {
    const Surveyed survey("1,0,5,6,1\r\n2,1000\r\n3,2000,7,8,1\r\n4,3000\r\n", ascii(2, 1, 0));
    EXPECT_EQ(survey.samples(), 3U);
    EXPECT_EQ(survey.codes(), "short-data-line record-cut missing-values");
    EXPECT_EQ(textOf(survey.facts->missing), "0:1+1 1:1+1");
}

TEST(SurveyAscii, IsAnErrorWithoutAWholeLine) {
    for (const std::string data : {"", "\n\n", "1,0\n2,0\n", "not data at all\n", "\x1A"}) {
        const Surveyed survey(data, ascii(2, 2, 5));
        EXPECT_FALSE(survey.facts) << data;
        ASSERT_EQ(survey.codes(), "no-samples") << data;
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
        {"\xEF\xBB\xBFx,y\n", "no line with 6 columns of numbers; the first line, \"\xEF\xBB\xBFx,y\", has 2", 1, 0},
        {"", "no line with 6 columns of numbers; the data are empty", 0, 0},
        {" \n\x1A", "no line with 6 columns of numbers; only blanks, 0x1A or zero bytes", 0, 0},
    };
    for (const Row& row : rows) {
        const Surveyed survey(row.data, ascii(2, 2, 5));
        ASSERT_EQ(survey.codes(), "no-samples") << row.data;
        EXPECT_EQ(survey.findings[0].found, row.found);
        EXPECT_EQ(survey.findings[0].place.line, row.line) << row.data;
        EXPECT_EQ(survey.findings[0].place.offset, row.offset) << row.data;
    }
}

TEST(SurveyAscii, IsAnErrorWhereOnlyChanceMakesALineASample) {
    std::string noise;
    for (int i = 0; i < 22; ++i) {
        noise += "#\n";
    }
    const std::string like = "?,0,5,6,0,1\n";
    EXPECT_EQ(Surveyed(noise + like, ascii(2, 2, 1)).codes(), "no-samples");
    EXPECT_EQ(Surveyed(noise + "1,0,5,6,0,1\n", ascii(2, 2, 1)).samples(), 1U);
    EXPECT_EQ(Surveyed(noise.substr(0, 38) + like, ascii(2, 2, 1)).samples(), 1U);
}

TEST(SurveyAscii, TakesLinesOfAnyLengthAcrossBlocks) {
    std::string data;
    std::string line;
    for (int i = 0; i < 3000; ++i) {
        line += "," + std::to_string(i);
    }
    for (int sample = 1; sample <= 100; ++sample) {
        data += std::to_string(sample) + "," + std::to_string(1000 * sample) + line + "\r\n";
    }
    const Surveyed survey(data, ascii(3000, 0, 100));
    EXPECT_EQ(survey.samples(), 100U);
    EXPECT_TRUE(survey.libraryReads());
    EXPECT_EQ(survey.codes(), "");
}

TEST(SurveyAscii, PassesOverTheRestOfALineThatNeverEnds) {
    const std::string data = "1,0,5\r\n" + std::string(1000000, 'x') + "\n2,0,5\r\n";
    const Surveyed survey(data, ascii(1, 0, 2));
    EXPECT_EQ(survey.samples(), 2U);
    EXPECT_FALSE(survey.libraryReads());
    EXPECT_EQ(survey.codes(), "bad-data-line");
}

TEST(SurveyAscii, ExponentsMakeEachChannelIntegersThatADoubleHolds) {
    struct Row {
        const char* why;
        std::string data;
        std::vector<int> exponents;
    };
    const Row rows[] = {
        {"integers", "1,0,5,-7\r\n", {}},
        {"decimals of one channel, one digit more than needed", "1,0,12.5,7\r\n", {2, 0}},
        {"the most digits of any value", "1,0,12.5,7\r\n2,0,-0.125,7\r\n", {4, 0}},
        {"behind plain lines", "1,0,5,7\r\n2,0,6,7.25\r\n", {0, 3}},
        {"beside integers of plain lines", "1,0,5,12345678901234\r\n2,1000,6,0.25\r\n", {0, 2}},
        {"beside one beyond all that is measured", "1,0,5,100000000000000\r\n2,1000,6,0.25\r\n", {0, 3}},
        {"one beyond 64 bits beside integers", "1,0,5,1002\r\n2,1000,6,1e22\r\n", {0, 1}},
        {"which hides no digits", "1,0,5,1e18\r\n2,1000,6,1e22\r\n", {0, -7}},
        {"so far beyond that a text could not have it", "1,0,5,1e-30\r\n2,1000,6,1e37\r\n", {0, 20}},
        {"beside zeros", "1,0,5,0\r\n2,1000,6,-1e22\r\n", {0, -7}},
        {"zeros behind the point are no digits", "1,0,5.000,7.500\r\n", {0, 2}},
        {"as many digits as 2^53 has", "1,0,123456.78901234567,7\r\n", {10, 0}},
        {"more than 64 bits", "1,0,1e20,7\r\n", {-5, 0}},
        {"values of unlike size", "1,0,1e18,1.5\r\n2,0,0.123,1e17\r\n", {4, 2}},
        {"tiny ones", "1,0,1e-40,7\r\n", {41, 0}},
    };
    for (const Row& row : rows) {
        const Surveyed survey(row.data, ascii(2, 0));
        EXPECT_EQ(survey.facts->exponents, row.exponents) << row.why;
        EXPECT_EQ(survey.libraryReads(), row.exponents.empty()) << row.why;
    }
}

TEST(SurveyBinary, LeavesWhatTheLibraryReadsRightly) {
    const Surveyed survey(record16(1, 0, 5) + record16(2, 1000, 0x7FFF), binary(2));
    EXPECT_TRUE(survey.libraryReads());
    EXPECT_EQ(survey.samples(), 2U);
    EXPECT_EQ(survey.facts->libraryType, DataType::Binary);
    EXPECT_EQ(survey.facts->recordStride, 10U);
    EXPECT_EQ(survey.codes(), "");
}

TEST(SurveyBinary, CountsRecords) {
    const std::string two = record16(1, 0, 5) + record16(2, 1000, 5);
    struct Row {
        const char* why;
        std::string data;
        std::uint64_t declared;
        std::uint64_t samples;
        bool libraryReads;
        const char* codes;
        std::uint64_t offset;
    };
    const Row rows[] = {
        {"fewer", two, 5, 2, true, "", 0},
        {"none declared", two, 0, 2, true, "", 0},
        {"more, numbers go on", two, 1, 2, true, "", 0},
        {"more, numbers do not go on", two + record16(9, 2000, 5), 2, 2, false, "stray-bytes", 20},
        {"fewer, numbers do not go on", two + record16(9, 2000, 5), 4, 3, true, "number-jump", 20},
        {"stray bytes", two + "abc", 2, 2, true, "stray-bytes", 20},
        {"a record cut short", two + "abc", 3, 2, true, "record-cut", 20},
    };
    for (const Row& row : rows) {
        const Surveyed survey(row.data, binary(row.declared));
        EXPECT_EQ(survey.samples(), row.samples) << row.why;
        EXPECT_EQ(survey.libraryReads(), row.libraryReads) << row.why;
        ASSERT_EQ(survey.codes(), row.codes) << row.why;
        EXPECT_EQ(survey.findings.empty() ? 0 : survey.findings[0].place.offset, row.offset) << row.why;
    }
}

TEST(SurveyBinary, TakesAsManyRecordsAsLengthsOfRatesSumTo) {
    const std::string two = record16(1, 0, 5) + record16(2, 1000, 5);
    const Surveyed survey(two + record16(1, 2000, 5) + record16(2, 4000, 5),
                          withRates(binary(0), {{1000.0, 2}, {500.0, 2}}));
    EXPECT_EQ(survey.samples(), 4U);
    EXPECT_TRUE(survey.libraryReads());
    EXPECT_EQ(survey.codes(), "");
}

TEST(SurveyBinary, FindsMissingValuesOfEachType) {
    struct Row {
        const char* why;
        DataType type;
        std::string data;
        bool isMissing;
    };
    const Row rows[] = {
        {"0x8000", DataType::Binary, record16(1, 0, 0x8000), true},
        {"0x8001", DataType::Binary, record16(1, 0, 0x8001), false},
        {"0x80000000", DataType::Binary32, record32(1, 0, 0x80000000), true},
        {"0x80000001", DataType::Binary32, record32(1, 0, 0x80000001), false},
        {"quiet NaN", DataType::Float32, record32(1, 0, 0x7FC00000), true},
        {"signalling NaN", DataType::Float32, record32(1, 0, 0x7F800001), true},
        {"negative NaN", DataType::Float32, record32(1, 0, 0xFFC00000), true},
        {"largest negative single", DataType::Float32, record32(1, 0, 0xFF7FFFFF), true},
        {"largest single", DataType::Float32, record32(1, 0, 0x7F7FFFFF), false},
        {"infinity", DataType::Float32, record32(1, 0, 0x7F800000), false},
        {"zero with a minus sign", DataType::Float32, record32(1, 0, 0x80000000), false},
    };
    for (const Row& row : rows) {
        const Surveyed survey(row.data, cfgFor(1, 0, row.type, 1000.0, 1));
        ASSERT_TRUE(survey.facts) << row.why;
        EXPECT_EQ(textOf(survey.facts->missing), row.isMissing ? "0:0+1" : "") << row.why;
        EXPECT_EQ(survey.codes(), row.isMissing ? "missing-values" : "") << row.why;
    }
}

TEST(SurveyBinary, ShowsWhereTheFirstMissingValueIs) {
    const Surveyed survey(record16(1, 0, 5) + record16(2, 1000, 0x8000), binary(2));
    ASSERT_EQ(survey.codes(), "missing-values");
    EXPECT_EQ(survey.findings[0].place.field, "A1");
    EXPECT_EQ(survey.findings[0].place.offset, 18U);
    EXPECT_EQ(survey.findings[0].found, "0x8000 in A1, first in sample 2");
}

TEST(SurveyBinary, IntegersOf32BitsAreForTheLibraryWhatHoldsThemExactly) {
    struct Row {
        const char* why;
        std::uint32_t bits;
        std::uint32_t other;
        DataType type;
        std::vector<int> exponents;
    };
    const Row rows[] = {
        {"small ones", 5, 0xFFFFFFFE, DataType::Float32, {}},
        {"2^24", 0x01000000, 5, DataType::Float32, {}},
        {"2^24 + 1", 0x01000001, 5, DataType::Ascii, {}},
        {"2^24 + 2", 0x01000002, 5, DataType::Float32, {}},
        {"the missing one", 0x80000000, 5, DataType::Float32, {}},
        {"what looks missing in a text", 99999, 5, DataType::Float32, {}},
        {"that beside one that needs a text", 99999, 0x01000001, DataType::Ascii, {1}},
    };
    for (const Row& row : rows) {
        const Surveyed survey(record32(1, 0, row.bits) + record32(2, 1000, row.other),
                              cfgFor(1, 0, DataType::Binary32, 1000.0, 2));
        EXPECT_FALSE(survey.libraryReads()) << row.why;
        EXPECT_EQ(survey.facts->libraryType, row.type) << row.why;
        EXPECT_EQ(survey.facts->exponents, row.exponents) << row.why;
    }
}

TEST(SurveyBinary, IsAnErrorWithoutAWholeRecord) {
    for (const std::string data : {"", "123456789"}) {
        const Surveyed survey(data, binary(1));
        EXPECT_FALSE(survey.facts);
        ASSERT_EQ(survey.codes(), "no-samples");
        EXPECT_EQ(survey.findings[0].severity, Severity::Error);
    }
}

TEST(SurveyBinary, ReadsStampsOnlyWhereTimesComeFromThem) {
    const std::string data = stamped({0xFFFFFFFF, 500, 400, 300, 200});
    const Surveyed byRate(data, binary(5));
    EXPECT_EQ(byRate.codes(), "stamps-disagree");
    EXPECT_TRUE(byRate.libraryReads());
    EXPECT_FALSE(byRate.facts->areStampsSound);
    const Surveyed byStamps(data, binary(5, 0.0));
    EXPECT_EQ(byStamps.codes(), "stamp-missing stamp-backwards");
    EXPECT_FALSE(byStamps.libraryReads());
}

TEST(SurveyBinary, ComparesStampsBehindRatesWithoutSamples) {
    const ReadCfg cfg = withRates(binary(6), {{1000.0, 2}, {500.0, 2}, {250.0, 2}, {1000.0, 6}});
    EXPECT_EQ(Surveyed(stamped({0, 1000, 2000, 3000, 4000, 5000}), cfg).codes(), "");
    EXPECT_EQ(Surveyed(stamped({0, 1000, 2000, 2000, 2000, 2000}), cfg).codes(), "stamps-disagree");
}

TEST(SurveyStamps, FindsWhatIsOddOfRecords) {
    struct Row {
        const char* why;
        std::vector<std::uint32_t> stamps;
        const char* codes;
        std::string found;
        bool libraryReads;
    };
    const Row rows[] = {
        {"even", {0, 100, 200, 300}, "", "", true},
        {"from another than 0", {100, 200, 300}, "", "", false},
        {"the highest", {0xFFFFFF00, 0xFFFFFFFE}, "", "", false},
        {"missing", {0, 0xFFFFFFFF, 200}, "stamp-missing", "no time stamp in record 2", false},
        {"wrap", {0xFFFFFF00, 0xFFFFFF80, 0}, "stamp-wrap", "a restart from 0 in record 3", false},
        {"backwards", {0, 200, 100, 300}, "stamp-backwards", "a lower one than before in record 3", true},
        {"backwards by half the range",
         {0, 0x80000000, 0, 100},
         "stamp-backwards",
         "a lower one than before in record 3",
         true},
        {"backwards by more than that: a wrap",
         {0, 0x80000001, 0, 100},
         "stamp-wrap",
         "a restart from 0 in record 3",
         false},
        {"gap", {0, 100, 200, 1300, 1400}, "stamp-gap", "a step of 1100 instead of 100 in record 4", true},
        {"no gap: ten times the step", {0, 100, 200, 1200, 1300}, "", "", true},
    };
    for (const Row& row : rows) {
        const Surveyed survey(stamped(row.stamps), binary(row.stamps.size(), 0.0));
        ASSERT_EQ(survey.codes(), row.codes) << row.why;
        EXPECT_EQ(survey.libraryReads(), row.libraryReads) << row.why;
        EXPECT_EQ(survey.findings.empty() ? "" : survey.findings[0].found, row.found) << row.why;
    }
}

TEST(SurveyStamps, FindsWhatIsOddOfATextAndHowItIsRead) {
    struct Row {
        const char* why;
        std::string data;
        const char* code;
        Severity severity;
        std::size_t line;
        std::uint64_t places;
        const char* found;
        const char* repair;
    };
    const char* const decimals = "a decimal point, a plus sign or an exponent";
    constexpr auto note = Severity::Note;
    constexpr auto warning = Severity::Warning;
    const Row rows[] = {
        {"decimals", "1,0,5\n2,0.25,6\n3,0.5,7\n", "stamp-decimals", note, 2, 2, decimals, "read exactly"},
        {"decimals that are whole", "1,0,5\n2,+100,6\n3,200.0,7\n", "stamp-decimals", note, 2, 2, decimals,
         "read exactly"},
        {"negative", "1,-200,5\n2,-100,6\n3,0,7\n", "stamp-range", warning, 1, 2, "a negative time stamp",
         "used as it is"},
        {"negative decimals", "1,0,5\n2,-0.5,6\n", "stamp-range", warning, 2, 1, "a negative time stamp",
         "used as it is"},
        {"wide", "1,0,5\n2,50000000000,6\n", "stamp-range", warning, 2, 1, "more than 32 bits", "used as it is"},
        {"wide in a line that is not plain", "1,0,5\n2, 50000000000,6\n", "stamp-range", warning, 2, 1,
         "more than 32 bits", "used as it is"},
        {"more than 64 bits", "1,0,5\n2,99999999999999999999,6\n3,200,7\n", "stamp-range", warning, 2, 1,
         "more than 64 bits", "read as missing"},
        {"wide beside more than 64 bits", "1,0,5\n2,99999999999999999999,6\n3,50000000000,7\n", "stamp-range", warning,
         2, 2, "more than 64 bits", "read as missing"},
        {"missing", "1,0,5\n2,,6\n3,200,7\n", "stamp-missing", warning, 2, 1, "no time stamp", "interpolated"},
        {"begins again", "1,4294967000,5\n2,704,6\n", "stamp-wrap", warning, 2, 1, "a restart from 0", "counted on"},
        {"backwards", "1,0,5\n2,200,6\n3,100,6\n", "stamp-backwards", warning, 3, 1, "a lower one than before", ""},
    };
    for (const Row& row : rows) {
        const Surveyed survey(row.data, ascii(1, 0, 0, 0.0));
        const Finding* const finding = survey.find(row.code);
        ASSERT_NE(finding, nullptr) << row.why << ": " << survey.codes();
        EXPECT_EQ(finding->severity, row.severity) << row.why;
        EXPECT_EQ(finding->place.line, row.line) << row.why;
        EXPECT_EQ(finding->place.field, "timestamp") << row.why;
        EXPECT_EQ(finding->places, row.places) << row.why;
        EXPECT_EQ(finding->found, row.found) << row.why;
        EXPECT_EQ(finding->repair, row.repair) << row.why;
        EXPECT_EQ(survey.libraryReads(), row.code == std::string("stamp-backwards")) << row.why;
        EXPECT_EQ(survey.find("decimals"), nullptr) << row.why;
    }
}

TEST(SurveyStamps, MindsNoStampWhereTheRateIsKnown) {
    struct Row {
        const char* why;
        std::string data;
        const char* codes;
        bool libraryReads;
    };
    const Row rows[] = {
        {"negative", "1,-200,5\r\n2,800,6\r\n", "", true},
        {"wide", "1,50000000000,5\r\n2, 50000001000,6\r\n", "", true},
        {"constant", "1,0,5\r\n2,0,6\r\n", "", true},
        {"missing", "1,,5\r\n2,,6\r\n", "", false},
        {"more than 64 bits", "1,99999999999999999999,5\r\n2,0,6\r\n", "stamp-range", true},
        {"decimals, which the library does not read", "1,0,5\r\n2,1000.25,6\r\n", "stamp-decimals", false},
    };
    for (const Row& row : rows) {
        const Surveyed survey(row.data, ascii(1, 0, 2));
        EXPECT_EQ(survey.codes(), row.codes) << row.why;
        EXPECT_EQ(survey.libraryReads(), row.libraryReads) << row.why;
        EXPECT_TRUE(survey.facts->areStampsSound) << row.why;
    }
    const Surveyed decimals("1,0,5\r\n2,1000.25,6\r\n", ascii(1, 0, 2));
    ASSERT_EQ(decimals.codes(), "stamp-decimals");
    EXPECT_EQ(decimals.findings[0].place.line, 2U);
    EXPECT_EQ(decimals.findings[0].place.offset, 9U);
}

TEST(SurveyStamps, FindsTheSameTimeInEverySample) {
    const Surveyed text("1,0,5\r\n2,0,6\r\n3,0,7\r\n", ascii(1, 0, 3, 0.0));
    const Surveyed records(stamped({700, 700}), binary(2, 0.0));
    for (const Surveyed* survey : {&text, &records}) {
        ASSERT_EQ(survey->codes(), "stamp-constant");
        const Finding& finding = survey->findings[0];
        EXPECT_EQ(finding.severity, Severity::Warning);
        EXPECT_EQ(finding.place.field, "timestamp");
        EXPECT_EQ(finding.expected, "increasing time stamps");
        EXPECT_EQ(finding.repair, "");
    }
    EXPECT_EQ(Surveyed("1,0,5\r\n", ascii(1, 0, 1, 0.0)).codes(), "");
    EXPECT_EQ(Surveyed("1,0,5\r\n2,0,6\r\n3,1,7\r\n", ascii(1, 0, 3, 0.0)).codes(), "");
}

TEST(SurveyStamps, IsAnErrorWhereNothingGivesTheTimes) {
    const Surveyed text("1,,5\r\n2,,6\r\n", ascii(1, 0, 2, 0.0));
    const Surveyed records(stamped({0xFFFFFFFF, 0xFFFFFFFF}), binary(2, 0.0));
    for (const Surveyed* survey : {&text, &records}) {
        ASSERT_EQ(survey->codes(), "no-times");
        EXPECT_EQ(survey->findings[0].severity, Severity::Error);
        EXPECT_EQ(survey->findings[0].places, 2U);
        EXPECT_FALSE(survey->libraryReads());
    }
}

TEST(SurveyStamps, TakesTheGapsOfALongRecordingByItsUsualStep) {
    std::vector<std::uint32_t> stamps;
    for (std::uint32_t i = 0; i < 3000; ++i) {
        stamps.push_back(i * 100 + (i >= 2000 ? 5000 : 0));
    }
    const Surveyed survey(stamped(stamps), binary(3000, 0.0));
    ASSERT_EQ(survey.codes(), "stamp-gap");
    EXPECT_EQ(survey.findings[0].places, 1U);
    EXPECT_EQ(survey.findings[0].place.offset, 20000U); // 2000 records of 10 bytes
}

TEST(SurveyStamps, UsualStepIsThatOfManySamples) {
    std::vector<std::uint32_t> stamps = {0, 1, 2};
    for (std::uint32_t i = 1; i <= 100; ++i) {
        stamps.push_back(2 + 100 * i);
    }
    EXPECT_EQ(Surveyed(stamped(stamps), binary(stamps.size(), 0.0)).codes(), "");
}

TEST(SurveyStamps, OfATextMayTakeAllOf32Bits) {
    EXPECT_EQ(Surveyed("1,0,5\r\n2,4294967295,6\r\n", ascii(1, 0, 2, 0.0)).codes(), "");
    EXPECT_EQ(Surveyed("1,0,5\r\n2,4294967296,6\r\n", ascii(1, 0, 2, 0.0)).codes(), "stamp-range");
}

TEST(PlannedStamps, AreRoundedToTheNearestMultipleAndUpFromTheMiddle) {
    OrvComtradeIntake::StampPlan plan;
    plan.divisor = 10;
    plan.origin = -3;
    OrvComtradeIntake::PlannedStamps stamps(plan);
    std::string planned;
    for (const std::int64_t stamp : {-3, 1, 2, 6, 7, 11, 12, 1000}) {
        planned += std::to_string(stamps.next(stamp)) + ' ';
    }
    EXPECT_EQ(planned, "0 0 1 1 1 1 2 100 ");
}

TEST(PlannedStamps, InterpolateStampsThatADoubleCannotHold) {
    constexpr std::int64_t base = 877777777777777777; // doubles have steps of 128 here
    using Stamps = std::vector<std::optional<std::int64_t>>;
    const struct {
        Stamps stamps;
        const char* planned;
    } rows[] = {
        {{base, {}, {}, base}, "0 0 0 0 "},
        {{base, {}, {}, base + 300}, "0 100 200 300 "},
        {{{}, base + 100, base + 200}, "0 100 200 "},
        {{base, base + 100, {}, {}}, "0 100 200 300 "},
    };
    for (const auto& row : rows) {
        OrvComtradeIntake::StampSurvey survey(true, 0);
        std::uint64_t sample = 0;
        for (const std::optional<std::int64_t>& stamp : row.stamps) {
            OrvComtradeIntake::SamplePlace place;
            place.sample = sample++;
            survey.add(stamp, place);
        }
        const OrvComtradeIntake::StampPlan plan = survey.plan();
        OrvComtradeIntake::PlannedStamps stamps(plan);
        std::string planned;
        for (const std::optional<std::int64_t>& stamp : row.stamps) {
            planned += std::to_string(stamps.next(stamp)) + ' ';
        }
        EXPECT_EQ(planned, row.planned);
    }
}

TEST(SurveyStamps, WhateverTheyAreNothingOverflows) {
    const char* const stamps[] = {"0",     "1e18", "-1e18", "6000000000000000000", "-6000000000000000000", "9.19e18",
                                  "-9e18", "",     "0.5",   "4611686018427387904", "4294967295",           "-1"};
    for (const char* const first : stamps) {
        for (const char* const second : stamps) {
            for (const char* const third : stamps) {
                for (const double rate : {0.0, 1000.0}) {
                    const std::string data = std::string("1,") + first + ",5\r\n2," + second + ",5\r\n3," + third +
                                             ",5\r\n4,9100000000000000000,5\r\n5,-9100000000000000000,5\r\n";
                    EXPECT_EQ(Surveyed(data, ascii(1, 0, 5, rate)).samples(), 5U) << data;
                }
            }
        }
    }
}

TEST(SurveyData, ThrowsForAFileThatCannotBeRead) {
    const TempDir folder;
    EXPECT_THROW(ByteSource::ofFile(folder.file("a.dat")), std::system_error);
}

TEST(SurveyBinary, ThrowsWhereTheRecordsAreGoneSinceTheFileWasOpened) {
    const TempDir folder;
    const ByteSource source = ByteSource::ofFile(folder.write("a.dat", record16(1, 0, 5) + record16(2, 1000, 6)));
    folder.write("a.dat", "");
    Findings findings;
    EXPECT_THROW(OrvComtradeIntake::surveyBinary(source, binary(2), 10, true, findings), std::system_error);
}

/// Records of one analog channel and a status word each.
std::string recordsWithWords(const std::vector<std::uint16_t>& words) {
    std::string data;
    for (const std::uint16_t word : words) {
        const auto number = static_cast<std::uint32_t>(data.size() / 12 + 1);
        data += record16(number, 1000 * number, 5) + LittleEndianBytes().u16(word).bytes();
    }
    return data;
}

TEST(SurveyBinary, FindsBitsOfStatusWordsThatNoChannelHas) {
    const struct {
        const char* why;
        std::size_t statuses;
        std::vector<std::uint16_t> words;
        const char* found;
        std::uint64_t places;
    } rows[] = {
        {"none set", 3, {0x0007, 0x0000, 0x0005}, "", 0},
        {"all set", 3, {0xFFF8, 0xFFFF, 0xFFF9}, "0xfff8 after D3", 3},
        {"one set in one record", 15, {0x7FFF, 0x8000, 0x0001}, "0x8000 after D15", 1},
        {"each bit has a channel", 16, {0xFFFF, 0xFFFF, 0xFFFF}, "", 0},
    };
    for (const auto& row : rows) {
        const Surveyed survey(recordsWithWords(row.words), cfgFor(1, row.statuses, DataType::Binary, 1000.0, 3));
        ASSERT_TRUE(survey.facts) << row.why;
        EXPECT_TRUE(survey.libraryReads()) << row.why; // it has no use for them
        const Finding* const finding = survey.find("unused-bits");
        ASSERT_EQ(finding != nullptr, row.places != 0) << row.why << survey.codes();
        if (finding != nullptr) {
            EXPECT_EQ(finding->found, row.found) << row.why;
            EXPECT_EQ(finding->places, row.places) << row.why;
            EXPECT_EQ(finding->place.offset, row.places == 1 ? 22U : 10U) << row.why;
        }
    }
}

TEST(SurveyBinary, LooksForUnusedBitsInSamplesAlone) {
    const std::string data = recordsWithWords({1, 1, 1}) + std::string(12, '\xFF'); // a tail, which is no record
    const Surveyed survey(data, cfgFor(1, 1, DataType::Binary, 1000.0, 3));
    EXPECT_EQ(survey.samples(), 3U);
    EXPECT_EQ(survey.find("unused-bits"), nullptr) << survey.codes();
}

TEST(SurveyData, ReadsAFileAsItReadsMemory) {
    const TempDir folder;
    const std::string data = "1,0,5\r\n2,1000,x\r\n";
    ReadCfg cfg = ascii(1, 0, 2);
    const ByteSource source = ByteSource::ofFile(folder.write("a.dat", "heading\r\n" + data)).part(9, data.size());
    Findings findings;
    const std::optional<DataFacts> facts = surveyData(source, cfg, {}, findings);
    ASSERT_TRUE(facts);
    EXPECT_EQ(facts->samples, 2U);
    const std::vector<Finding> all = findings.take();
    ASSERT_EQ(orvtest::codesOf(all), "bad-data-line missing-values");
    EXPECT_EQ(all[0].place.file, folder.file("a.dat"));
    EXPECT_EQ(all[0].place.line, 2U);
    EXPECT_EQ(all[0].place.offset, 9U + 14U);
}

TEST(SurveyData, BoundsItsMemoryByTheDataNotByWhatIsDeclared) {
    constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    EXPECT_EQ(Surveyed("1,0,5\n", ascii(1, 0, most)).samples(), 1U);
    EXPECT_EQ(Surveyed(record16(1, 0, 5), binary(most)).samples(), 1U);
}

} // namespace
