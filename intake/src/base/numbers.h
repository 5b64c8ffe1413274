#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace OrvComtradeIntake {

/// How a field that should hold a number is to be taken.
enum class NumberForm {
    Empty,    ///< nothing but blanks
    Good,     ///< a decimal number
    Odd,      ///< not quite a number, but its value is beyond doubt: a unit behind it, an exponent marked with D
    Malformed ///< no number, or none that a double holds
};

/// A number as text, whatever the locale of the program is.
struct ReadNumber {
    NumberForm form = NumberForm::Malformed;
    double value = 0.0;         ///< correctly rounded
    long double precise = 0.0L; ///< the same number, rounded to a long double
};

/// Reads a field: blanks around the number, a plus sign and a bare decimal point are taken, a decimal comma is not.
/// What is nearer to 0 than a double of full precision is Odd, and 0.
ReadNumber readNumber(std::string_view field);

/// A whole number that is not negative, and fits in 63 bits; "1300", "+1300", "1300.0" and "1.3e3" are.
std::optional<std::uint64_t> readCount(std::string_view field);

/// The number in its shortest form that reads back as `value`. Finite always, and 0 for what is nearer to 0 than a
/// double of full precision.
std::string numberText(double value);

/// The same of the nearest double; but of the number itself where that takes no more than 17 digits, so that what was
/// read from a decimal text is rounded once only.
std::string numberText(long double value);

} // namespace OrvComtradeIntake
