#include "CfgSupport.h"

#include <gtest/gtest.h>

#include <string>

using namespace OrvComtradeIntake;
using intakeTest::CfgLines;
using intakeTest::ReadCfg;
using intakeTest::readCfg;

namespace {

/// One line replaced in an otherwise faultless `.cfg`.
template <typename Member> ReadCfg readWith(Member CfgLines::*member, const std::string& line) {
    CfgLines lines;
    lines.*member = line;
    return readCfg(lines.text());
}

std::string describe(const AnalogLine& channel) {
    const char* const side = channel.side == Side::Primary ? "P" : channel.side == Side::Secondary ? "S" : "-";
    return channel.id + '|' + channel.phase + '|' + channel.component + '|' + channel.unit + '|' +
           std::to_string(static_cast<double>(channel.a)) + '|' + std::to_string(static_cast<double>(channel.b)) + '|' +
           std::to_string(channel.skew) + '|' + std::to_string(channel.min) + '|' + std::to_string(channel.max) + '|' +
           std::to_string(channel.primary) + '|' + std::to_string(channel.secondary) + '|' + side;
}

std::string describe(const StatusLine& channel) {
    return channel.id + '|' + channel.phase + '|' + channel.component + '|' + std::to_string(channel.normalState);
}

struct AnalogRow {
    const char* why;
    const char* line;
    const char* expected;
    const char* codes;
};

template <std::size_t Count> void expectAnalogLines(const AnalogRow (&rows)[Count]) {
    for (const AnalogRow& row : rows) {
        const ReadCfg read = readWith(&CfgLines::analog, row.line);
        ASSERT_TRUE(read.configuration) << row.why;
        EXPECT_EQ(describe(read.configuration->analog.at(0)), row.expected) << row.why;
        EXPECT_EQ(read.codes(), row.codes) << row.why;
    }
}

} // namespace

TEST(ReadConfiguration, AFaultlessFileHasNoFindings) {
    const ReadCfg read = readCfg(CfgLines().text());
    ASSERT_TRUE(read.configuration);
    EXPECT_EQ(read.codes(), "");
    const Configuration& configuration = *read.configuration;
    EXPECT_EQ(configuration.station, "S");
    EXPECT_EQ(configuration.recorder, "R");
    EXPECT_EQ(configuration.revision, 1999);
    EXPECT_EQ(describe(configuration.analog.at(0)), "Ua|A|Bus|V|0.500000|0.250000|0.000000|-32767.000000|"
                                                    "32767.000000|1.000000|1.000000|S");
    EXPECT_EQ(describe(configuration.status.at(0)), "Trip|||0");
    EXPECT_EQ(configuration.lineFrequency, 50.0);
    EXPECT_EQ(configuration.rates.at(0).rate, 1000.0);
    EXPECT_EQ(configuration.samplesDeclared(), 8U);
    EXPECT_EQ(configuration.start->text(), "2011-01-12T05:55:30.075011000");
    EXPECT_EQ(configuration.trigger->text(), "2011-01-12T05:55:30.078261000");
    EXPECT_EQ(configuration.encoding, DataEncoding::Binary);
    EXPECT_EQ(configuration.timeMultiplier, 1.0);
    EXPECT_FALSE(configuration.timesAreStamped());
}

TEST(ReadConfiguration, StationLine) {
    const struct {
        const char* why;
        const char* line;
        const char* station;
        const char* recorder;
        int revision;
        const char* codes;
    } rows[] = {
        {"2013", "S,R,2013", "S", "R", 2013, ""},
        {"blanks around the year", "S,R, 1999 ", "S", "R", 1999, ""},
        {"no year: the library takes 1999", "S,R", "S", "R", 1999, "revision:rev_year"},
        {"name alone", "S", "S", "", 1999, "revision:rev_year"},
        {"empty names", ",,1999", "", "", 1999, ""},
        {"2001 is no revision", "S,R,2001", "S", "R", 2001, "revision:rev_year"},
        {"1997 with the newer lines", "S,R,1997", "S", "R", 1999, "layout:rev_year*"},
        {"unreadable year", "S,R,abcd", "S", "R", 1999, "revision:rev_year*"},
        {"blank year", "S,R, ", "S", "R", 1999, "revision:rev_year*"},
        {"year of two digits", "S,R,99", "S", "R", 1999, "revision:rev_year*"},
        {"blanks around the names", " S , R,1999", "S", "R", 1999, "blanks:station_name* blanks:rec_dev_id*"},
        {"comma in the name", "Sub, north,R,1999", "Sub north", "R", 1999, "comma-in-text:station_name*"},
        {"something behind the year", "S,R,1999,x", "S", "R", 1999, "extra-text:rev_year"},
        {"missing", "", "", "", 1999, "field-missing:station_name*"},
    };
    for (const auto& row : rows) {
        const ReadCfg read = readWith(&CfgLines::station, row.line);
        ASSERT_TRUE(read.configuration) << row.why;
        EXPECT_EQ(read.configuration->station, row.station) << row.why;
        EXPECT_EQ(read.configuration->recorder, row.recorder) << row.why;
        EXPECT_EQ(read.configuration->revision, row.revision) << row.why;
        EXPECT_EQ(read.codes(), row.codes) << row.why;
    }
}

TEST(ReadConfiguration, Layout) {
    const struct {
        const char* why;
        const char* station;
        const char* analog;
        const char* status;
        int revision;
        const char* codes;
    } rows[] = {
        {"1991", "S,R,1991", "1,Ua,A,,V,1,0,0,-9,9", "1,Trip,1", 1991, ""},
        {"1991 without a year", "S,R", "1,Ua,A,,V,1,0,0,-9,9", "1,Trip,1", 1991, "revision:rev_year*"},
        {"1999 with the lines of 1991", "S,R,1999", "1,Ua,A,,V,1,0,0,-9,9", "1,Trip,1", 1999,
         "layout:rev_year* field-missing:primary"},
        {"ratios beside old status lines", "S,R,1997", "1,Ua,A,,V,1,0,0,-9,9,5,1,S", "1,Trip,1", 1999,
         "layout:rev_year*"},
        {"comma in the name of 1991", "S,R,1991", "1,Ua,A,,V,1,0,0,-9,9", "1,Trip,1\n2,Trip,B,0\n3,x,1", 1991,
         "counts:TT* comma-in-text:ch_id*"},
    };
    for (const auto& row : rows) {
        CfgLines lines;
        lines.station = row.station;
        lines.analog = row.analog;
        lines.status = row.status;
        const ReadCfg read = readCfg(lines.text());
        ASSERT_TRUE(read.configuration) << row.why;
        EXPECT_EQ(read.configuration->revision, row.revision) << row.why;
        EXPECT_EQ(read.codes(), row.codes) << row.why;
        EXPECT_EQ(describe(read.configuration->status.at(0)), "Trip|||1") << row.why;
    }
}

TEST(ReadConfiguration, ACommaInEveryStatusNameOf1991LeavesTheYearAsItIs) {
    CfgLines lines;
    lines.station = "S,R,1991";
    lines.analog = "1,Ua,A,,V,1,0,0,-9,9";
    lines.status = "1,Trip, zone 1,1";
    const ReadCfg read = readCfg(lines.text());
    ASSERT_TRUE(read.configuration);
    EXPECT_EQ(read.configuration->revision, 1991);
    EXPECT_EQ(describe(read.configuration->status.at(0)), "Trip zone 1|||1");
    EXPECT_EQ(read.configuration->start->text(), "2011-12-01T05:55:30.075011000"); // month first
    EXPECT_EQ(read.codes(), "comma-in-text:ch_id*");
}

TEST(ReadConfiguration, TwoCommasInOneStatusNameOf1991LeaveTheOtherLinesAsTheyAre) {
    for (const std::string station : {"S,R,1991", "S,R"}) {
        CfgLines lines;
        lines.station = station;
        lines.counts = "4,1A,3D";
        lines.analog = "1,Ua,A,,V,1,0,0,-9,9";
        lines.status = "1,Trip,1\n2,Start,50,51,0\n3,x,1";
        const ReadCfg read = readCfg(lines.text());
        ASSERT_TRUE(read.configuration) << station;
        EXPECT_EQ(read.configuration->revision, 1991) << station;
        EXPECT_EQ(describe(read.configuration->status.at(0)), "Trip|||1") << station;
        EXPECT_EQ(describe(read.configuration->status.at(1)), "Start 50 51|||0") << station;
        EXPECT_EQ(read.configuration->start->text(), "2011-12-01T05:55:30.075011000") << station; // month first
        EXPECT_NE(read.finding("comma-in-text", "ch_id"), nullptr) << station;
    }
}

TEST(ReadConfiguration, ADecimalCommaOf1991IsFoundWhereTheRangeMovedToTheRatio) {
    CfgLines lines;
    lines.station = "S,R,1991";
    lines.analog = "1,UA,A,,V,1,5,0,0,0,-32767,32767";
    lines.status = "1,Trip,1";
    const ReadCfg read = readCfg(lines.text());
    ASSERT_TRUE(read.configuration);
    EXPECT_EQ(describe(read.configuration->analog.at(0)),
              "UA|A||V|1.500000|0.000000|0.000000|-32767.000000|32767.000000|1.000000|1.000000|-");
    EXPECT_NE(read.finding("decimal-comma", "a"), nullptr);
}

TEST(ReadConfiguration, CountsLine) {
    const struct {
        const char* why;
        const char* line;
        const char* codes;
    } rows[] = {
        {"blanks", " 2, 1A, 1D", ""},
        {"lower case", "2,1a,1d", ""},
        {"no letters", "2,1,1", ""},
        {"letter behind the total", "2A,1A,1D", "field-malformed:TT"},
        {"letters in front", "2,A1,D1", "field-malformed:##A* field-malformed:##D* counts:TT*"},
        {"wrong way round", "2,1D,1A", "field-malformed:##A* field-malformed:##D* counts:TT*"},
        {"wrong total", "3,1A,1D", "counts:TT*"},
        {"wrong counts", "5,4A,1D", "counts:TT*"},
        {"empty total", ",1A,1D", "field-malformed:TT* counts:TT*"},
        {"no number of status channels", "2,1A", "counts:TT*"},
        {"far too many", "4294967296,4294967295A,1D", "counts:TT*"},
    };
    for (const auto& row : rows) {
        const ReadCfg read = readWith(&CfgLines::counts, row.line);
        ASSERT_TRUE(read.configuration) << row.why;
        EXPECT_EQ(read.configuration->analog.size(), 1U) << row.why;
        EXPECT_EQ(read.configuration->status.size(), 1U) << row.why;
        EXPECT_EQ(read.codes(), row.codes) << row.why;
    }
}

TEST(ReadConfiguration, ChannelsThatCannotBeToldAreAnError) {
    for (const char* text : {"", "S,R,1999\n", "S,R,1999\n0,0A,0D\n50\n1\n1000,5\n", "S,R,1999\nx\ny\n",
                             "S,R,1999\n4294967295,2147483647A,2147483648D\n1,Ua\n", "\x1A\x1A\x1A"}) {
        const ReadCfg read = readCfg(text);
        EXPECT_FALSE(read.configuration) << text;
        ASSERT_FALSE(read.findings.empty()) << text;
        EXPECT_EQ(read.findings.back().severity, Severity::Error) << text;
        EXPECT_FALSE(read.findings.back().expected.empty()) << text;
    }
}

TEST(ReadConfiguration, AnalogLine) {
    const AnalogRow rows[] = {
        {"lower-case side", "1,Ua,A,B,V,2,0,0,-9,9,5,1,p",
         "Ua|A|B|V|2.000000|0.000000|0.000000|-9.000000|9.000000|5.000000|1.000000|P", ""},
        {"blanks", "1,Ua ,A,B, A,2, 0 ,0,-9,9,5,1, S",
         "Ua|A|B|A|2.000000|0.000000|0.000000|-9.000000|9.000000|5.000000|1.000000|S",
         "blanks:ch_id* blanks:uu* blanks:PS*"},
        {"empty skew", "1,Ua,A,B,V,2,0,,-9,9,5,1,S",
         "Ua|A|B|V|2.000000|0.000000|0.000000|-9.000000|9.000000|5.000000|1.000000|S", "field-empty:skew*"},
        {"empty range", "1,Ua,A,B,V,2,0,0,,,5,1,S",
         "Ua|A|B|V|2.000000|0.000000|0.000000|-32767.000000|32767.000000|5.000000|1.000000|S",
         "field-empty:min* field-empty:max*"},
        {"empty factors", "1,Ua,A,B,V,,,0,-9,9,5,1,S",
         "Ua|A|B|V|1.000000|0.000000|0.000000|-9.000000|9.000000|5.000000|1.000000|S", "field-empty:a* field-empty:b*"},
        {"malformed factor", "1,Ua,A,B,V,x,0,0,-9,9,5,1,S",
         "Ua|A|B|V|1.000000|0.000000|0.000000|-9.000000|9.000000|5.000000|1.000000|S", "field-malformed:a*"},
        {"empty ratio", "1,Ua,A,B,V,2,0,0,-9,9,,,S",
         "Ua|A|B|V|2.000000|0.000000|0.000000|-9.000000|9.000000|1.000000|1.000000|S",
         "field-empty:primary* field-empty:secondary*"},
        {"no side; the library takes the comma for none", "1,Ua,A,B,V,2,0,0,-9,9,5,1,",
         "Ua|A|B|V|2.000000|0.000000|0.000000|-9.000000|9.000000|5.000000|1.000000|-", "side:PS"},
        {"neither P nor S; the library takes P", "1,Ua,A,B,V,2,0,0,-9,9,5,1,X",
         "Ua|A|B|V|2.000000|0.000000|0.000000|-9.000000|9.000000|5.000000|1.000000|-", "side:PS*"},
        {"short by the ratio", "1,Ua,A,B,V,2,0,0,-9,9",
         "Ua|A|B|V|2.000000|0.000000|0.000000|-9.000000|9.000000|1.000000|1.000000|-", "field-missing:primary"},
        {"one empty field too many", "1,IA,A,,,A,2,0,0,-9,9,5,1,P",
         "IA|A||A|2.000000|0.000000|0.000000|-9.000000|9.000000|5.000000|1.000000|P", "comma-in-text:ccbm*"},
        {"comma in the name", "1,Line 1, Bus,A,,kV,2,0,0,-9,9,5,1,P",
         "Line 1 Bus|A||kV|2.000000|0.000000|0.000000|-9.000000|9.000000|5.000000|1.000000|P", "comma-in-text:ch_id*"},
        {"comma in the component", "1,IA,A,Line 1, bay 2,A,2,0,0,-9,9,5,1,P",
         "IA|A|Line 1 bay 2|A|2.000000|0.000000|0.000000|-9.000000|9.000000|5.000000|1.000000|P",
         "comma-in-text:ccbm*"},
        {"two commas in the name", "1,x,y,z,A,Bus,A,2,0,0,-9,9,5,1,P",
         "x y z|A|Bus|A|2.000000|0.000000|0.000000|-9.000000|9.000000|5.000000|1.000000|P", "comma-in-text:ch_id*"},
        {"something behind the side", "1,Ua,A,B,V,2,0,0,-9,9,5,1,S,x",
         "Ua|A|B|V|2.000000|0.000000|0.000000|-9.000000|9.000000|5.000000|1.000000|S", "extra-text"},
        {"number is none", "x,Ua,A,B,V,2,0,0,-9,9,5,1,S",
         "Ua|A|B|V|2.000000|0.000000|0.000000|-9.000000|9.000000|5.000000|1.000000|S", "field-malformed:An"},
    };
    expectAnalogLines(rows);
}

TEST(ReadConfiguration, DecimalCommasInAnAnalogLine) {
    const AnalogRow rows[] = {
        {"in a", "1,UA,A,,kV,0,0123,0,0,-32768,32767,110,1,S",
         "UA|A||kV|0.012300|0.000000|0.000000|-32768.000000|32767.000000|110.000000|1.000000|S", "decimal-comma:a*"},
        {"in a and b", "1,UA,A,,kV,0,25,-1,05,0,-9,9,110,1,S",
         "UA|A||kV|0.250000|-1.050000|0.000000|-9.000000|9.000000|110.000000|1.000000|S",
         "decimal-comma:a* decimal-comma:b*"},
        {"in all but the range", "1,UA,A,Bus,V,0,012300,0,000000,0,500000,-32767,32767,110,000000,100,000000,P",
         "UA|A|Bus|V|0.012300|0.000000|0.500000|-32767.000000|32767.000000|110.000000|100.000000|P",
         "decimal-comma:a* decimal-comma:b* decimal-comma:skew* decimal-comma:primary* decimal-comma:secondary*"},
        {"in all", "1,UA,A,Bus,V,0,5,0,25,0,0,-9,0,9,0,110,0,1,5,P",
         "UA|A|Bus|V|0.500000|0.250000|0.000000|-9.000000|9.000000|110.000000|1.500000|P",
         "decimal-comma:a* decimal-comma:b* decimal-comma:skew* decimal-comma:min* decimal-comma:max* "
         "decimal-comma:primary* decimal-comma:secondary*"},
        {"in the range, which is symmetrical", "2,IS,,,A,1,0E+00,0,0,-282,848,282,848,1,00,1,00,P",
         "IS|||A|1.000000|0.000000|0.000000|-282.848000|282.848000|1.000000|1.000000|P",
         "decimal-comma:a* decimal-comma:min* decimal-comma:max* decimal-comma:primary* decimal-comma:secondary*"},
        {"in the skew, which is small", "4,UC,0,,V,0,019,0,6,66667,-32767,32767,220,0,100,000,S",
         "UC|0||V|0.019000|0.000000|6.666670|-32767.000000|32767.000000|220.000000|100.000000|S",
         "decimal-comma* decimal-comma:a* decimal-comma:skew* decimal-comma:primary* decimal-comma:secondary*"},
        {"an exponent behind", "1,UA,A,,V,0,5e-3,0,0,-9,9,1,1,S",
         "UA|A||V|0.000500|0.000000|0.000000|-9.000000|9.000000|1.000000|1.000000|S", "decimal-comma:a*"},
        {"beside an empty field", "1,UA,A,,V,0,5,0,,-9,9,1,1,S",
         "UA|A||V|0.500000|0.000000|0.000000|-9.000000|9.000000|1.000000|1.000000|S",
         "decimal-comma:a* field-empty:skew*"},
        {"beside a comma in the name", "1,Line 1, bay 2,A,,kV,0,0123,0,0,-9,9,110,1,S",
         "Line 1 bay 2|A||kV|0.012300|0.000000|0.000000|-9.000000|9.000000|110.000000|1.000000|S",
         "decimal-comma:a* comma-in-text:ch_id*"},
        {"without a unit", "1,UA,A,,,0,0123,0,0,-9,9,110,1,S",
         "UA|A|||0.012300|0.000000|0.000000|-9.000000|9.000000|110.000000|1.000000|S", "decimal-comma:a*"},
        {"in a name and nowhere else", "1,Line 1, 5,A,,kV,2,0,0,-9,9,5,1,P",
         "Line 1 5|A||kV|2.000000|0.000000|0.000000|-9.000000|9.000000|5.000000|1.000000|P", "comma-in-text:ch_id*"},
        {"blanks behind commas part two numbers", "1,UA,A,,V,2, 5, 3, 7,-9,9,1,1,S",
         "UA|A|V|2|5.000000|3.000000|7.000000|-9.000000|9.000000|1.000000|1.000000|S", "comma-in-text:ccbm*"},
        {"a range the wrong way round", "1,UA,A,,V,2,0,0,9,-9,5,1",
         "UA|A||V|2.000000|0.000000|0.000000|9.000000|-9.000000|5.000000|1.000000|-", "side:PS"},
        {"a channel out of use keeps its zeros", "1,UA,A,,V,0,0,0,0,0,1,2,",
         "UA|A||V|0.000000|0.000000|0.000000|0.000000|0.000000|1.000000|2.000000|-", "side:PS"},
    };
    expectAnalogLines(rows);
}

TEST(ReadConfiguration, ADecimalCommaIsToldWithTheNumberAsRead) {
    const ReadCfg read = readWith(&CfgLines::analog, "1,UA,A,,kV,0,0123,0,0,-32768,32767,110,1,S");
    const Finding* const finding = read.finding("decimal-comma", "a");
    ASSERT_NE(finding, nullptr);
    EXPECT_EQ(finding->severity, Severity::Warning);
    EXPECT_EQ(finding->offset, 28U); // 9 bytes of the station line, 8 of the counts line, 11 of this one
    EXPECT_EQ(finding->found, "0,0123");
    EXPECT_EQ(finding->expected, "a decimal point");
    EXPECT_EQ(finding->done, "read as 0.0123");
}

TEST(ReadConfiguration, DecimalCommasThatCanBeTakenInTwoWaysAreTold) {
    const struct {
        const char* line;
        const char* expected;
        const char* found;
    } rows[] = {
        {"1,UA,A,,kV,0,0123,0,0,-32768,32767,110,0,1,S",
         "UA|A||kV|0.012300|0.000000|0.000000|-32768.000000|32767.000000|110.000000|1.000000|S",
         "0,0123,0,0,-32768,32767,110,0,1,S"},
        {"1,UA,A,,V,2,5,3,0,-9,9,1,1,S", "UA|A||V|2.500000|3.000000|0.000000|-9.000000|9.000000|1.000000|1.000000|S",
         "2,5,3,0,-9,9,1,1,S"},
    };
    for (const auto& row : rows) {
        const ReadCfg read = readWith(&CfgLines::analog, row.line);
        ASSERT_TRUE(read.configuration) << row.line;
        EXPECT_EQ(describe(read.configuration->analog.at(0)), row.expected);
        const auto told = std::find_if(read.findings.begin(), read.findings.end(), [](const Finding& each) {
            return each.code == "decimal-comma" && each.field.empty();
        });
        ASSERT_NE(told, read.findings.end()) << row.line;
        EXPECT_EQ(told->found, row.found);
        EXPECT_EQ(told->expected, "commas that can be taken in one way only");
        EXPECT_EQ(told->done, "the likeliest of several ways taken");
        EXPECT_TRUE(told->mended);
    }
}

TEST(ReadConfiguration, DecimalCommasDoNotMakeTheLinesOf1991NewerOnes) {
    for (const char* analog : {"1,Ua,A,,V,0,5,0,0,-9,9", "1,Ua,A,,V,0,5,0,0,0,0,-9,9"}) {
        for (const char* station : {"S,R,1991", "S,R"}) {
            CfgLines lines;
            lines.station = station;
            lines.analog = analog;
            lines.status = "1,Trip,1";
            const ReadCfg read = readCfg(lines.text());
            ASSERT_TRUE(read.configuration) << analog;
            EXPECT_EQ(read.configuration->revision, 1991) << analog << station;
            EXPECT_EQ(describe(read.configuration->analog.at(0)),
                      "Ua|A||V|0.500000|0.000000|0.000000|-9.000000|9.000000|1.000000|1.000000|-")
                << analog;
            EXPECT_EQ(read.configuration->start->text(), "2011-12-01T05:55:30.075011000") << analog; // month first
            ASSERT_NE(read.finding("decimal-comma", "a"), nullptr) << analog;
        }
    }
}

TEST(ReadConfiguration, FindingsTellTheirPlace) {
    const ReadCfg read = readWith(&CfgLines::analog, "1,Ua,A,B,V,2,0,,-9,9,5,1,S");
    const Finding* const finding = read.finding("field-empty", "skew");
    ASSERT_NE(finding, nullptr);
    EXPECT_EQ(finding->file, "x.cfg");
    EXPECT_EQ(finding->line, 3U);
    EXPECT_EQ(finding->offset, 32U); // 9 bytes of the station line, 8 of the counts line, 15 of this one
    EXPECT_EQ(finding->found, "");
    EXPECT_EQ(finding->expected, "a number");
    EXPECT_EQ(finding->done, "0");
    EXPECT_EQ(finding->severity, Severity::Warning);
}

TEST(ReadConfiguration, StatusLine) {
    const struct {
        const char* why;
        const char* line;
        const char* expected;
        const char* codes;
    } rows[] = {
        {"all fields", "1,Trip,A,Bus,1", "Trip|A|Bus|1", ""},
        {"no state; the library takes 0", "1,Trip,A,Bus", "Trip|A|Bus|0", "field-missing:y"},
        {"empty state; the library takes 0", "1,Trip,A,Bus,", "Trip|A|Bus|0", "field-empty:y"},
        {"blank state", "1,Trip,A,Bus, ", "Trip|A|Bus|0", "field-empty:y*"},
        {"malformed state", "1,Trip,A,Bus,x", "Trip|A|Bus|0", "field-malformed:y*"},
        {"state 2", "1,Trip,A,Bus,2", "Trip|A|Bus|0", "field-malformed:y*"},
        {"name alone", "1,Trip", "Trip|||0", "field-missing:y"},
        {"no name; the library fails", "1,", "|||0", "field-missing:ch_id* field-missing:y"},
        {"comma in the name", "1,Trip, zone 1,A,Bus,1", "Trip zone 1|A|Bus|1", "comma-in-text:ch_id*"},
        {"blanks", "1, Trip ,A,Bus, 1", "Trip|A|Bus|1", "blanks:ch_id*"},
        {"something behind the state", "1,Trip,A,Bus,1,x", "Trip|A|Bus|1", "extra-text"},
        {"two states", "2,Start,50,51,1,T1,0", "Start|50|51|1", "extra-text:y"},
    };
    for (const auto& row : rows) {
        const ReadCfg read = readWith(&CfgLines::status, row.line);
        ASSERT_TRUE(read.configuration) << row.why;
        EXPECT_EQ(describe(read.configuration->status.at(0)), row.expected) << row.why;
        EXPECT_EQ(read.codes(), row.codes) << row.why;
    }
}

TEST(ReadConfiguration, FrequencyAndRates) {
    const struct {
        const char* why;
        const char* frequency;
        const char* rates;
        double lineFrequency;
        std::size_t count;
        double rate;
        std::uint64_t samples;
        const char* codes;
    } rows[] = {
        {"as it should be", "60", "1\n1200,40", 60.0, 1, 1200.0, 40, ""},
        {"blanks, points", " 50.000 ", " 1 \n 1920. , 9600 ", 50.0, 1, 1920.0, 9600, ""},
        {"frequency missing", "", "1\n1200,40", 50.0, 1, 1200.0, 40, "field-missing:lf*"},
        {"unit behind the frequency", "60 Hz", "1\n1200,40", 60.0, 1, 1200.0, 40, "field-malformed:lf"},
        {"number of rates missing", "60", "1200,40", 60.0, 1, 1200.0, 40, "field-missing:nrates*"},
        {"number of rates too small", "60", "1\n1200,40\n600,80", 60.0, 2, 600.0, 80, "counts:nrates*"},
        {"number of rates too large", "60", "9\n1200,40", 60.0, 1, 1200.0, 40, "counts:nrates*"},
        {"rate 0", "60", "0\n0,3000", 60.0, 1, 0.0, 3000, ""},
        {"one rate, and it is 0", "60", "1\n0,3000", 60.0, 1, 0.0, 3000, ""},
        {"no rates, yet one above 0", "60", "0\n1000,3000", 60.0, 1, 0.0, 3000, "rate-zero:samp*"},
        {"no rates and no line", "60", "0", 60.0, 1, 0.0, 0, "counts:nrates* field-missing:samp*"},
        {"no number of the last sample", "60", "1\n1200", 60.0, 1, 1200.0, 0, "field-empty:endsamp*"},
        {"number of the last sample with a point", "60", "1\n1200,40.0", 60.0, 1, 1200.0, 40, ""},
        {"number of the last sample with an exponent", "60", "1\n1200,4e1", 60.0, 1, 1200.0, 40,
         "field-malformed:endsamp*"},
        {"one field more", "60", "1\n1200,40,000", 60.0, 1, 1200.0, 40, "extra-text:endsamp"},
        {"decimal comma in the frequency", "50,0", "1\n1200,40", 50.0, 1, 1200.0, 40, "decimal-comma:lf*"},
        {"decimal comma in the frequency, rate 0", "59,94", "0\n0,3000", 59.94, 1, 0.0, 3000, "decimal-comma:lf*"},
        {"neither frequency nor number of rates", "", "1200,40", 50.0, 1, 1200.0, 40,
         "field-missing:lf* field-missing:nrates*"},
        {"decimal comma in the rate", "60", "1\n1200,0,40", 60.0, 1, 1200.0, 40, "decimal-comma:samp*"},
        {"decimal comma in the rate, zero behind it", "60", "1\n1200,05,40", 60.0, 1, 1200.05, 40,
         "decimal-comma:samp*"},
        {"three numbers, of which none is a fraction", "60", "1\n1200,40,7", 60.0, 1, 1200.0, 40, "extra-text:endsamp"},
        {"the same beside another decimal comma", "60,0", "1\n1200,40,7", 60.0, 1, 1200.4, 7,
         "decimal-comma:lf* decimal-comma:samp*"},
        {"number of the last sample below 0", "60", "1\n1200,-40", 60.0, 1, 1200.0, 0, "field-malformed:endsamp*"},
    };
    for (const auto& row : rows) {
        CfgLines lines;
        lines.frequency = row.frequency;
        lines.rates = row.rates;
        const ReadCfg read = readCfg(lines.text());
        ASSERT_TRUE(read.configuration) << row.why;
        EXPECT_EQ(read.configuration->lineFrequency, row.lineFrequency) << row.why;
        ASSERT_EQ(read.configuration->rates.size(), row.count) << row.why;
        EXPECT_EQ(read.configuration->rates.back().rate, row.rate) << row.why;
        EXPECT_EQ(read.configuration->samplesDeclared(), row.samples) << row.why;
        EXPECT_EQ(read.codes(), row.codes) << row.why;
    }
}

TEST(ReadConfiguration, Dates) {
    const struct {
        const char* why;
        const char* station;
        const char* start;
        const char* trigger;
        const char* expected;
        const char* codes;
    } rows[] = {
        {"day first", "S,R,1999", "02/01/2011,00:00:01", "02/01/2011,00:00:02", "2011-01-02T00:00:01.000000000", ""},
        {"month first by the day", "S,R,1999", "02/13/2011,00:00:01", "02/13/2011,00:00:02",
         "2011-02-13T00:00:01.000000000", "date:start date:trigger"},
        {"month first by the other date", "S,R,1999", "02/01/2011,00:00:01", "02/13/2011,00:00:02",
         "2011-02-01T00:00:01.000000000", "date:start date:trigger"},
        {"neither", "S,R,1999", "09/44/2025,15:44:15", "09/44/2025,15:44:15", "none", "date:start date:trigger"},
        {"zero of the clock", "S,R,1999", "01/01/1970,00:00:00.000000", "02/01/2011,00:00:02", "none", "date:start"},
        {"decimal comma", "S,R,1999", "02/01/2011,00:00:01,25", "02/01/2011,00:00:02.5",
         "2011-01-02T00:00:01.250000000", "date:start"},
        {"a blank for the comma", "S,R,1999", "02/01/2011 00:00:01.25", "02/01/2011  00:00:02.5",
         "2011-01-02T00:00:01.250000000", "date:start date:trigger"},
        {"a blank for the comma and a comma for the point", "S,R,1999", "02/01/2011 00:00:01,25",
         "02/01/2011,00:00:02.5", "2011-01-02T00:00:01.250000000", "date:start"},
        {"ISO 8601", "S,R,1999", "2011-01-02T00:00:01.25", "2011-01-02,00:00:02.5", "2011-01-02T00:00:01.250000000",
         "date:start date:trigger"},
        {"ISO 8601 with a zone", "S,R,1999", "2011-01-02T00:00:01.25+01:00", "2011-01-02 00:00:02.5Z",
         "2011-01-02T00:00:01.250000000", "date:start date:trigger"},
        {"month by its name", "S,R,1991", "02-Jan-2011,00:00:01", "02/JAN/11 00:00:02", "2011-01-02T00:00:01.000000000",
         "layout:rev_year* date:start date:trigger"},
        {"month by its name in front", "S,R,1999", "Jan 02 2011 00:00:01", "2 January 2011,00:00:02",
         "2011-01-02T00:00:01.000000000", "date:start date:trigger"},
        {"end of the day", "S,R,1999", "02/01/2011,24:00:00.000", "03/01/2011,00:00:02",
         "2011-01-03T00:00:00.000000000", "date:start"},
        {"leap second", "S,R,1999", "31/12/2016,23:59:60.5", "01/01/2017,00:00:02", "2017-01-01T00:00:00.500000000",
         "date:start"},
        {"something behind date and time in one", "S,R,1999", "02/01/2011 00:00:01.25,UTC", "02/01/2011,00:00:02.5",
         "2011-01-02T00:00:01.250000000", "extra-text:start date:start"},
        {"something behind", "S,R,1999", "02/01/2011,00:00:01.25,UTC", "02/01/2011,00:00:02.5",
         "2011-01-02T00:00:01.250000000", "extra-text:start"},
        {"missing trigger", "S,R,1999", "02/01/2011,00:00:01", "", "2011-01-02T00:00:01.000000000",
         "field-missing:trigger*"},
        {"missing dates", "S,R,1999", "", "", "none", "field-missing:start* field-missing:trigger*"},
    };
    for (const auto& row : rows) {
        CfgLines lines;
        lines.station = row.station;
        lines.start = row.start;
        lines.trigger = row.trigger;
        const ReadCfg read = readCfg(lines.text());
        ASSERT_TRUE(read.configuration) << row.why;
        EXPECT_EQ(read.configuration->start ? read.configuration->start->text() : "none", row.expected) << row.why;
        EXPECT_EQ(read.codes(), row.codes) << row.why;
        EXPECT_EQ(read.configuration->encoding, DataEncoding::Binary) << row.why;
    }
}

TEST(ReadConfiguration, ADateThatIsNotReadIsShownWithItsTime) {
    const ReadCfg read = readWith(&CfgLines::start, "12/01/2011,25:55:30.075011");
    ASSERT_NE(read.finding("date", "start"), nullptr);
    EXPECT_EQ(read.finding("date", "start")->found, "12/01/2011,25:55:30.075011");
}

TEST(ReadConfiguration, ADateTellsAllThatIsOddAboutItInOneFinding) {
    const struct {
        const char* line;
        const char* expected;
        const char* done;
    } rows[] = {
        {"12/01/2011,24:00:00", "an hour from 0 to 23", "taken as 00:00:00 of the next day"},
        {"12/01/2011,05:55:60", "a second from 0 to 59", "taken as a leap second, which is the next second 0"},
        {"2011-01-12T05:55:30Z", "a date with slashes; a comma between date and time; a time without a zone",
         "parted before the hour; the zone left out"},
    };
    for (const auto& row : rows) {
        const ReadCfg read = readWith(&CfgLines::start, row.line);
        const Finding* const finding = read.finding("date", "start");
        ASSERT_NE(finding, nullptr) << row.line;
        EXPECT_EQ(finding->severity, Severity::Note) << row.line;
        EXPECT_EQ(finding->found, row.line);
        EXPECT_EQ(finding->expected, row.expected);
        EXPECT_EQ(finding->done, row.done);
        EXPECT_FALSE(finding->mended) << row.line;
    }
}

TEST(ReadConfiguration, MonthIsFirstInRevision1991) {
    const ReadCfg read = readCfg("S,R,1991\n1,1A,0D\n1,Ua,A,,V,1,0,0,-9,9\n50\n1\n1000,8\n"
                                 "02/01/07,00:00:01.5\n13/01/07,00:00:02\nASCII\n");
    ASSERT_TRUE(read.configuration);
    EXPECT_EQ(read.configuration->start->text(), "2007-01-02T00:00:01.500000000");
    EXPECT_EQ(read.codes(), "date:start date:trigger");
    const ReadCfg plain = readCfg("S,R,1991\n1,1A,0D\n1,Ua,A,,V,1,0,0,-9,9\n50\n1\n1000,8\n"
                                  "02/01/07,00:00:01.5\n02/01/07,00:00:02\nASCII\n");
    EXPECT_EQ(plain.configuration->start->text(), "2007-02-01T00:00:01.500000000");
    EXPECT_EQ(plain.codes(), "");
}

TEST(ReadConfiguration, NanosecondsInADateAreTold) {
    EXPECT_FALSE(readCfg(CfgLines().text()).configuration->nanosecondStamps);
    EXPECT_TRUE(readWith(&CfgLines::trigger, "15/12/2023,17:36:30.885675860").configuration->nanosecondStamps);
}

TEST(ReadConfiguration, DataType) {
    const struct {
        const char* why;
        const char* word;
        DataEncoding encoding;
        const char* codes;
    } rows[] = {
        {"ASCII", "ASCII", DataEncoding::Ascii, ""},
        {"lower case", "binary", DataEncoding::Binary, ""},
        {"mixed case", "Float32", DataEncoding::Float32, ""},
        {"BINARY32", "BINARY32", DataEncoding::Binary32, ""},
        {"blank behind", "BINARY ", DataEncoding::Binary, "type-word:ft*"},
        {"blank behind ASCII is harmless", "ASCII ", DataEncoding::Ascii, ""},
        {"0x1A behind", "FLOAT32\x1A", DataEncoding::Float32, "substitute-character* type-word:ft*"},
        {"unknown", "BINARY64", DataEncoding::Ascii, "type-word:ft"},
    };
    for (const auto& row : rows) {
        const ReadCfg read = readWith(&CfgLines::type, row.word);
        ASSERT_TRUE(read.configuration) << row.why;
        EXPECT_EQ(static_cast<int>(read.configuration->encoding), static_cast<int>(row.encoding)) << row.why;
        EXPECT_EQ(read.codes(), row.codes) << row.why;
    }
}

TEST(ReadConfiguration, LinesBehindTheType) {
    const struct {
        const char* why;
        const char* rest;
        double multiplier;
        const char* codesOfTime;
        bool areSettled;
        const char* codes;
    } rows[] = {
        {"nothing; the library takes 1", "", 1.0, "|||", false, "field-missing:timemult"},
        {"blank line; the library fails", "\n", 1.0, "|||", false, "blank-line field-missing:timemult*"},
        {"0x1A; the library fails", "\x1A", 1.0, "|||", false, "substitute-character field-missing:timemult*"},
        {"multiplier", "0.25\n", 0.25, "|||", false, ""},
        {"malformed multiplier", "x\n", 1.0, "|||", false, "field-malformed:timemult*"},
        {"multiplier 0", "0\n", 1.0, "|||", false, "time-multiplier:timemult*"},
        {"time codes", "1\n-5h30,-5h30\nB,3\n", 1.0, "-5h30|-5h30|B|3", false, ""},
        {"time codes without a multiplier", "-5h30,+2\nB,3\n", 1.0, "-5h30|+2|B|3", false, "field-missing:timemult*"},
        {"0x1A at the end", "1\n0,x\nB,3\x1A\x1A", 1.0, "0|x|B|3", false, "substitute-character"},
        {"0x1A on its own line", "1\n\x1A\x1A", 1.0, "|||", false, "substitute-character"},
        {"the intake's mark", "1\nOrvComtradeIntake,1,rates-as-lengths\n", 1.0, "|||", true, ""},
        {"the intake's mark behind the codes", "1\n0,x\nB,3\nOrvComtradeIntake,1,rates-as-lengths\n", 1.0, "0|x|B|3",
         true, ""},
        {"something else", "1\n0,x\nB,3\nend\n", 1.0, "0|x|B|3", false, "extra-text"},
    };
    for (const auto& row : rows) {
        const ReadCfg read = readWith(&CfgLines::rest, row.rest);
        ASSERT_TRUE(read.configuration) << row.why;
        const Configuration& found = *read.configuration;
        EXPECT_EQ(found.timeMultiplier, row.multiplier) << row.why;
        EXPECT_EQ(found.timeCode + '|' + found.localCode + '|' + found.timeQuality + '|' + found.leapSecond,
                  row.codesOfTime)
            << row.why;
        EXPECT_EQ(found.ratesAreSettled, row.areSettled) << row.why;
        EXPECT_EQ(read.codes(), row.codes) << row.why;
    }
}

TEST(ReadConfiguration, ADecimalCommaInTheMultiplierIsToldFromTimeCodesByTheOtherNumbers) {
    CfgLines lines;
    lines.rest = "0,5\n";
    EXPECT_EQ(readCfg(lines.text()).configuration->timeCode, "0");
    lines.frequency = "50,0";
    const ReadCfg read = readCfg(lines.text());
    EXPECT_EQ(read.configuration->timeMultiplier, 0.5);
    EXPECT_EQ(read.configuration->timeCode, "");
    EXPECT_EQ(read.codes(), "decimal-comma:lf* decimal-comma:timemult*");
    lines.station = "S,R,2013";
    EXPECT_EQ(readCfg(lines.text()).configuration->timeCode, "0");
}

TEST(ReadConfiguration, EveryPrefixGivesAConfigurationOrAnError) {
    const std::string text = CfgLines().text();
    for (std::size_t length = 0; length <= text.size(); ++length) {
        const ReadCfg read = readCfg(text.substr(0, length));
        const bool isError = std::any_of(read.findings.begin(), read.findings.end(),
                                         [](const Finding& each) { return each.severity == Severity::Error; });
        EXPECT_NE(read.configuration.has_value(), isError) << length;
    }
}
