// Where things are, and what stands at axes.

#include "axes.h"

#include "layout.h"
#include "numbers.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using namespace OrvComtradePicture;

Figure figureWith(std::size_t lanes, std::size_t strips) {
    Figure figure;
    figure.view = {0.0, 1.0};
    for (std::size_t i = 0; i < lanes; ++i) {
        Lane lane;
        lane.values = {-1.0, 1.0};
        lane.traces.resize(3);
        figure.lanes.push_back(lane);
    }
    figure.strips.resize(strips);
    return figure;
}

TEST(LayoutOf, LanesStripsAxisAndNotesStandBelowOneAnother) {
    Figure figure = figureWith(2, 2);
    figure.notes = {"A note."};
    const Layout layout = layoutOf(figure, {});
    EXPECT_EQ(layout.left, 72.0);
    EXPECT_EQ(layout.right, 874.0);
    EXPECT_EQ(layout.lanes, (std::vector<Range>{{72.0, 200.0}, {214.0, 342.0}}));
    EXPECT_EQ(layout.strips, (std::vector<Range>{{352.0, 368.0}, {368.0, 384.0}}));
    EXPECT_EQ(layout.bottom, 384.0);
    EXPECT_EQ(layout.height, 451.0);
}

TEST(LayoutOf, NamesTakeTheRoomThatTheyNeedUpToALimit) {
    Figure figure = figureWith(1, 1);
    figure.strips[0].name = std::string(30, 'x');
    EXPECT_EQ(layoutOf(figure, {}).right, 766.0);
    figure.strips[0].name = std::string(300, 'x');
    EXPECT_EQ(layoutOf(figure, {}).right, 724.0);
    EXPECT_EQ(layoutOf(figure, {}).nameCells, 36U);
    EXPECT_EQ(layoutOf(figure, {400.0, 0.0, Theme::Light}).right, 264.0);
}

TEST(LayoutOf, LanesShareTheHeightThatIsGiven) {
    const Figure figure = figureWith(2, 0);
    const Layout layout = layoutOf(figure, {1000.0, 530.0, Theme::Light});
    EXPECT_EQ(layout.lanes, (std::vector<Range>{{72.0, 272.0}, {286.0, 486.0}}));
    EXPECT_EQ(layout.height, 530.0);
    EXPECT_EQ(layoutOf(figure, {1000.0, 10.0, Theme::Light}).lanes,
              (std::vector<Range>{{72.0, 120.0}, {134.0, 182.0}}));
}

std::string textOf(const Axis& axis) {
    std::string text;
    for (const Mark& mark : axis.marks) {
        text += mark.label + " ";
    }
    return text + axis.caption;
}

TEST(ValueAxis, NumbersAreRoundAndUnitsHavePrefixes) {
    const struct {
        const char* why;
        Range values;
        const char* unit;
        const char* axis;
    } rows[] = {
        {"a wave", {-106.0, 106.0}, "V", "-100 -50 0 50 100 V"},
        {"kilo", {-106000.0, 106000.0}, "V", "-100 -50 0 50 100 kV"},
        {"milli", {0.0, 0.0042}, "A", "0 1 2 3 4 mA"},
        {"decimals", {0.0, 1.1}, "A", "0.0 0.5 1.0 A"},
        {"Cyrillic", {0.0, 42000.0}, "\xD0\x92", "0 10 20 30 40 \xD0\xBA\xD0\x92"},
        {"a unit without prefixes", {0.0, 42000.0}, "rpm", "0 10000 20000 30000 40000 rpm"},
        {"no unit", {-2.0, 2.0}, "", "-2 -1 0 1 2 "},
        {"far from zero", {49.98, 50.02}, "Hz", "49.98 49.99 50.00 50.01 50.02 Hz"},
        {"great", {0.0, 4e12}, "rpm", "0 1e+12 2e+12 3e+12 4e+12 rpm"},
        {"small", {0.0, 4e-12}, "rpm", "0 1e-12 2e-12 3e-12 4e-12 rpm"},
    };
    for (const auto& row : rows) {
        Lane lane;
        lane.values = row.values;
        lane.unit = row.unit;
        EXPECT_EQ(textOf(valueAxis(lane, 5)), row.axis) << row.why;
    }
    Lane lane;
    lane.values = {0.0, 3.0};
    lane.unit = "A";
    lane.side = OrvComtradeIntake::Side::Primary;
    EXPECT_EQ(valueAxis(lane, 5).caption, "A primary");
}

TEST(TimeAxis, UnitFollowsTheLengthAndZeroTheBase) {
    Figure figure = figureWith(1, 0);
    figure.view = {0.02, 0.31};
    EXPECT_EQ(textOf(timeAxis(figure, 4)), "100 200 300 time, ms");
    figure.view = {0.0, 0.0011};
    EXPECT_EQ(textOf(timeAxis(figure, 4)), "0 500 1000 time, \xC2\xB5s");
    figure.view = {2.0, 12.0};
    EXPECT_EQ(textOf(timeAxis(figure, 5)), "2 4 6 8 10 12 time, s");
    figure.base = TimeBase::Trigger;
    figure.zero = 4.0;
    figure.view = {3.9, 4.3};
    EXPECT_EQ(textOf(timeAxis(figure, 4)), "-100 0 100 200 300 time from trigger, ms");
    figure.base = TimeBase::Clock;
    figure.start = OrvComtradeIntake::Instant{1600041599900000000}; // 2020-09-13T23:59:59.9
    figure.view = {0.0, 0.3};
    EXPECT_EQ(textOf(timeAxis(figure, 6)), "23:59:59.9 00:00:00.0 00:00:00.1 00:00:00.2 time, 2020-09-13");
}

TEST(Fixed, ZeroHasNoSign) {
    EXPECT_EQ(fixed(-0.0001, 2), "0.00");
    EXPECT_EQ(fixed(-0.5, 0), "0");
    EXPECT_EQ(fixed(-1.25, 1), "-1.2");
    EXPECT_EQ(fixed(1e300, 0).size(), 301U);
}

} // namespace
