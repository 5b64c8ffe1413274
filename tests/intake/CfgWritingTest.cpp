#include "Cfg.h"
#include "CfgSupport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <limits>
#include <random>
#include <stdlib.h> // mkdtemp
#include <string>
#include <unistd.h>
#include <vector>

using namespace OrvComtradeIntake;
using intakeTest::CfgLines;
using intakeTest::ReadCfg;
using intakeTest::readCfg;

namespace {

constexpr int kCfgLoaded = 4;

/// A file that goes with the test.
class TemporaryFile {
public:
    TemporaryFile() {
        std::string name = testing::TempDir() + "cfgWritingXXXXXX";
        if (mkdtemp(name.data()) == nullptr)
            throw std::runtime_error("no temporary folder");
        _folder = name;
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        std::remove(path().c_str());
        rmdir(_folder.c_str());
    }
    std::string path() const { return _folder + "/x.cfg"; }

private:
    std::string _folder;
};

int loadText(const std::string& text, OrvComtradeLib::Cfg& cfg) {
    const TemporaryFile file;
    std::ofstream(file.path(), std::ios::binary) << text;
    return cfg.load(file.path());
}

struct Settled {
    Configuration configuration;
    std::string codes;
};

Settled settle(const std::string& text, Side side, std::uint64_t present) {
    ReadCfg read = readCfg(text);
    Findings findings;
    Settled settled{*read.configuration, {}};
    settleScaling(settled.configuration, side, read.text, findings);
    settleRates(settled.configuration, present, read.text, findings);
    read.findings = findings.take();
    settled.codes = read.codes();
    return settled;
}

std::string withAnalog(const std::string& line) {
    CfgLines lines;
    lines.analog = line;
    return lines.text();
}

std::string withRates(const std::string& rates) {
    CfgLines lines;
    lines.rates = rates;
    return lines.text();
}

/// Times that the library gives the samples, in milliseconds.
std::vector<double> libraryTimes(const Configuration& configuration, const std::vector<unsigned long>& samples) {
    OrvComtradeLib::Cfg cfg;
    EXPECT_EQ(loadText(writeConfiguration(configuration), cfg), kCfgLoaded);
    std::vector<double> times;
    for (const unsigned long sample : samples)
        times.push_back(cfg.timeFromSampleIndex(sample) * 1000.0);
    return times;
}

} // namespace

TEST(WriteConfiguration, WritesEveryLine) {
    CfgLines lines;
    lines.rest = "0.25\n0,x\nB,3\n";
    lines.rates = "0\n0,8";
    EXPECT_EQ(writeConfiguration(*readCfg(lines.text()).configuration), "S,R,1999\n"
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

TEST(WriteConfiguration, WritesTheLayoutOf1991) {
    const char* const text = "S,R,1991\n2,1A,1D\n1,Ua,A,,V,0.5,0,0,-9,9\n1,Trip,1\n50\n1\n1000,8\n"
                             "02/13/07,00:00:01.5\n02/13/07,00:00:02\nASCII\n";
    EXPECT_EQ(writeConfiguration(*readCfg(text).configuration),
              "S,R,1991\n2,1A,1D\n1,Ua,A,,V,0.5,0,0,-9,9\n1,Trip,1\n50\n1\n1000,8\n"
              "02/13/2007,00:00:01.500000\n02/13/2007,00:00:02.000000\nASCII\n1\n");
}

TEST(WriteConfiguration, MissingDatesAreWrittenAndReadBackAsNone) {
    CfgLines lines;
    lines.start = "";
    lines.trigger = "";
    const std::string written = writeConfiguration(*readCfg(lines.text()).configuration);
    EXPECT_NE(written.find("\n01/01/1970,00:00:00.000000\n01/01/1970,00:00:00.000000\n"), std::string::npos);
    const ReadCfg again = readCfg(written);
    EXPECT_FALSE(again.configuration->start);
    EXPECT_FALSE(again.configuration->trigger);
    EXPECT_FALSE(again.isMended());
}

TEST(WriteConfiguration, TimeQualityWithoutATimeCodeKeepsItsLine) {
    CfgLines lines;
    lines.rest = "1\n,\nB,3\n";
    const ReadCfg again = readCfg(writeConfiguration(*readCfg(lines.text()).configuration));
    EXPECT_EQ(again.configuration->timeCode, "");
    EXPECT_EQ(again.configuration->timeQuality, "B");
    EXPECT_EQ(again.configuration->leapSecond, "3");
}

TEST(SettleRates, GivesTheTimesOfTheStandard) {
    const struct {
        const char* why;
        const char* rates;
        std::uint64_t present;
        std::vector<unsigned long> samples;
        std::vector<double> milliseconds;
        const char* written;
        const char* codes;
    } rows[] = {
        {"one rate", "1\n1000,8", 8, {0, 7}, {0, 7}, "1\n1000,8\n", ""},
        {"one rate, fewer samples", "1\n1000,8", 5, {0, 4}, {0, 4}, "1\n1000,5\n", "sample-count:endsamp*"},
        {"one rate, more samples", "1\n1000,8", 9, {8}, {8}, "1\n1000,9\n", "sample-count:endsamp*"},
        {"two rates", "2\n1000,4\n2000,8", 8, {3, 4, 6}, {3, 4, 5}, "2\n1000,4\n2000,8\n", ""},
        {"three rates",
         "3\n1000,4\n2000,8\n500,10",
         10,
         {3, 4, 8, 9},
         {3, 4, 6, 8},
         "3\n1000,4\n2000,4\n500,10\n",
         "rates-cumulative:endsamp*"},
        {"three equal rates", "3\n1000,4\n1000,8\n1000,10", 10, {4, 9}, {4, 9}, "3\n1000,4\n1000,8\n1000,10\n", ""},
        {"empty segments at the end",
         "4\n1000,4\n1000,8\n1000,8\n1000,8",
         8,
         {7},
         {7},
         "4\n1000,4\n1000,8\n1000,8\n1000,8\n",
         ""},
        {"cut in the second of three",
         "3\n1000,4\n2000,8\n500,10",
         6,
         {4, 5},
         {4, 4.5},
         "3\n1000,4\n2000,8\n500,6\n",
         "sample-count:endsamp*"},
        {"lengths, told by their sum",
         "2\n1000,4\n2000,8",
         12,
         {3, 4, 10},
         {3, 4, 7},
         "2\n1000,4\n2000,12\n",
         "rates-as-lengths:endsamp*"},
        {"lengths, told by their fall",
         "3\n1000,4\n2000,2\n500,3",
         9,
         {4, 6, 7},
         {4, 5, 7},
         "3\n1000,4\n2000,2\n500,9\n",
         "rates-as-lengths:endsamp*"},
        {"no samples", "2\n1000,4\n2000,8", 0, {}, {}, "2\n1000,4\n2000,0\n", ""},
    };
    for (const auto& row : rows) {
        const Settled settled = settle(withRates(row.rates), Side::Recorded, row.present);
        const std::vector<double> times = libraryTimes(settled.configuration, row.samples);
        ASSERT_EQ(times.size(), row.milliseconds.size()) << row.why;
        for (std::size_t index = 0; index < times.size(); ++index)
            EXPECT_NEAR(times[index], row.milliseconds[index], 1e-9) << row.why << ", sample " << row.samples[index];
        const std::string text = writeConfiguration(settled.configuration);
        EXPECT_NE(text.find("\n50\n" + std::string(row.written) + "12/01/2011"), std::string::npos) << row.why << text;
        EXPECT_EQ(settled.codes, row.codes) << row.why;
    }
}

TEST(SettleRates, ThreeLengthsAreMarkedAndStayAsTheyAre) {
    const Settled settled = settle(withRates("3\n1000,4\n2000,8\n500,10"), Side::Recorded, 10);
    const std::string text = writeConfiguration(settled.configuration);
    EXPECT_NE(text.find("\nBINARY\n1\nOrvComtradeIntake,1,rates-as-lengths\n"), std::string::npos) << text;
    const Settled again = settle(text, Side::Recorded, 10);
    EXPECT_EQ(again.codes, "");
    EXPECT_EQ(writeConfiguration(again.configuration), text);
}

TEST(SettleRates, LengthsAreMarkedWhoseLastBecomesTheTotal) {
    const Settled settled = settle(withRates("3\n1000,10\n4000,5\n1000,40"), Side::Recorded, 41);
    const std::string written = writeConfiguration(settled.configuration);
    EXPECT_NE(written.find("\n3\n1000,10\n4000,5\n1000,41\n"), std::string::npos) << written;
    EXPECT_NE(written.find("\nOrvComtradeIntake,1,rates-as-lengths\n"), std::string::npos) << written;
}

TEST(SettleRates, LengthsThatWouldReadAsNumbersOnceTheCountIsMendedAreMarked) {
    const Settled settled = settle(withRates("3\n1000,4\n2000,6\n500,3"), Side::Recorded, 13);
    const std::string text = writeConfiguration(settled.configuration);
    EXPECT_NE(text.find("\n3\n1000,4\n2000,6\n500,13\n"), std::string::npos) << text;
    const Settled again = settle(text, Side::Recorded, 13);
    EXPECT_EQ(again.codes, "");
    EXPECT_EQ(writeConfiguration(again.configuration), text);
}

TEST(SettleRates, ATimeMultiplierDoesNotScaleTimesByRate) {
    CfgLines lines;
    lines.rest = "0.47\n";
    const Settled byRate = settle(lines.text(), Side::Recorded, 8);
    EXPECT_EQ(byRate.configuration.timeMultiplier, 1.0);
    EXPECT_EQ(byRate.codes, "time-multiplier:timemult*");
    lines.rates = "0\n0,8";
    const Settled byStamp = settle(lines.text(), Side::Recorded, 8);
    EXPECT_EQ(byStamp.configuration.timeMultiplier, 0.47);
    EXPECT_EQ(byStamp.codes, "");
}

TEST(SettleRates, FindingsTellTheirLinesWhereOthersAreMissing) {
    const ReadCfg read = readCfg("2,1A,1D\n1,Ua,A,Bus,kV,0.5,0.25,0,-32767,32767,1,1,S\n1,Trip,,,0\n"
                                 "1\n1000,7\n12/01/2011,05:55:30.075011\nBINARY\n1000\n");
    Findings findings;
    Configuration configuration = *read.configuration;
    settleScaling(configuration, Side::Recorded, read.text, findings);
    settleRates(configuration, 8, read.text, findings);
    const std::vector<Finding> told = findings.take();
    ASSERT_EQ(told.size(), 3U);
    EXPECT_EQ(told[0].code, "unit-prefix");
    EXPECT_EQ(told[0].line, 2U);
    EXPECT_EQ(told[1].code, "sample-count");
    EXPECT_EQ(told[1].line, 5U);
    EXPECT_EQ(told[2].code, "time-multiplier");
    EXPECT_EQ(told[2].line, 8U);
}

TEST(SettleRates, StampsInNanosecondsAreScaled) {
    CfgLines lines;
    lines.station = "S,R,2013";
    lines.rates = "0\n0,8";
    lines.start = "15/12/2023,17:36:30.885675860";
    const Settled settled = settle(lines.text(), Side::Recorded, 8);
    EXPECT_EQ(settled.configuration.timeMultiplier, 0.001);
    EXPECT_EQ(settled.codes, "nanosecond-stamps:timemult*");
    const Settled again = settle(writeConfiguration(settled.configuration), Side::Recorded, 8);
    EXPECT_EQ(again.codes, "");
    EXPECT_EQ(again.configuration.timeMultiplier, 0.001);
    EXPECT_EQ(again.configuration.start->text(), "2023-12-15T17:36:30.885675860");
    lines.station = "S,R,1999"; // which knows microseconds only
    EXPECT_EQ(settle(lines.text(), Side::Recorded, 8).configuration.timeMultiplier, 1.0);
}

TEST(SettleScaling, Units) {
    const struct {
        const char* unit;
        const char* written;
        double a;
        const char* codes;
    } rows[] = {
        {"V", "V", 0.5, ""},
        {"", "", 0.5, ""},
        {"%", "%", 0.5, ""},
        {"m", "m", 0.5, ""},
        {"K", "K", 0.5, ""},
        {"kV", "V", 500.0, "unit-prefix:uu*"},
        {"KV", "V", 500.0, "unit-prefix:uu*"},
        {"kv", "V", 500.0, "unit-prefix:uu*"},
        {"mA", "A", 0.0005, "unit-prefix:uu*"},
        {"MW", "W", 500000.0, "unit-prefix:uu*"},
        {"Mvar", "var", 500000.0, "unit-prefix:uu*"},
        {"kHz", "Hz", 500.0, "unit-prefix:uu*"},
        {"GW", "W", 5e8, "unit-prefix:uu*"},
        {"uA", "A", 5e-7, "unit-prefix:uu*"},
        {"\xC2\xB5"
         "A",
         "A", 5e-7, "unit-prefix:uu*"},
        {"k\xCE\xA9", "\xCE\xA9", 500.0, "unit-prefix:uu*"},
        {"\xD0\xBA\xD0\x92", "\xD0\x92", 500.0, "unit-prefix:uu*"}, // Cyrillic kV
        {"kVrms", "Vrms", 500.0, "unit-prefix:uu*"},
        {"kV RMS", "V RMS", 500.0, "unit-prefix:uu*"},
        {"kvrms", "Vrms", 500.0, "unit-prefix:uu*"},
        {"kV(rms)", "V(rms)", 500.0, "unit-prefix:uu*"},
        {"kV [eff]", "V [eff]", 500.0, "unit-prefix:uu*"},
        {"kVp", "Vp", 500.0, "unit-prefix:uu*"},
        {"kVpp", "Vpp", 500.0, "unit-prefix:uu*"},
        {"kVp-p", "Vp-p", 500.0, "unit-prefix:uu*"},
        {"kA peak", "A peak", 500.0, "unit-prefix:uu*"},
        {"mA_pk", "A_pk", 0.0005, "unit-prefix:uu*"},
        {"mAdc", "Adc", 0.0005, "unit-prefix:uu*"},
        {"uArms", "Arms", 5e-7, "unit-prefix:uu*"},
        {"kVL-N", "VL-N", 500.0, "unit-prefix:uu*"},
        {"kV L-L", "V L-L", 500.0, "unit-prefix:uu*"},
        {"kVA", "VA", 500.0, "unit-prefix:uu*"},
        {"kVAr", "VAr", 500.0, "unit-prefix:uu*"},
        {"kvar", "var", 500.0, "unit-prefix:uu*"},
        {"kWh", "Wh", 500.0, "unit-prefix:uu*"},
        {"Vrms", "Vrms", 0.5, ""},
        {"A peak", "A peak", 0.5, ""},
        {"kVAp", "[kVAp]", 0.5, "unit-not-prefixed:uu*"},
        {"mVs", "[mVs]", 0.5, "unit-not-prefixed:uu*"},
        {"kV/m", "[kV/m]", 0.5, "unit-not-prefixed:uu*"},
        {"kV ", "V", 500.0, "unit-prefix:uu*"},
        {"kV()", "[kV()]", 0.5, "unit-not-prefixed:uu*"},
        {"MAP", "[MAP]", 0.5, "unit-not-prefixed:uu*"},
        {"MALL", "[MALL]", 0.5, "unit-not-prefixed:uu*"},
        {"GAP", "GAP", 0.5, ""},
        {"nvp", "nvp", 0.5, ""},
        {"min", "[min]", 0.5, "unit-not-prefixed:uu*"},
        {"m/s", "[m/s]", 0.5, "unit-not-prefixed:uu*"},
        {"mm", "[mm]", 0.5, "unit-not-prefixed:uu*"},
        {"Ms", "[Ms]", 0.5, "unit-not-prefixed:uu*"},
        {"[m/s]", "[m/s]", 0.5, ""},
        {"volt", "volt", 0.5, ""},
        {"na", "na", 0.5, ""},
    };
    for (const auto& row : rows) {
        const std::string line = std::string("1,Ua,A,Bus,") + row.unit + ",0.5,0.25,0,-32767,32767,1,1,S";
        const Settled settled = settle(withAnalog(line), Side::Recorded, 8);
        OrvComtradeLib::Cfg cfg;
        ASSERT_EQ(loadText(writeConfiguration(settled.configuration), cfg), kCfgLoaded) << row.unit;
        EXPECT_EQ(cfg.analogChannelConfigs.at(0).unit, row.written) << row.unit;
        EXPECT_EQ(cfg.analogChannelConfigs.at(0).a, row.a) << row.unit;
        EXPECT_EQ(cfg.analogChannelConfigs.at(0).b, row.a / 2) << row.unit;
        EXPECT_EQ(cfg.analogChannelConfigs.at(0).unitMultiplier, 1.0) << row.unit;
        EXPECT_EQ(settled.codes, row.codes) << row.unit;
        EXPECT_EQ(settle(writeConfiguration(settled.configuration), Side::Recorded, 8).codes, "") << row.unit;
    }
}

TEST(SettleScaling, FindingsTellTheirPlaceBehindCommas) {
    const ReadCfg read = readCfg(withAnalog("1,Line 1, bay 2,A,,kV,0,5,0,0,-9,9,100,0,5,0,P"));
    Findings findings;
    Configuration configuration = *read.configuration;
    settleScaling(configuration, Side::Recorded, read.text, findings);
    const std::vector<Finding> told = findings.take();
    ASSERT_EQ(told.size(), 2U);
    EXPECT_EQ(told[0].code, "unit-prefix");
    EXPECT_EQ(told[0].offset, 36U); // 9 bytes of the station line, 8 of the counts line, 19 of this one
    EXPECT_EQ(told[1].code, "side");
    EXPECT_EQ(told[1].offset, 62U);
}

TEST(SettleScaling, Sides) {
    const struct {
        const char* why;
        const char* fields; // b, skew, min, max, primary, secondary, side; a is 2
        Side side;
        double a;
        double b;
        const char* codes;
    } rows[] = {
        {"P as recorded", "4,0,-9,9,100,5,P", Side::Recorded, 2.0, 4.0, "side:PS*"},
        {"P as recorded, ratio 1", "4,0,-9,9,1,1,P", Side::Recorded, 2.0, 4.0, ""},
        {"S as recorded", "4,0,-9,9,100,5,S", Side::Recorded, 2.0, 4.0, ""},
        {"P to primary", "4,0,-9,9,100,5,P", Side::Primary, 2.0, 4.0, "side:PS*"},
        {"S to primary", "4,0,-9,9,100,5,S", Side::Primary, 40.0, 80.0, "side:PS*"},
        {"S to primary, ratio 1", "4,0,-9,9,5,5,S", Side::Primary, 2.0, 4.0, ""},
        {"P to secondary", "4,0,-9,9,100,5,P", Side::Secondary, 0.1, 0.2, "side:PS*"},
        {"P to secondary, b is 0", "0,0,-9,9,100,5,P", Side::Secondary, 0.1, 0.0, "side:PS*"},
        {"P to secondary, ratio 1", "4,0,-9,9,1,1,P", Side::Secondary, 2.0, 4.0, ""},
        {"S to secondary", "4,0,-9,9,100,5,S", Side::Secondary, 2.0, 4.0, ""},
        {"P with primary 0", "4,0,-9,9,0,5,P", Side::Recorded, 2.0, 4.0, "side:PS* ratio:primary"},
        {"P with primary 0 to secondary", "4,0,-9,9,0,5,P", Side::Secondary, 2.0, 4.0, "side:PS* ratio:primary"},
        {"S with secondary 0 to primary", "4,0,-9,9,5,0,S", Side::Primary, 2.0, 4.0, "ratio:primary"},
        {"side unknown to primary", "4,0,-9,9,100,5,X", Side::Primary, 2.0, 4.0, "side:PS"},
        {"less primary than secondary", "4,0,-9,9,10,100,S", Side::Primary, 0.2, 0.4, "side:PS* ratio:primary"},
    };
    for (const auto& row : rows) {
        const Settled settled = settle(withAnalog(std::string("1,Ua,A,Bus,V,2,") + row.fields), row.side, 8);
        const std::string text = writeConfiguration(settled.configuration);
        OrvComtradeLib::Cfg cfg;
        ASSERT_EQ(loadText(text, cfg), kCfgLoaded) << row.why;
        EXPECT_DOUBLE_EQ(cfg.analogChannelConfigs.at(0).a, row.a) << row.why;
        EXPECT_DOUBLE_EQ(cfg.analogChannelConfigs.at(0).b, row.b) << row.why;
        EXPECT_EQ(settled.codes, row.codes) << row.why;
        EXPECT_FALSE(readCfg(text).isMended()) << row.why;
        EXPECT_EQ(settle(text, Side::Recorded, 8).codes.find('*'), std::string::npos) << row.why;
    }
}

TEST(SettleScaling, ARatioOfAnUnknownSideIsNotWritten) {
    const std::string text = withAnalog("1,Ua,A,Bus,V,2,4,0,-9,9,100,5,X");
    const std::string written = writeConfiguration(settle(text, Side::Primary, 8).configuration);
    EXPECT_NE(written.find("\n1,Ua,A,Bus,V,2,4,0,-9,9,1,1,S\n"), std::string::npos) << written;
    EXPECT_EQ(settle(written, Side::Primary, 8).codes, "");
}

TEST(SettleScaling, Revision1991HasNoSides) {
    const char* const text = "S,R,1991\n1,1A,0D\n1,Ua,A,,kV,0.5,0,0,-9,9\n50\n1\n1000,8\n"
                             "02/13/07,00:00:01.5\n02/13/07,00:00:02\nASCII\n1\n";
    const Settled settled = settle(text, Side::Primary, 8);
    EXPECT_EQ(settled.codes, "unit-prefix:uu* side:PS");
    EXPECT_EQ(static_cast<double>(settled.configuration.analog[0].a), 500.0);
}

TEST(DivideFactors, DividesByPowersOfTen) {
    Configuration configuration = *readCfg(CfgLines().text()).configuration;
    divideFactors(configuration, {3});
    EXPECT_EQ(static_cast<double>(configuration.analog[0].a), 0.0005);
    EXPECT_EQ(static_cast<double>(configuration.analog[0].b), 0.25);
    divideFactors(configuration, {-2});
    EXPECT_EQ(static_cast<double>(configuration.analog[0].a), 0.05);
    divideFactors(configuration, {});
    EXPECT_EQ(static_cast<double>(configuration.analog[0].a), 0.05);
}

namespace {

/// Configurations of any content.
class RandomConfiguration {
public:
    explicit RandomConfiguration(unsigned seed) : _engine(seed) {}

    Configuration make() {
        Configuration made;
        made.station = _text();
        made.recorder = _text();
        made.revision = _pick({1991, 1999, 2013, 2001});
        const std::uint64_t status = _below(5);
        for (std::uint64_t count = 1 + _below(4); count > 0; --count)
            made.analog.push_back(_analog(made.revision));
        for (std::uint64_t count = status; count > 0; --count)
            made.status.push_back(_status(made.revision));
        made.lineFrequency = _number();
        made.encoding = static_cast<DataEncoding>(_below(4));
        _setTimes(made);
        return made;
    }

private:
    std::uint64_t _below(std::uint64_t end) { return _engine() % end; }
    int _pick(std::initializer_list<int> values) { return *(values.begin() + _below(values.size())); }

    std::string _text() {
        const char* const pieces[] = {
            "",         "Ua", "Line 1", "a;b", "x\ty", "\xD0\x9F\xD1\x83\xD1\x81\xD0\xBA", "\xE7\xBA\xBF\xE8\xB7\xAF",
            "\xC2\xB0", "1",  "kV",     "P",   "0x1F"};
        return pieces[_below(12)];
    }

    double _number() {
        std::uniform_real_distribution<double> mantissa(-1.0, 1.0);
        const double number = std::ldexp(mantissa(_engine), static_cast<int>(_below(200)) - 100);
        return _below(4) == 0 ? static_cast<double>(_below(1000)) : number;
    }

    AnalogLine _analog(int revision) {
        AnalogLine channel;
        channel.id = _text();
        channel.phase = _text();
        channel.component = _text();
        channel.unit = _text();
        channel.a = static_cast<long double>(_number());
        channel.b = static_cast<long double>(_number());
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

    StatusLine _status(int revision) {
        StatusLine channel;
        channel.id = _text();
        channel.normalState = static_cast<int>(_below(2));
        if (revision < 1999)
            return channel;
        channel.phase = _text();
        channel.component = _text();
        return channel;
    }

    void _setTimes(Configuration& made) {
        if (_below(3) == 0)
            made.rates.push_back({0.0, _below(100000)});
        for (std::uint64_t count = made.rates.empty() ? 1 + _below(6) : 0; count > 0; --count)
            made.rates.push_back({0.5 + static_cast<double>(_below(100000)), _below(100000)});
        made.ratesAreSettled = made.rates.size() > 2 && _below(2) == 0;
        made.nanosecondStamps = _below(2) == 0;
        const std::int64_t unit = made.nanosecondStamps ? 1 : 1000;
        if (_below(4) != 0)
            made.start = Instant{static_cast<std::int64_t>(1 + _below(9000000000000000)) * unit};
        if (_below(4) != 0)
            made.trigger = Instant{-static_cast<std::int64_t>(1 + _below(9000000000000000)) * unit};
        made.timeMultiplier = static_cast<double>(1 + _below(1000)) / 8.0;
        if (_below(2) == 0)
            made.timeCode = "-5h30";
        if (_below(2) == 0)
            made.timeQuality = "B";
    }

    std::mt19937_64 _engine;
};

void expectSame(const Configuration& left, const Configuration& right, unsigned seed) {
    EXPECT_EQ(left.station, right.station) << seed;
    EXPECT_EQ(left.recorder, right.recorder) << seed;
    EXPECT_EQ(left.revision, right.revision) << seed;
    EXPECT_EQ(left.lineFrequency, right.lineFrequency) << seed;
    EXPECT_EQ(left.ratesAreSettled, right.ratesAreSettled) << seed;
    EXPECT_EQ(left.start, right.start) << seed;
    EXPECT_EQ(left.trigger, right.trigger) << seed;
    EXPECT_EQ(left.nanosecondStamps, right.nanosecondStamps) << seed;
    EXPECT_EQ(left.encoding, right.encoding) << seed;
    EXPECT_EQ(left.timeMultiplier, right.timeMultiplier) << seed;
    EXPECT_EQ(left.timeCode + left.localCode, right.timeCode + right.localCode) << seed;
    EXPECT_EQ(left.timeQuality + left.leapSecond, right.timeQuality + right.leapSecond) << seed;
    ASSERT_EQ(left.rates.size(), right.rates.size()) << seed;
    for (std::size_t index = 0; index < left.rates.size(); ++index) {
        EXPECT_EQ(left.rates[index].rate, right.rates[index].rate) << seed;
        EXPECT_EQ(left.rates[index].endSample, right.rates[index].endSample) << seed;
    }
}

void expectSameAnalog(const AnalogLine& left, const AnalogLine& right, unsigned seed) {
    EXPECT_EQ(left.id, right.id) << seed;
    EXPECT_EQ(left.phase, right.phase) << seed;
    EXPECT_EQ(left.component, right.component) << seed;
    EXPECT_EQ(left.unit, right.unit) << seed;
    EXPECT_EQ(static_cast<double>(left.a), static_cast<double>(right.a)) << seed;
    EXPECT_EQ(static_cast<double>(left.b), static_cast<double>(right.b)) << seed;
    EXPECT_EQ(left.skew, right.skew) << seed;
    EXPECT_EQ(left.min, right.min) << seed;
    EXPECT_EQ(left.max, right.max) << seed;
    EXPECT_EQ(left.primary, right.primary) << seed;
    EXPECT_EQ(left.secondary, right.secondary) << seed;
    EXPECT_EQ(left.side, right.side) << seed;
}

void expectLoaded(const std::string& text, const Configuration& configuration, unsigned seed) {
    OrvComtradeLib::Cfg cfg;
    ASSERT_EQ(loadText(text, cfg), kCfgLoaded) << seed << text;
    EXPECT_EQ(cfg.stationName, configuration.station) << seed;
    ASSERT_EQ(cfg.analogChannelConfigs.size(), configuration.analog.size()) << seed;
    ASSERT_EQ(cfg.binaryChannelConfigs.size(), configuration.status.size()) << seed;
    for (std::size_t index = 0; index < configuration.analog.size(); ++index) {
        const AnalogLine& channel = configuration.analog[index];
        const auto a = static_cast<double>(channel.a);
        const bool isPrimary = channel.side == Side::Primary;
        EXPECT_EQ(cfg.analogChannelConfigs[index].channelId, channel.id) << seed;
        EXPECT_EQ(cfg.analogChannelConfigs[index].unit, channel.unit) << seed;
        if (!isPrimary) {
            EXPECT_EQ(cfg.analogChannelConfigs[index].a, a) << seed;
        }
        EXPECT_EQ(cfg.analogChannelConfigs[index].b, static_cast<double>(channel.b)) << seed;
    }
    for (std::size_t index = 0; index < configuration.status.size(); ++index) {
        EXPECT_EQ(cfg.binaryChannelConfigs[index].channelId, configuration.status[index].id) << seed;
        EXPECT_EQ(cfg.binaryChannelConfigs[index].normalState, configuration.status[index].normalState) << seed;
    }
    EXPECT_EQ(cfg.lastSampleNumber, configuration.samplesDeclared()) << seed;
}

} // namespace

TEST(WriteConfiguration, WhatIsWrittenReadsBackAsItWasAndLoads) {
    for (unsigned seed = 1; seed <= 500; ++seed) {
        const Configuration made = RandomConfiguration(seed).make();
        const std::string text = writeConfiguration(made);
        const ReadCfg read = readCfg(text);
        ASSERT_TRUE(read.configuration) << seed << text;
        EXPECT_FALSE(read.isMended()) << seed << read.codes() << '\n' << text;
        expectSame(*read.configuration, made, seed);
        for (std::size_t index = 0; index < made.analog.size(); ++index)
            expectSameAnalog(read.configuration->analog.at(index), made.analog[index], seed);
        EXPECT_EQ(writeConfiguration(*read.configuration), text) << seed;
        expectLoaded(text, made, seed);
        if (HasFailure())
            return;
    }
}

TEST(WriteConfiguration, WhatIsSettledNeedsNoSecondMend) {
    for (unsigned seed = 1; seed <= 500; ++seed)
        for (const Side side : {Side::Recorded, Side::Primary, Side::Secondary}) {
            const std::uint64_t present = seed % 3 == 0 ? 1000 : RandomConfiguration(seed).make().samplesDeclared();
            const std::string first = writeConfiguration(
                settle(writeConfiguration(RandomConfiguration(seed).make()), side, present).configuration);
            const Settled again = settle(first, side, present);
            EXPECT_EQ(again.codes.find('*'), std::string::npos) << seed << again.codes << '\n' << first;
            EXPECT_EQ(writeConfiguration(again.configuration), first) << seed;
            if (HasFailure())
                return;
        }
}
