// Which channels stand in one set of axes, and which conductor each is of.

#include "picture/TestSource.h"

#include <OrvComtradePicture/families.h>
#include <gtest/gtest.h>

#include <numeric>
#include <string>
#include <vector>

namespace {

using OrvComtradePicture::familiesOf;
using OrvComtradePicture::Family;
using OrvComtradePicture::Member;
using OrvComtradePicture::Quantity;
using OrvComtradePicture::quantityOf;
using orvtest::TestSource;

struct Line {
    const char* id;
    const char* phase = "";
    const char* component = "";
    const char* unit = "A";
};

/// "0A 1B 2C" of a family of phases, "3 4" of another one, "|" between two.
std::string groupsOf(const std::vector<Line>& lines) {
    TestSource test;
    for (const Line& line : lines) {
        test.analog(line.id, line.unit, {}, line.phase, line.component);
    }
    std::vector<std::size_t> all(lines.size());
    std::iota(all.begin(), all.end(), std::size_t{0});
    std::string text;
    for (const Family& family : familiesOf(test.source(), all)) {
        text += text.empty() ? "" : " |";
        for (const Member& member : family.members) {
            const char phase = "-ABCN"[static_cast<std::size_t>(member.phase)];
            text += (text.empty() ? "" : " ") + std::to_string(member.channel);
            text += family.hasPhases ? std::string(1, phase) : "";
        }
    }
    return text;
}

TEST(FamiliesOf, PhasesAreFoundInNamesOfAllKinds) {
    const struct {
        const char* why;
        std::vector<Line> lines;
        const char* groups;
    } rows[] = {
        {"letters", {{"IA"}, {"IB"}, {"IC"}, {"IN"}}, "0A 1B 2C 3N"},
        {"small letters", {{"Ia"}, {"Ib"}, {"Ic"}, {"3I0"}}, "0A 1B 2C 3N"},
        {"in another order", {{"IC"}, {"IA"}, {"IB"}}, "0C 1A 2B"},
        {"two phases", {{"IA"}, {"IC"}}, "0A 1C"},
        {"figures", {{"I1"}, {"I2"}, {"I3"}, {"I4"}}, "0A 1B 2C 3N"},
        {"L and figures", {{"X_IL1"}, {"X_IL2"}, {"X_IL3"}, {"X_IN"}}, "0A 1B 2C 3N"},
        {"R, S, T", {{"HV IR"}, {"HV IS"}, {"HV IT"}, {"HV IN"}}, "0A 1B 2C 3N"},
        {"in the middle", {{"IAW"}, {"IBW"}, {"ICW"}, {"IAX"}, {"IBX"}, {"ICX"}}, "0A 1B 2C | 3A 4B 5C"},
        {"letters before a number", {{"IA1"}, {"IB1"}, {"IC1"}, {"IA2"}, {"IB2"}, {"IC2"}}, "0A 1B 2C | 3A 4B 5C"},
        {"twice in a name", {{"HCSA  -HVS1A"}, {"HCSB  -HVS1B"}, {"HCSC  -HVS1C"}}, "0A 1B 2C"},
        {"between conductors", {{"UAB"}, {"UBC"}, {"UCA"}}, "0A 1B 2C"},
        {"between conductors, in figures", {{"U21"}, {"U32"}}, "0A 1B"},
        {"to neutral", {{"Van"}, {"Vbn"}, {"Vcn"}}, "0A 1B 2C"},
        {"counted channels", {{"1-Ia"}, {"2-Ib"}, {"3-Ic"}, {"4-3I0"}}, "0A 1B 2C 3N"},
        {"counted otherwise", {{"F1-IA"}, {"F2-IB"}, {"F3-IC"}, {"F4-IG"}}, "0A 1B 2C 3N"},
        {"Cyrillic letters", {{"I\xD0\x90"}, {"I\xD0\x92"}, {"I\xD0\xA1"}}, "0A 1B 2C"},
        {"Cyrillic and Latin mixed", {{"Ia"}, {"I\xD0\xB2"}, {"Ic"}, {"3Io"}}, "0A 1B 2C 3N"},
        {"Chinese",
         {{"\xE6\xAF\x8D_Ua"}, {"\xE6\xAF\x8D_Ub"}, {"\xE6\xAF\x8D_Uc"}, {"\xE6\xAF\x8D_3U0"}},
         "0A 1B 2C 3N"},
        {"letters of other words", {{"LINE_A_IA"}, {"LINE_A_IB"}, {"LINE_A_IC"}}, "0A 1B 2C"},
        {"a neutral of another name", {{"Current A"}, {"Current B"}, {"Current C"}, {"Rest 3I0", "N"}}, "0A 1B 2C 3N"},
        {"a second neutral of another name",
         {{"Current A"}, {"Current B"}, {"Current C"}, {"Rest 3I0", "N"}, {"Sum", "N"}},
         "0A 1B 2C 3N | 4"},
        {"a neutral of another name in the component of the first phase",
         {{"Current A", "", "7"}, {"Current B", "", "8"}, {"Current C", "", "9"}, {"Rest 3I0", "N", "7"}},
         "0A 1B 2C 3N"},
        {"names that say nothing", {{"Ch x", "A"}, {"Ch y", "B"}, {"Ch z", "C"}}, "0A 1B 2C"},
        {"the line's phase decides", {{"IA", "A"}, {"IB", "A"}, {"IC", "A"}}, "0 | 1 | 2"},
        {"phases that are numbers", {{"U21", "0"}, {"U32", "1"}, {"I", "7"}}, "0A 1B | 2"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(groupsOf(row.lines), row.groups) << row.why;
    }
}

TEST(FamiliesOf, FeedersAreApart) {
    const struct {
        const char* why;
        std::vector<Line> lines;
        const char* groups;
    } rows[] = {
        {"by component", {{"IA", "", "F1"}, {"IB", "", "F1"}, {"IA", "", "F2"}, {"IB", "", "F2"}}, "0A 1B | 2A 3B"},
        {"by component, phase by phase",
         {{"IA", "", "F1"}, {"IA", "", "F2"}, {"IB", "", "F1"}, {"IB", "", "F2"}},
         "0A 2B | 1A 3B"},
        {"the same names twice", {{"IA"}, {"IB"}, {"IA"}, {"IB"}}, "0A 1B | 2A 3B"},
        {"a component to each channel", {{"IA", "", "7"}, {"IB", "", "8"}, {"IC", "", "9"}}, "0A 1B 2C"},
        {"units", {{"A"}, {"B"}, {"A", "", "", "V"}, {"B", "", "", "V"}}, "0A 1B | 2A 3B"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(groupsOf(row.lines), row.groups) << row.why;
    }
}

TEST(FamiliesOf, CountedInputsAreNoPhases) {
    EXPECT_EQ(groupsOf({{"IN101"}, {"IN102"}, {"IN103"}, {"IN104"}, {"IN105"}}), "0 1 2 3 | 4");
    EXPECT_EQ(groupsOf({{"VDC1"}, {"VDC2"}}), "0 1");
    EXPECT_EQ(groupsOf({{""}, {""}, {"x"}}), "0 1 2");
}

TEST(FamiliesOf, LongNamesCostNoMoreThanShortOnes) {
    TestSource test;
    for (int i = 0; i < 30; ++i) {
        test.analog(std::string(100000, 'A'), "A", {});
    }
    EXPECT_EQ(familiesOf(test.source(), {0, 1, 2, 3, 4}).size(), 2U);
}

TEST(QuantityOf, UnitsOfVoltageAndCurrentAreKnown) {
    for (const char* const unit : {"V", "v", "Vrms", "V(peak)", "volt", "\xD0\x92"}) {
        EXPECT_EQ(quantityOf(unit), Quantity::Voltage) << unit;
    }
    for (const char* const unit : {"A", "Arms", "Amps", "ampere", "\xD0\x90"}) {
        EXPECT_EQ(quantityOf(unit), Quantity::Current) << unit;
    }
    for (const char* const unit : {"", "VA", "VAr", "Var", "Hz", "none", "deg", "Ah"}) {
        EXPECT_EQ(quantityOf(unit), Quantity::Other) << unit;
    }
}

} // namespace
