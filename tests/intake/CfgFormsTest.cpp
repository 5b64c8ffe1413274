#include "Cfg.h"
#include "CfgSupport.h"
#include "cfg/cfgReading.h"
#include "cfg/libraryForm.h"
#include "cfg/scaling.h"
#include "cfg/settleRates.h"
#include "cfg/standardForm.h"
#include "support/Results.h"
#include "support/TempDir.h"
#include "text/CfgText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <random>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

using namespace OrvComtradeIntake;

namespace {

constexpr std::int64_t kStart = 1294811730075011000; // 2011-01-12 05:55:30.075011

/// A clean recording of 8 samples with one channel of each kind.
ReadCfg cleanCfg() {
    ReadCfg cfg;
    cfg.file = "x.cfg";
    Header& header = cfg.header;
    header.station = "S";
    header.recorder = "R";
    AnalogInfo voltage{1, "Ua", "A", "Bus", "V", 0.5, 0.25};
    voltage.min = -32767.0;
    voltage.max = 32767.0;
    voltage.side = Side::Secondary;
    header.analog = {voltage};
    header.status = {{1, "Trip", "", "", 0}};
    header.lineFrequency = 50.0;
    header.rates = {{1000.0, 8}};
    header.start = Instant{kStart};
    header.trigger = Instant{kStart + 3250000};
    header.dataType = DataType::Binary;
    cfg.analog = {{0.5L, 0.25L, true, 3, 40, 36}};
    cfg.rate = {"x.cfg", 7, "samp", 70};
    cfg.ends = {{8, 80}};
    return cfg;
}

DataFacts factsOf(const ReadCfg& cfg, std::uint64_t samples = 8) {
    DataFacts facts;
    facts.type = cfg.header.dataType;
    facts.libraryType = cfg.header.dataType;
    facts.samples = samples;
    return facts;
}

OrvComtradeLib::Cfg loaded(const std::string& text) {
    const orvtest::TempDir folder;
    OrvComtradeLib::Cfg cfg;
    EXPECT_EQ(orvtest::resultOf(cfg.load(folder.write("x.cfg", text))), OrvComtradeLib::Enums::CfgLoaded) << text;
    return cfg;
}

OrvComtradeLib::Cfg loadedForm(const ReadCfg& cfg, Side side = Side::Recorded) {
    return loaded(libraryForm(cfg, factsOf(cfg), side));
}

/// "code:field" of each finding.
std::string codesOf(const Findings& findings) {
    std::string all;
    for (const Finding& finding : findings.all())
        all += (all.empty() ? "" : " ") + finding.code + ':' + finding.place.field;
    return all;
}

/// "1000,4 2000,8"
std::vector<RateInfo> ratesOf(const std::string& text) {
    std::vector<RateInfo> rates;
    std::istringstream in(text);
    RateInfo rate;
    for (char comma = ' '; in >> rate.rate >> comma >> rate.endSample;)
        rates.push_back(rate);
    return rates;
}

std::string ratesText(const std::vector<RateInfo>& rates) {
    std::ostringstream out;
    for (const RateInfo& rate : rates)
        out << (&rate == &rates.front() ? "" : " ") << rate.rate << ',' << rate.endSample;
    return out.str();
}

/// Times that the library gives the samples, to six digits.
std::string millisecondsOf(const OrvComtradeLib::Cfg& library, const std::vector<unsigned long>& indexes) {
    std::ostringstream out;
    for (const unsigned long index : indexes)
        out << (out.tellp() == 0 ? "" : " ") << library.timeFromSampleIndex(index) * 1000.0;
    return out.str();
}

ReadCfg withRates(const std::string& text) {
    ReadCfg cfg = cleanCfg();
    cfg.header.rates = ratesOf(text);
    cfg.ends.clear();
    for (std::size_t index = 0; index < cfg.header.rates.size(); ++index)
        cfg.ends.push_back({8 + index, 80 + 10 * index});
    return cfg;
}

/// The lines between the line frequency and the dates.
std::string rateLinesOf(const std::string& text) {
    const std::size_t begin = text.find("\n50\n") + 4;
    return text.substr(begin, text.find("12/01/2011") - begin);
}

} // namespace

TEST(SettleRates, CountsEndsFromTheFirstSampleAndTheLibraryKeepsTheTimes) {
    const struct {
        const char* why;
        const char* rates;
        std::uint64_t samples;
        const char* settled;
        const char* codes;
        const char* written; // for the library
        std::vector<unsigned long> indexes;
        const char* milliseconds;
    } rows[] = {
        // Numbers of last samples
        {"one rate", "1000,8", 8, "1000,8", "", "1\n1000,8\n", {0, 7}, "0 7"},
        {"two rates", "1000,4 2000,8", 8, "1000,4 2000,8", "", "2\n1000,4\n2000,8\n", {3, 4, 6}, "3 4 5"},
        {"three",
         "1000,4 2000,8 500,10",
         10,
         "1000,4 2000,8 500,10",
         "",
         "3\n1000,4\n2000,4\n500,10\n",
         {3, 4, 8, 9},
         "3 4 6 8"},
        {"equal", "1000,4 1000,8 1000,9", 9, "1000,4 1000,8 1000,9", "", "3\n1000,4\n1000,8\n1000,9\n", {4, 8}, "4 8"},
        {"equal before another",
         "1000,2 1000,4 500,6",
         6,
         "1000,2 1000,4 500,6",
         "",
         "2\n1000,4\n500,6\n",
         {3, 4, 5},
         "3 4 6"},
        {"empty",
         "1000,4 1000,8 1000,8",
         8,
         "1000,4 1000,8 1000,8",
         "empty-rate:endsamp",
         "3\n1000,4\n1000,8\n1000,8\n",
         {7},
         "7"},
        // Another number of samples
        {"more", "1000,8", 9, "1000,8", "sample-count:endsamp", "1\n1000,9\n", {8}, "8"},
        {"fewer", "1000,8", 5, "1000,8", "samples-lost:endsamp", "1\n1000,5\n", {0, 4}, "0 4"},
        {"cut in the second",
         "1000,4 2000,8 500,10",
         6,
         "1000,4 2000,8 500,10",
         "samples-lost:endsamp",
         "3\n1000,4\n2000,8\n500,6\n",
         {4, 5},
         "4 4.5"},
        {"none", "1000,4 2000,8", 0, "1000,4 2000,8", "", "1\n1000,0\n", {}, ""},
        // Lengths
        {"their sum",
         "1000,4 2000,8",
         12,
         "1000,4 2000,12",
         "rates-as-lengths:samp",
         "2\n1000,4\n2000,12\n",
         {3, 4, 10},
         "3 4 7"},
        {"they decrease",
         "1000,4 2000,2 500,3",
         9,
         "1000,4 2000,6 500,9",
         "rates-as-lengths:samp",
         "3\n1000,4\n2000,2\n500,9\n",
         {4, 6, 7},
         "4 5 7"},
        {"both, and the last becomes the total",
         "1000,4 2000,6 500,3",
         13,
         "1000,4 2000,10 500,13",
         "rates-as-lengths:samp",
         "3\n1000,4\n2000,6\n500,13\n",
         {4, 10},
         "4 7"},
        {"they decrease, and are no sum",
         "1000,10 4000,5 1000,40",
         54,
         "1000,10 4000,15 1000,55",
         "rates-as-lengths:samp sample-count:endsamp",
         "3\n1000,10\n4000,5\n1000,54\n",
         {10, 14, 15},
         "10 11 11.25"},
        {"they decrease, no data", "1000,4 2000,2", 0, "1000,4 2000,6", "rates-as-lengths:samp", "1\n1000,0\n", {}, ""},
        {"of equal rates",
         "1000,2 1000,2 1000,2",
         6,
         "1000,2 1000,4 1000,6",
         "rates-as-lengths:samp",
         "3\n1000,2\n1000,2\n1000,6\n",
         {3, 5},
         "3 5"},
        // Times in the data
        {"stamped", "0,8", 8, "0,8", "", "0\n0,8\n", {}, ""},
        {"stamped, fewer", "0,8", 7, "0,8", "samples-lost:endsamp", "0\n0,7\n", {}, ""},
        {"one of two stamped", "1000,6 0,4", 10, "1000,6 0,4", "sample-count:endsamp", "0\n0,10\n", {}, ""},
        {"no rate at all", "", 8, "0,0", "sample-count:endsamp", "0\n0,8\n", {}, ""},
    };
    for (const auto& row : rows) {
        ReadCfg cfg = withRates(row.rates);
        Findings findings;
        settleRates(cfg, row.samples, findings);
        EXPECT_EQ(ratesText(cfg.header.rates), row.settled) << row.why;
        EXPECT_EQ(codesOf(findings), row.codes) << row.why;
        EXPECT_EQ(cfg.header.samples, row.samples) << row.why;
        EXPECT_EQ(cfg.header.samplesDeclared, cfg.header.rates.back().endSample) << row.why;
        EXPECT_TRUE(cfg.areRatesSettled) << row.why;
        const std::string text = libraryForm(cfg, factsOf(cfg, row.samples), Side::Recorded);
        EXPECT_EQ(rateLinesOf(text), row.written) << row.why;
        const OrvComtradeLib::Cfg library = loaded(text);
        EXPECT_EQ(library.lastSampleNumber, row.samples) << row.why;
        EXPECT_EQ(millisecondsOf(library, row.indexes), row.milliseconds) << row.why;
    }
}

TEST(SettleRates, ReportsHowManySamplesAreLost) {
    const struct {
        const char* why;
        std::uint64_t declared;
        std::uint64_t samples;
        const char* code;
        const char* found;
    } rows[] = {
        {"nearly all", 885, 8, "samples-lost", "8 (99 % lost)"},
        {"a twentieth", 100, 95, "samples-lost", "95 (5 % lost)"},
        {"less than a twentieth", 100, 96, "sample-count", "96 (4 % lost)"},
        {"hardly any", 1000000, 999999, "sample-count", "999999"},
        {"the only one of two", 2, 1, "samples-lost", "1 (50 % lost)"},
        {"all but one of very many", INT64_MAX, 1, "samples-lost", "1 (99 % lost)"},
        {"more than declared", 8, 9, "sample-count", "9"},
        {"none declared", 0, 9, "sample-count", "9"},
    };
    for (const auto& row : rows) {
        ReadCfg cfg = withRates("1000," + std::to_string(row.declared));
        Findings findings;
        settleRates(cfg, row.samples, findings);
        ASSERT_EQ(findings.all().size(), 1U) << row.why;
        EXPECT_EQ(findings.all()[0].code, row.code) << row.why;
        EXPECT_EQ(findings.all()[0].found, row.found) << row.why;
        EXPECT_EQ(findings.all()[0].expected, std::to_string(row.declared) + " samples as declared") << row.why;
        EXPECT_EQ(findings.all()[0].place.line, 8U) << row.why;
    }
}

TEST(SettleRates, ReportsRatesWithoutSamples) {
    const struct {
        const char* why;
        const char* rates;
        std::uint64_t samples;
        const char* codes;
        const char* found;
        std::uint64_t places;
    } rows[] = {
        {"the last ones", "1000,4 2000,8 500,8 500,8", 8, "empty-rate:endsamp", "none at rate 3", 2},
        {"the first", "1000,0 2000,8", 8, "empty-rate:endsamp", "none at rate 1", 1},
        {"one in the middle", "1000,4 2000,4 500,8", 8, "empty-rate:endsamp", "none at rate 2", 1},
        {"a length of 0", "1000,4 2000,0 500,4", 8, "rates-as-lengths:samp empty-rate:endsamp", "none at rate 2", 1},
        {"samples at each", "1000,4 2000,5 500,8", 8, "", "", 0},
        {"fewer samples than declared", "1000,4 2000,8 500,12", 8, "samples-lost:endsamp", "", 0},
        {"the last, which more samples than declared have", "1000,4 2000,4", 9, "sample-count:endsamp", "", 0},
        {"one rate, which is for all", "1000,0", 8, "sample-count:endsamp", "", 0},
        {"times by stamps", "0,8 0,8", 8, "", "", 0},
        {"no samples at all", "1000,8 2000,8", 0, "", "", 0},
    };
    for (const auto& row : rows) {
        ReadCfg cfg = withRates(row.rates);
        Findings findings;
        settleRates(cfg, row.samples, findings);
        EXPECT_EQ(codesOf(findings), row.codes) << row.why;
        if (row.places != 0) {
            const Finding& finding = findings.all().back();
            EXPECT_EQ(finding.found, row.found) << row.why;
            EXPECT_EQ(finding.places, row.places) << row.why;
            EXPECT_EQ(finding.place.line + 1, 8U + static_cast<std::size_t>(finding.found.back() - '0')) << row.why;
        }
    }
}

TEST(Header, RatesInUseAreThoseThatSamplesHave) {
    const struct {
        const char* why;
        const char* rates;
        std::uint64_t samples;
        const char* inUse;
    } rows[] = {
        {"each", "1000,4 2000,8", 8, "1000,4 2000,8"},
        {"some without samples", "500,0 1000,4 2000,4 500,8 250,8", 8, "1000,4 500,8"},
        {"neighbours of the same rate", "1000,2 1000,4 2000,8 1000,9", 9, "1000,4 2000,8 1000,9"},
        {"fewer samples than declared", "1000,4 2000,8", 3, "1000,3"},
        {"more", "1000,4 2000,8", 9, "1000,4 2000,9"},
        {"no samples", "1000,4 1000,8", 0, "1000,4 1000,8"},
        {"times by stamps", "0,8", 6, "0,8"},
        {"lengths", "1000,4 2000,2 2000,2", 8, "1000,4 2000,2 2000,2"},
    };
    for (const auto& row : rows) {
        Header header = withRates(row.rates).header;
        header.samples = row.samples;
        EXPECT_EQ(ratesText(header.ratesInUse()), row.inUse) << row.why;
    }
}

TEST(SettleRates, ReportsTheLengthsAsWritten) {
    ReadCfg cfg = withRates("1000,4 2000,2 500,3");
    Findings findings;
    settleRates(cfg, 9, findings);
    ASSERT_EQ(findings.all().size(), 1U);
    EXPECT_EQ(findings.all()[0].found, "4 2 3");
    EXPECT_EQ(findings.all()[0].place.line, 7U);
}

TEST(SettleRates, LengthsBeyondEveryNumberStopThere) {
    ReadCfg cfg = withRates("1000,9223372036854775807 2000,2 500,9223372036854775807");
    Findings findings;
    settleRates(cfg, 9, findings);
    EXPECT_EQ(ratesText(cfg.header.rates), "1000,9223372036854775807 2000,9223372036854775807 500,9223372036854775807");
}

TEST(SettleRates, ASecondTimeChangesNothing) {
    ReadCfg cfg = withRates("1000,4 2000,8");
    Findings findings;
    settleRates(cfg, 12, findings);
    settleRates(cfg, 16, findings); // 4 and 12 would add up to it
    EXPECT_EQ(ratesText(cfg.header.rates), "1000,4 2000,12");
}

TEST(RatesMayBeLengths, IfSeveralAddUpToTheSamples) {
    EXPECT_TRUE(ratesMayBeLengths(withRates("1000,4 2000,8").header, 12));
    EXPECT_FALSE(ratesMayBeLengths(withRates("1000,4 2000,8").header, 8));
    EXPECT_FALSE(ratesMayBeLengths(withRates("1000,8").header, 8));
    EXPECT_FALSE(ratesMayBeLengths(Header(), 0));
}

TEST(LibraryForm, WritesEveryLine) {
    ReadCfg cfg = withRates("0,8");
    cfg.header.revision = 2013;
    cfg.header.timeMultiplier = 0.25;
    cfg.header.timeCode = "0";
    cfg.header.localCode = "x";
    cfg.header.timeQuality = "B";
    cfg.header.leapSecond = "3";
    EXPECT_EQ(libraryForm(cfg, factsOf(cfg), Side::Recorded), "S,R,2013\n"
                                                              "2,1A,1D\n"
                                                              "1,Ua,A,Bus,V,0.5,0.25,0,-32767,32767,1,1,S\n"
                                                              "1,Trip,,,0\n"
                                                              "50\n"
                                                              "0\n"
                                                              "0,8\n"
                                                              "12/01/2011,05:55:30.075011\n"
                                                              "12/01/2011,05:55:30.078261\n"
                                                              "BINARY\n"
                                                              "0.25\n"
                                                              "0,x\n"
                                                              "B,3\n");
}

TEST(LibraryForm, WritesTheLayoutOf1991WithAYear) {
    ReadCfg cfg = cleanCfg();
    cfg.header.revision = 1991;
    cfg.header.status[0].normalState = 1;
    const std::string text = libraryForm(cfg, factsOf(cfg), Side::Recorded);
    EXPECT_EQ(text, "S,R,1991\n2,1A,1D\n1,Ua,A,Bus,V,0.5,0.25,0,-32767,32767\n1,Trip,1\n50\n1\n1000,8\n"
                    "01/12/11,05:55:30.075011\n01/12/11,05:55:30.078261\nBINARY\n");
    const OrvComtradeLib::Cfg library = loaded(text);
    EXPECT_EQ(library.binaryChannelConfigs.at(0).normalState, 1);
    EXPECT_EQ(library.timeMultiplier, 1.0);
}

TEST(LibraryForm, HasTheTypeOfTheDataForTheLibrary) {
    ReadCfg cfg = cleanCfg();
    cfg.header.dataType = DataType::Binary32;
    DataFacts facts = factsOf(cfg);
    facts.libraryType = DataType::Float32;
    EXPECT_EQ(loaded(libraryForm(cfg, facts, Side::Recorded)).dataFileType, OrvComtradeLib::Enums::Float32);
}

TEST(LibraryForm, WithoutDataHasTheFirstRateAndNoSamples) {
    ReadCfg cfg = withRates("1000,4 2000,8");
    cfg.header.timeMultiplier = 7.0;
    const std::string text = libraryForm(cfg, DataFacts(), Side::Recorded);
    EXPECT_NE(text.find("\n1\n1000,0\n"), std::string::npos) << text;
    EXPECT_NE(text.find("\nASCII\n1\n"), std::string::npos) << text;
    EXPECT_EQ(loaded(text).lastSampleNumber, 0U);
    EXPECT_NE(libraryForm(withRates("0,8"), DataFacts(), Side::Recorded).find("\n0\n0,0\n"), std::string::npos);
}

TEST(LibraryForm, ATimeMultiplierDoesNotScaleTimesByRate) {
    ReadCfg cfg = cleanCfg();
    cfg.header.timeMultiplier = 0.47;
    EXPECT_EQ(loadedForm(cfg).timeMultiplier, 1.0);
    cfg.header.rates = {{0.0, 8}};
    EXPECT_EQ(loadedForm(cfg).timeMultiplier, 0.47);
}

TEST(LibraryForm, StampsInNanosecondsAreScaled) {
    ReadCfg cfg = withRates("0,8");
    cfg.header.revision = 2013;
    cfg.header.hasNanosecondDates = true;
    EXPECT_EQ(loadedForm(cfg).timeMultiplier, 0.001);
    cfg.header.revision = 1999; // which knows microseconds only
    EXPECT_EQ(loadedForm(cfg).timeMultiplier, 1.0);
}

TEST(LibraryForm, TheTimeMultiplierMakesUpForStampsInAnotherUnit) {
    const ReadCfg cfg = withRates("0,8");
    DataFacts facts = factsOf(cfg);
    facts.stamps.unit = 10.0;
    EXPECT_EQ(loaded(libraryForm(cfg, facts, Side::Recorded)).timeMultiplier, 10.0);
    facts.stamps.unit = 1.0;
    facts.stamps.factor = 1000.0;
    EXPECT_EQ(loaded(libraryForm(cfg, facts, Side::Recorded)).timeMultiplier, 0.001);
    facts.stamps.factor = 1e308; // still above zero
    ReadCfg tiny = cfg;
    tiny.header.timeMultiplier = 1e-300;
    EXPECT_EQ(loaded(libraryForm(tiny, facts, Side::Recorded)).timeMultiplier, 2.2250738585072014e-308);
}

TEST(LibraryForm, DividesAByPowersOfTen) {
    const ReadCfg cfg = cleanCfg();
    DataFacts facts = factsOf(cfg);
    const struct {
        std::vector<int> exponents;
        double a;
    } rows[] = {{{3}, 0.0005}, {{-2}, 50.0}, {{0}, 0.5}, {{}, 0.5}};
    for (const auto& row : rows) {
        facts.exponents = row.exponents;
        const OrvComtradeLib::Cfg library = loaded(libraryForm(cfg, facts, Side::Recorded));
        EXPECT_EQ(library.analogChannelConfigs.at(0).a, row.a);
        EXPECT_EQ(library.analogChannelConfigs.at(0).b, 0.25);
    }
}

TEST(LibraryForm, RoundsFactorsOnce) {
    ReadCfg cfg = cleanCfg();
    cfg.header.analog[0].unit = "kV";
    cfg.header.analog[0].a = 0.00778; // times 1000 as a double: 7.779999999999999
    cfg.analog[0].a = 0.00778L;
    EXPECT_EQ(loadedForm(cfg).analogChannelConfigs.at(0).a, 7.78);
}

TEST(LibraryForm, Units) {
    const struct {
        const char* unit;
        const char* written;
        double a;
    } rows[] = {
        // Without a prefix
        {"V", "V", 0.5},
        {"", "", 0.5},
        {"%", "%", 0.5},
        {"m", "m", 0.5},
        {"K", "K", 0.5},
        {"Vrms", "Vrms", 0.5},
        {"A peak", "A peak", 0.5},
        {"volt", "volt", 0.5},
        {"[m/s]", "[m/s]", 0.5},
        // With one
        {"kV", "V", 500.0},
        {"KV", "V", 500.0},
        {"kv", "V", 500.0},
        {"mA", "A", 0.0005},
        {"MW", "W", 500000.0},
        {"Mvar", "var", 500000.0},
        {"kHz", "Hz", 500.0},
        {"GW", "W", 5e8},
        {"uA", "A", 5e-7},
        {"\xC2\xB5"
         "A",
         "A", 5e-7},
        {"k\xCE\xA9", "\xCE\xA9", 500.0},
        {"\xD0\xBA\xD0\x92", "\xD0\x92", 500.0}, // Cyrillic kV
        {"kVA", "VA", 500.0},
        {"kVAr", "VAr", 500.0},
        {"kvar", "var", 500.0},
        {"kWh", "Wh", 500.0},
        // With a qualifier, too
        {"kVrms", "Vrms", 500.0},
        {"kV RMS", "V RMS", 500.0},
        {"kvrms", "Vrms", 500.0},
        {"kV(rms)", "V(rms)", 500.0},
        {"kV [eff]", "V [eff]", 500.0},
        {"kVp", "Vp", 500.0},
        {"kVpp", "Vpp", 500.0},
        {"kVp-p", "Vp-p", 500.0},
        {"kA peak", "A peak", 500.0},
        {"mA_pk", "A_pk", 0.0005},
        {"mAdc", "Adc", 0.0005},
        {"uArms", "Arms", 5e-7},
        {"kVL-N", "VL-N", 500.0},
        {"kV L-L", "V L-L", 500.0},
        // Not known: the library is kept from seeing a prefix
        {"kVAp", "[kVAp]", 0.5},
        {"mVs", "[mVs]", 0.5},
        {"kV/m", "[kV/m]", 0.5},
        {"kV()", "[kV()]", 0.5},
        {"MAP", "[MAP]", 0.5},
        {"MALL", "[MALL]", 0.5},
        {"min", "[min]", 0.5},
        {"m/s", "[m/s]", 0.5},
        {"mm", "[mm]", 0.5},
        {"Ms", "[Ms]", 0.5},
        // Not known, and not taken for a prefix
        {"GAP", "GAP", 0.5},
        {"nvp", "nvp", 0.5},
        {"na", "na", 0.5},
    };
    for (const auto& row : rows) {
        ReadCfg cfg = cleanCfg();
        cfg.header.analog[0].unit = row.unit;
        const OrvComtradeLib::Cfg library = loadedForm(cfg);
        EXPECT_EQ(library.analogChannelConfigs.at(0).unit, row.written) << row.unit;
        EXPECT_EQ(library.analogChannelConfigs.at(0).a, row.a) << row.unit;
        EXPECT_EQ(library.analogChannelConfigs.at(0).b, row.a / 2) << row.unit;
        EXPECT_EQ(library.analogChannelConfigs.at(0).unitMultiplier, 1.0) << row.unit;
    }
}

TEST(LibraryForm, EveryUnitOfARecorderTakesAPrefix) {
    const struct {
        const char* unit;
        const char* written;
    } rows[] = {{"kV", "V"},       {"kv", "V"},     {"kA", "A"},      {"ka", "A"},       {"kW", "W"},
                {"kw", "W"},       {"kHz", "Hz"},   {"kHZ", "Hz"},    {"khz", "Hz"},     {"kOhm", "Ohm"},
                {"kohm", "ohm"},   {"kOHM", "Ohm"}, {"kOhms", "Ohm"}, {"kohms", "ohm"},  {"kvar", "var"},
                {"kVAr", "VAr"},   {"kVAR", "VAR"}, {"kVar", "Var"},  {"kVA", "VA"},     {"kva", "VA"},
                {"kWh", "Wh"},     {"kWH", "Wh"},   {"kwh", "Wh"},    {"kvarh", "varh"}, {"kVArh", "VArh"},
                {"kVARH", "VARh"}, {"kVAh", "VAh"}, {"kVAH", "VAh"},  {"kH", "H"},       {"kF", "F"},
                {"kC", "C"},       {"kT", "T"}};
    for (const auto& row : rows) {
        ReadCfg cfg = cleanCfg();
        cfg.header.analog[0].unit = row.unit;
        const OrvComtradeLib::Cfg library = loadedForm(cfg);
        EXPECT_EQ(library.analogChannelConfigs.at(0).unit, row.written) << row.unit;
        EXPECT_EQ(library.analogChannelConfigs.at(0).a, 500.0) << row.unit;
    }
}

TEST(LibraryForm, Sides) {
    const struct {
        const char* why;
        double b;
        double primary;
        double secondary;
        Side side;
        Side wanted;
        double expectedA; // a is 2
        double expectedB;
        Side given;
        const char* codes;
    } rows[] = {
        // As recorded
        {"P", 4, 100, 5, Side::Primary, Side::Recorded, 2.0, 4.0, Side::Primary, ""},
        {"P, ratio 1", 4, 1, 1, Side::Primary, Side::Recorded, 2.0, 4.0, Side::Primary, ""},
        {"S", 4, 100, 5, Side::Secondary, Side::Recorded, 2.0, 4.0, Side::Secondary, ""},
        {"P with primary 0", 4, 0, 5, Side::Primary, Side::Recorded, 2.0, 4.0, Side::Primary, ""},
        {"unknown", 4, 100, 5, Side::Recorded, Side::Recorded, 2.0, 4.0, Side::Recorded, ""},
        // To primary
        {"P to P", 4, 100, 5, Side::Primary, Side::Primary, 2.0, 4.0, Side::Primary, ""},
        {"S to P", 4, 100, 5, Side::Secondary, Side::Primary, 40.0, 80.0, Side::Primary, ""},
        {"S to P, ratio 1", 4, 5, 5, Side::Secondary, Side::Primary, 2.0, 4.0, Side::Primary, ""},
        {"S to P, secondary 0", 4, 5, 0, Side::Secondary, Side::Primary, 2.0, 4.0, Side::Secondary, "ratio:primary"},
        {"S to P, less primary", 4, 10, 100, Side::Secondary, Side::Primary, 0.2, 0.4, Side::Primary, "ratio:primary"},
        {"S to P, 10 to -100", 4, 10, -100, Side::Secondary, Side::Primary, -0.2, -0.4, Side::Primary, "ratio:primary"},
        {"S to P, 5 to -5", 4, 5, -5, Side::Secondary, Side::Primary, -2.0, -4.0, Side::Primary, ""},
        {"S to P, -5 to 5", 4, -5, 5, Side::Secondary, Side::Primary, -2.0, -4.0, Side::Primary, ""},
        {"unknown to P", 4, 100, 5, Side::Recorded, Side::Primary, 2.0, 4.0, Side::Recorded, "side:PS"},
        // To secondary
        {"P to S", 4, 100, 5, Side::Primary, Side::Secondary, 0.1, 0.2, Side::Secondary, ""},
        {"P to S, b is 0", 0, 100, 5, Side::Primary, Side::Secondary, 0.1, 0.0, Side::Secondary, ""},
        {"P to S, ratio 1", 4, 1, 1, Side::Primary, Side::Secondary, 2.0, 4.0, Side::Secondary, ""},
        {"S to S", 4, 100, 5, Side::Secondary, Side::Secondary, 2.0, 4.0, Side::Secondary, ""},
        {"P to S, primary 0", 4, 0, 5, Side::Primary, Side::Secondary, 2.0, 4.0, Side::Primary, "ratio:primary"},
    };
    for (const auto& row : rows) {
        ReadCfg cfg = cleanCfg();
        AnalogInfo& channel = cfg.header.analog[0];
        channel.primary = row.primary;
        channel.secondary = row.secondary;
        channel.side = row.side;
        cfg.analog[0].a = 2.0L;
        cfg.analog[0].b = static_cast<long double>(row.b);
        const OrvComtradeLib::Cfg library = loadedForm(cfg, row.wanted);
        EXPECT_DOUBLE_EQ(library.analogChannelConfigs.at(0).a, row.expectedA) << row.why;
        EXPECT_DOUBLE_EQ(library.analogChannelConfigs.at(0).b, row.expectedB) << row.why;
        EXPECT_EQ(givenSide(channel, 1999, row.wanted), row.given) << row.why;
        Findings findings;
        checkScaling(cfg, row.wanted, findings);
        EXPECT_EQ(codesOf(findings), row.codes) << row.why;
    }
}

TEST(LibraryForm, ARatioOfAnUnknownSideIsNotWritten) {
    ReadCfg cfg = cleanCfg();
    cfg.header.analog[0].primary = 100.0;
    cfg.header.analog[0].secondary = 5.0;
    cfg.header.analog[0].side = Side::Recorded;
    const std::string text = libraryForm(cfg, factsOf(cfg), Side::Primary);
    EXPECT_NE(text.find("\n1,Ua,A,Bus,V,0.5,0.25,0,-32767,32767,1,1,S\n"), std::string::npos) << text;
}

TEST(LibraryForm, Revision1991HasNoSides) {
    ReadCfg cfg = cleanCfg();
    cfg.header.revision = 1991;
    cfg.header.analog[0].primary = 100.0;
    cfg.header.analog[0].unit = "kV";
    EXPECT_EQ(loadedForm(cfg, Side::Primary).analogChannelConfigs.at(0).a, 500.0);
    EXPECT_EQ(givenSide(cfg.header.analog[0], 1991, Side::Primary), Side::Recorded);
    Findings findings;
    checkScaling(cfg, Side::Primary, findings);
    EXPECT_EQ(codesOf(findings), "side:PS");
}

TEST(CheckScaling, ReportsTheFirstPlaceAndTheRatio) {
    ReadCfg cfg = cleanCfg();
    cfg.header.analog.push_back(cfg.header.analog[0]);
    cfg.analog.push_back(cfg.analog[0]);
    for (AnalogInfo& channel : cfg.header.analog) {
        channel.primary = 0.1;
        channel.secondary = 5.0;
    }
    Findings findings;
    checkScaling(cfg, Side::Primary, findings);
    ASSERT_EQ(findings.all().size(), 1U);
    EXPECT_EQ(findings.all()[0].found, "0.1 to 5");
    EXPECT_EQ(findings.all()[0].places, 2U);
    EXPECT_EQ(findings.all()[0].place.offset, 36U);
}

TEST(CheckScaling, ReportsNoSideTwice) {
    ReadCfg cfg = cleanCfg();
    cfg.header.analog[0].side = Side::Recorded;
    Findings findings;
    findings.add(Kind::Side, {"x.cfg", 3, "PS", 40}, {"X"}); // as the line was read
    checkScaling(cfg, Side::Primary, findings);
    EXPECT_EQ(findings.all().at(0).places, 1U);
}

TEST(LostTo, NamesEachPartOfTheTimeLines) {
    const struct {
        const char* why;
        std::string Header::*text;
    } rows[] = {
        {"UTC", &Header::timeCode},
        {"local time", &Header::localCode},
        {"quality", &Header::timeQuality},
        {"leap second", &Header::leapSecond},
    };
    for (const auto& row : rows) {
        Header header;
        header.revision = 2013;
        header.*row.text = "0";
        EXPECT_TRUE(lostTo(header, 1999).timeCodes) << row.why;
        EXPECT_FALSE(lostTo(header, 2013).timeCodes) << row.why;
    }
    EXPECT_FALSE(lostTo(Header(), 1999).timeCodes);
}

TEST(LostTo, NamesPartsOfMicrosecondsInEitherDate) {
    for (std::optional<Instant> Header::*const date : {&Header::start, &Header::trigger}) {
        Header header;
        header.revision = 2013;
        header.start = header.trigger = Instant{1000};
        EXPECT_FALSE(lostTo(header, 1999).nanoseconds);
        header.*date = Instant{1001};
        EXPECT_TRUE(lostTo(header, 1999).nanoseconds);
        EXPECT_FALSE(lostTo(header, 2013).nanoseconds);
    }
}

TEST(LibraryReads, AcceptsWhatItReadsFromTheOriginalToTheSameEffect) {
    const char* const text =
        "S,R,1999\n2,1A,1D\n1,Ua,A,Bus,V,0.50,2.5e-1,0,-32767,32767,1,1,S\n1,Trip,,,0\n50\n1\n1000,8\n"
        "12/01/2011,05:55:30.075011\n12/01/2011,05:55:30.078261\nBINARY\n1\n";
    const OrvComtradeLib::Cfg meant = loadedForm(cleanCfg());
    EXPECT_TRUE(libraryReads(loaded(text), meant));
    const struct {
        const char* why;
        const char* from;
        const char* to;
        bool isSame;
    } rows[] = {
        {"a ratio of secondary values", ",1,1,S", ",100,5,S", true},
        {"primary values with ratio 1", ",1,1,S", ",5,5,P", true},
        {"another date", "12/01/2011", "13/01/2011", true},
        {"time codes", "BINARY\n1\n", "BINARY\n1\n0,0\n", true},
        {"the kind of time code is left out", "BINARY\n1\n", "BINARY\n", true},
        {"primary values", ",1,1,S", ",100,5,P", false},
        {"another station", "S,R,1999", "T,R,1999", false},
        {"another recorder", "S,R,1999", "S,R ,1999", false},
        {"another name", ",Ua,", ",Ub,", false},
        {"another phase", "Ua,A,", "Ua,B,", false},
        {"another component", ",Bus,", ",Line,", false},
        {"another unit", ",V,", ",A,", false},
        {"a prefix", ",V,0.50,2.5e-1", ",kV,0.50e-3,2.5e-4", false},
        {"another a", "0.50", "0.51", false},
        {"a cut at a decimal comma", "0.50,2.5e-1", "0,2.5e-1", false},
        {"another b", "2.5e-1", "2.6e-1", false},
        {"another skew", "e-1,0,", "e-1,1,", false},
        {"another range", "32767,32767", "32767,32766", false},
        {"another status name", "Trip", "Trap", false},
        {"another normal state", "Trip,,,0", "Trip,,,1", false},
        {"another frequency", "\n50\n", "\n60\n", false},
        {"another rate", "1000,8", "1001,8", false},
        {"another number of samples", "1000,8", "1000,9", false},
        {"no rate", "1\n1000,8", "0\n0,8", false},
        {"another rate in front", "1\n1000,8", "2\n500,2\n1000,8", false},
        {"another type", "BINARY", "FLOAT32", false},
        {"a carriage return behind the type", "BINARY", "BINARY\r", false},
        {"another multiplier", "BINARY\n1\n", "BINARY\n2\n", false},
    };
    for (const auto& row : rows) {
        std::string changed = text;
        const std::string from = row.from;
        ASSERT_NE(changed.find(from), std::string::npos) << row.why;
        changed.replace(changed.find(from), from.size(), row.to);
        EXPECT_EQ(libraryReads(loaded(changed), meant), row.isSame) << row.why;
    }
}

TEST(LibraryReads, RefusesOtherNumbersOfChannels) {
    const OrvComtradeLib::Cfg meant = loadedForm(cleanCfg());
    ReadCfg cfg = cleanCfg();
    cfg.header.status.push_back({2, "Alarm", "", "", 0});
    EXPECT_FALSE(libraryReads(loadedForm(cfg), meant));
    cfg = cleanCfg();
    cfg.header.analog.push_back(cfg.header.analog[0]);
    cfg.analog.push_back(cfg.analog[0]);
    EXPECT_FALSE(libraryReads(loadedForm(cfg), meant));
}

TEST(StandardForm, Revision1991) {
    Header header = cleanCfg().header;
    header.revision = 1991;
    EXPECT_EQ(standardForm(header), "S,R\r\n"
                                    "2,1A,1D\r\n"
                                    "1,Ua,A,Bus,V,0.5,0.25,0,-32767,32767\r\n"
                                    "1,Trip,0\r\n"
                                    "50\r\n"
                                    "1\r\n"
                                    "1000,8\r\n"
                                    "01/12/11,05:55:30.075011\r\n"
                                    "01/12/11,05:55:30.078261\r\n"
                                    "BINARY\r\n");
}

TEST(StandardForm, Revision1999) {
    Header header = cleanCfg().header;
    header.analog[0].unit = "kV";
    header.analog[0].a = 7.78e-14;
    header.analog[0].primary = 600.0;
    header.analog[0].secondary = 5.0;
    header.analog[0].side = Side::Primary;
    header.rates = {{1000.0, 4}, {1000.0, 8}, {50.0, 12}};
    EXPECT_EQ(standardForm(header), "S,R,1999\r\n"
                                    "2,1A,1D\r\n"
                                    "1,Ua,A,Bus,kV,7.78e-14,0.25,0,-32767,32767,600,5,P\r\n"
                                    "1,Trip,,,0\r\n"
                                    "50\r\n"
                                    "3\r\n"
                                    "1000,4\r\n"
                                    "1000,8\r\n"
                                    "50,12\r\n"
                                    "12/01/2011,05:55:30.075011\r\n"
                                    "12/01/2011,05:55:30.078261\r\n"
                                    "BINARY\r\n"
                                    "1\r\n");
}

TEST(StandardForm, Revision2013) {
    Header header = cleanCfg().header;
    header.revision = 2013;
    header.status[0] = {1, "Trip", "B", "Line", 1};
    header.rates = {{0.0, 8}};
    header.dataType = DataType::Float32;
    header.timeMultiplier = 0.5;
    header.hasNanosecondDates = true;
    header.timeCode = "-5h30";
    header.localCode = "x";
    header.timeQuality = "B";
    header.leapSecond = "3";
    EXPECT_EQ(standardForm(header), "S,R,2013\r\n"
                                    "2,1A,1D\r\n"
                                    "1,Ua,A,Bus,V,0.5,0.25,0,-32767,32767,1,1,S\r\n"
                                    "1,Trip,B,Line,1\r\n"
                                    "50\r\n"
                                    "0\r\n"
                                    "0,8\r\n"
                                    "12/01/2011,05:55:30.075011000\r\n"
                                    "12/01/2011,05:55:30.078261000\r\n"
                                    "FLOAT32\r\n"
                                    "0.5\r\n"
                                    "-5h30,x\r\n"
                                    "B,3\r\n");
}

TEST(StandardForm, TimeCodesAndQualityHaveLinesSince2013) {
    Header header = cleanCfg().header;
    header.revision = 2013;
    EXPECT_NE(standardForm(header).find("\r\nBINARY\r\n1\r\n,\r\n,\r\n"), std::string::npos); // nothing is known
    header.revision = 1999;
    header.timeQuality = "B";
    header.leapSecond = "3";
    EXPECT_NE(standardForm(header).find("\r\nBINARY\r\n1\r\n"), std::string::npos);
    EXPECT_EQ(standardForm(header).find("\r\nB,3"), std::string::npos);
    header.revision = 2013;
    EXPECT_NE(standardForm(header).find("\r\nBINARY\r\n1\r\n,\r\nB,3\r\n"), std::string::npos); // no codes are known
}

TEST(StandardForm, QuotationMarksOfTextsReadBack) {
    const struct {
        const char* id;
        const char* phase;
        const char* written;
    } rows[] = {
        {"Ua", "A", "1,Ua,A,"},
        {R"(6" pipe)", R"(A")", R"(1,6" pipe,A",)"}, // read as they are
        {R"("Ua)", "A", R"(1,"Ua,A,)"},              // closed nowhere
        {R"("Ua")", "A", R"(1,"""Ua""",A,)"},
        {R"("Ua)", R"(A")", R"(1,"""Ua",A",)"}, // closed by the field behind it
        {R"("")", R"(")", R"(1,"""""",",)"},
        {R"("""/""")", "", R"(1,"""""""/""""""",,)"},
    };
    for (const auto& row : rows) {
        Header header = cleanCfg().header;
        header.analog[0].id = row.id;
        header.analog[0].phase = row.phase;
        const std::string text = standardForm(header);
        EXPECT_NE(text.find('\n' + std::string(row.written)), std::string::npos) << row.id << '\n' << text;
        const orvtest::CfgReading read = orvtest::readBytes(text);
        EXPECT_EQ(read.header().analog[0].id, row.id);
        EXPECT_EQ(read.header().analog[0].phase, row.phase);
        EXPECT_EQ(read.header().analog[0].component, "Bus") << row.id;
    }
}

TEST(StandardForm, MissingDatesAreTheZeroOfClocks) {
    Header header = cleanCfg().header;
    header.start.reset();
    header.trigger.reset();
    EXPECT_NE(standardForm(header).find("\r\n01/01/1970,00:00:00.000000\r\n01/01/1970,00:00:00.000000\r\n"),
              std::string::npos);
}

TEST(StandardForm, YearsOfTwoDigitsAreThoseThatReadBack) {
    Header header = cleanCfg().header;
    header.revision = 1991;
    header.start = Instant{-1000};                 // 1969
    header.trigger = Instant{3155760000000000000}; // 2070
    EXPECT_NE(standardForm(header).find("\r\n12/31/1969,23:59:59.999999\r\n01/01/2070,00:00:00.000000\r\n"),
              std::string::npos);
    header.start = Instant{1000};                  // 1970
    header.trigger = Instant{3155759999999999000}; // 2069
    EXPECT_NE(standardForm(header).find("\r\n01/01/70,00:00:00.000001\r\n12/31/69,23:59:59.999999\r\n"),
              std::string::npos);
}

TEST(StandardForm, AMultiplierOf1991IsWrittenIfTimesDependOnIt) {
    Header header = cleanCfg().header;
    header.revision = 1991;
    header.timeMultiplier = 10.0;
    EXPECT_NE(standardForm(header).find("\r\nBINARY\r\n10\r\n"), std::string::npos);
}

TEST(StandardForm, HasTheRevisionWhoseLayoutItHas) {
    const struct {
        int revision;
        const char* station;
    } rows[] = {
        {1991, "S,R\r"}, {1999, "S,R,1999\r"}, {2001, "S,R,1999\r"}, {2013, "S,R,2013\r"}, {2024, "S,R,2013\r"}};
    for (const auto& row : rows) {
        Header header = cleanCfg().header;
        header.revision = row.revision;
        EXPECT_EQ(standardForm(header).find(row.station), 0U) << row.revision;
    }
}

TEST(StandardForm, NumbersChannelsFromOneOn) {
    Header header = cleanCfg().header;
    header.analog[0].number = 7;
    header.status[0].number = 0;
    const std::string text = standardForm(header);
    EXPECT_NE(text.find("\n1,Ua,"), std::string::npos);
    EXPECT_NE(text.find("\n1,Trip,"), std::string::npos);
}

TEST(StandardForm, ASideThatIsNotKnownIsSecondaryWithRatioOne) {
    Header header = cleanCfg().header;
    header.analog[0].side = Side::Recorded;
    header.analog[0].primary = 600.0;
    EXPECT_NE(standardForm(header).find(",32767,1,1,S\r\n"), std::string::npos);
}

TEST(StandardForm, EndsAtTheLastSample) {
    const struct {
        const char* why;
        std::uint64_t samples;
        const char* lines;
    } rows[] = {
        {"as many as declared", 10, "\r\n3\r\n1000,4\r\n2000,8\r\n500,10\r\n"},
        {"fewer", 6, "\r\n2\r\n1000,4\r\n2000,6\r\n"},
        {"more", 12, "\r\n3\r\n1000,4\r\n2000,8\r\n500,12\r\n"},
        {"none", 0, "\r\n3\r\n1000,4\r\n2000,8\r\n500,10\r\n"},
    };
    for (const auto& row : rows) {
        Header header = withRates("1000,4 2000,8 500,10").header;
        header.samples = row.samples;
        EXPECT_NE(standardForm(header).find(row.lines), std::string::npos) << row.why << '\n' << standardForm(header);
    }
}

TEST(StandardForm, TextsCannotBreakALine) {
    Header header = cleanCfg().header;
    header.station = "a,b\r\nc";
    header.analog[0].unit = "V\n";
    header.timeCode = "0,1";
    header.revision = 2013;
    const std::string text = standardForm(header);
    EXPECT_EQ(text.substr(0, text.find('\r')), "a b  c,R,2013");
    EXPECT_NE(text.find(",V ,0.5,"), std::string::npos) << text;
    EXPECT_NE(text.find("\r\n0 1,\r\n"), std::string::npos) << text;
}

TEST(WithRevision, DropsWhatTheRevisionHasNoPlaceFor) {
    Header header = cleanCfg().header;
    header.revision = 2013;
    header.analog[0].primary = 600.0;
    header.status[0].phase = "B";
    header.status[0].component = "Line";
    header.start = Instant{kStart + 999};
    header.trigger = Instant{-1};
    header.hasNanosecondDates = true;
    header.timeCode = "0";
    header.localCode = "0";
    header.timeQuality = "B";
    header.leapSecond = "3";

    const Header of2013 = withRevision(header, 2013);
    EXPECT_EQ(of2013.start, Instant{kStart + 999});
    EXPECT_EQ(of2013.timeCode + of2013.localCode + of2013.timeQuality + of2013.leapSecond, "00B3");

    const Header of1999 = withRevision(header, 1999);
    EXPECT_EQ(of1999.revision, 1999);
    EXPECT_EQ(of1999.start, Instant{kStart});
    EXPECT_EQ(of1999.trigger, Instant{-1000});
    EXPECT_FALSE(of1999.hasNanosecondDates);
    EXPECT_EQ(of1999.timeCode + of1999.localCode + of1999.timeQuality + of1999.leapSecond, "");
    EXPECT_EQ(of1999.analog[0].primary, 600.0);
    EXPECT_EQ(of1999.analog[0].side, Side::Secondary);
    EXPECT_EQ(of1999.status[0].component, "Line");

    const Header of1991 = withRevision(header, 1991);
    EXPECT_EQ(of1991.revision, 1991);
    EXPECT_EQ(of1991.analog[0].primary, 1.0);
    EXPECT_EQ(of1991.analog[0].side, Side::Recorded);
    EXPECT_EQ(of1991.status[0].phase + of1991.status[0].component, "");
}

TEST(WithRevision, KeepsTheTimesOfStamps) {
    const struct {
        const char* why;
        int from;
        int to;
        const char* rate;
        bool hasNanosecondDates;
        double multiplier; // 1 before
    } rows[] = {
        {"nanoseconds to microseconds", 2013, 1999, "0,8", true, 0.001},
        {"nanoseconds to microseconds of 1991", 2013, 1991, "0,8", true, 0.001},
        {"microseconds to nanoseconds", 1999, 2013, "0,8", true, 1000.0},
        {"nanoseconds stay", 2013, 2013, "0,8", true, 1.0},
        {"microseconds stay", 2013, 1999, "0,8", false, 1.0},
        {"microseconds stay beside nine digits", 1999, 1991, "0,8", true, 1.0},
        {"dates of microseconds", 1999, 2013, "0,8", false, 1.0},
        {"times by the rate", 2013, 1999, "1000,8", true, 1.0},
    };
    for (const auto& row : rows) {
        Header header = withRates(row.rate).header;
        header.revision = row.from;
        header.hasNanosecondDates = row.hasNanosecondDates;
        EXPECT_EQ(withRevision(header, row.to).timeMultiplier, row.multiplier) << row.why;
    }
}

namespace {

struct Again {
    std::optional<ReadCfg> cfg;
    Findings findings;
};

Again readAgain(const std::string& text) {
    Again again;
    again.cfg = readCfg(readCfgText(text, "x.cfg", 0, 1, "", again.findings), again.findings);
    return again;
}

/// Headers as they are read: any content, end samples that never decrease.
class RandomHeader {
public:
    explicit RandomHeader(unsigned seed) : _engine(seed) {}

    Header make() {
        Header made;
        made.station = _text();
        made.recorder = _text();
        made.revision = _pick({1991, 1999, 2013});
        const std::uint64_t status = _below(5);
        for (std::uint64_t number = 1; number <= 1 + _below(4); ++number)
            made.analog.push_back(_analog(made.revision, number));
        for (std::uint64_t number = 1; number <= status; ++number)
            made.status.push_back(_status(made.revision, number));
        made.lineFrequency = 10.0 + static_cast<double>(_below(1000)) / 8.0;
        made.dataType = static_cast<DataType>(_below(4));
        _setRates(made);
        _setTimes(made);
        return made;
    }

private:
    std::uint64_t _below(std::uint64_t end) { return _engine() % end; }
    int _pick(std::initializer_list<int> values) { return *(values.begin() + _below(values.size())); }

    std::string _text() {
        const char* const pieces[] = {
            "",         "Ua", "Line 1", "a;b", "x  y", "\xD0\x9F\xD1\x83\xD1\x81\xD0\xBA", "\xE7\xBA\xBF\xE8\xB7\xAF",
            "\xC2\xB0", "1",  "kV",     "P",   "0x1F"};
        return pieces[_below(12)];
    }

    double _number() {
        std::uniform_real_distribution<double> mantissa(-1.0, 1.0);
        const double number = std::ldexp(mantissa(_engine), static_cast<int>(_below(200)) - 100);
        return _below(4) == 0 ? static_cast<double>(_below(1000)) : number;
    }

    AnalogInfo _analog(int revision, std::uint64_t number) {
        AnalogInfo channel;
        channel.number = number;
        channel.id = _text();
        channel.phase = _text();
        channel.component = _text();
        channel.unit = _text();
        channel.a = _number();
        channel.b = _number();
        channel.skew = _number();
        channel.min = _number();
        channel.max = _number();
        if (revision < 1999)
            return channel;
        channel.primary = _number();
        channel.secondary = _number();
        channel.side = _below(2) == 0 ? Side::Primary : Side::Secondary;
        return channel;
    }

    StatusInfo _status(int revision, std::uint64_t number) {
        StatusInfo channel;
        channel.number = number;
        channel.id = _text();
        channel.normalState = static_cast<int>(_below(2));
        if (revision < 1999)
            return channel;
        channel.phase = _text();
        channel.component = _text();
        return channel;
    }

    void _setRates(Header& made) {
        std::uint64_t end = 1 + _below(100000);
        if (_below(3) == 0)
            made.rates.push_back({0.0, end});
        for (std::uint64_t count = made.rates.empty() ? 1 + _below(6) : 0; count > 0; --count) {
            made.rates.push_back({0.5 + static_cast<double>(_below(4)), end});
            end += _below(3) == 0 ? 0 : _below(100000);
        }
        made.samplesDeclared = made.rates.back().endSample;
    }

    void _setTimes(Header& made) {
        made.hasNanosecondDates = _below(2) == 0;
        const std::int64_t unit = made.hasNanosecondDates ? 1 : 1000;
        made.start = Instant{static_cast<std::int64_t>(1 + _below(9000000000000000)) * unit};
        made.trigger = Instant{-static_cast<std::int64_t>(1 + _below(9000000000000000)) * unit};
        made.timeMultiplier = static_cast<double>(1 + _below(1000)) / 8.0;
        if (made.revision < 2013 || _below(2) == 0)
            return;
        made.timeCode = "-5h30";
        made.localCode = "x";
        made.timeQuality = "B";
        made.leapSecond = "3";
    }

    std::mt19937_64 _engine;
};

auto partsOf(const AnalogInfo& channel) {
    return std::tie(channel.number, channel.id, channel.phase, channel.component, channel.unit, channel.a, channel.b,
                    channel.skew, channel.min, channel.max, channel.primary, channel.secondary, channel.side);
}

auto partsOf(const StatusInfo& channel) {
    return std::tie(channel.number, channel.id, channel.phase, channel.component, channel.normalState);
}

auto partsOf(const RateInfo& rate) {
    return std::tie(rate.rate, rate.endSample);
}

auto partsOf(const Header& header) {
    return std::tie(header.station, header.recorder, header.revision, header.lineFrequency, header.start,
                    header.trigger, header.dataType, header.timeMultiplier, header.timeCode, header.localCode,
                    header.timeQuality, header.leapSecond, header.hasNanosecondDates, header.samplesDeclared);
}

template <class Part> void expectSame(const std::vector<Part>& left, const std::vector<Part>& right) {
    ASSERT_EQ(left.size(), right.size());
    for (std::size_t index = 0; index < left.size(); ++index)
        EXPECT_TRUE(partsOf(left[index]) == partsOf(right[index])) << index;
}

void expectSame(const Header& left, const Header& right) {
    EXPECT_TRUE(partsOf(left) == partsOf(right));
    expectSame(left.analog, right.analog);
    expectSame(left.status, right.status);
    expectSame(left.rates, right.rates);
}

} // namespace

TEST(StandardForm, ReadsBackAsItWasWithoutAFinding) {
    for (unsigned seed = 1; seed <= 1000; ++seed) {
        const Header made = RandomHeader(seed).make();
        const std::string text = standardForm(made);
        SCOPED_TRACE("seed " + std::to_string(seed) + '\n' + text);
        const Again again = readAgain(text);
        ASSERT_TRUE(again.cfg);
        EXPECT_EQ(codesOf(again.findings), "");
        expectSame(again.cfg->header, made);
        EXPECT_EQ(standardForm(again.cfg->header), text);
        if (HasFailure())
            return;
    }
}

TEST(StandardForm, WhatIsSettledReadsBackSettled) {
    for (unsigned seed = 1; seed <= 1000; ++seed) {
        Header made = RandomHeader(seed).make();
        std::mt19937_64 engine(seed);
        std::shuffle(made.rates.begin(), made.rates.end(), engine); // lengths, often
        const std::uint64_t samples = 1 + (seed % 2 == 0 ? made.samplesDeclared : seed);
        ReadCfg cfg = *readAgain(standardForm(made)).cfg;
        Findings first;
        settleRates(cfg, samples, first);
        ReadCfg again = *readAgain(standardForm(cfg.header)).cfg;
        Findings second;
        settleRates(again, samples, second);
        EXPECT_EQ(codesOf(second), "") << seed;
        EXPECT_EQ(again.header.samplesDeclared, samples) << seed;
        const OrvComtradeLib::Cfg library = loaded(libraryForm(cfg, factsOf(cfg, samples), Side::Recorded));
        const OrvComtradeLib::Cfg after = loaded(libraryForm(again, factsOf(cfg, samples), Side::Recorded));
        for (std::uint64_t index = 0; index < samples; index += 1 + samples / 100)
            EXPECT_DOUBLE_EQ(after.timeFromSampleIndex(index), library.timeFromSampleIndex(index))
                << seed << ' ' << index;
        if (HasFailure())
            return;
    }
}

TEST(StandardForm, ReadsBackInEveryRevision) {
    for (unsigned seed = 1; seed <= 300; ++seed)
        for (const int revision : {1991, 1999, 2013}) {
            const Header made = withRevision(RandomHeader(seed).make(), revision);
            const Again again = readAgain(standardForm(made));
            SCOPED_TRACE("seed " + std::to_string(seed) + '\n' + standardForm(made));
            ASSERT_TRUE(again.cfg);
            EXPECT_EQ(codesOf(again.findings), "");
            Header expected = made;
            for (AnalogInfo& channel : expected.analog)
                if (revision >= 1999 && channel.side == Side::Recorded)
                    channel.side = Side::Secondary; // of revision 1991
            expectSame(again.cfg->header, expected);
            if (HasFailure())
                return;
        }
}

TEST(StandardForm, MissingDatesReadBackAsMissing) {
    Header header = cleanCfg().header;
    header.start.reset();
    header.trigger.reset();
    const Again again = readAgain(standardForm(header));
    EXPECT_FALSE(again.cfg->header.start);
    EXPECT_FALSE(again.cfg->header.trigger);
    EXPECT_EQ(codesOf(again.findings), "date-unset:start date-unset:trigger");
}

TEST(LibraryForm, LoadsWithTheNamesOfTheHeader) {
    for (unsigned seed = 1; seed <= 500; ++seed) {
        const ReadCfg cfg = *readAgain(standardForm(RandomHeader(seed).make())).cfg;
        const Header& header = cfg.header;
        const OrvComtradeLib::Cfg library = loaded(libraryForm(cfg, factsOf(cfg, 8), Side::Recorded));
        EXPECT_EQ(library.stationName, header.station) << seed;
        ASSERT_EQ(library.analogChannelConfigs.size(), header.analog.size()) << seed;
        ASSERT_EQ(library.binaryChannelConfigs.size(), header.status.size()) << seed;
        for (std::size_t index = 0; index < header.analog.size(); ++index) {
            EXPECT_EQ(library.analogChannelConfigs[index].channelId, header.analog[index].id) << seed;
            EXPECT_EQ(library.analogChannelConfigs[index].phase, header.analog[index].phase) << seed;
            if (header.analog[index].unit != "kV") {
                EXPECT_EQ(library.analogChannelConfigs[index].a, header.analog[index].a) << seed;
                EXPECT_EQ(library.analogChannelConfigs[index].b, header.analog[index].b) << seed;
            }
        }
        for (std::size_t index = 0; index < header.status.size(); ++index) {
            EXPECT_EQ(library.binaryChannelConfigs[index].channelId, header.status[index].id) << seed;
            EXPECT_EQ(library.binaryChannelConfigs[index].normalState, header.status[index].normalState) << seed;
        }
        if (HasFailure())
            return;
    }
}
