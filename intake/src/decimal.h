#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace OrvComtradeIntake {

/// A decimal number as written in a text: mantissa * 10^exponent, without zeros at the mantissa's end.
struct Decimal {
    std::uint64_t mantissa = 0;
    int exponent = 0;
    bool negative = false;
    bool rounded = false; ///< it had more digits than fit

    long double magnitude() const;

    /// The number times 10^power, rounded to the nearest integer (halves away from zero); only for results below 2^63.
    std::int64_t scaled(int power) const;

    /// Whether it is an integer of 64 bits.
    bool isInteger() const;
};

constexpr int kLargestDecimalExponent = 60; ///< numbers from 10^60 on are no measured values

/// Optional sign, digits with or without a point, optional exponent; nothing else. Nothing for other texts and for
/// numbers of 10^60 or more; below 10^-60 it is 0.
std::optional<Decimal> readDecimal(std::string_view text);

} // namespace OrvComtradeIntake
