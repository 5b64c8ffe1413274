// What is left of a curve: every extreme, every gap, and all of it where there is room.

#include "support/fixedSeed.h"

#include <OrvComtradePicture/Envelope.h>
#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

namespace {

using OrvComtradePicture::Envelope;
using OrvComtradePicture::Point;
using OrvComtradePicture::Range;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// "time:value" of each point, "|" for a gap.
std::string textOf(const Envelope& envelope) {
    std::string text;
    for (const Point& point : envelope.points()) {
        text += text.empty() ? "" : " ";
        text += std::isnan(point.value)
                    ? "|"
                    : std::to_string(std::lround(point.time)) + ":" + std::to_string(std::lround(point.value));
    }
    return text;
}

TEST(EnvelopePoints, ExtremesOfAColumnAndGapsAreKept) {
    const struct {
        const char* why;
        std::size_t columns;
        std::vector<Point> samples;
        const char* points;
    } rows[] = {
        {"no sample", 4, {}, ""},
        {"one sample", 4, {{5, 7}}, "5:7"},
        {"all of a curve with room", 10, {{0, 1}, {1, 2}, {2, 3}, {10, 4}}, "0:1 1:2 2:3 10:4"},
        {"lowest and highest, in the order of time", 1, {{0, 5}, {1, 9}, {2, 6}, {3, 2}, {4, 4}}, "1:9 3:2"},
        {"the same value twice is a line", 1, {{0, 5}, {9, 5}}, "0:5"},
        {"a missing value", 10, {{0, 1}, {1, kNan}, {2, 3}}, "0:1 | 2:3"},
        {"infinity", 10, {{0, 1}, {1, -kInfinity}, {2, 3}}, "0:1 | 2:3"},
        {"nothing but missing values", 10, {{0, kNan}, {1, kNan}}, ""},
        {"missing values at the ends", 10, {{0, kNan}, {1, 2}, {2, kNan}}, "1:2"},
        {"a gap shorter than a column", 1, {{0, 1}, {1, kNan}, {2, 3}}, "0:1 2:3"},
        {"neighbours of the view", 10, {{-2, 8}, {-1, 1}, {5, 2}, {11, 3}, {12, 9}}, "-1:1 5:2 11:3"},
        {"a gap before the view", 10, {{-1, 1}, {-0.5, kNan}, {5, 2}}, "-1:1 | 5:2"},
        {"no sample in the view", 10, {{-1, 1}, {11, 3}}, "-1:1 11:3"},
    };
    for (const auto& row : rows) {
        Envelope envelope({0.0, 10.0}, row.columns);
        for (const Point& sample : row.samples) {
            envelope.add(sample.time, sample.value);
        }
        EXPECT_EQ(textOf(envelope), row.points) << row.why;
    }
}

TEST(EnvelopeValues, OnlyWhatIsInTheViewCounts) {
    Envelope envelope({0.0, 10.0}, 3);
    EXPECT_FALSE(envelope.values());
    envelope.add(-1.0, 100.0);
    EXPECT_FALSE(envelope.values());
    envelope.add(1.0, 2.0);
    envelope.add(2.0, kInfinity);
    envelope.add(9.0, -3.0);
    envelope.add(11.0, -100.0);
    ASSERT_TRUE(envelope.values());
    EXPECT_EQ(*envelope.values(), (Range{-3.0, 2.0}));
}

RC_GTEST_PROP(EnvelopePoints, EveryExtremeOfEveryColumnIsThereAtEveryWidth, ()) {
    const auto values = *rc::gen::nonEmpty<std::vector<int>>();
    const auto columns = *rc::gen::inRange<std::size_t>(1, 40);
    const Range view{0.0, static_cast<double>(values.size())};
    Envelope envelope(view, columns);
    for (std::size_t i = 0; i < values.size(); ++i) {
        envelope.add(static_cast<double>(i), values[i]);
    }
    const std::vector<Point> points = envelope.points();
    RC_ASSERT(points.size() <= 2 * columns);
    RC_ASSERT(std::is_sorted(points.begin(), points.end(),
                             [](const Point& one, const Point& other) { return one.time < other.time; }));
    const auto [low, high] = std::minmax_element(values.begin(), values.end());
    const auto has = [&points](double value) {
        return std::any_of(points.begin(), points.end(), [value](const Point& point) { return point.value == value; });
    };
    RC_ASSERT(has(*low) && has(*high));
    const double columnsPerSecond = static_cast<double>(columns) / view.length();
    for (std::size_t i = 0; i < values.size(); ++i) { // a sample lies between those that are kept of its column
        const auto columnOf = [&](double time) {
            return std::min(columns - 1, static_cast<std::size_t>(time * columnsPerSecond));
        };
        double lowest = kInfinity;
        double highest = -kInfinity;
        for (const Point& point : points) {
            if (columnOf(point.time) == columnOf(static_cast<double>(i))) {
                lowest = std::min(lowest, point.value);
                highest = std::max(highest, point.value);
            }
        }
        RC_ASSERT(lowest <= values[i] && values[i] <= highest);
    }
}

} // namespace
