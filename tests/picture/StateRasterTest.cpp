// Bars of status channels: every state is seen, however short, and memory does not depend on the changes.

#include <OrvComtradePicture/StateRaster.h>
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <utility>
#include <vector>

namespace {

using OrvComtradePicture::Range;
using OrvComtradePicture::Span;
using OrvComtradePicture::StateRaster;

/// "from-to" of each span in columns of a view from 0 to 100, "~" before one that changes.
std::string textOf(const StateRaster& raster) {
    std::string text;
    for (const Span& span : raster.spans()) {
        text += text.empty() ? "" : " ";
        text += span.changes ? "~" : "";
        text += std::to_string(std::lround(span.times.from)) + "-" + std::to_string(std::lround(span.times.to));
    }
    return text;
}

TEST(StateRasterSpans, StatesAreBarsWhereverTheyBeginAndEnd) {
    const struct {
        const char* why;
        std::vector<std::pair<Range, bool>> states;
        const char* spans;
        bool changes;
    } rows[] = {
        {"nothing", {}, "", false},
        {"always 0", {{{0, 100}, false}}, "", false},
        {"always 1", {{{0, 100}, true}}, "0-100", false},
        {"1 in the middle", {{{0, 20}, false}, {{20, 60}, true}, {{60, 100}, false}}, "20-61", true},
        {"1 for no time at all", {{{0, 50}, false}, {{50, 50}, true}, {{50, 100}, false}}, "50-51", true},
        {"1 before the view", {{{-20, -10}, true}, {{-10, 200}, false}}, "", false},
        {"1 from before the view on", {{{-20, 30}, true}, {{30, 200}, false}}, "0-31", true},
        {"1 behind the view", {{{0, 101}, false}, {{101, 200}, true}}, "", false},
    };
    for (const auto& row : rows) {
        StateRaster raster({0.0, 100.0}, 100);
        for (const auto& [times, state] : row.states) {
            raster.add(times, state);
        }
        EXPECT_EQ(textOf(raster), row.spans) << row.why;
        EXPECT_EQ(raster.changes(), row.changes) << row.why;
    }
}

TEST(StateRasterSpans, ChangesTooManyToBeDrawnAreMarked) {
    StateRaster raster({0.0, 100.0}, 100);
    raster.add({0.0, 20.0}, true);
    for (int i = 0; i < 4000; ++i) {
        raster.add({20.0 + i / 100.0, 20.0 + (i + 1) / 100.0}, i % 2 == 1);
    }
    raster.add({60.0, 100.0}, true);
    EXPECT_EQ(textOf(raster), "0-20 ~20-60 60-100");
}

} // namespace
