#include "ValueColumn.h"

#include <cmath>
#include <limits>
#include <utility>

namespace OrvComtradePage {

namespace {

template <class Value> bool holds(double value) {
    if constexpr (std::numeric_limits<Value>::is_integer) {
        constexpr auto least = static_cast<double>(std::numeric_limits<Value>::min());
        constexpr auto greatest = static_cast<double>(std::numeric_limits<Value>::max());
        if (!(value >= least && value <= greatest)) {
            return false;
        }
        const bool isNegativeZero = value == 0.0 && std::signbit(value);
        return static_cast<double>(static_cast<Value>(value)) == value && !isNegativeZero;
    } else {
        const bool isInRange = std::abs(value) <= static_cast<double>(std::numeric_limits<Value>::max());
        return !std::isfinite(value) || (isInRange && static_cast<double>(static_cast<Value>(value)) == value);
    }
}

/// How many of them the type holds before the first that it does not.
template <class Value> std::size_t heldOf(const double* values, std::size_t count) {
    std::size_t held = 0;
    while (held < count && holds<Value>(values[held])) {
        ++held;
    }
    return held;
}

template <class Value> void append(const double* values, std::size_t count, std::vector<Value>& column) {
    const std::size_t before = column.size();
    column.resize(before + count);
    for (std::size_t i = 0; i < count; ++i) {
        column[before + i] = static_cast<Value>(values[i]);
    }
}

/// The same values in a wider type, or nothing where some would not be the same.
template <class Wide, class Narrow> bool widen(const std::vector<Narrow>& narrow, std::vector<Wide>& wide) {
    wide.reserve(narrow.size());
    for (const Narrow value : narrow) {
        const auto number = static_cast<double>(value);
        if (!holds<Wide>(number)) {
            return false;
        }
        wide.push_back(static_cast<Wide>(number));
    }
    return true;
}

template <class Narrow> ValueColumn::Values widened(const std::vector<Narrow>& values) {
    if constexpr (std::is_same_v<Narrow, std::int16_t>) {
        std::vector<std::int32_t> wide;
        widen(values, wide);
        return wide;
    } else {
        std::vector<float> singles;
        if constexpr (std::is_same_v<Narrow, std::int32_t>) {
            if (widen(values, singles)) {
                return singles;
            }
        }
        std::vector<double> wide;
        widen(values, wide);
        return wide;
    }
}

} // namespace

void ValueColumn::append(const double* values, std::size_t count) {
    std::size_t done = 0;
    while (true) {
        std::visit(
            [&](auto& column) {
                using Value = typename std::decay_t<decltype(column)>::value_type;
                const std::size_t held = heldOf<Value>(values + done, count - done);
                OrvComtradePage::append(values + done, held, column);
                done += held;
            },
            _values);
        if (done == count) {
            return;
        }
        _values = std::visit([](const auto& column) { return widened(column); }, _values);
    }
}

std::size_t ValueColumn::size() const {
    return std::visit([](const auto& column) { return column.size(); }, _values);
}

double ValueColumn::at(std::size_t index) const {
    return std::visit([index](const auto& column) { return static_cast<double>(column.at(index)); }, _values);
}

void ValueColumn::set(std::size_t index, double value) {
    std::visit(
        [index, value](auto& column) {
            column.at(index) = static_cast<typename std::decay_t<decltype(column)>::value_type>(value);
        },
        _values);
}

} // namespace OrvComtradePage
