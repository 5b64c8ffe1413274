#include "CfgSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <string>

using namespace OrvComtradeIntake;
using orvtest::CfgLines;
using orvtest::CfgReading;
using orvtest::readBytes;
using orvtest::withCrLf;

namespace {

/// One line replaced in an otherwise faultless `.cfg`.
template <typename Member> CfgReading readWith(Member CfgLines::*member, const std::string& line) {
    CfgLines lines;
    lines.*member = line;
    return lines.read();
}

std::string shortText(double number) {
    std::string text = std::to_string(number);
    text.erase(text.find_last_not_of('0') + 1);
    return text.back() == '.' ? text.substr(0, text.size() - 1) : text;
}

std::string describe(const AnalogInfo& channel) {
    const char* const side = channel.side == Side::Primary ? "P" : channel.side == Side::Secondary ? "S" : "-";
    std::string text = channel.id + '|' + channel.phase + '|' + channel.component + '|' + channel.unit;
    for (const double number :
         {channel.a, channel.b, channel.skew, channel.min, channel.max, channel.primary, channel.secondary})
        text += '|' + shortText(number);
    return text + '|' + side;
}

std::string describe(const StatusInfo& channel) {
    return channel.id + '|' + channel.phase + '|' + channel.component + '|' + std::to_string(channel.normalState);
}

std::string describe(const Header& header) {
    std::string text = header.station + '|' + header.recorder + '|' + std::to_string(header.revision);
    for (const AnalogInfo& channel : header.analog)
        text += '\n' + describe(channel);
    for (const StatusInfo& channel : header.status)
        text += '\n' + describe(channel);
    text += '\n' + shortText(header.lineFrequency);
    for (const RateInfo& rate : header.rates)
        text += '|' + shortText(rate.rate) + ' ' + std::to_string(rate.endSample);
    text += '\n' + (header.start ? header.start->text() : "none") + '|' +
            (header.trigger ? header.trigger->text() : "none");
    return text + '\n' + typeWord(header.dataType) + '|' + shortText(header.timeMultiplier);
}

struct LineRow {
    const char* why;
    const char* line;
    const char* expected;
    const char* codes;
};

template <std::size_t Count> void expectAnalogLines(const LineRow (&rows)[Count]) {
    for (const LineRow& row : rows) {
        const CfgReading read = readWith(&CfgLines::analog, row.line);
        ASSERT_TRUE(read.cfg) << row.why;
        EXPECT_EQ(describe(read.header().analog.at(0)), row.expected) << row.why;
        EXPECT_EQ(read.codes(), row.codes) << row.why;
    }
}

constexpr const char* kFaultless = "S|R|1999\n"
                                   "Ua|A|Bus|V|0.5|0.25|0|-32767|32767|1|1|S\n"
                                   "Trip|||0\n"
                                   "50|1000 8\n"
                                   "2011-01-12T05:55:30.075011000|2011-01-12T05:55:30.078261000\n"
                                   "BINARY|1";

/// The same lines with each separator replaced.
std::string separatedBy(std::string text, char separator) {
    std::replace(text.begin(), text.end(), ',', separator);
    return text;
}

/// The lines as a spreadsheet saves them: as many fields in each.
std::string filledUp(const std::string& text, std::size_t fields) {
    std::string all;
    std::size_t commas = 0;
    for (const char character : text) {
        commas += character == ',' ? 1U : 0U;
        if (character == '\r') {
            all += std::string(commas < fields ? fields - 1 - commas : 0, ',');
            commas = 0;
        }
        all += character;
    }
    return all;
}

} // namespace

TEST(ReadCfg, AFaultlessFileHasNoFindings) {
    const CfgReading read = CfgLines().read();
    ASSERT_TRUE(read.cfg);
    EXPECT_EQ(read.codes(), "");
    EXPECT_EQ(describe(read.header()), kFaultless);
    EXPECT_EQ(read.header().samplesDeclared, 8U);
    EXPECT_EQ(read.header().encoding, "ASCII");
    EXPECT_FALSE(read.header().timesAreStamped());
    EXPECT_FALSE(read.cfg->areRatesSettled);
}

TEST(ReadCfg, WhatTheStandardAllowsIsNoFinding) {
    CfgLines lines;
    lines.station = " S , R , 2013 ";
    lines.analog = "1,Ua,,,kV,0.5,0.25,,-32767,32767,110,1,p";
    lines.type = "binary";
    lines.rest = "1\n0,x\nB,3\n";
    EXPECT_EQ(lines.read().codes(), "");
    EXPECT_EQ(readBytes(withCrLf("S,R\n2,1A,1D\n1,Ua,A,,V,1,0,0,-9,9\n1,Trip,1\n50\n1\n1000,8\n"
                                 "01/13/07,00:00:01\n01/13/07,00:00:02\nASCII\n"))
                  .codes(),
              "");
}

TEST(ReadCfg, KeepsThePlacesThatLaterStagesPointTo) {
    CfgLines lines;
    lines.rates = "2\n1000,8\n500,16";
    const CfgReading read = lines.read();
    const auto at = [](const Place& place) {
        return place.file + ':' + std::to_string(place.line) + ':' + place.field + '@' + std::to_string(place.offset);
    };
    ASSERT_TRUE(read.cfg);
    EXPECT_EQ(read.cfg->analog.at(0).line, 3U);
    EXPECT_EQ(read.cfg->analog.at(0).ratioOffset, 56U);
    EXPECT_EQ(read.cfg->analog.at(0).sideOffset, 60U);
    EXPECT_EQ(at(read.cfg->rate), "x.cfg:7:samp@82");
    ASSERT_EQ(read.cfg->ends.size(), 2U);
    EXPECT_EQ(read.cfg->ends[1].line, 8U);
    EXPECT_EQ(read.cfg->ends[1].offset, 94U);
    EXPECT_EQ(at(read.cfg->trigger), "x.cfg:10:trigger@126");
}

TEST(ReadCfg, StationLine) {
    const struct {
        const char* why;
        const char* line;
        const char* expected;
        const char* codes;
    } rows[] = {
        {"2013", "S,R,2013", "S|R|2013", "time-lines"},
        {"blanks around the year", "S,R, 1999 ", "S|R|1999", ""},
        {"no year", "S,R", "S|R|1999", "revision:rev_year"},
        {"name alone", "S", "S||1999", "revision:rev_year"},
        {"empty names", ",,1999", "||1999", ""},
        {"2001 is no revision", "S,R,2001", "S|R|2001", "revision:rev_year"},
        {"1997 with the newer lines", "S,R,1997", "S|R|1999", "layout:rev_year"},
        {"unreadable year", "S,R,abcd", "S|R|1999", "revision:rev_year"},
        {"blank year", "S,R, ", "S|R|1999", "revision:rev_year"},
        {"the last year that may be one", "S,R,2099", "S|R|2099", "revision:rev_year time-lines"},
        {"a year behind it", "S,R,2100", "S|R|1999", "revision:rev_year"},
        {"year of two digits", "S,R,99", "S|R|1999", "revision:rev_year"},
        {"year that no integer holds", "S,R,4294967295", "S|R|1999", "revision:rev_year"},
        {"blanks around the names", " S , R,1999", "S|R|1999", ""},
        {"comma in the name", "Sub, north,R,1999", "Sub north|R|1999", "comma-in-text:station_name"},
        {"something behind the year", "S,R,1999,x", "S|R|1999", "extra-text:rev_year"},
        {"missing", "", "||1999", "field-missing:station_name"},
        {"byte-order marks in quotation marks", "\"\xEF\xBB\xBF \xEF\xBB\xBFS\",R,1999", "S|R|1999",
         "quotes byte-order-mark:station_name"},
    };
    for (const auto& row : rows) {
        const CfgReading read = readWith(&CfgLines::station, row.line);
        ASSERT_TRUE(read.cfg) << row.why;
        EXPECT_EQ(describe(read.header()).substr(0, describe(read.header()).find('\n')), row.expected) << row.why;
        EXPECT_EQ(read.codes(), row.codes) << row.why;
    }
}

TEST(ReadCfg, Layout) {
    const struct {
        const char* why;
        const char* station;
        const char* analog;
        const char* status;
        int revision;
        const char* codes;
        const char* channel = "Trip|||1";
    } rows[] = {
        {"1991", "S,R,1991", "1,Ua,A,,V,1,0,0,-9,9", "1,Trip,1", 1991, ""},
        {"1991 without a year", "S,R", "1,Ua,A,,V,1,0,0,-9,9", "1,Trip,1", 1991, ""},
        {"1991 with an odd year", "S,R,abcd", "1,Ua,A,,V,1,0,0,-9,9", "1,Trip,1", 1991, "revision:rev_year"},
        {"1995", "S,R,1995", "1,Ua,A,,V,1,0,0,-9,9", "1,Trip,1", 1991, "revision:rev_year"},
        {"1991 with the status lines of 1999", "S,R,1991", "1,Ua,A,,V,1,0,0,-9,9", "1,Trip,A,Bus,1", 1991,
         "layout:rev_year", "Trip|A|Bus|1"},
        {"1997 with the status lines of 1999", "S,R,1997", "1,Ua,A,,V,1,0,0,-9,9", "1,Trip,A,Bus,1", 1991,
         "layout:rev_year", "Trip|A|Bus|1"},
        {"1999 with the lines of 1991", "S,R,1999", "1,Ua,A,,V,1,0,0,-9,9", "1,Trip,1", 1999,
         "layout:rev_year field-missing:primary"},
        {"ratios beside old status lines", "S,R,1997", "1,Ua,A,,V,1,0,0,-9,9,5,1,S", "1,Trip,1", 1999,
         "layout:rev_year"},
        {"a ratio without a side beside old status lines", "S,R,1991", "1,Ua,A,,V,1,0,0,-9,9,5,1", "1,Trip,1", 1991,
         "side:PS"},
        {"comma in the name of 1991", "S,R,1991", "1,Ua,A,,V,1,0,0,-9,9", "1,Trip,1\n2,Trip,B,0\n3,x,1", 1991,
         "counts:TT comma-in-text:ch_id"},
        {"commas in every name of 1991", "S,R,1991", "1,Ua,A,,V,1,0,0,-9,9", "1,Trip, zone 1,1", 1991,
         "comma-in-text:ch_id", "Trip zone 1|||1"},
        {"most status lines short", "S,R,1999", "1,Ua,A,,V,1,0,0,-9,9,1,1,S", "1,Trip,1\n2,Start,B,1\n3,x,1", 1999,
         "counts:TT layout:rev_year comma-in-text:ch_id"},
        {"half of them", "S,R,1999", "1,Ua,A,,V,1,0,0,-9,9,1,1,S", "1,Trip,1\n2,Start,B,1", 1999,
         "counts:TT field-missing:y", "Trip|1||0"},
        {"decimal comma of 1991", "S,R,1991", "1,Ua,A,,V,0,5,0,0,-9,9", "1,Trip,1", 1991, "decimal-comma:a"},
        {"decimal comma of 1991 without a year", "S,R", "1,Ua,A,,V,0,5,0,0,-9,9", "1,Trip,1", 1991, "decimal-comma:a"},
    };
    for (const auto& row : rows) {
        CfgLines lines;
        lines.station = row.station;
        lines.analog = row.analog;
        lines.status = row.status;
        const CfgReading read = lines.read();
        ASSERT_TRUE(read.cfg) << row.why;
        EXPECT_EQ(read.header().revision, row.revision) << row.why;
        EXPECT_EQ(read.codes(), row.codes) << row.why;
        EXPECT_EQ(describe(read.header().status.at(0)), row.channel) << row.why;
        // In revision 1991 the month comes first.
        EXPECT_EQ(read.header().start->text().substr(0, 10), row.revision < 1999 ? "2011-12-01" : "2011-01-12")
            << row.why;
    }
}

TEST(ReadCfg, TwoCommasInOneStatusNameOf1991LeaveTheOtherLinesAsTheyAre) {
    for (const std::string station : {"S,R,1991", "S,R"}) {
        CfgLines lines;
        lines.station = station;
        lines.counts = "4,1A,3D";
        lines.analog = "1,Ua,A,,V,1,0,0,-9,9";
        lines.status = "1,Trip,1\n2,Start,50,51,0\n3,x,1";
        const CfgReading read = lines.read();
        ASSERT_TRUE(read.cfg) << station;
        EXPECT_EQ(read.header().revision, 1991) << station;
        EXPECT_EQ(describe(read.header().status.at(0)), "Trip|||1") << station;
        EXPECT_EQ(describe(read.header().status.at(1)), "Start 50 51|||0") << station;
        ASSERT_NE(read.finding("comma-in-text", "ch_id"), nullptr) << station;
        EXPECT_EQ(read.finding("comma-in-text", "ch_id")->found, "Start,50,51") << station;
        EXPECT_EQ(read.finding("comma-in-text", "ch_id")->repair, "read as \"Start 50 51\"") << station;
    }
}

TEST(ReadCfg, CountsLine) {
    const struct {
        const char* why;
        const char* line;
        const char* codes;
    } rows[] = {
        {"blanks", " 2, 1A, 1D", ""},
        {"blanks within", "2,1 A,1 D", ""},
        {"lower case", "2,1a,1d", ""},
        {"no letters", "2,1,1", "field-malformed:##A field-malformed:##D"},
        {"letter behind the total", "2A,1A,1D", "field-malformed:TT"},
        {"letters in front", "2,A1,D1", "field-malformed:##A field-malformed:##D"},
        {"wrong way round", "2,1D,1A", "field-malformed:##A field-malformed:##D"},
        {"wrong total", "3,1A,1D", "counts:TT"},
        {"wrong counts", "5,4A,1D", "counts:TT"},
        {"neither letter nor digit", "2,1!A,1D", "counts:TT"},
        {"empty total", ",1A,1D", "counts:TT"},
        {"no number of status channels", "2,1A", "counts:TT"},
        {"far too many", "4294967296,4294967295A,1D", "counts:TT"},
        {"something behind", "2,1A,1D,x", "extra-text:##D"},
    };
    for (const auto& row : rows) {
        const CfgReading read = readWith(&CfgLines::counts, row.line);
        ASSERT_TRUE(read.cfg) << row.why;
        EXPECT_EQ(read.header().analog.size(), 1U) << row.why;
        EXPECT_EQ(read.header().status.size(), 1U) << row.why;
        EXPECT_EQ(read.codes(), row.codes) << row.why;
    }
}

TEST(ReadCfg, ALineCutInTwoIsNotTheFrequency) {
    CfgLines lines;
    lines.counts = "3,2A,1D";
    lines.analog += "\n2,\nUb,A,Bus,V,0.5,0.25,0,-32767,32767,1,1,S";
    const CfgReading read = lines.read();
    ASSERT_TRUE(read.cfg);
    EXPECT_EQ(read.header().analog.size(), 2U);
    EXPECT_EQ(read.finding("counts", "TT"), nullptr);
}

TEST(ReadCfg, AWrongCountIsShownWithTheRightOne) {
    const CfgReading read = readWith(&CfgLines::counts, "5,4A,1D");
    ASSERT_NE(read.finding("counts"), nullptr);
    EXPECT_EQ(read.finding("counts")->found, "5,4A,1D");
    EXPECT_EQ(read.finding("counts")->expected, "2,1A,1D");
    EXPECT_EQ(read.finding("counts")->repair, "the channel lines were counted");
}

TEST(ReadCfg, ChannelsThatCannotBeMadeOutAreAnError) {
    const struct {
        const char* text;
        const char* code;
    } rows[] = {
        {"", "empty-cfg"},
        {"\r\n \t\r\n", "empty-cfg"},
        {"\xEF\xBB\xBF", "empty-cfg"},
        {"S,R,1999\n", "unknown-counts"},
        {"S,R,1999\n0,0A,0D\n50\n1\n1000,5\n", "unknown-counts"},
        {"S,R,1999\nx\ny\n", "unknown-counts"},
        {"S,R,1999\n4294967295,2147483647A,2147483648D\n1,Ua\n", "unknown-counts"},
        {"\x1A\x1A\x1A", "empty-cfg"},
        {"[metadata]\nname = comtrade\nversion = 1\n", "not-a-recording"},
        {"PK\x03\x04\x14\n\x08q\n", "not-a-recording"},
    };
    for (const auto& row : rows) {
        const CfgReading read = readBytes(row.text);
        EXPECT_FALSE(read.cfg) << row.text;
        ASSERT_FALSE(read.findings.empty()) << row.text;
        EXPECT_EQ(read.findings.back().severity, Severity::Error) << row.text;
        EXPECT_EQ(read.findings.back().code, row.code) << row.text;
        EXPECT_FALSE(read.findings.back().expected.empty()) << row.text;
    }
}

TEST(ReadCfg, ChannelNumbersThatDoNotGrowAreOneFindingForEachKind) {
    CfgLines lines;
    lines.counts = "7,3A,4D";
    lines.analog = "2,Ua,A,Bus,V,1,0,0,-9,9,1,1,S\n1,Ub,A,Bus,V,1,0,0,-9,9,1,1,S\n1,Uc,A,Bus,V,1,0,0,-9,9,1,1,S";
    lines.status = "5,A,,,0\n8,B,,,0\n8,C,,,0\nx,D,,,0";
    const CfgReading read = lines.read();
    EXPECT_EQ(read.codes(), "channel-numbers:An channel-numbers:Dn field-malformed:Dn");
    EXPECT_EQ(read.findings.at(0).places, 2U);
    EXPECT_EQ(read.findings.at(0).found, "1");
    EXPECT_EQ(read.findings.at(0).expected, "3");
    EXPECT_EQ(read.findings.at(1).places, 1U);
    EXPECT_EQ(read.findings.at(1).place.line, 8U);
    std::string numbers;
    for (const AnalogInfo& channel : read.header().analog)
        numbers += std::to_string(channel.number) + ' ';
    for (const StatusInfo& channel : read.header().status)
        numbers += std::to_string(channel.number) + ' ';
    EXPECT_EQ(numbers, "2 1 1 5 8 8 9 ");
}

TEST(ReadCfg, AnalogLine) {
    const LineRow rows[] = {
        {"lower-case side", "1,Ua,A,B,V,2,0,0,-9,9,5,1,p", "Ua|A|B|V|2|0|0|-9|9|5|1|P", ""},
        {"blanks", "1,Ua ,A,B, A,2, 0 ,0,-9,9,5,1, S", "Ua|A|B|A|2|0|0|-9|9|5|1|S", ""},
        {"empty skew", "1,Ua,A,B,V,2,0,,-9,9,5,1,S", "Ua|A|B|V|2|0|0|-9|9|5|1|S", ""},
        {"empty range", "1,Ua,A,B,V,2,0,0,,,5,1,S", "Ua|A|B|V|2|0|0|-32767|32767|5|1|S",
         "field-empty:min field-empty:max"},
        {"empty factors", "1,Ua,A,B,V,,,0,-9,9,5,1,S", "Ua|A|B|V|1|0|0|-9|9|5|1|S", "field-empty:a field-empty:b"},
        {"malformed factor", "1,Ua,A,B,V,x,0,0,-9,9,5,1,S", "Ua|A|B|V|1|0|0|-9|9|5|1|S", "field-malformed:a"},
        {"empty ratio", "1,Ua,A,B,V,2,0,0,-9,9,,,S", "Ua|A|B|V|2|0|0|-9|9|1|1|S",
         "field-empty:primary field-empty:secondary"},
        {"units behind the ratio", "1,Ua,A,B,V,2,0,0,-9,9,110 kV,100 V,S", "Ua|A|B|V|2|0|0|-9|9|110000|100|S",
         "field-malformed:primary field-malformed:secondary"},
        {"no side", "1,Ua,A,B,V,2,0,0,-9,9,5,1,", "Ua|A|B|V|2|0|0|-9|9|5|1|-", "side:PS"},
        {"neither P nor S", "1,Ua,A,B,V,2,0,0,-9,9,5,1,X", "Ua|A|B|V|2|0|0|-9|9|5|1|-", "side:PS"},
        {"the whole word", "1,Ua,A,B,V,2,0,0,-9,9,5,1,Primary", "Ua|A|B|V|2|0|0|-9|9|5|1|P", "side:PS"},
        {"the word in small letters", "1,Ua,A,B,V,2,0,0,-9,9,5,1,primary", "Ua|A|B|V|2|0|0|-9|9|5|1|P", "side:PS"},
        {"short by the ratio", "1,Ua,A,B,V,2,0,0,-9,9", "Ua|A|B|V|2|0|0|-9|9|1|1|-",
         "layout:rev_year field-missing:primary"},
        {"one empty field too many", "1,IA,A,,,A,2,0,0,-9,9,5,1,P", "IA|A||A|2|0|0|-9|9|5|1|P", "comma-in-text:ccbm"},
        {"comma in the name", "1,Line 1, Bus,A,,kV,2,0,0,-9,9,5,1,P", "Line 1 Bus|A||kV|2|0|0|-9|9|5|1|P",
         "comma-in-text:ch_id"},
        {"comma in the component", "1,IA,A,Line 1, bay 2,A,2,0,0,-9,9,5,1,P", "IA|A|Line 1 bay 2|A|2|0|0|-9|9|5|1|P",
         "comma-in-text:ccbm"},
        {"two commas in the name", "1,x,y,z,A,Bus,A,2,0,0,-9,9,5,1,P", "x y z|A|Bus|A|2|0|0|-9|9|5|1|P",
         "comma-in-text:ch_id"},
        {"something behind the side", "1,Ua,A,B,V,2,0,0,-9,9,5,1,S,x", "Ua|A|B|V|2|0|0|-9|9|5|1|S", "extra-text"},
        {"number is none", "x,Ua,A,B,V,2,0,0,-9,9,5,1,S", "Ua|A|B|V|2|0|0|-9|9|5|1|S", "field-malformed:An"},
    };
    expectAnalogLines(rows);
}

TEST(ReadCfg, DecimalCommasInAnAnalogLine) {
    const LineRow rows[] = {
        {"in a", "1,UA,A,,kV,0,0123,0,0,-32768,32767,110,1,S", "UA|A||kV|0.0123|0|0|-32768|32767|110|1|S",
         "decimal-comma:a"},
        {"in a and b", "1,UA,A,,kV,0,25,-1,05,0,-9,9,110,1,S", "UA|A||kV|0.25|-1.05|0|-9|9|110|1|S",
         "decimal-comma:a decimal-comma:b"},
        {"in all but the range", "1,UA,A,Bus,V,0,012300,0,000000,0,500000,-32767,32767,110,000000,100,000000,P",
         "UA|A|Bus|V|0.0123|0|0.5|-32767|32767|110|100|P",
         "decimal-comma:a decimal-comma:b decimal-comma:skew decimal-comma:primary decimal-comma:secondary"},
        {"in all", "1,UA,A,Bus,V,0,5,0,25,0,0,-9,0,9,0,110,0,1,5,P", "UA|A|Bus|V|0.5|0.25|0|-9|9|110|1.5|P",
         "decimal-comma:a decimal-comma:b decimal-comma:skew decimal-comma:min decimal-comma:max "
         "decimal-comma:primary decimal-comma:secondary"},
        {"in all of a channel out of use", "1,UA,A,Bus,V,0,0,0,0,0,0,0,0,0,0,1,0,1,0,P", "UA|A|Bus|V|0|0|0|0|0|1|1|P",
         "decimal-comma:a decimal-comma:b decimal-comma:skew decimal-comma:min decimal-comma:max "
         "decimal-comma:primary decimal-comma:secondary"},
        {"in the range", "2,IS,,,A,1,0E+00,0,0,-282,848,282,848,1,00,1,00,P", "IS|||A|1|0|0|-282.848|282.848|1|1|P",
         "decimal-comma:a decimal-comma:min decimal-comma:max decimal-comma:primary decimal-comma:secondary"},
        {"an exponent behind", "1,UA,A,,V,0,5e-3,0,0,-9,9,1,1,S", "UA|A||V|0.0005|0|0|-9|9|1|1|S", "decimal-comma:a"},
        {"beside an empty field", "1,UA,A,,V,0,5,0,,-9,9,1,1,S", "UA|A||V|0.5|0|0|-9|9|1|1|S", "decimal-comma:a"},
        {"beside a comma in the name", "1,Line 1, bay 2,A,,kV,0,0123,0,0,-9,9,110,1,S",
         "Line 1 bay 2|A||kV|0.0123|0|0|-9|9|110|1|S", "decimal-comma:a comma-in-text:ch_id"},
        {"without a unit", "1,UA,A,,,0,0123,0,0,-9,9,110,1,S", "UA|A|||0.0123|0|0|-9|9|110|1|S", "decimal-comma:a"},
        {"in a name and nowhere else", "1,Line 1, 5,A,,kV,2,0,0,-9,9,5,1,P", "Line 1 5|A||kV|2|0|0|-9|9|5|1|P",
         "comma-in-text:ch_id"},
        {"blanks behind commas separate numbers", "1,UA,A,,V,2, 5, 3, 7,-9,9,1,1,S", "UA|A|V|2|5|3|7|-9|9|1|1|S",
         "comma-in-text:ccbm"},
        {"a range the wrong way round", "1,UA,A,,V,2,0,0,9,-9,5,1", "UA|A||V|2|0|0|9|-9|5|1|-", "side:PS"},
        {"a channel out of use keeps its zeros", "1,UA,A,,V,0,0,0,0,0,1,2,", "UA|A||V|0|0|0|0|0|1|2|-", "side:PS"},
    };
    expectAnalogLines(rows);
}

TEST(ReadCfg, ADecimalCommaIsReportedWithTheNumberAsRead) {
    const CfgReading read = readWith(&CfgLines::analog, "1,UA,A,,kV,0,0123,0,0,-32768,32767,110,1,S");
    const Finding* const finding = read.finding("decimal-comma", "a");
    ASSERT_NE(finding, nullptr);
    EXPECT_EQ(finding->severity, Severity::Warning);
    EXPECT_EQ(finding->place.offset, 30U); // 10 bytes of the station line, 9 of the counts line, 11 of this one
    EXPECT_EQ(finding->found, "0,0123");
    EXPECT_EQ(finding->expected, "a decimal point");
    EXPECT_EQ(finding->repair, "read as 0.0123");
}

TEST(ReadCfg, CommasThatCanBeTakenInNoOneWayAreAnError) {
    const struct {
        const char* station;
        const char* line;
    } rows[] = {
        {"S,R,1999", "1,UA,A,,kV,0,0123,0,0,-32768,32767,110,0,1,S"},
        {"S,R,1999", "1,UA,A,,V,2,5,3,0,-9,9,1,1,S"},
        {"S,R,1999", "1,UC,0,,V,0,019,0,6,66667,-32767,32767,220,0,100,000,S"},
        {"S,R,1991", "1,UA,A,,V,1,5,0,0,0,-32767,32767"},
        {"S,R,1999", "1,UA,A,,V,0.0093,0,0,-32767,32767,,1,1,S"}, // a field too many, and no digits on its sides
        {"S,R,1999", "1,IA,,,A,1,0,0,-32767,32767,2000,,1,P"},
    };
    for (const auto& row : rows) {
        CfgLines lines;
        lines.station = row.station;
        lines.analog = row.line;
        const CfgReading read = lines.read();
        EXPECT_FALSE(read.cfg) << row.line;
        const Finding* const finding = read.finding("ambiguous-commas");
        ASSERT_NE(finding, nullptr) << row.line;
        EXPECT_EQ(finding->severity, Severity::Error);
        EXPECT_EQ(finding->found, row.line);
        EXPECT_EQ(finding->place.line, 3U);
    }
}

TEST(ReadCfg, FindingsKnowTheirPlace) {
    const CfgReading read = readWith(&CfgLines::analog, "1,Ua,A,B,V,2,,0,-9,9,5,1,S");
    const Finding* const finding = read.finding("field-empty", "b");
    ASSERT_NE(finding, nullptr);
    EXPECT_EQ(finding->place.file, "x.cfg");
    EXPECT_EQ(finding->place.line, 3U);
    EXPECT_EQ(finding->place.offset, 32U); // 10 bytes of the station line, 9 of the counts line, 13 of this one
    EXPECT_EQ(finding->found, "nothing");
    EXPECT_EQ(finding->expected, "a number");
    EXPECT_EQ(finding->repair, "read as 0, no offset");
    EXPECT_EQ(finding->severity, Severity::Warning);
}

TEST(ReadCfg, StatusLine) {
    const LineRow rows[] = {
        {"all fields", "1,Trip,A,Bus,1", "Trip|A|Bus|1", ""},
        {"no state", "1,Trip,A,Bus", "Trip|A|Bus|0", "field-missing:y"},
        {"empty state", "1,Trip,A,Bus,", "Trip|A|Bus|0", "field-empty:y"},
        {"blank state", "1,Trip,A,Bus, ", "Trip|A|Bus|0", "field-empty:y"},
        {"malformed state", "1,Trip,A,Bus,x", "Trip|A|Bus|0", "field-malformed:y"},
        {"state 2", "1,Trip,A,Bus,2", "Trip|A|Bus|0", "field-malformed:y"},
        {"state 01", "1,Trip,A,Bus,01", "Trip|A|Bus|1", "field-malformed:y"},
        {"name alone", "1,Trip", "Trip|||0", "field-missing:y"},
        {"no name", "1,", "|||0", "field-missing:y"},
        {"nothing but a comma for the state", "1,Trip,,,", "Trip|||0", "field-empty:y"},
        {"comma in the name, before one of two phases", "1,Trip,A,B,Bus,1", "Trip A|B|Bus|1", "comma-in-text:ch_id"},
        {"comma in the name", "1,Trip, zone 1,A,Bus,1", "Trip zone 1|A|Bus|1", "comma-in-text:ch_id"},
        {"blanks", "1, Trip ,A,Bus, 1", "Trip|A|Bus|1", ""},
        {"something behind the state", "1,Trip,A,Bus,1,x", "Trip|A|Bus|1", "extra-text"},
        {"two states", "2,Start,50,51,1,T1,0", "Start|50|51|1", "extra-text:y"},
    };
    for (const LineRow& row : rows) {
        const CfgReading read = readWith(&CfgLines::status, row.line);
        ASSERT_TRUE(read.cfg) << row.why;
        EXPECT_EQ(describe(read.header().status.at(0)), row.expected) << row.why;
        EXPECT_EQ(read.codes(), row.codes) << row.why;
    }
}

TEST(ReadCfg, FrequencyAndRates) {
    const struct {
        const char* why;
        const char* frequency;
        const char* rates;
        const char* expected;
        const char* codes;
    } rows[] = {
        {"as it should be", "60", "1\n1200,40", "60|1200 40", ""},
        {"blanks, points", " 50.000 ", " 1 \n 1920. , 9600 ", "50|1920 9600", ""},
        {"frequency missing", "", "1\n1200,40", "50|1200 40", "field-missing:lf"},
        {"frequency below that of any number of rates", "16.7", "1\n1200,40", "16.7|1200 40", ""},
        {"the least frequency, number of rates missing", "10", "1200,40", "10|1200 40", "field-missing:nrates"},
        {"frequency of a railway, number of rates missing", "16", "1200,40", "16|1200 40", "field-missing:nrates"},
        {"number of rates below any frequency", "9", "1200,40", "50|1200 40", "field-missing:lf counts:nrates"},
        {"unit behind the frequency", "60 Hz", "1\n1200,40", "60|1200 40", "field-malformed:lf"},
        {"unit behind the rate", "50Hz", "1\n1 kHz,40", "50|1000 40", "field-malformed:lf field-malformed:samp"},
        {"units with prefixes", "50", "2\n1 MHz,40\n4.8 kS/s,80", "50|1000000 40|4800 80", "field-malformed:samp"},
        {"something behind the frequency", "50,Hz", "1\n1200,40", "50|1200 40", "extra-text:lf"},
        {"number of rates missing", "60", "1200,40", "60|1200 40", "field-missing:nrates"},
        {"number of rates too small", "60", "1\n1200,40\n600,80", "60|1200 40|600 80", "counts:nrates"},
        {"number of rates too large", "60", "9\n1200,40", "60|1200 40", "counts:nrates"},
        {"rate 0", "60", "0\n0,3000", "60|0 3000", ""},
        {"one rate, and it is 0", "60", "1\n0,3000", "60|0 3000", ""},
        {"no rates, yet one above 0", "60", "0\n1000,3000", "60|0 3000", "rate-zero:samp"},
        {"no rates and no line", "60", "0", "60|0 0", "field-missing:samp"},
        {"rate below 0", "60", "1\n-1200,40", "60|0 40", "field-malformed:samp"},
        {"rate of next to nothing", "60", "1\n1e-7,40", "60|0 40", "field-malformed:samp"},
        {"no number of the last sample", "60", "1\n1200", "60|1200 0", "field-missing:endsamp"},
        {"empty number of the last sample", "60", "1\n1200,", "60|1200 0", "field-empty:endsamp"},
        {"number of the last sample with a point", "60", "1\n1200,40.0", "60|1200 40", "field-malformed:endsamp"},
        {"number of the last sample with an exponent", "60", "1\n1200,4e1", "60|1200 40", "field-malformed:endsamp"},
        {"number of the last sample below 0", "60", "1\n1200,-40", "60|1200 0", "field-malformed:endsamp"},
        {"one field more", "60", "1\n1200,40,000", "60|1200 40", "extra-text:endsamp"},
        {"decimal comma in the frequency", "50,0", "1\n1200,40", "50|1200 40", "decimal-comma:lf"},
        {"decimal comma in the least frequency", "10,0", "1\n1200,40", "10|1200 40", "decimal-comma:lf"},
        {"decimal comma in the frequency, rate 0", "59,94", "0\n0,3000", "59.94|0 3000", "decimal-comma:lf"},
        {"neither frequency nor number of rates", "", "1200,40", "50|1200 40", "field-missing:lf field-missing:nrates"},
        {"decimal comma in the rate", "60", "1\n1200,0,40", "60|1200 40", "decimal-comma:samp"},
        {"decimal comma in the rate, zero behind it", "60", "1\n1200,05,40", "60|1200.05 40", "decimal-comma:samp"},
        {"three numbers, of which none is a fraction", "60", "1\n1200,40,7", "60|1200 40", "extra-text:endsamp"},
        {"the same beside another decimal comma", "60,0", "1\n1200,40,7", "60|1200.4 7",
         "decimal-comma:lf decimal-comma:samp"},
    };
    for (const auto& row : rows) {
        CfgLines lines;
        lines.frequency = row.frequency;
        lines.rates = row.rates;
        const CfgReading read = lines.read();
        ASSERT_TRUE(read.cfg) << row.why;
        std::string found = shortText(read.header().lineFrequency);
        for (const RateInfo& rate : read.header().rates)
            found += '|' + shortText(rate.rate) + ' ' + std::to_string(rate.endSample);
        EXPECT_EQ(found, row.expected) << row.why;
        EXPECT_EQ(read.header().samplesDeclared, read.header().rates.back().endSample) << row.why;
        EXPECT_EQ(read.header().timesAreStamped(), read.header().rates.back().rate == 0.0) << row.why;
        EXPECT_EQ(read.codes(), row.codes) << row.why;
    }
}

TEST(ReadCfg, AUnitIsReportedWithTheNumberAsRead) {
    const CfgReading read = readWith(&CfgLines::rates, "1\n4.8 kHz,40");
    ASSERT_NE(read.finding("field-malformed", "samp"), nullptr);
    EXPECT_EQ(read.finding("field-malformed", "samp")->repair, "read as 4800");
}

TEST(ReadCfg, Dates) {
    const struct {
        const char* why;
        const char* start;
        const char* trigger;
        const char* expected;
        const char* codes;
    } rows[] = {
        {"day first", "02/01/2011,00:00:01", "02/01/2011,00:00:02", "2011-01-02T00:00:01.000000000", ""},
        {"month first by the day", "02/13/2011,00:00:01", "02/13/2011,00:00:02", "2011-02-13T00:00:01.000000000",
         "date-format:start date-format:trigger"},
        {"month first by the other date", "02/01/2011,00:00:01", "02/13/2011,00:00:02", "2011-02-01T00:00:01.000000000",
         "date-format:start date-format:trigger"},
        {"neither", "09/44/2025,15:44:15", "09/44/2025,15:44:15", "none", "date-unknown:start date-unknown:trigger"},
        {"empty", ",", "02/01/2011,00:00:02", "none", "date-unknown:start"},
        {"zero of the clock", "01/01/1970,00:00:00.000000", "02/01/2011,00:00:02", "none", "date-unset:start"},
        {"zeros", "00/00/0000,00:00:00.000000", "02/01/2011,00:00:02", "none", "date-unset:start"},
        {"year of two digits", "02/01/11,00:00:01", "02/01/2011,00:00:02", "2011-01-02T00:00:01.000000000",
         "date-format:start"},
        {"decimal comma", "02/01/2011,00:00:01,25", "02/01/2011,00:00:02.5", "2011-01-02T00:00:01.250000000",
         "date-format:start"},
        {"a blank for the comma", "02/01/2011 00:00:01.25", "02/01/2011  00:00:02.5", "2011-01-02T00:00:01.250000000",
         "date-format:start date-format:trigger"},
        {"a blank for the comma and a comma for the point", "02/01/2011 00:00:01,25", "02/01/2011,00:00:02.5",
         "2011-01-02T00:00:01.250000000", "date-format:start"},
        {"ISO 8601", "2011-01-02T00:00:01.25", "2011-01-02,00:00:02.5", "2011-01-02T00:00:01.250000000",
         "date-format:start date-format:trigger"},
        {"ISO 8601 with a zone", "2011-01-02T00:00:01.25+01:00", "2011-01-02 00:00:02.5Z",
         "2011-01-02T00:00:01.250000000", "date-format:start date-format:trigger"},
        {"month by its name", "02-Jan-2011,00:00:01", "02/JAN/11 00:00:02", "2011-01-02T00:00:01.000000000",
         "date-format:start date-format:trigger"},
        {"month by its name in front", "Jan 02 2011 00:00:01", "2 January 2011,00:00:02",
         "2011-01-02T00:00:01.000000000", "date-format:start date-format:trigger"},
        {"end of the day", "02/01/2011,24:00:00.000", "03/01/2011,00:00:02", "2011-01-03T00:00:00.000000000",
         "date-format:start"},
        {"leap second", "31/12/2016,23:59:60.5", "01/01/2017,00:00:02", "2017-01-01T00:00:00.500000000",
         "date-format:start"},
        {"something behind date and time in one", "02/01/2011 00:00:01.25,UTC", "02/01/2011,00:00:02.5",
         "2011-01-02T00:00:01.250000000", "date-format:start extra-text:start"},
        {"something behind", "02/01/2011,00:00:01.25,UTC", "02/01/2011,00:00:02.5", "2011-01-02T00:00:01.250000000",
         "extra-text:start"},
        {"missing trigger", "02/01/2011,00:00:01", "", "2011-01-02T00:00:01.000000000", "field-missing:trigger"},
        {"missing dates", "", "", "none", "field-missing:start field-missing:trigger"},
    };
    for (const auto& row : rows) {
        CfgLines lines;
        lines.start = row.start;
        lines.trigger = row.trigger;
        const CfgReading read = lines.read();
        ASSERT_TRUE(read.cfg) << row.why;
        EXPECT_EQ(read.header().start ? read.header().start->text() : "none", row.expected) << row.why;
        EXPECT_EQ(read.codes(), row.codes) << row.why;
        EXPECT_EQ(read.header().dataType, DataType::Binary) << row.why;
    }
}

TEST(ReadCfg, ADateThatIsNotReadIsShownWithItsTime) {
    const CfgReading read = readWith(&CfgLines::start, "12/01/2011,25:55:30.075011");
    ASSERT_NE(read.finding("date-unknown", "start"), nullptr);
    EXPECT_EQ(read.finding("date-unknown", "start")->found, "12/01/2011,25:55:30.075011");
}

TEST(ReadCfg, ADateReportsAllThatIsOddAboutItInOneNote) {
    const struct {
        const char* line;
        const char* expected;
        const char* repair;
    } rows[] = {
        {"12/01/2011,24:00:00", "an hour from 0 to 23", "read as 00:00:00 of the next day"},
        {"12/01/2011,05:55:60", "a second from 0 to 59", "read as a leap second, the next second 0"},
        {"12/01/11,05:55:30", "a year of four digits", "read as a year from 1970 to 2069"},
        {"12/01/2011,05:55:30,5", "a decimal point in the seconds", "the comma read as one"},
        {"2011-01-12T05:55:30Z", "a date with slashes; a comma between date and time; a time without a zone",
         "split before the hour; the zone skipped"},
    };
    for (const auto& row : rows) {
        const CfgReading read = readWith(&CfgLines::start, row.line);
        const Finding* const finding = read.finding("date-format", "start");
        ASSERT_NE(finding, nullptr) << row.line;
        EXPECT_EQ(finding->severity, Severity::Note) << row.line;
        EXPECT_EQ(finding->found, row.line);
        EXPECT_EQ(finding->expected, row.expected);
        EXPECT_EQ(finding->repair, row.repair);
        EXPECT_EQ(finding->advice, "no action needed");
    }
}

TEST(ReadCfg, MonthIsFirstInRevision1991) {
    const std::string head = "S,R,1991\n1,1A,0D\n1,Ua,A,,V,1,0,0,-9,9\n50\n1\n1000,8\n";
    const CfgReading plain = readBytes(withCrLf(head + "02/01/07,00:00:01.5\n02/01/07,00:00:02\nASCII\n"));
    EXPECT_EQ(plain.header().start->text(), "2007-02-01T00:00:01.500000000");
    EXPECT_EQ(plain.codes(), "");
    const CfgReading other = readBytes(withCrLf(head + "02/01/07,00:00:01.5\n13/01/07,00:00:02\nASCII\n"));
    EXPECT_EQ(other.header().start->text(), "2007-01-02T00:00:01.500000000");
    EXPECT_EQ(other.codes(), "date-format:start date-format:trigger");
}

TEST(ReadCfg, NanosecondsInADateAreKnown) {
    EXPECT_FALSE(CfgLines().read().header().hasNanosecondDates);
    EXPECT_TRUE(readWith(&CfgLines::trigger, "15/12/2023,17:36:30.885675860").header().hasNanosecondDates);
}

TEST(ReadCfg, DataType) {
    const struct {
        const char* line;
        DataType type;
        const char* codes;
    } rows[] = {
        {"ASCII", DataType::Ascii, ""},
        {"binary", DataType::Binary, ""},
        {"Float32", DataType::Float32, ""},
        {" BINARY32 ", DataType::Binary32, ""},
        {"BINARY,", DataType::Binary, "extra-text"},
        {"FLOAT32\x1A", DataType::Float32, "control-characters"},
        {"BINARY 32", DataType::Binary32, "type-word:ft"},
        {"Binary-32", DataType::Binary32, "type-word:ft"},
        {"FLOAT_32", DataType::Float32, "type-word:ft"},
        {"BINARY16", DataType::Binary, "type-word:ft"},
        {"Binary 16", DataType::Binary, "type-word:ft"},
        {"INT16", DataType::Binary, "type-word:ft"},
        {"BIN", DataType::Binary, "type-word:ft"},
        {"INT32", DataType::Binary32, "type-word:ft"},
        {"BIN32", DataType::Binary32, "type-word:ft"},
        {"FLOAT", DataType::Float32, "type-word:ft"},
        {"REAL32", DataType::Float32, "type-word:ft"},
        {"BINARY64", DataType::Ascii, "type-word:ft"},
    };
    for (const auto& row : rows) {
        const CfgReading read = readWith(&CfgLines::type, row.line);
        ASSERT_TRUE(read.cfg) << row.line;
        EXPECT_STREQ(typeWord(read.header().dataType), typeWord(row.type)) << row.line;
        EXPECT_EQ(read.codes(), row.codes) << row.line;
    }
}

TEST(ReadCfg, ARangeThatIsNotWrittenIsThatOfTheDataType) {
    const struct {
        const char* type;
        double min;
    } rows[] = {
        {"ASCII", -99999.0},
        {"BINARY", -32767.0},
        {"BINARY32", -2147483647.0},
        {"FLOAT32", -3.4028234663852886e38},
    };
    for (const auto& row : rows) {
        CfgLines lines;
        lines.analog = "1,Ua,A,B,V,2,0,0,,5,5,1,S";
        lines.type = row.type;
        const CfgReading read = lines.read();
        EXPECT_EQ(read.header().analog.at(0).min, row.min) << row.type;
        EXPECT_EQ(read.header().analog.at(0).max, 5.0) << row.type;
        EXPECT_TRUE(read.cfg->analog.at(0).hasRange) << row.type;
    }
    CfgLines lines;
    lines.analog = "1,Ua,A,B,V,2,0,0,,,1,1,S";
    EXPECT_FALSE(lines.read().cfg->analog.at(0).hasRange);
}

TEST(ReadCfg, LinesBehindTheType) {
    const struct {
        const char* why;
        const char* year;
        const char* rest;
        double multiplier;
        const char* codesOfTime;
        const char* codes;
    } rows[] = {
        {"nothing", "1999", "", 1.0, "|||", "field-missing:timemult"},
        {"blank line", "1999", "\n", 1.0, "|||", "field-missing:timemult"},
        {"0x1A", "1999", "\x1A", 1.0, "|||", "field-missing:timemult"},
        {"multiplier", "1999", "0.25\n", 0.25, "|||", ""},
        {"malformed multiplier", "1999", "x\n", 1.0, "|||", "field-malformed:timemult"},
        {"multiplier 0", "1999", "0\n", 1.0, "|||", "time-multiplier:timemult"},
        {"time codes", "2013", "1\n-5h30,-5h30\nB,3\n", 1.0, "-5h30|-5h30|B|3", ""},
        {"time codes in other forms", "2013", "1\n5h,+2\n0,0\n", 1.0, "5h|+2|0|0", ""},
        {"time codes in capitals", "2013", "1\nX,+05H30\nf,0\n", 1.0, "X|+05H30|f|0", ""},
        {"minutes of three digits", "2013", "1\n5h300,0\nB,3\n", 1.0, "||B|3", "extra-text"},
        {"a letter for leap seconds", "2013", "1\n0,x\nB,x\n", 1.0, "0|x||", "extra-text"},
        {"a fifth state of leap seconds", "2013", "1\n0,x\nB,4\n", 1.0, "0|x||", "extra-text"},
        {"no digit for the quality", "2013", "1\n0,x\nQ,3\n", 1.0, "0|x||", "extra-text"},
        {"two digits for the quality", "2013", "1\n0,x\nBB,3\n", 1.0, "0|x||", "extra-text"},
        {"codes that are empty", "2013", "1\n,\nB,3\n", 1.0, "||B|3", ""},
        {"time codes without a multiplier", "2013", "-5h30,+2\nB,3\n", 1.0, "-5h30|+2|B|3", "field-missing:timemult"},
        {"quality behind codes that are none", "2013", "1\nNA,NA\n0,0\n", 1.0, "||0|0", "extra-text"},
        {"words for codes and quality", "2013", "1\nNA,NA\n0000,0\n", 1.0, "|||", "extra-text"},
        {"codes and quality not given", "2013", "1\n,\n,\n", 1.0, "|||", ""},
        {"codes not given", "2013", "1\n,\nB,3\n", 1.0, "||B|3", ""},
        {"quality not given", "2013", "1\n0,x\n,\n", 1.0, "0|x||", ""},
        {"neither codes nor quality", "2013", "1\n", 1.0, "|||", "time-lines"},
        {"codes alone", "2013", "1\n0,x\n", 1.0, "0|x||", "time-lines"},
        {"quality alone", "2013", "1\nB,3\n", 1.0, "||B|3", "time-lines"},
        {"one line that gives nothing", "2013", "1\n,\n", 1.0, "|||", "time-lines"},
        {"0x1A at the end", "2013", "1\n0,x\nB,3\x1A\x1A", 1.0, "0|x|B|3", ""},
        {"0x1A on its own line", "2013", "1\n\x1A\x1A", 1.0, "|||", "time-lines"},
        {"something else", "2013", "1\n0,x\nB,3\nend\n", 1.0, "0|x|B|3", "extra-text"},
        {"a comment for the codes", "2013", "1\nwritten by hand, today\n", 1.0, "|||", "extra-text time-lines"},
        {"time codes before their revision", "1999", "1\n0,x\n", 1.0, "|||", "extra-text"},
        {"a comment behind the last line", "1999", "1\nMade by x, version 2\n", 1.0, "|||", "extra-text"},
    };
    for (const auto& row : rows) {
        CfgLines lines;
        lines.station = std::string("S,R,") + row.year;
        lines.rest = row.rest;
        const CfgReading read = lines.read();
        ASSERT_TRUE(read.cfg) << row.why;
        const Header& found = read.header();
        EXPECT_EQ(found.timeMultiplier, row.multiplier) << row.why;
        EXPECT_EQ(found.timeCode + '|' + found.localCode + '|' + found.timeQuality + '|' + found.leapSecond,
                  row.codesOfTime)
            << row.why;
        EXPECT_EQ(read.codes(), row.codes) << row.why;
    }
}

TEST(ReadCfg, AMissingMultiplierIsReportedWithWhatIsMissingAndTheNumberAsRead) {
    const CfgReading read = readWith(&CfgLines::rest, "");
    const Finding* const finding = read.finding("field-missing", "timemult");
    ASSERT_NE(finding, nullptr);
    EXPECT_EQ(finding->expected, "the time multiplier");
    EXPECT_EQ(finding->repair, "read as 1");
}

TEST(ReadCfg, ADecimalCommaInTheMultiplierIsKnownByTheOtherNumbers) {
    const struct {
        const char* year;
        const char* frequency;
        double multiplier;
        const char* code;
    } rows[] = {
        {"1999", "50", 1.0, ""},
        {"1999", "50,0", 0.5, ""},
        {"2013", "50,0", 1.0, "0"},
    };
    for (const auto& row : rows) {
        CfgLines lines;
        lines.station = std::string("S,R,") + row.year;
        lines.frequency = row.frequency;
        lines.rest = "0,5\n";
        EXPECT_EQ(lines.read().header().timeMultiplier, row.multiplier) << row.year << row.frequency;
        EXPECT_EQ(lines.read().header().timeCode, row.code) << row.year << row.frequency;
    }
}

TEST(ReadCfg, CommasAtTheEndsOfLinesChangeNothing) {
    CfgLines lines;
    lines.rest = "1000\n";
    lines.counts = "3,1A,2D";
    lines.status = "1,Trip,,,0\n2,Start,,,1";
    const std::string expected = describe(lines.read().header());
    EXPECT_EQ(expected.substr(expected.rfind('|')), "|1000");
    for (const std::size_t fields : {13U, 14U, 20U}) {
        const CfgReading read = readBytes(filledUp(lines.text(), fields));
        ASSERT_TRUE(read.cfg) << fields;
        EXPECT_EQ(describe(read.header()), expected) << fields;
        EXPECT_EQ(read.codes(), "extra-text") << fields;
        EXPECT_EQ(read.findings.at(0).severity, Severity::Note) << fields;
    }
    const std::string lines1991 = "S,R\n3,1A,2D\n1,Ua,A,,V,1,0,0,-9,9\n1,Trip,1\n2,Start,0\n50\n1\n1000,8\n"
                                  "01/13/07,00:00:01\n01/13/07,00:00:02\nASCII\n";
    const CfgReading old = readBytes(filledUp(withCrLf(lines1991), 10));
    EXPECT_EQ(old.header().revision, 1991);
    EXPECT_EQ(describe(old.header().status.at(0)), "Trip|||1");
    EXPECT_EQ(old.codes(), "extra-text");
}

TEST(ReadCfg, ACommaBehindANumberIsNoSecondField) {
    CfgLines lines;
    lines.frequency = "50,";
    lines.rates = "1,\n1000,8,";
    lines.rest = "1000,\n";
    const CfgReading read = lines.read();
    ASSERT_TRUE(read.cfg);
    EXPECT_EQ(read.header().status.size(), 1U);
    EXPECT_EQ(read.header().lineFrequency, 50.0);
    EXPECT_EQ(read.header().rates.size(), 1U);
    EXPECT_EQ(read.header().timeMultiplier, 1000.0);
    EXPECT_EQ(read.codes(), "extra-text");
    lines.counts = "9,1A,8D";
    EXPECT_EQ(lines.read().header().status.size(), 1U);
    lines.counts = "3,1A,2D";
    EXPECT_EQ(lines.read().header().status.size(), 1U);
}

TEST(ReadCfg, StatusLineOfANumberAloneIsAChannelThoughTheFrequencyIsLeftOut) {
    CfgLines lines;
    lines.status = "1,,,,";
    lines.frequency = "";
    const CfgReading read = lines.read();
    ASSERT_TRUE(read.cfg);
    EXPECT_EQ(read.header().status.size(), 1U);
    EXPECT_EQ(read.header().lineFrequency, 50.0);
    EXPECT_EQ(read.codes(), "field-empty:y field-missing:lf");
    lines.status = "60,,,,"; // a frequency, and no status line at all
    EXPECT_EQ(lines.read().header().status.size(), 0U);
    EXPECT_EQ(lines.read().header().lineFrequency, 60.0);
}

TEST(ReadCfg, QuotationMarksAroundFieldsAreLeftOut) {
    CfgLines lines;
    lines.station = "\"S\",\"R\",\"1999\"";
    lines.analog = R"("1","Line 1, bay 2","A","Bus","V","0.5","0,25","0","-32767","32767","1","1","S")";
    lines.status = R"(1, "Trip ""fast""" ,"","",0)";
    const CfgReading read = lines.read();
    ASSERT_TRUE(read.cfg);
    EXPECT_EQ(read.codes(), "quotes decimal-comma:b");
    EXPECT_EQ(read.findings.at(0).severity, Severity::Note);
    EXPECT_EQ(read.findings.at(0).places, 3U);
    EXPECT_EQ(describe(read.header().analog.at(0)), "Line 1 bay 2|A|Bus|V|0.5|0.25|0|-32767|32767|1|1|S");
    EXPECT_EQ(describe(read.header().status.at(0)), "Trip \"fast\"|||0");
    EXPECT_EQ(describe(readWith(&CfgLines::analog, R"("1","IA","A","","","A",2,0,0,-9,9,5,1,P)").header().analog.at(0)),
              "IA|A||A|2|0|0|-9|9|5|1|P");
    // Marks that do not stand around a field are a part of it.
    EXPECT_EQ(describe(readWith(&CfgLines::status, "1,\"A\" open,,\"x,0").header().status.at(0)), "\"A\" open||\"x|0");
}

TEST(ReadCfg, SemicolonsAndTabsSeparateFieldsAsCommasDo) {
    for (const char separator : {';', '\t'}) {
        const CfgReading read = readBytes(separatedBy(CfgLines().text(), separator));
        ASSERT_TRUE(read.cfg);
        EXPECT_EQ(read.codes(), "separators");
        EXPECT_EQ(describe(read.header()), kFaultless);
        EXPECT_EQ(read.finding("separators")->found, separator == ';' ? "semicolons" : "tabs");
    }
}

TEST(ReadCfg, CommasBetweenSemicolonsAreDecimalOrPartOfAName) {
    CfgLines lines;
    lines.station = "Sub, north;R;1999";
    lines.counts = "2;1A;1D";
    lines.analog = "1;Ua;A;Bus;V;0,5;0,25;0;-32767;32767;1;1;S";
    lines.status = "1;Trip;;;0";
    lines.frequency = "50,0";
    lines.rates = "1\n1000,0;8";
    lines.start = "12/01/2011,05:55:30.075011";
    lines.trigger = "12/01/2011;05:55:30,078261";
    lines.rest = "1,0\n";
    const CfgReading read = lines.read();
    ASSERT_TRUE(read.cfg);
    EXPECT_EQ(describe(read.header()), std::string(kFaultless).replace(0, 1, "Sub north"));
    EXPECT_EQ(read.codes(), "separators decimal-comma:a decimal-comma:b decimal-comma:lf decimal-comma:samp "
                            "date-format:start date-format:trigger decimal-comma:timemult");
}

TEST(ReadCfg, EveryPrefixGivesAConfigurationOrAnError) {
    const std::string text = CfgLines().text();
    for (std::size_t length = 0; length <= text.size(); ++length) {
        const CfgReading read = readBytes(text.substr(0, length));
        const bool isError = std::any_of(read.findings.begin(), read.findings.end(),
                                         [](const Finding& each) { return each.severity == Severity::Error; });
        EXPECT_NE(read.cfg.has_value(), isError) << length;
    }
}

TEST(ReadCfg, EveryByteInEveryPlaceGivesAConfigurationOrAnError) {
    const std::string text = CfgLines().text();
    for (std::size_t place = 0; place < text.size(); ++place) {
        for (const char byte : {'\0', '\n', '"', ',', ';', '-', '0', 'A', '/', ':', '\xAD', '\xFF'}) {
            std::string changed = text;
            changed[place] = byte;
            const CfgReading read = readBytes(changed);
            const bool isError = std::any_of(read.findings.begin(), read.findings.end(),
                                             [](const Finding& each) { return each.severity == Severity::Error; });
            EXPECT_NE(read.cfg.has_value(), isError) << place << byte;
        }
    }
}

// The byte is none of CP1251; what it leaves of the line is blank, where the date or the data type should be.
TEST(ReadCfg, ALineThatIsBlankOnceConvertedIsNoCrash) {
    for (const auto member :
         {&CfgLines::station, &CfgLines::counts, &CfgLines::analog, &CfgLines::status, &CfgLines::frequency,
          &CfgLines::rates, &CfgLines::start, &CfgLines::trigger, &CfgLines::type, &CfgLines::rest}) {
        CfgLines lines;
        lines.*member = "\xAD";
        EXPECT_FALSE(readBytes(lines.text(), "CP1251").findings.empty());
    }
}

TEST(ReadCfg, AMegabyteOfShortLinesIsReadInLinearTime) {
    constexpr std::size_t size = std::size_t{1} << 20U;
    const std::string upToRates = "S,R,1999\r\n1,1A,0D\r\n1,Ua,A,Bus,V,1,0,0,-9,9,1,1,S\r\n50\r\n1\r\n";
    const auto channels = [](const std::string& line, char letter) {
        const std::string count = std::to_string(size / line.size());
        const bool isAnalog = letter == 'A';
        return count + ',' + (isAnalog ? count : "0") + "A," + (isAnalog ? "0" : count) + "D\r\n";
    };
    const struct {
        const char* why;
        std::string head;
        std::string line;
    } rows[] = {
        {"status lines", "S,R,1999\r\n" + channels("1,a,,,0\r\n", 'D'), "1,a,,,0\r\n"},
        {"old status lines", "S,R\r\n" + channels("1,a,1\r\n", 'D'), "1,a,1\r\n"},
        {"analog lines", "S,R,1999\r\n" + channels("1,,,,\r\n", 'A'), "1,,,,\r\n"},
        {"analog lines of commas", "S,R,1999\r\n" + channels(",,,,,,,,,,,,,,,P\r\n", 'A'), ",,,,,,,,,,,,,,,P\r\n"},
        {"more channels than counted", "S,R,1999\r\n2,1A,1D\r\n", "1,a,,,0\r\n"},
        {"lines that may be a frequency", "S,R,1999\r\n1,1A,0D\r\n", "50,0\r\n"},
        {"quotation marks without an end", "S,R,1999\r\n" + channels("\",\r\n", 'D'), "\",\r\n"},
        {"rates", upToRates, "1,2\r\n"},
        {"text behind the end", upToRates, "x\r\n"},
    };
    for (const auto& row : rows) {
        std::string text = row.head;
        while (text.size() < size)
            text += row.line;
        const std::clock_t begin = std::clock();
        readBytes(text);
        const double seconds = static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
        EXPECT_LT(seconds, 10.0) << row.why; // a look from each line to the last would take minutes
    }
}
