#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace OrvComtradeIntake {

constexpr std::array<std::uint64_t, 20> makePowersOfTen() {
    std::array<std::uint64_t, 20> powers{};
    std::uint64_t power = 1;
    for (std::uint64_t& place : powers) {
        place = power;
        power *= 10;
    }
    return powers;
}

constexpr std::array<std::uint64_t, 20> kPowersOfTen = makePowersOfTen();

/// A decimal number as written in a text: mantissa * 10^exponent.
struct Decimal {
    std::uint64_t mantissa = 0;
    int exponent = 0;
    bool negative = false;
    bool rounded = false; ///< it had more digits than fit

    long double magnitude() const;

    /// The number times 10^power, rounded to the nearest integer (halves away from zero); only for results below 2^63.
    std::int64_t scaled(int power) const;

    /// Whether the number times 10^power is 2^63 or more.
    bool isBeyondIntegers(int power) const;

    /// The number times 10^power, also beyond integers.
    double times(int power) const;

    /// Whether it is an integer of 64 bits. "1.0" does not count as one.
    bool isInteger() const;

    /// The same number without zeros at the mantissa's end.
    Decimal normalised() const;
};

constexpr int kLargestDecimalExponent = 60; ///< no measured value is 10^60 or more

/// Reads an optional sign, digits with or without a point, and an optional exponent. Returns nothing for any other text
/// and for numbers of 10^60 or more. Numbers below 10^-60 give 0. The result is normalised.
std::optional<Decimal> readDecimal(std::string_view text);

} // namespace OrvComtradeIntake
