// Random numbers of the property tests.

#pragma once

#include <rapidcheck.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace orvtest {

/// A decimal number as a text and, worked out from its digits, as a value.
struct Decimal {
    std::int64_t digits = 0;
    int places = 0;

    std::string text() const {
        std::string whole = std::to_string(std::abs(digits));
        const auto count = static_cast<std::size_t>(places);
        whole.insert(0, whole.size() > count ? 0 : count + 1 - whole.size(), '0');
        if (count != 0) {
            whole.insert(whole.size() - count, ".");
        }
        return (digits < 0 ? "-" : "") + whole;
    }

    long double value() const {
        long double divisor = 1;
        for (int i = 0; i < places; ++i) {
            divisor *= 10;
        }
        return static_cast<long double>(digits) / divisor;
    }
};

inline Decimal randomDecimal(std::int64_t low, std::int64_t high, int mostPlaces) {
    return {*rc::gen::inRange<std::int64_t>(low, high + 1), *rc::gen::inRange(0, mostPlaces + 1)};
}

inline std::size_t randomCount(std::size_t low, std::size_t high) {
    return *rc::gen::inRange<std::size_t>(low, high + 1);
}

} // namespace orvtest
