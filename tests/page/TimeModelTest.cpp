#include "TimeModel.h"

#include <gtest/gtest.h>

#include <variant>
#include <vector>

namespace orvtest {
namespace {

using OrvComtradeIntake::Header;
using OrvComtradePage::RecordedColumns;
using OrvComtradePage::TimeModel;
using OrvComtradePage::timeModelOf;

RecordedColumns columnsOf(std::vector<double> times) {
    RecordedColumns columns;
    columns.pieces = {{0, times.size(), 1}};
    columns.time = std::move(times);
    return columns;
}

TEST(TimeModelOf, IsByRatesWhereTheyGiveEveryTime) {
    Header header;
    header.rates = {{3, 2}, {7, 4}};
    header.samples = 4;
    const TimeModel model = timeModelOf(header, columnsOf({0, 1.0 / 3, 2.0 / 3, 1.0 / 7 + 2.0 / 3}));
    ASSERT_EQ(model.kind, TimeModel::Kind::Rates);
    ASSERT_EQ(model.segments.size(), 2U);
    EXPECT_EQ(model.segments[1].rate, 7);
    EXPECT_EQ(model.segments[1].count, 2U);
}

TEST(TimeModelOf, TakesNeighboursOfTheSameRateForOne) {
    Header header;
    header.rates = {{1000, 2}, {1000, 4}};
    header.samples = 4;
    const TimeModel model = timeModelOf(header, columnsOf({0, 0.001, 0.002, 0.003}));
    ASSERT_EQ(model.kind, TimeModel::Kind::Rates);
    EXPECT_EQ(model.segments.size(), 1U);
}

TEST(TimeModelOf, IsByStampsWhereTheyAreWholeNumbers) {
    Header header;
    header.rates = {{0, 3}};
    header.samples = 3;
    header.timeMultiplier = 0.25;
    const std::vector<double> times = {0, 4 * 0.25 * 0.000001, 12 * 0.25 * 0.000001};
    const TimeModel model = timeModelOf(header, columnsOf(times));
    ASSERT_EQ(model.kind, TimeModel::Kind::Stamps);
    EXPECT_EQ(model.multiplier, 0.25);
    EXPECT_EQ(model.numbers.at(2), 12);
}

TEST(TimeModelOf, HoldsTheTimesWhereNothingElseGivesThem) {
    Header header;
    header.rates = {{0, 2}};
    header.samples = 2;
    const TimeModel model = timeModelOf(header, columnsOf({0, 0.12345678901234567}));
    ASSERT_EQ(model.kind, TimeModel::Kind::Times);
    EXPECT_EQ(model.numbers.at(1), 0.12345678901234567);
}

} // namespace
} // namespace orvtest
