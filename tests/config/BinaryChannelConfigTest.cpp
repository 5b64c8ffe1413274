#include "BinaryChannelConfig.h"

#include "support/WhatOf.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

using OrvComtradeLib::BinaryChannelConfig;
using orvtest::whatOf;

namespace {

BinaryChannelConfig filled() {
    BinaryChannelConfig config;
    config.index = 9;
    config.channelId = "old id";
    config.phase = "old phase";
    config.circuitComponent = "old component";
    config.normalState = 7;
    return config;
}

} // namespace

TEST(BinaryChannelConfigConstruction, GivesDefaults) {
    const BinaryChannelConfig config;
    EXPECT_EQ(config.index, 0);
    EXPECT_EQ(config.channelId, "");
    EXPECT_EQ(config.phase, "");
    EXPECT_EQ(config.circuitComponent, "");
    EXPECT_EQ(config.normalState, 0);
}

TEST(BinaryChannelConfigLine, RevisionDecidesTheLayout) {
    const struct {
        const char* why;
        const char* line;
        int revisionYear;
        const char* channelId;
        const char* phase;
        const char* circuitComponent;
        int normalState;
    } rows[] = {
        // 1999 and later
        {"whole line", "5,Trip,A,CB1,1", 1999, "Trip", "A", "CB1", 1},
        {"2013 as 1999", "5,Trip,A,CB1,1", 2013, "Trip", "A", "CB1", 1},
        {"empty phase and component", "3,Trip,,,1", 2013, "Trip", "", "", 1},
        {"two fields", "3,Trip", 1999, "Trip", "", "", 0},
        {"three fields: the third is the phase, whatever it holds", "3,Trip,1", 1999, "Trip", "1", "", 0},
        {"four fields", "3,Trip,A,CB1", 1999, "Trip", "A", "CB1", 0},
        {"a comma at the end gives no normal state", "3,Trip,A,CB1,", 1999, "Trip", "A", "CB1", 0},
        {"surplus fields are not read", "3,Trip,A,CB1,1,x,y", 1999, "Trip", "A", "CB1", 1},
        {"nothing is trimmed", "3, Trip , A,CB1 , 1", 1999, " Trip ", " A", "CB1 ", 1},
        {"a carriage return behind the normal state does no harm", "3,Trip,A,CB1,1\r", 1999, "Trip", "A", "CB1", 1},
        {"a carriage return stays in the identifier of a two-field line", "3,Trip\r", 1999, "Trip\r", "", "", 0},
        {"and in the phase of a three-field line", "3,Trip,A\r", 1999, "Trip", "A\r", "", 0},
        {"and in the component of a four-field line", "3,Trip,A,CB1\r", 1999, "Trip", "A", "CB1\r", 0},
        {"the normal state is any integer", "3,Trip,A,CB1,-12", 1999, "Trip", "A", "CB1", -12},
        {"largest normal state", "3,T,,,2147483647", 1999, "T", "", "", 2147483647},
        {"what follows the digits is ignored", "3,Trip,A,CB1,1x", 1999, "Trip", "A", "CB1", 1},
        {"base 10", "3,Trip,A,CB1,010", 1999, "Trip", "A", "CB1", 10},
        {"an empty identifier", "3,,A,CB1,1", 1999, "", "A", "CB1", 1},
        {"a channel number that is none", "abc,Trip,A,CB1,1", 1999, "Trip", "A", "CB1", 1},
        {"Cyrillic small letters a, be", "3,\xD0\xB0\xD0\xB1,A,CB1,1", 1999, "\xD0\xB0\xD0\xB1", "A", "CB1", 1},
        // Before 1999
        {"1991", "3,Trip,1", 1991, "Trip", "", "", 1},
        {"1998 is before 1999", "3,Trip,1", 1998, "Trip", "", "", 1},
        {"year 0", "3,Trip,1", 0, "Trip", "", "", 1},
        {"a negative year", "3,Trip,1", -1, "Trip", "", "", 1},
        {"carriage return", "3,Trip,1\r", 1991, "Trip", "", "", 1},
        {"surplus fields are not read", "3,Trip,1,A,CB1", 1991, "Trip", "", "", 1},
    };
    for (const auto& row : rows) {
        const BinaryChannelConfig config(6, row.line, row.revisionYear);
        EXPECT_EQ(config.index, 6) << row.why;
        EXPECT_EQ(config.channelId, row.channelId) << row.why;
        EXPECT_EQ(config.phase, row.phase) << row.why;
        EXPECT_EQ(config.circuitComponent, row.circuitComponent) << row.why;
        EXPECT_EQ(config.normalState, row.normalState) << row.why;
    }
}

TEST(BinaryChannelConfigLine, PositionIsTheCallersWhateverTheNumberInTheLine) {
    EXPECT_EQ(BinaryChannelConfig(4, "99,Trip,A,CB1,1", 1999).index, 4);
    EXPECT_EQ(BinaryChannelConfig(0, ",Trip,A,CB1,1", 1999).index, 0);
}

TEST(BinaryChannelConfigLine, TooFewFieldsAreOutOfRange) {
    const struct {
        const char* why;
        const char* line;
        int revisionYear;
    } rows[] = {
        {"no field", "", 1999},
        {"one field", "3", 1999},
        {"a comma at the end makes no second field", "3,", 1999},
        {"1991: no field", "", 1991},
        {"1991: one field", "3", 1991},
        {"1991: two fields", "3,Trip", 1991},
        {"1991: a comma at the end makes no third field", "3,Trip,", 1991},
        {"1998: two fields", "3,Trip", 1998},
    };
    for (const auto& row : rows) {
        try {
            const BinaryChannelConfig config(0, row.line, row.revisionYear);
            ADD_FAILURE() << row.why;
        } catch (const std::out_of_range& thrown) {
            EXPECT_STRNE(thrown.what(), "stoi") << row.why << ": no number was converted";
        }
    }
}

TEST(BinaryChannelConfigLine, NormalStateThatIsNoNumberIsInvalidArgumentStoi) {
    for (const char* line : {"3,Trip,A,CB1,x", "3,Trip,A,CB1,,", "3,Trip,A,CB1, ", "3,Trip,A,CB1,\r", "3,Trip,A,CB1,-"})
        EXPECT_EQ(whatOf<std::invalid_argument>([&] { BinaryChannelConfig(0, line, 1999); }), "stoi") << line;
    for (const char* line : {"3,Trip,x", "3,Trip,,", "3,Trip,\r", "3,Trip,A,CB1,1"})
        EXPECT_EQ(whatOf<std::invalid_argument>([&] { BinaryChannelConfig(0, line, 1991); }), "stoi") << line;
}

TEST(BinaryChannelConfigLine, NormalStateBeyond32BitsIsOutOfRangeStoi) {
    for (const char* line :
         {"3,T,,,99999999999", "3,T,,,2147483648", "3,T,,,-2147483649", "3,T,,,99999999999999999999"})
        EXPECT_EQ(whatOf<std::out_of_range>([&] { BinaryChannelConfig(0, line, 1999); }), "stoi") << line;
    EXPECT_EQ(whatOf<std::out_of_range>([] { BinaryChannelConfig(0, "3,T,99999999999", 1991); }), "stoi");
}

TEST(BinaryChannelConfigLoad, RewritesEveryMemberOfAnExistingRecord) {
    BinaryChannelConfig config = filled();
    config.load(2, {"3", "Trip"}, 1999);
    EXPECT_EQ(config.index, 2);
    EXPECT_EQ(config.channelId, "Trip");
    EXPECT_EQ(config.phase, "");
    EXPECT_EQ(config.circuitComponent, "");
    EXPECT_EQ(config.normalState, 0);

    config = filled();
    config.load(3, {"3", "Trip", "1"}, 1991);
    EXPECT_EQ(config.index, 3);
    EXPECT_EQ(config.channelId, "Trip");
    EXPECT_EQ(config.phase, "");
    EXPECT_EQ(config.circuitComponent, "");
    EXPECT_EQ(config.normalState, 1);
}

TEST(BinaryChannelConfigLoad, FailedNormalStateLeavesWhatWasAssignedBeforeIt) {
    BinaryChannelConfig config = filled();
    EXPECT_THROW(config.load(2, {"3", "Trip", "A", "CB1", "x"}, 1999), std::invalid_argument);
    EXPECT_EQ(config.index, 2);
    EXPECT_EQ(config.channelId, "Trip");
    EXPECT_EQ(config.phase, "A");
    EXPECT_EQ(config.circuitComponent, "CB1");
    EXPECT_EQ(config.normalState, 7);
}

TEST(BinaryChannelConfigLoad, FailedNormalStateOfAnOldLineComesBeforePhaseAndComponent) {
    BinaryChannelConfig config = filled();
    EXPECT_THROW(config.load(2, {"3", "Trip", "x"}, 1991), std::invalid_argument);
    EXPECT_EQ(config.index, 2);
    EXPECT_EQ(config.channelId, "Trip");
    EXPECT_EQ(config.phase, "old phase");
    EXPECT_EQ(config.circuitComponent, "old component");
    EXPECT_EQ(config.normalState, 7);
}

TEST(BinaryChannelConfigLoadExtValues, LeavesPositionAndIdentifier) {
    BinaryChannelConfig config = filled();
    config.loadExtValues({"3", "Trip", "A", "CB1", "1"}, 1999);
    EXPECT_EQ(config.index, 9);
    EXPECT_EQ(config.channelId, "old id");
    EXPECT_EQ(config.phase, "A");
    EXPECT_EQ(config.circuitComponent, "CB1");
    EXPECT_EQ(config.normalState, 1);
}

TEST(BinaryChannelConfigLoadExtValues, NoFieldsAreDefaultsSince1999AndOutOfRangeBefore) {
    BinaryChannelConfig config = filled();
    config.loadExtValues({}, 1999);
    EXPECT_EQ(config.phase, "");
    EXPECT_EQ(config.circuitComponent, "");
    EXPECT_EQ(config.normalState, 0);
    EXPECT_THROW(config.loadExtValues({}, 1991), std::out_of_range);
    EXPECT_THROW(config.loadExtValues({"3", "Trip"}, 1991), std::out_of_range);
}

TEST(BinaryChannelConfigTexts, NameAndDescription) {
    const struct {
        const char* why;
        int index;
        const char* line;
        int revisionYear;
        const char* name;
        const char* channelInfo;
    } rows[] = {
        {"the normal state is in no text", 4, "9,Trip,A,CB1,1", 1999, "Trip,CB1", "5,Trip,A,CB1,4"},
        {"an old line", 0, "1,Trip,1", 1991, "Trip,", "1,Trip,,,0"},
        {"blanks stay", 1, "1, Trip , A , CB 1 ,0", 2013, " Trip , CB 1 ", "2, Trip , A , CB 1 ,1"},
        {"negative position", -3, "1,Trip,A,CB1,1", 1999, "Trip,CB1", "-2,Trip,A,CB1,-3"},
    };
    for (const auto& row : rows) {
        const BinaryChannelConfig config(row.index, row.line, row.revisionYear);
        EXPECT_EQ(config.name(), row.name) << row.why;
        EXPECT_EQ(config.channelInfo(), row.channelInfo) << row.why;
    }
}
