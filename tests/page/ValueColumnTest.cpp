#include "ValueColumn.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
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
