#include "ValueColumn.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
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

std::uint64_t bitsOfDouble(double value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

/// As the type holds it; some other value where it does not. Without a branch for integers.
template <class Value> Value turnedTo(double value) {
    if constexpr (std::numeric_limits<Value>::is_integer) {
        constexpr double unit = 6755399441055744.0; // 1.5 * 2^52: the last bit of a sum with it is worth 1
        return static_cast<Value>(static_cast<std::int32_t>(static_cast<std::uint32_t>(bitsOfDouble(value + unit))));
    } else {
        const double size = std::abs(value);
        const bool isTooLarge = size > static_cast<double>(std::numeric_limits<Value>::max()) &&
                                size < std::numeric_limits<double>::infinity();
        return static_cast<Value>(isTooLarge ? 0.0 : value);
    }
}

/// The longest run of values that the type holds, from the first on: appended, and how many those are. All of them are
/// turned before one is looked at, so that vector instructions do it.
template <class Value> std::size_t appendHeld(const double* values, std::size_t count, std::vector<Value>& column) {
    std::array<Value, 1024> turned{};
    std::size_t done = 0;
    while (done < count) {
        const std::size_t length = std::min(turned.size(), count - done);
        std::uint64_t differences = 0;
        for (std::size_t i = 0; i < length; ++i) {
            turned[i] = turnedTo<Value>(values[done + i]);
            differences |= bitsOfDouble(values[done + i]) ^ bitsOfDouble(static_cast<double>(turned[i]));
        }
        const std::size_t held = differences == 0 ? length : heldOf<Value>(values + done, length);
        column.insert(column.end(), turned.begin(), turned.begin() + static_cast<std::ptrdiff_t>(held));
        done += held;
        if (held < length) {
            break;
        }
    }
    return done;
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
                done += appendHeld<Value>(values + done, count - done, column);
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
