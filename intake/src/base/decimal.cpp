#include "base/decimal.h"

#include "base/characters.h"

#include <algorithm>

namespace OrvComtradeIntake {

namespace {

constexpr std::uint64_t kMostMantissa = (UINT64_MAX - 9) / 10; // one more digit still fits
constexpr int kMostDigits = 19;

/// Reads the digits before and behind the point; false if there are none.
bool readDigits(std::string_view& text, Decimal& number) {
    bool any = false;
    bool pointSeen = false;
    for (; !text.empty() && (isDigit(text.front()) || (text.front() == '.' && !pointSeen)); text.remove_prefix(1)) {
        const char character = text.front();
        if (character == '.') {
            pointSeen = true;
            continue;
        }
        any = true;
        if (number.mantissa <= kMostMantissa) {
            number.mantissa = number.mantissa * 10 + static_cast<std::uint64_t>(character - '0');
            number.exponent -= pointSeen ? 1 : 0;
        } else {
            number.rounded = number.rounded || character != '0';
            number.exponent += pointSeen ? 0 : 1;
        }
    }
    return any;
}

/// Reads "e" with a sign and digits, or nothing; false if there is something else.
bool readExponent(std::string_view text, int& exponent) {
    if (text.empty()) {
        return true;
    }
    if (text.front() != 'e' && text.front() != 'E') {
        return false;
    }
    text.remove_prefix(1);
    const bool negative = !text.empty() && text.front() == '-';
    if (!text.empty() && (text.front() == '-' || text.front() == '+')) {
        text.remove_prefix(1);
    }
    if (text.empty() || !std::all_of(text.begin(), text.end(), isDigit)) {
        return false;
    }
    constexpr int enough = 100000000;
    int value = 0;
    for (const char digit : text) {
        value = std::min(value * 10 + (digit - '0'), enough);
    }
    exponent += negative ? -value : value;
    return true;
}

} // namespace

long double Decimal::magnitude() const {
    auto value = static_cast<long double>(mantissa);
    int rest = exponent;
    for (; rest > 0; rest -= std::min(rest, kMostDigits)) {
        value *= static_cast<long double>(kPowersOfTen[static_cast<std::size_t>(std::min(rest, kMostDigits))]);
    }
    for (; rest < 0; rest += std::min(-rest, kMostDigits)) {
        value /= static_cast<long double>(kPowersOfTen[static_cast<std::size_t>(std::min(-rest, kMostDigits))]);
    }
    return value;
}

std::int64_t Decimal::scaled(int power) const {
    const int shift = exponent + power;
    if (shift <= -static_cast<int>(kPowersOfTen.size())) {
        return 0;
    }
    std::uint64_t value = mantissa;
    if (shift >= 0) {
        value *= kPowersOfTen[static_cast<std::size_t>(std::min(shift, kMostDigits))];
    } else {
        const std::uint64_t divisor = kPowersOfTen[static_cast<std::size_t>(-shift)];
        value = mantissa / divisor + (mantissa % divisor >= divisor / 2 ? 1 : 0);
    }
    return static_cast<std::int64_t>(negative ? 0 - value : value);
}

bool Decimal::isBeyondIntegers(int power) const {
    const int shift = exponent + power;
    if (shift < 0 || mantissa == 0) {
        return false;
    }
    constexpr auto most = static_cast<std::uint64_t>(INT64_MAX);
    return shift >= kMostDigits || mantissa > most / kPowersOfTen[static_cast<std::size_t>(shift)];
}

double Decimal::times(int power) const {
    const long double size = Decimal{mantissa, exponent + power, false, false}.magnitude();
    return static_cast<double>(negative ? -size : size);
}

bool Decimal::isInteger() const {
    if (exponent == 0) {
        return mantissa <= static_cast<std::uint64_t>(INT64_MAX) && !rounded;
    }
    if (exponent < 0 || exponent >= kMostDigits || rounded) {
        return false;
    }
    return mantissa <= static_cast<std::uint64_t>(INT64_MAX) / kPowersOfTen[static_cast<std::size_t>(exponent)];
}

Decimal Decimal::normalised() const {
    Decimal number = *this;
    while (number.mantissa != 0 && number.mantissa % 10 == 0) {
        number.mantissa /= 10;
        ++number.exponent;
    }
    const bool isZero = number.mantissa == 0 || number.exponent < -kLargestDecimalExponent - kMostDigits;
    return isZero ? Decimal() : number;
}

std::optional<Decimal> readDecimal(std::string_view text) {
    Decimal number;
    if (!text.empty() && (text.front() == '-' || text.front() == '+')) {
        number.negative = text.front() == '-';
        text.remove_prefix(1);
    }
    if (!readDigits(text, number) || !readExponent(text, number.exponent)) {
        return {};
    }
    number = number.normalised();
    const bool mayBeTooLarge = number.exponent > kLargestDecimalExponent - 20;
    if (mayBeTooLarge && (number.exponent > kLargestDecimalExponent || number.magnitude() >= 1e60L)) {
        return {};
    }
    return number;
}

} // namespace OrvComtradeIntake
