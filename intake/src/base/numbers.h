#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace OrvComtradeIntake {

/// What a field that should hold a number really holds.
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

/// Reads a field. Blanks around the number, a plus sign and a bare decimal point are accepted; a decimal comma is not.
/// A number nearer to 0 than any double of full precision becomes 0, with the form Odd.
ReadNumber readNumber(std::string_view field);

/// Reads a whole number that is not negative and fits in 63 bits: "1300", "+1300", "1300.0" or "1.3e3".
std::optional<std::uint64_t> readCount(std::string_view field);

/// The shortest text that reads back as `value`. The text is always finite. A value nearer to 0 than any double of full
/// precision gives "0".
std::string numberText(double value);

/// The same for the nearest double. If the number itself takes no more than 17 digits, it is written instead: a number
/// that was read from a decimal text is then rounded only once.
std::string numberText(long double value);

} // namespace OrvComtradeIntake
