// Whole pictures of odd recordings: a picture that works, or a clear sentence.

#include "picture/TestSource.h"
#include "picture/wellFormed.h"

#include <OrvComtradePicture/Figure.h>
#include <OrvComtradePicture/characters.h>
#include <OrvComtradePicture/svg.h>
#include <OrvComtradePicture/text.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace {

using OrvComtradePicture::cellCount;
using OrvComtradePicture::Figure;
using OrvComtradePicture::figureOf;
using OrvComtradePicture::Lane;
using OrvComtradePicture::NothingToDraw;
using OrvComtradePicture::Range;
using OrvComtradePicture::shortened;
using OrvComtradePicture::Strip;
using OrvComtradePicture::SvgStyle;
using OrvComtradePicture::TextStyle;
using OrvComtradePicture::Theme;
using OrvComtradePicture::TimeBase;
using OrvComtradePicture::Wanted;
using orvtest::faultIn;
using orvtest::TestSource;
using orvtest::wave;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

std::string svgOf(const Figure& figure, const SvgStyle& style = {}) {
    std::string svg;
    writeSvg(figure, style, [&svg](std::string_view piece) { svg += piece; });
    return svg;
}

std::string textOf(const Figure& figure, const TextStyle& style = {}) {
    std::string text;
    writeText(figure, style, [&text](std::string_view piece) { text += piece; });
    return text;
}

/// Draws it in every way. Gives the SVG.
std::string drawn(const TestSource& test, const Wanted& wanted = {}) {
    const Figure figure = figureOf(test.source(), wanted);
    for (const Theme theme : {Theme::Light, Theme::Dark, Theme::Print}) {
        for (const double width : {1.0, 333.3, 1000.0}) {
            const std::string svg = svgOf(figure, {width, 0.0, theme});
            EXPECT_EQ(faultIn(svg), "") << svg.substr(0, 2000);
            EXPECT_EQ(svg.find("nan"), std::string::npos);
            EXPECT_EQ(svg.find("inf\""), std::string::npos);
        }
    }
    for (const std::size_t width : {std::size_t{1}, std::size_t{81}}) {
        std::istringstream lines(textOf(figure, {width, 20, false}));
        for (std::string line; std::getline(lines, line);) {
            EXPECT_LE(cellCount(line), std::max<std::size_t>(width, 40)) << line;
        }
    }
    return svgOf(figure);
}

TEST(Shortened, LeavesFourMarksOnALetter) {
    const std::string mark = "\xCC\x81";
    const std::string four = "e" + mark + mark + mark + mark;
    EXPECT_EQ(shortened(four + "a", 9), four + "a");
    EXPECT_EQ(shortened(four + mark + "a", 9), four + "\xE2\x80\xA6");
}

std::string refusalOf(const TestSource& test, const Wanted& wanted = {}) {
    try {
        figureOf(test.source(), wanted);
    } catch (const NothingToDraw& reason) {
        return reason.what();
    }
    return "";
}

/// The names of the curves of each lane, the bars, and the notes.
std::string contentsOf(const Figure& figure) {
    std::string text;
    for (const Lane& lane : figure.lanes) {
        for (const auto& trace : lane.traces) {
            text += trace.name + std::to_string(trace.colour) + " ";
        }
        text += "| ";
    }
    for (const Strip& strip : figure.strips) {
        text += strip.name + " ";
    }
    for (const std::string& note : figure.notes) {
        text += note;
    }
    return text;
}

TestSource fault() {
    TestSource test;
    test.analog("IA", "A", wave(1001, 1.0, 500, 10.0))
        .analog("IB", "A", wave(1001, 1.0, 500, 1.0))
        .analog("UA", "V", wave(1001, 100.0, 500, 20.0))
        .analog("UB", "V", wave(1001, 100.0, 500, 100.0))
        .analog("f", "Hz", std::vector<double>(1001, 50.0))
        .analog("Spare", "A", std::vector<double>(1001, 0.0))
        .status("Trip", {540, 541, 542, 543}, "Bay")
        .status("Never", {}, "Bay")
        .trigger(0.51);
    test.header.station = "Station";
    test.header.recorder = "Relay";
    return test;
}

TEST(FigureOf, ShowsTheDisturbanceWithVoltagesCurrentsAndWhatChanges) {
    const TestSource test = fault();
    const Figure figure = figureOf(test.source(), {});
    EXPECT_EQ(contentsOf(figure),
              "IA0 IB1 | UA0 UB1 | Trip, Bay Drawn: 0.42 to 0.664 s of 1 s; 4 of 6 analog channels.");
    EXPECT_NEAR(figure.view.from, 0.42, 1e-9);
    EXPECT_NEAR(figure.view.to, 0.664, 0.002);
    EXPECT_EQ(figure.trigger, 0.51);
    EXPECT_EQ(figure.title, "Station \xC2\xB7 Relay");
    EXPECT_EQ(figure.subtitle, "2020-09-13 12:26:40.0 \xC2\xB7 1000 Hz");
}

TEST(FigureOf, ShowsOfManyGroupsThoseThatTheDisturbanceMovedMost) {
    TestSource test;
    for (const std::string bay : {"a", "b", "c", "d", "e", "f", "g", "h"}) {
        const double after = bay == "c" || bay == "f" ? 1.1 : 10.0;
        test.analog("IA", "A", wave(1001, 1.0, 500, after), "", bay);
        test.analog("IB", "A", wave(1001, 1.0, 500, 1.0), "", bay);
    }
    const Figure figure = figureOf(test.source(), {});
    std::string titles;
    for (const Lane& lane : figure.lanes) {
        titles += lane.title + " ";
    }
    EXPECT_EQ(titles, "a b d e g h ");
}

TEST(FigureOf, WritesHighRatesWithAPrefix) {
    const std::pair<double, const char*> rows[] = {{9999.0, "9999 Hz"}, {10000.0, "10 kHz"}, {2500000.0, "2.5 MHz"}};
    for (const auto& [rate, expected] : rows) {
        TestSource test = fault();
        test.header.rates.front().rate = rate;
        EXPECT_EQ(figureOf(test.source(), {}).subtitle, std::string("2020-09-13 12:26:40.0 \xC2\xB7 ") + expected);
    }
}

TEST(FigureOf, ShowsWhatIsAskedFor) {
    const TestSource test = fault();
    Wanted wanted;
    wanted.analog = {5, 4};
    wanted.status = {1};
    wanted.start = 0.1;
    wanted.end = 0.2;
    const Figure figure = figureOf(test.source(), wanted);
    EXPECT_EQ(contentsOf(figure), "Spare4 | f4 | Never, Bay Drawn: 0.1 to 0.2 s of 1 s.");
    EXPECT_EQ(figure.view, (Range{0.1, 0.2}));
    EXPECT_FALSE(figure.trigger);
    wanted.analog = {6};
    EXPECT_THROW(figureOf(test.source(), wanted), std::out_of_range);
    wanted.analog = {0};
    wanted.status = {2};
    EXPECT_THROW(figureOf(test.source(), wanted), std::out_of_range);
}

TEST(FigureOf, SpikeOfOneSampleSurvivesAnyWidth) {
    std::vector<double> values(5000, 0.0);
    values[3333] = 1000.0;
    TestSource test;
    test.analog("IA", "A", values);
    for (const std::size_t columns : {1U, 2U, 37U, 1000U, 20000U}) {
        Wanted wanted;
        wanted.columns = columns;
        wanted.start = 0.0;
        const Figure figure = figureOf(test.source(), wanted);
        double highest = 0.0;
        for (const auto& point : figure.lanes.at(0).traces.at(0).points) {
            highest = std::max(highest, point.value);
        }
        EXPECT_EQ(highest, 1000.0) << columns;
        EXPECT_NEAR(figure.lanes[0].values.to, 1060.0, 1e-9) << columns;
    }
}

TEST(FigureOf, RecordingsWithoutAnythingToDrawHaveAReason) {
    TestSource nothing;
    EXPECT_EQ(refusalOf(nothing), "it has no samples");
    nothing.samples = 3;
    EXPECT_EQ(refusalOf(nothing), "it has no channels");
    nothing.status("Quiet", {});
    EXPECT_EQ(refusalOf(nothing), "no status channel changes, and there is no other to draw");
    Wanted wanted;
    wanted.start = 7.0;
    EXPECT_EQ(refusalOf(fault(), wanted), "no sample lies in this window; the recording runs from 0 s to 1 s");
}

TEST(FigureOf, OddValuesAreDrawnOrNamed) {
    const struct {
        const char* why;
        std::vector<double> values;
        const char* note;
    } rows[] = {
        {"one sample", {5.0}, ""},
        {"two equal ones", {5.0, 5.0}, ""},
        {"all missing", {kNan, kNan, kNan}, "Without values here: X."},
        {"infinite", {1.0, kInfinity, -kInfinity, 2.0}, "Infinite values are not drawn: X."},
        {"nothing but infinity", {kInfinity, kInfinity}, "Without values here: X.Infinite values are not drawn: X."},
        {"constant", {-7.5, -7.5, -7.5}, ""},
        {"zero", {0.0, 0.0, 0.0}, ""},
        {"the greatest", {1.7e308, -1.7e308, 1.7e308}, ""},
        {"the least", {5e-324, -5e-324, 0.0}, ""},
        {"hardly apart", {1e15, 1e15 + 0.125, 1e15}, ""},
        {"a missing value between others", {1.0, kNan, 2.0, kNan, 3.0}, ""},
    };
    for (const auto& row : rows) {
        TestSource test;
        test.analog("X", "A", row.values);
        const Figure figure = figureOf(test.source(), {});
        std::string notes;
        for (const std::string& note : figure.notes) {
            notes += note;
        }
        EXPECT_EQ(notes, row.note) << row.why;
        EXPECT_GT(figure.view.length(), 0.0) << row.why;
        EXPECT_TRUE(std::isfinite(figure.lanes.at(0).values.length())) << row.why;
        EXPECT_GT(figure.lanes[0].values.length(), 0.0) << row.why;
        drawn(test);
    }
}

TEST(FigureOf, OddTimesAreDrawn) {
    for (const std::vector<double>& times : {std::vector<double>{0.0, 0.0, 0.0},
                                             {5.0, 4.0, 3.0},
                                             {0.0, 1e9, 2e9},
                                             {0.0, 1e-9, 2e-9},
                                             {86400.0 * 365, 86400.0 * 365 + 1e-4, 86400.0 * 365 + 2e-4},
                                             {-1.0, 0.0, 1e300}}) {
        TestSource test;
        test.analog("IA", "A", {1.0, 2.0, 3.0}).status("Trip", {1}).trigger(0.5);
        test.times = times;
        for (const TimeBase base : {TimeBase::Start, TimeBase::Trigger, TimeBase::Clock}) {
            Wanted wanted;
            wanted.base = base;
            drawn(test, wanted);
        }
    }
}

TEST(FigureOf, TimesCountFromWhatTheRecordingHas) {
    TestSource test = fault();
    Wanted wanted;
    wanted.base = TimeBase::Trigger;
    EXPECT_NE(drawn(test, wanted).find(">time from trigger, ms<"), std::string::npos);
    wanted.base = TimeBase::Clock;
    const std::string clock = drawn(test, wanted);
    EXPECT_NE(clock.find(">12:26:40.45<"), std::string::npos);
    EXPECT_NE(clock.find(">time, 2020-09-13<"), std::string::npos);
    EXPECT_NE(clock.find(">trigger 12:26:40.510<"), std::string::npos);
    test.header.start.reset();
    EXPECT_NE(drawn(test, wanted).find("The recording has no date: times are from its first sample."),
              std::string::npos);
}

TEST(FigureOf, NamesAreData) {
    const std::string names[] = {
        "",
        "</text><script>alert(1)</script>",
        "\"&<>'",
        "]]>",
        "&#0;",
        std::string("\0\x01\x1B[31m\x7F", 8),
        "\xFF\xFE\xC0\x80",
        "\xEF\xBF\xBE\xEF\xBF\xBF",                                  // U+FFFE, U+FFFF
        "\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D \xD9\x85\xD8\xB1\xD8\xAD", // right to left
        "\xE2\x80\xAE"
        "evil",
        "\xE6\xAF\x8D\xE7\xBA\xBF",
        std::string(100000, 'x'),
        "IA",
        "IA",
    };
    TestSource test;
    test.header.station = "</title>\x1B";
    test.header.recorder = std::string(100000, '<');
    for (const std::string& name : names) {
        test.analog(name, name.substr(0, 40), {1.0, 2.0}, name, name).status(name, {1}, name);
    }
    Wanted wanted;
    wanted.name = "a&b\n.cfg";
    wanted.analog = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13};
    const std::string svg = drawn(test, wanted);
    EXPECT_EQ(svg.find("<script"), std::string::npos);
    EXPECT_NE(svg.find("\\x1B[31m"), std::string::npos);
    EXPECT_LT(svg.size(), 60000U); // long names are cut
}

TEST(WriteSvg, EveryLaneHasItsAxesAndItsCurves) {
    const TestSource test = fault();
    const std::string svg = drawn(test);
    EXPECT_NE(svg.find("<title>Station \xC2\xB7 Relay</title>"), std::string::npos);
    EXPECT_NE(svg.find("<desc>2020-09-13 12:26:40.0 \xC2\xB7 1000 Hz. From 0.42 to 0.66"), std::string::npos);
    // IA is phase A: amber, as UA is; IB and UB are green.
    std::size_t amber = 0;
    for (std::size_t at = svg.find("#d08700"); at != std::string::npos; at = svg.find("#d08700", at + 1)) {
        ++amber;
    }
    EXPECT_EQ(amber, 4U); // two curves, two lines of legends
    EXPECT_NE(svg.find(">trigger 510 ms<"), std::string::npos);
}

TEST(WriteSvg, ManyChannelsMakeAHighPictureAndHeightIsKeptWhereItCanBe) {
    const TestSource test = fault();
    Wanted wanted;
    const Figure figure = figureOf(test.source(), wanted);
    EXPECT_NE(svgOf(figure, {1000.0, 700.0, Theme::Light}).find("height=\"700\""), std::string::npos);
    EXPECT_NE(svgOf(figure, {1000.0, 100.0, Theme::Light}).find("height=\"275\""), std::string::npos);
}

TEST(WriteSvg, NotesStandBelowEachOther) {
    const TestSource test = fault();
    Figure figure = figureOf(test.source(), {});
    figure.notes = {"First.", "Second."};
    const std::string svg = svgOf(figure);
    const auto heightOf = [&svg](const std::string& note) {
        const std::size_t begin = svg.rfind("<text", svg.find(">" + note));
        return std::stod(svg.substr(svg.find("y=\"", begin) + 3));
    };
    EXPECT_GT(heightOf("Second."), heightOf("First.") + 8.0);
}

TEST(WriteText, CurvesAreDotsAndStatesBars) {
    TestSource test;
    test.analog("IA", "A", {0.0, 1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0, 9.0}).status("Trip", {4, 5, 6});
    test.header.station = "S";
    const std::string off = "\xC2\xB7";
    const std::string on = "\xE2\x96\x84";
    std::string bar;
    for (int i = 0; i < 26; ++i) {
        bar += i < 11 || i > 20 ? off : on;
    }
    std::istringstream lines(textOf(figureOf(test.source(), {}), {40, 9, false}));
    std::string line;
    for (const std::string& expected : {
             std::string("S"),
             std::string("1000 Hz"),
             std::string(),
             std::string("         A"),
             "        \xE2\x94\x82             " // a line that climbs from the lower left to the upper right
             "\xE2\xA3\x80\xE2\xA3\x80\xE2\xA3\x80\xE2\xA1\xA0\xE2\xA0\xA4\xE2\xA0\xA4\xE2\xA0\xA4\xE2\xA0\x94"
             "\xE2\xA0\x92\xE2\xA0\x92\xE2\xA0\x92\xE2\xA0\x89\xE2\xA0\x89" +
                 std::string(" \xE2\x94\x81 IA"),
             std::string(
                 "       0\xE2\x94\xA4\xE2\xA3\x80\xE2\xA3\x80\xE2\xA0\xA4\xE2\xA0\xA4\xE2\xA0\xA4\xE2\xA0\x94"
                 "\xE2\xA0\x92\xE2\xA0\x92\xE2\xA0\x92\xE2\xA0\x8A\xE2\xA0\x89\xE2\xA0\x89\xE2\xA0\x89\xE2\xA0\x81"),
             "        \xE2\x94\x82" + bar + " Trip",
         }) {
        std::getline(lines, line);
        EXPECT_EQ(line, expected);
    }
}

TEST(WriteText, ColoursAreThoseOfThePhases) {
    const TestSource test = fault();
    const std::string text = textOf(figureOf(test.source(), {}), {80, 0, true});
    EXPECT_NE(text.find("\x1B[33m\xE2\x94\x81\x1B[0m IA"), std::string::npos);
    EXPECT_NE(text.find("\x1B[32m\xE2\x94\x81\x1B[0m UB"), std::string::npos);
    EXPECT_EQ(textOf(figureOf(test.source(), {})).find('\x1B'), std::string::npos);
}

} // namespace
