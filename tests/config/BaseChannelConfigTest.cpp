#include "BaseChannelConfig.h"

#include "AnalogChannelConfig.h"
#include "BinaryChannelConfig.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

using OrvComtradeLib::AnalogChannelConfig;
using OrvComtradeLib::BaseChannelConfig;
using OrvComtradeLib::BinaryChannelConfig;

TEST(BaseChannelConfigConstruction, GivesDefaults) {
    const BaseChannelConfig config;
    EXPECT_EQ(config.index, 0);
    EXPECT_EQ(config.channelId, "");
    EXPECT_EQ(config.phase, "");
    EXPECT_EQ(config.circuitComponent, "");
}

TEST(BaseChannelConfigLoad, TakesPositionAndIdentifierAlone) {
    BaseChannelConfig config;
    config.phase = "B";
    config.circuitComponent = "CB1";
    config.load(4, {"17", " Trip ", "A", "Bus"}, 1999);
    EXPECT_EQ(config.index, 4);
    EXPECT_EQ(config.channelId, " Trip ");
    EXPECT_EQ(config.phase, "B");
    EXPECT_EQ(config.circuitComponent, "CB1");
}

TEST(BaseChannelConfigLoad, RevisionYearMakesNoDifference) {
    for (const int year : {0, 1991, 1999, 2013}) {
        BaseChannelConfig config;
        config.load(-3, {"x", "Trip"}, year);
        EXPECT_EQ(config.index, -3) << year;
        EXPECT_EQ(config.channelId, "Trip") << year;
    }
}

TEST(BaseChannelConfigLoad, FewerThanTwoFieldsAreOutOfRange) {
    BaseChannelConfig config;
    EXPECT_THROW(config.load(0, {}, 1999), std::out_of_range);
    EXPECT_THROW(config.load(0, {"1"}, 1999), std::out_of_range);
}

TEST(BaseChannelConfigName, IsIdentifierAndComponentWithoutPhase) {
    const struct {
        const char* why;
        const char* channelId;
        const char* phase;
        const char* circuitComponent;
        const char* expected;
    } rows[] = {
        {"both", "Trip", "A", "CB1", "Trip,CB1"},
        {"an empty component keeps its comma", "Trip", "A", "", "Trip,"},
        {"an empty identifier keeps its comma", "", "A", "CB1", ",CB1"},
        {"both empty", "", "A", "", ","},
        {"blanks stay", " Trip ", "", " CB 1", " Trip , CB 1"},
        {"commas and quotes set by hand are not escaped", "a,\"b\"", "", "c", "a,\"b\",c"},
    };
    for (const auto& row : rows) {
        BaseChannelConfig config;
        config.channelId = row.channelId;
        config.phase = row.phase;
        config.circuitComponent = row.circuitComponent;
        EXPECT_EQ(config.name(), row.expected) << row.why;
    }
}

TEST(BaseChannelConfigChannelInfo, IsPositionFromOneIdentifierPhaseAndComponent) {
    const struct {
        const char* why;
        int index;
        const char* channelId;
        const char* phase;
        const char* circuitComponent;
        const char* expected;
    } rows[] = {
        {"every part", 4, "Trip", "A", "CB1", "5,Trip,A,CB1"},
        {"empty parts keep their commas", 0, "", "", "", "1,,,"},
        {"an empty phase", 1, "Trip", "", "CB1", "2,Trip,,CB1"},
        {"no leading zeros or blanks", 999, "x", "y", "z", "1000,x,y,z"},
        {"negative", -5, "x", "y", "z", "-4,x,y,z"},
        {"largest position but one", 2147483646, "x", "y", "z", "2147483647,x,y,z"},
    };
    for (const auto& row : rows) {
        BaseChannelConfig config;
        config.index = row.index;
        config.channelId = row.channelId;
        config.phase = row.phase;
        config.circuitComponent = row.circuitComponent;
        EXPECT_EQ(config.channelInfo(), row.expected) << row.why;
    }
}

TEST(BaseChannelConfigName, TextsFollowTheMembersAtEveryCall) {
    BaseChannelConfig config;
    config.channelId = "a";
    EXPECT_EQ(config.name(), "a,");
    config.channelId = "b";
    EXPECT_EQ(config.name(), "b,");
    EXPECT_EQ(config.channelInfo(), "1,b,,");
    config.index = 7;
    EXPECT_EQ(config.channelInfo(), "8,b,,");
}

TEST(BaseChannelConfigVirtual, HolderOfAnyRecordGetsTheTextsOfItsRealKind) {
    std::vector<std::unique_ptr<BaseChannelConfig>> records;
    records.push_back(std::make_unique<BaseChannelConfig>());
    records.push_back(std::make_unique<AnalogChannelConfig>(0, false, 1999));
    records.push_back(std::make_unique<BinaryChannelConfig>());
    EXPECT_EQ(records[0]->name(), ",");
    EXPECT_EQ(records[0]->channelInfo(), "1,,,");
    EXPECT_EQ(records[1]->name(), ",,,V");
    EXPECT_EQ(records[1]->channelInfo(), "1,,,,V,1.000000,0.000000,0.000000,-32767.000000,32767.000000,"
                                         "1.000000,1.000000,S");
    EXPECT_EQ(records[2]->name(), ",");
    EXPECT_EQ(records[2]->channelInfo(), "1,,,,0");
}

TEST(BaseChannelConfigVirtual, LoadReachesTheRealKind) {
    AnalogChannelConfig analog(0, false, 1999);
    BinaryChannelConfig binary;
    BaseChannelConfig& asAnalog = analog;
    BaseChannelConfig& asBinary = binary;
    asAnalog.load(1, {"1", "Ia", "A", "Line", "kA", "2", "3", "0", "-10", "10"}, 1999);
    asBinary.load(2, {"1", "Trip", "B", "CB1", "1"}, 1999);
    EXPECT_EQ(analog.unit, "kA");
    EXPECT_EQ(analog.a, 2.0);
    EXPECT_EQ(binary.phase, "B");
    EXPECT_EQ(binary.normalState, 1);
}
