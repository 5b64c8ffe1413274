#include "ValueColumn.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <numeric>
#include <string>
#include <variant>
#include <vector>

namespace orvtest {
namespace {

using OrvComtradePage::ValueColumn;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

const char* typeOf(const ValueColumn& column) {
    constexpr const char* names[] = {"i16", "i32", "f32", "f64"};
    return names[column.values().index()];
}

struct Row {
    const char* why;
    std::vector<double> values;
    std::string type;
};

TEST(ValueColumnAppend, TakesTheSmallestTypeThatHoldsEveryValue) {
    const std::vector<Row> rows = {{"nothing", {}, "i16"},
                                   {"the ends of 16 bits", {-32768, 32767}, "i16"},
                                   {"one more", {1, 32768}, "i32"},
                                   {"the ends of 32 bits", {-2147483648.0, 2147483647.0}, "i32"},
                                   {"a single", {1, 0.5}, "f32"},
                                   {"infinite", {1, -kInfinity}, "f32"},
                                   {"minus zero", {-0.0}, "f32"},
                                   {"an integer that no single holds, then a fraction", {16777217, 0.5}, "f64"},
                                   {"no single", {0.1}, "f64"},
                                   {"beyond a single", {1e300}, "f64"},
                                   {"beyond 32 bits, but a single", {4294967296.0}, "f32"}};
    for (const Row& row : rows) {
        ValueColumn column;
        column.append(row.values.data(), row.values.size());
        EXPECT_EQ(typeOf(column), row.type) << row.why;
        ASSERT_EQ(column.size(), row.values.size()) << row.why;
        for (std::size_t i = 0; i < row.values.size(); ++i) {
            EXPECT_EQ(column.at(i), row.values[i]) << row.why;
            EXPECT_EQ(std::signbit(column.at(i)), std::signbit(row.values[i])) << row.why;
        }
    }
}

TEST(ValueColumnAppend, KeepsEveryValueOfALongColumnToTheLastBit) {
    constexpr double quietNan = std::numeric_limits<double>::quiet_NaN();
    for (const double odd : {-0.0, 0.5, 32768.0, 4294967301.0, 0.1, 1e300, kInfinity, -kInfinity, quietNan}) {
        for (const std::size_t place : {0U, 1023U, 1024U, 2500U, 2999U}) {
            std::vector<double> values(3000);
            std::iota(values.begin(), values.end(), -1500.0);
            values[place] = odd;
            ValueColumn column;
            column.append(values.data(), values.size());
            ASSERT_EQ(column.size(), values.size());
            for (std::size_t i = 0; i < values.size(); ++i) {
                const double value = column.at(i);
                ASSERT_TRUE(value == values[i] || (std::isnan(value) && std::isnan(values[i]))) << odd << ' ' << i;
                ASSERT_EQ(std::signbit(value), std::signbit(values[i])) << odd << ' ' << i;
            }
        }
    }
}

TEST(ValueColumnAppend, WidensWhatIsThereAlready) {
    ValueColumn column;
    for (const double value : {1.0, 40000.0, 0.5, 0.1}) {
        column.append(&value, 1);
    }
    EXPECT_STREQ(typeOf(column), "f64");
    EXPECT_EQ(std::get<std::vector<double>>(column.values()), (std::vector<double>{1.0, 40000.0, 0.5, 0.1}));
}

} // namespace
} // namespace orvtest
