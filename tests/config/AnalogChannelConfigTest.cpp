#include "AnalogChannelConfig.h"

#include "support/WhatOf.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

using OrvComtradeLib::AnalogChannelConfig;
using orvtest::whatOf;
using Fields = std::vector<std::string>;

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

const Fields kGoodFields = {"1", "Ua", "A", "Bus 1", "kV", "2", "3", "5000000", "-5", "6", "8", "4", "P"};

/// A record of which no member has its default or a value of kGoodFields.
AnalogChannelConfig filled() {
    AnalogChannelConfig config(9, false, 1999);
    config.channelId = "old id";
    config.phase = "old phase";
    config.circuitComponent = "old component";
    config.unit = "old unit";
    config.unitMultiplier = 101.0;
    config.a = 102.0;
    config.b = 103.0;
    config.skew = 104.0;
    config.min = 105.0;
    config.max = 106.0;
    config.primary = 107.0;
    config.secondary = 108.0;
    config.secondaryValues = true;
    return config;
}

Fields with(std::size_t field, const std::string& text) {
    Fields fields = kGoodFields;
    fields.at(field) = text;
    return fields;
}

AnalogChannelConfig withMultiplier(const std::string& text) {
    return AnalogChannelConfig(0, "1,Ua,A,Bus 1,V," + text + ",0,0,0,0", 1999);
}

} // namespace

TEST(AnalogChannelConfigPreset, GivesDefaultsAndRange) {
    const struct {
        const char* why;
        bool flag;
        int revisionYear;
        double min;
        double max;
    } rows[] = {
        {"1999 without the flag", false, 1999, -32767.0, 32767.0},
        {"1999 with the flag", true, 1999, -99999.0, 99999.0},
        {"2013 is not 1999", false, 2013, -99999.0, 99999.0},
        {"2013 with the flag", true, 2013, -99999.0, 99999.0},
        {"2000", false, 2000, -99999.0, 99999.0},
        {"1998", false, 1998, -99999.0, 99999.0},
        {"1991", false, 1991, -99999.0, 99999.0},
        {"year 0", true, 0, -99999.0, 99999.0},
    };
    for (const auto& row : rows) {
        const AnalogChannelConfig config(5, row.flag, row.revisionYear);
        EXPECT_EQ(config.min, row.min) << row.why;
        EXPECT_EQ(config.max, row.max) << row.why;
        EXPECT_EQ(config.index, 5) << row.why;
        EXPECT_EQ(config.channelId, "") << row.why;
        EXPECT_EQ(config.phase, "") << row.why;
        EXPECT_EQ(config.circuitComponent, "") << row.why;
        EXPECT_EQ(config.unit, "V") << row.why;
        EXPECT_EQ(config.unitMultiplier, 1.0) << row.why;
        EXPECT_EQ(config.a, 1.0) << row.why;
        EXPECT_EQ(config.b, 0.0) << row.why;
        EXPECT_EQ(config.skew, 0.0) << row.why;
        EXPECT_EQ(config.primary, 1.0) << row.why;
        EXPECT_EQ(config.secondary, 1.0) << row.why;
        EXPECT_TRUE(config.secondaryValues) << row.why;
    }
}

TEST(AnalogChannelConfigSetMinMax, SetsTheRangeAlone) {
    AnalogChannelConfig config = filled();
    config.setMinMax(false, 1999);
    EXPECT_EQ(config.min, -32767.0);
    EXPECT_EQ(config.max, 32767.0);
    config.setMinMax(true, 1999);
    EXPECT_EQ(config.min, -99999.0);
    EXPECT_EQ(config.max, 99999.0);
    config.setMinMax(false, 1999);
    config.setMinMax(false, 2013);
    EXPECT_EQ(config.min, -99999.0);
    EXPECT_EQ(config.max, 99999.0);
    EXPECT_EQ(config.index, 9);
    EXPECT_EQ(config.unit, "old unit");
    EXPECT_EQ(config.a, 102.0);
    EXPECT_EQ(config.b, 103.0);
}

TEST(AnalogChannelConfigLine, PrimaryValuesAreConvertedToTheSecondarySide) {
    const AnalogChannelConfig config(0, "1,Ua,A,Bus 1,kV,0.01,0,0,-32767,32767,110,0.1,P", 1999);
    EXPECT_EQ(config.index, 0);
    EXPECT_EQ(config.channelId, "Ua");
    EXPECT_EQ(config.phase, "A");
    EXPECT_EQ(config.circuitComponent, "Bus 1");
    EXPECT_EQ(config.unit, "kV");
    EXPECT_EQ(config.unitMultiplier, 1000.0);
    EXPECT_EQ(config.a, 9.090909090909091e-06);
    EXPECT_EQ(config.b, 0.0);
    EXPECT_EQ(config.skew, 0.0);
    EXPECT_EQ(config.min, -32767.0);
    EXPECT_EQ(config.max, 32767.0);
    EXPECT_EQ(config.primary, 110.0);
    EXPECT_EQ(config.secondary, 0.1);
    EXPECT_FALSE(config.secondaryValues);
    EXPECT_EQ(config.GetRealValue(100), 0.9090909090909091);
}

TEST(AnalogChannelConfigLine, DivisionOfTheRatioComesFirst) {
    // 57.7 * 0.3 / 110000, 0.3 / (110000 / 57.7) and 57.7 * (0.3 / 110000) are all 1.5736363636363636e-04.
    const AnalogChannelConfig config(0, "1,Ua,A,Bus 1,V,0.3,0,0,0,0,110000,57.7,P", 1999);
    EXPECT_EQ(config.a, 1.573636363636364e-04);
}

TEST(AnalogChannelConfigLine, OffsetOfPrimaryValuesStaysAsWritten) {
    const AnalogChannelConfig config(0, "1,Ua,A,Bus 1,V,8,3,0,0,0,4,2,P", 1999);
    EXPECT_EQ(config.a, 4.0);
    EXPECT_EQ(config.b, 3.0);
    EXPECT_EQ(config.GetRealValue(2), 11.0);
}

TEST(AnalogChannelConfigLine, RevisionAndFieldCountDecideAboutTheRatio) {
    const struct {
        const char* why;
        const char* line;
        int revisionYear;
        double a;
        double primary;
        double secondary;
        bool secondaryValues;
    } rows[] = {
        // 1999 and later, 13 fields
        {"S leaves a", "1,U,A,B,V,8,0,0,0,0,4,2,S", 1999, 8.0, 4.0, 2.0, true},
        {"s is upper-cased", "1,U,A,B,V,8,0,0,0,0,4,2,s", 1999, 8.0, 4.0, 2.0, true},
        {"P converts a", "1,U,A,B,V,8,0,0,0,0,4,2,P", 1999, 4.0, 4.0, 2.0, false},
        {"p is not S", "1,U,A,B,V,8,0,0,0,0,4,2,p", 1999, 4.0, 4.0, 2.0, false},
        {"2013", "1,U,A,B,V,8,0,0,0,0,4,2,P", 2013, 4.0, 4.0, 2.0, false},
        {"any other letter is not S", "1,U,A,B,V,8,0,0,0,0,4,2,X", 1999, 4.0, 4.0, 2.0, false},
        {"the first character decides: Sx", "1,U,A,B,V,8,0,0,0,0,4,2,Sx", 1999, 8.0, 4.0, 2.0, true},
        {"the first character decides: PS", "1,U,A,B,V,8,0,0,0,0,4,2,PS", 1999, 4.0, 4.0, 2.0, false},
        {"a blank before S is not S", "1,U,A,B,V,8,0,0,0,0,4,2, S", 1999, 4.0, 4.0, 2.0, false},
        {"carriage return behind S", "1,U,A,B,V,8,0,0,0,0,4,2,S\r", 1999, 8.0, 4.0, 2.0, true},
        {"carriage return behind P", "1,U,A,B,V,8,0,0,0,0,4,2,P\r", 1999, 4.0, 4.0, 2.0, false},
        {"an empty field 12 that holds the carriage return", "1,U,A,B,V,8,0,0,0,0,4,2,\r", 1999, 4.0, 4.0, 2.0, false},
        {"an empty field 12 before further fields", "1,U,A,B,V,8,0,0,0,0,4,2,,S", 1999, 4.0, 4.0, 2.0, false},
        {"a high byte is not S", "1,U,A,B,V,8,0,0,0,0,4,2,\xD3", 1999, 4.0, 4.0, 2.0, false},
        {"surplus fields are not read", "1,U,A,B,V,8,0,0,0,0,4,2,S,P,x", 1999, 8.0, 4.0, 2.0, true},
        // 1999 and later, fewer fields
        {"an empty field 12 at the end is no field", "1,U,A,B,V,8,0,0,0,0,4,2,", 1999, 8.0, 1.0, 1.0, true},
        {"12 fields", "1,U,A,B,V,8,0,0,0,0,4,2", 1999, 8.0, 1.0, 1.0, true},
        {"11 fields", "1,U,A,B,V,8,0,0,0,0,4", 1999, 8.0, 1.0, 1.0, true},
        {"10 fields", "1,U,A,B,V,8,0,0,0,0", 1999, 8.0, 1.0, 1.0, true},
        {"10 fields in 2013", "1,U,A,B,V,8,0,0,0,0", 2013, 8.0, 1.0, 1.0, true},
        {"10 fields and a carriage return", "1,U,A,B,V,8,0,0,0,0\r", 1999, 8.0, 1.0, 1.0, true},
        {"the ratio of a short line need not be numbers", "1,U,A,B,V,8,0,0,0,0,x,y", 1999, 8.0, 1.0, 1.0, true},
        // Before 1999
        {"1991", "1,U,A,B,V,8,0,0,0,0,4,2,P", 1991, 8.0, 1.0, 1.0, true},
        {"1998", "1,U,A,B,V,8,0,0,0,0,4,2,P", 1998, 8.0, 1.0, 1.0, true},
        {"year 0", "1,U,A,B,V,8,0,0,0,0,4,2,P", 0, 8.0, 1.0, 1.0, true},
        {"the ratio of an old line need not be numbers", "1,U,A,B,V,8,0,0,0,0,x,y,P", 1991, 8.0, 1.0, 1.0, true},
        // Accepted as they stand
        {"zero primary of secondary values", "1,U,A,B,V,8,0,0,0,0,0,2,S", 1999, 8.0, 0.0, 2.0, true},
        {"zero primary of primary values", "1,U,A,B,V,8,0,0,0,0,0,2,P", 1999, kInfinity, 0.0, 2.0, false},
        {"zero primary, negative multiplier", "1,U,A,B,V,-8,0,0,0,0,0,2,P", 1999, -kInfinity, 0.0, 2.0, false},
        {"zero secondary", "1,U,A,B,V,8,0,0,0,0,4,0,P", 1999, 0.0, 4.0, 0.0, false},
        {"negative ratio", "1,U,A,B,V,8,0,0,0,0,-4,2,P", 1999, -4.0, -4.0, 2.0, false},
    };
    for (const auto& row : rows) {
        const AnalogChannelConfig config(0, row.line, row.revisionYear);
        EXPECT_EQ(config.a, row.a) << row.why;
        EXPECT_EQ(config.primary, row.primary) << row.why;
        EXPECT_EQ(config.secondary, row.secondary) << row.why;
        EXPECT_EQ(config.secondaryValues, row.secondaryValues) << row.why;
    }
}

TEST(AnalogChannelConfigLine, ZeroRatioOfPrimaryValuesIsNotANumber) {
    EXPECT_TRUE(std::isnan(AnalogChannelConfig(0, "1,U,A,B,V,8,0,0,0,0,0,0,P", 1999).a));
    EXPECT_TRUE(std::isnan(AnalogChannelConfig(0, "1,U,A,B,V,0,0,0,0,0,0,2,P", 1999).a));
}

TEST(AnalogChannelConfigLine, TextsAreKeptAsWritten) {
    const AnalogChannelConfig config(0, "1, Ua ,\tA,Bus 1 , kV,1,0,0,0,0", 1999);
    EXPECT_EQ(config.channelId, " Ua ");
    EXPECT_EQ(config.phase, "\tA");
    EXPECT_EQ(config.circuitComponent, "Bus 1 ");
    EXPECT_EQ(config.unit, " kV");
    EXPECT_EQ(config.unitMultiplier, 1.0) << "the first character is a blank";

    const AnalogChannelConfig empty(0, ",,,,,1,0,0,0,0", 1999);
    EXPECT_EQ(empty.channelId, "");
    EXPECT_EQ(empty.phase, "");
    EXPECT_EQ(empty.circuitComponent, "");
    EXPECT_EQ(empty.unit, "");
    EXPECT_EQ(empty.unitMultiplier, 1.0);
}

TEST(AnalogChannelConfigLine, PositionIsTheCallersWhateverTheNumberInTheLine) {
    EXPECT_EQ(AnalogChannelConfig(4, "99,Ua,A,Bus 1,V,1,0,0,0,0", 1999).index, 4);
    EXPECT_EQ(AnalogChannelConfig(4, "abc,Ua,A,Bus 1,V,1,0,0,0,0", 1999).index, 4);
    EXPECT_EQ(AnalogChannelConfig(-1, ",Ua,A,Bus 1,V,1,0,0,0,0", 1999).index, -1);
}

TEST(AnalogChannelConfigLine, SkewIsWrittenInMicroseconds) {
    const struct {
        const char* text;
        double expected;
    } rows[] = {
        {"0", 0.0},
        {"1", 1e-06},
        {"100", 9.999999999999999e-05}, // 100 * 0.000001, one unit in the last place below 100 / 1000000
        {"-12.5", -1.2499999999999999e-05},
        {"5000000", 5.0},
    };
    for (const auto& row : rows) {
        const AnalogChannelConfig config(0, std::string("1,Ua,A,Bus 1,V,1,0,") + row.text + ",0,0", 1999);
        EXPECT_EQ(config.skew, row.expected) << row.text;
    }
    EXPECT_DOUBLE_EQ(AnalogChannelConfig(0, "1,Ua,A,Bus 1,V,1,0,100,0,0", 1999).skew, 0.0001);
}

TEST(AnalogChannelConfigLine, RangeComesFromTheLineNotFromPresets) {
    const AnalogChannelConfig config(0, "1,Ua,A,Bus 1,V,1,0,0,-5,7.5", 1999);
    EXPECT_EQ(config.min, -5.0);
    EXPECT_EQ(config.max, 7.5);
    const AnalogChannelConfig reversed(0, "1,Ua,A,Bus 1,V,1,0,0,10,-10", 2013);
    EXPECT_EQ(reversed.min, 10.0);
    EXPECT_EQ(reversed.max, -10.0);
}

TEST(AnalogChannelConfigLine, NumbersConvertAsTheStandardLibraryDoes) {
    const struct {
        const char* why;
        const char* text;
        double expected;
    } rows[] = {
        {"leading blank and trailing letters", " 2.5xyz", 2.5},
        {"leading tab", "\t-2.5", -2.5},
        {"plus sign", "+0.5", 0.5},
        {"exponent", "-1.5e-3", -0.0015},
        {"upper-case exponent", "1E2", 100.0},
        {"a second dot ends it", "1.5.7", 1.5},
        {"no digit before the dot", ".5", 0.5},
        {"no digit behind the dot", "5.", 5.0},
        {"hexadecimal", "0x10", 16.0},
        {"infinity", "inf", kInfinity},
        {"largest double", "1.7976931348623157e308", 1.7976931348623157e308},
        {"nearest double", "0.1", 0.1},
        {"negative integer", "-32767", -32767.0},
        {"leading zeros", "000000000000000000042", 42.0},
        {"integer and blank", "99 ", 99.0},
        {"fifteen digits", "-999999999999999", -999999999999999.0},
        {"an odd integer above 2^53 is rounded", "9007199254740993", 9007199254740992.0},
    };
    for (const auto& row : rows)
        EXPECT_EQ(withMultiplier(row.text).a, row.expected) << row.why;
    EXPECT_TRUE(std::isnan(withMultiplier("nan").a));
    EXPECT_TRUE(std::signbit(withMultiplier("-0").a));
}

TEST(AnalogChannelConfigLine, FieldThatIsNoNumberIsInvalidArgumentStod) {
    for (std::size_t field = 5; field <= 11; ++field) {
        for (const char* text : {"abc", "", " ", "-", ".", "e5", ",5", "\r"}) {
            AnalogChannelConfig config = filled();
            EXPECT_EQ(whatOf<std::invalid_argument>([&] { config.load(0, with(field, text), 1999); }), "stod")
                << "field " << field << " \"" << text << '"';
        }
    }
    EXPECT_EQ(whatOf<std::invalid_argument>([] { withMultiplier("abc"); }), "stod");
}

TEST(AnalogChannelConfigLine, NumberBeyondADoubleIsOutOfRangeStod) {
    for (std::size_t field = 5; field <= 11; ++field) {
        for (const char* text : {"1e999", "-1e999", "1e-999"}) {
            AnalogChannelConfig config = filled();
            EXPECT_EQ(whatOf<std::out_of_range>([&] { config.load(0, with(field, text), 1999); }), "stod")
                << "field " << field << " \"" << text << '"';
        }
    }
    EXPECT_EQ(whatOf<std::out_of_range>([] { withMultiplier("1e999"); }), "stod");
}

TEST(AnalogChannelConfigLine, FewerThanTenFieldsAreOutOfRangeBeforeAnyNumberIsConverted) {
    for (const char* line : {"", "1", "1,", "1,Ua", "1,Ua,A", "1,Ua,A,Bus 1", "1,Ua,A,Bus 1,V", "1,Ua,A,Bus 1,V,1",
                             "1,Ua,A,Bus 1,V,1,0", "1,Ua,A,Bus 1,V,1,0,0", "1,Ua,A,Bus 1,V,1,0,0,0",
                             "1,Ua,A,Bus 1,V,1,0,0,0,", "1,Ua,A,Bus 1,V,abc,abc", "1,Ua,A,Bus 1,V,1e999,0,0,0"}) {
        for (const int year : {1991, 1999, 2013}) {
            try {
                const AnalogChannelConfig config(0, line, year);
                ADD_FAILURE() << '"' << line << "\" " << year;
            } catch (const std::out_of_range& thrown) {
                EXPECT_STRNE(thrown.what(), "stod") << '"' << line << '"';
            }
        }
    }
}

TEST(AnalogChannelConfigLine, LiteralReachesTheLineConstructor) {
    EXPECT_THROW(AnalogChannelConfig(0, "text", 1999), std::out_of_range);
    const AnalogChannelConfig fromLiteral(3, "1,Ua,A,Bus 1,kV,2,0,0,-5,5", 1999);
    EXPECT_EQ(fromLiteral.index, 3);
    EXPECT_EQ(fromLiteral.unit, "kV");
    EXPECT_EQ(fromLiteral.max, 5.0);
    char buffer[] = "1,Ua,A,Bus 1,kV,2,0,0,-5,5";
    EXPECT_EQ(AnalogChannelConfig(0, buffer, 1999).unit, "kV");
    const std::string text = buffer;
    EXPECT_EQ(AnalogChannelConfig(0, text, 1999).unit, "kV");
}

TEST(AnalogChannelConfigLoad, FailedNumberLeavesWhatWasAssignedBeforeIt) {
    const AnalogChannelConfig before = filled();
    for (std::size_t failing = 5; failing <= 11; ++failing) {
        AnalogChannelConfig config = filled();
        EXPECT_THROW(config.load(4, with(failing, "x"), 1999), std::invalid_argument);
        EXPECT_EQ(config.index, 4) << failing;
        EXPECT_EQ(config.channelId, "Ua") << failing;
        EXPECT_EQ(config.phase, "A") << failing;
        EXPECT_EQ(config.circuitComponent, "Bus 1") << failing;
        EXPECT_EQ(config.unit, "kV") << failing;
        EXPECT_EQ(config.unitMultiplier, 1000.0) << failing;
        EXPECT_EQ(config.a, failing > 5 ? 2.0 : before.a) << failing;
        EXPECT_EQ(config.b, failing > 6 ? 3.0 : before.b) << failing;
        EXPECT_EQ(config.skew, failing > 7 ? 5.0 : before.skew) << failing;
        EXPECT_EQ(config.min, failing > 8 ? -5.0 : before.min) << failing;
        EXPECT_EQ(config.max, failing > 9 ? 6.0 : before.max) << failing;
        EXPECT_EQ(config.primary, failing > 10 ? 8.0 : before.primary) << failing;
        EXPECT_EQ(config.secondary, before.secondary) << failing;
        EXPECT_EQ(config.secondaryValues, before.secondaryValues) << failing;
    }
}

TEST(AnalogChannelConfigLoad, RewritesEveryMemberOfAnExistingRecord) {
    AnalogChannelConfig config = filled();
    config.load(4, kGoodFields, 1999);
    EXPECT_EQ(config.index, 4);
    EXPECT_EQ(config.channelId, "Ua");
    EXPECT_EQ(config.phase, "A");
    EXPECT_EQ(config.circuitComponent, "Bus 1");
    EXPECT_EQ(config.unit, "kV");
    EXPECT_EQ(config.unitMultiplier, 1000.0);
    EXPECT_EQ(config.a, 1.0) << "2, halved by the ratio 8 to 4";
    EXPECT_EQ(config.b, 3.0);
    EXPECT_EQ(config.skew, 5.0);
    EXPECT_EQ(config.min, -5.0);
    EXPECT_EQ(config.max, 6.0);
    EXPECT_EQ(config.primary, 8.0);
    EXPECT_EQ(config.secondary, 4.0);
    EXPECT_FALSE(config.secondaryValues);

    config.load(5, {"1", "Ib", "B", "Line", "A", "7", "0", "0", "-1", "1"}, 1999);
    EXPECT_EQ(config.index, 5);
    EXPECT_EQ(config.unit, "A");
    EXPECT_EQ(config.unitMultiplier, 1.0);
    EXPECT_EQ(config.a, 7.0);
    EXPECT_EQ(config.min, -1.0);
    EXPECT_EQ(config.max, 1.0);
    EXPECT_EQ(config.primary, 1.0);
    EXPECT_EQ(config.secondary, 1.0);
    EXPECT_TRUE(config.secondaryValues);
}

TEST(AnalogChannelConfigLoadExtValues, TouchesRatioSideAndMultiplierAlone) {
    AnalogChannelConfig config = filled();
    config.loadExtValues(kGoodFields, 1999);
    EXPECT_EQ(config.primary, 8.0);
    EXPECT_EQ(config.secondary, 4.0);
    EXPECT_FALSE(config.secondaryValues);
    EXPECT_EQ(config.a, 51.0);
    EXPECT_EQ(config.b, 103.0);
    EXPECT_EQ(config.index, 9);
    EXPECT_EQ(config.channelId, "old id");
    EXPECT_EQ(config.unit, "old unit");
    EXPECT_EQ(config.unitMultiplier, 101.0);
    EXPECT_EQ(config.min, 105.0);
}

TEST(AnalogChannelConfigLoadExtValues, EmptySideIsPrimary) {
    AnalogChannelConfig config = filled();
    config.loadExtValues(with(12, ""), 1999);
    EXPECT_FALSE(config.secondaryValues);
    EXPECT_EQ(config.a, 51.0);
}

TEST(AnalogChannelConfigLoadExtValues, NoFieldsCountAsSecondary) {
    AnalogChannelConfig config = filled();
    config.secondaryValues = false;
    config.loadExtValues({}, 1999);
    EXPECT_EQ(config.primary, 1.0);
    EXPECT_EQ(config.secondary, 1.0);
    EXPECT_TRUE(config.secondaryValues);
    EXPECT_EQ(config.a, 102.0);
}

TEST(AnalogChannelConfigMultiplicator, FirstOfAtLeastTwoCharactersDecides) {
    const struct {
        const char* why;
        const char* unit;
        double expected;
    } rows[] = {
        {"empty", "", 1.0},
        {"one letter k", "k", 1.0},
        {"one letter K", "K", 1.0},
        {"one letter m", "m", 1.0},
        {"one letter M", "M", 1.0},
        {"V", "V", 1.0},
        {"A", "A", 1.0},
        {"kV", "kV", 1000.0},
        {"kilo in upper case", "KV", 1000.0},
        {"kA", "kA", 1000.0},
        {"Kv", "Kv", 1000.0},
        {"mA", "mA", 0.001},
        {"mV", "mV", 0.001},
        {"mvar", "mvar", 0.001},
        {"MV", "MV", 1000000.0},
        {"MW", "MW", 1000000.0},
        {"Mvar", "Mvar", 1000000.0},
        {"k and anything", "k ", 1000.0},
        {"m and a carriage return", "m\r", 0.001},
        {"a millimetre", "mm", 0.001},
        {"Hz", "Hz", 1.0},
        {"G is no known prefix", "GW", 1.0},
        {"u neither", "uA", 1.0},
        {"a leading blank", " kV", 1.0},
        {"the prefix is the first character only", "VkV", 1.0},
        {"Cyrillic small ka and capital ve", "\xD0\xBA\xD0\x92", 1.0},
    };
    AnalogChannelConfig config(0, false, 1999);
    for (const auto& row : rows) {
        EXPECT_EQ(config.multiplicator(row.unit), row.expected) << row.why;
        const std::string line = std::string("1,X,A,B,") + row.unit + ",1,0,0,0,0";
        EXPECT_EQ(AnalogChannelConfig(0, line, 1999).unitMultiplier, row.expected) << row.why;
    }
    EXPECT_EQ(config.unit, "V");
    EXPECT_EQ(config.unitMultiplier, 1.0);
}

TEST(AnalogChannelConfigGetRealValue, MultipliesAddsThenScales) {
    const struct {
        const char* why;
        double a;
        double b;
        double unitMultiplier;
        double raw;
        double expected;
    } rows[] = {
        {"all three", 0.5, 0.25, 1000.0, 3.0, 1750.0},
        {"zero gives the offset", 2.0, -1.5, 0.001, 0.0, -0.0015},
        {"rounded after each step: exactly it were 4300", 0.7, 0.1, 1000.0, 6.0, 4299.999999999999},
        {"rounded after each step: exactly it were 4000", 0.7, -0.2, 1000.0, 6.0, 3999.999999999999},
        {"negative", -2.0, 1.0, 1.0, 32767.0, -65533.0},
        {"infinite", 2.0, 1.0, 1.0, -kInfinity, -kInfinity},
    };
    for (const auto& row : rows) {
        AnalogChannelConfig config = filled();
        config.a = row.a;
        config.b = row.b;
        config.unitMultiplier = row.unitMultiplier;
        EXPECT_EQ(config.GetRealValue(row.raw), row.expected) << row.why;
    }
    EXPECT_TRUE(std::isnan(filled().GetRealValue(std::numeric_limits<double>::quiet_NaN())));
}

TEST(AnalogChannelConfigGetRealValue, NoOtherMemberTakesPart) {
    AnalogChannelConfig config(7, true, 2013);
    config.a = 2.0;
    config.b = 1.0;
    config.skew = 1000.0;
    config.min = 0.0;
    config.max = 1.0;
    config.primary = 110.0;
    config.secondary = 5.0;
    config.secondaryValues = false;
    config.unit = "kV";
    EXPECT_EQ(config.GetRealValue(100.0), 201.0);
}

TEST(AnalogChannelConfigTexts, NameAndDescription) {
    const struct {
        const char* why;
        int index;
        const char* line;
        int revisionYear;
        const char* name;
        const char* channelInfo;
    } rows[] = {
        {"secondary values", 0, "1,Ua,A,Bus 1,kV,0.01,0,0,-32767,32767,110,0.1,S", 1999, "Ua,A,Bus 1,kV",
         "1,Ua,A,Bus 1,kV,0.010000,0.000000,0.000000,-32767.000000,32767.000000,110.000000,0.100000,S"},
        {"primary values show the converted multiplier", 0, "1,Ua,A,Bus 1,kV,0.01,0,0,-32767,32767,110,0.1,P", 1999,
         "Ua,A,Bus 1,kV",
         "1,Ua,A,Bus 1,kV,0.000009,0.000000,0.000000,-32767.000000,32767.000000,110.000000,0.100000,P"},
        {"1991", 0, "1,Ua,A,Bus 1,kV,0.01,0,0,-32767,32767,110,0.1,P", 1991, "Ua,A,Bus 1,kV",
         "1,Ua,A,Bus 1,kV,0.010000,0.000000,0.000000,-32767.000000,32767.000000,1.000000,1.000000,S"},
        {"empty parts keep their commas; the number is the position", 2, "77,Ia,,,A,1,-0.5,0,0,1,2,1,s", 2013, "Ia,,,A",
         "3,Ia,,,A,1.000000,-0.500000,0.000000,0.000000,1.000000,2.000000,1.000000,S"},
        {"skew in seconds", 0, "1,U,A,B,V,1,0,100,0,0", 1999, "U,A,B,V",
         "1,U,A,B,V,1.000000,0.000000,0.000100,0.000000,0.000000,1.000000,1.000000,S"},
        {"six digits and no exponent, blanks stay", 9, "1, U , A , B , V ,1e10,1e-9,0,-1e5,123456789.5", 1999,
         " U , A , B , V ",
         "10, U , A , B , V ,10000000000.000000,0.000000,0.000000,-100000.000000,123456789.500000,"
         "1.000000,1.000000,S"},
        {"infinite", 0, "1,U,A,B,V,inf,-inf,0,0,0", 1999, "U,A,B,V",
         "1,U,A,B,V,inf,-inf,0.000000,0.000000,0.000000,1.000000,1.000000,S"},
    };
    for (const auto& row : rows) {
        const AnalogChannelConfig config(row.index, row.line, row.revisionYear);
        EXPECT_EQ(config.name(), row.name) << row.why;
        EXPECT_EQ(config.channelInfo(), row.channelInfo) << row.why;
    }
}

TEST(AnalogChannelConfigTexts, RecordThatWasNeverParsed) {
    const AnalogChannelConfig config(0, false, 1999);
    EXPECT_EQ(config.name(), ",,,V");
    EXPECT_EQ(config.channelInfo(), "1,,,,V,1.000000,0.000000,0.000000,-32767.000000,32767.000000,"
                                    "1.000000,1.000000,S");
}

TEST(AnalogChannelConfigTexts, SideFollowsTheMember) {
    AnalogChannelConfig config(0, true, 1999);
    config.secondaryValues = false;
    EXPECT_EQ(config.channelInfo(), "1,,,,V,1.000000,0.000000,0.000000,-99999.000000,99999.000000,"
                                    "1.000000,1.000000,P");
}

TEST(AnalogChannelConfigCopy, IsAWholeRecord) {
    const AnalogChannelConfig original = filled();
    AnalogChannelConfig copy(0, false, 1999);
    copy = original;
    EXPECT_EQ(copy.index, 9);
    EXPECT_EQ(copy.channelId, "old id");
    EXPECT_EQ(copy.channelInfo(), original.channelInfo());
    EXPECT_EQ(copy.unitMultiplier, 101.0);
}
