#include "base/numbers.h"

#include "base/characters.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

namespace OrvComtradeIntake {

namespace {

constexpr std::uint64_t kMaximumCount = std::numeric_limits<std::int64_t>::max();

std::string_view withoutPlus(std::string_view text) {
    const bool isSigned = text.size() > 1 && text[0] == '+' && text[1] != '-' && text[1] != '+';
    return isSigned ? text.substr(1) : text;
}

// A word that std::from_chars would take, "inf" or "nan", is no number here.
bool beginsWithNumber(std::string_view text) {
    const std::size_t sign = !text.empty() && text.front() == '-' ? 1 : 0;
    return text.size() > sign && (isDigit(text[sign]) || text[sign] == '.');
}

struct NumberStart {
    std::errc error = std::errc::invalid_argument;
    double value = 0.0;
    long double precise = 0.0L;
    std::size_t length = 0;
};

constexpr std::size_t kShortLength = 18; // digits that 63 bits hold

// Exact as doubles.
constexpr std::array<double, kShortLength> kExactPowers = {1e0, 1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,
                                                           1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17};

// Most numbers have few digits and no exponent: a quotient of two exact numbers is rounded once, and so correctly.
std::optional<NumberStart> shortNumber(std::string_view text) {
    constexpr std::int64_t greatestExact = std::int64_t{1} << std::numeric_limits<double>::digits;
    const bool isNegative = text.front() == '-';
    const std::string_view digits = text.substr(isNegative ? 1 : 0);
    const std::size_t point = std::min(digits.find('.'), digits.size());
    const std::size_t places = point == digits.size() ? 0 : digits.size() - point - 1;
    if (digits.size() > kShortLength || digits == ".") {
        return std::nullopt;
    }
    std::int64_t number = 0;
    for (std::size_t i = 0; i < digits.size(); ++i) {
        if (i != point && !isDigit(digits[i])) {
            return std::nullopt;
        }
        number = i == point ? number : number * 10 + (digits[i] - '0');
    }
    if (number > greatestExact) {
        return std::nullopt;
    }
    const double value = static_cast<double>(number) / kExactPowers[places];
    const long double precise = static_cast<long double>(number) / static_cast<long double>(kExactPowers[places]);
    return NumberStart{std::errc(), isNegative ? -value : value, isNegative ? -precise : precise, text.size()};
}

NumberStart numberPrefix(std::string_view text) {
    NumberStart prefix;
    if (!beginsWithNumber(text)) {
        return prefix;
    }
    if (const std::optional<NumberStart> number = shortNumber(text)) {
        return *number;
    }
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, prefix.value);
    prefix.error = result.ec;
    prefix.length = static_cast<std::size_t>(result.ptr - text.data());
    if (result.ec == std::errc()) {
        std::from_chars(text.data(), end, prefix.precise);
    }
    return prefix;
}

// Fortran programs mark the exponent of a double with D.
bool hasFortranExponent(std::string_view rest) {
    if (rest.size() < 2 || (rest[0] != 'D' && rest[0] != 'd')) {
        return false;
    }
    return isDigit(rest[1]) || (rest.size() > 2 && (rest[1] == '+' || rest[1] == '-') && isDigit(rest[2]));
}

bool isHexadecimal(std::string_view text, std::size_t length) {
    return length != 0 && text[length - 1] == '0' && length < text.size() &&
           (text[length] == 'x' || text[length] == 'X');
}

// A unit behind the number: a letter, a blank or something else that can't be part of a number.
bool isUnitBehind(std::string_view rest) {
    return isLetter(rest.front()) || rest.front() == ' ' || rest.front() == '%' ||
           static_cast<unsigned char>(rest.front()) >= 0x80;
}

// Too near to zero for full precision, which std::stod refuses.
bool isTiny(double value) {
    return value != 0.0 && std::abs(value) < std::numeric_limits<double>::min();
}

bool isTooSmall(std::string_view text) {
    const std::size_t exponent = text.find_first_of("eE");
    return exponent != std::string_view::npos && exponent + 1 < text.size() && text[exponent + 1] == '-';
}

bool isReadAsZero(const NumberStart& number, std::string_view text) {
    return number.error == std::errc::result_out_of_range ? isTooSmall(text) : isTiny(number.value);
}

ReadNumber readFortranNumber(std::string_view text, std::size_t exponent) {
    std::string copy(text);
    copy[exponent] = 'e';
    const NumberStart number = numberPrefix(copy);
    if (number.length != copy.size()) {
        return {};
    }
    if (isReadAsZero(number, copy)) {
        return {NumberForm::Odd};
    }
    return number.error == std::errc() ? ReadNumber{NumberForm::Odd, number.value, number.precise} : ReadNumber{};
}

template <typename Number> std::string shortest(Number value) {
    std::array<char, 64> buffer{};
    const Number size = std::abs(value);
    const bool isFixed = size == 0 || (size >= static_cast<Number>(1e-7L) && size < static_cast<Number>(1e15L));
    const auto format = isFixed ? std::chars_format::fixed : std::chars_format::scientific;
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format);
    return {buffer.data(), result.ptr};
}

/// Of a number that is not zero.
std::size_t significantDigits(std::string_view text) {
    text = text.substr(0, text.find('e'));
    text.remove_prefix(text.find_first_of("123456789"));
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), isDigit));
}

} // namespace

ReadNumber readNumber(std::string_view field) {
    const std::string_view text = withoutPlus(trimmed(field));
    if (text.empty()) {
        return {NumberForm::Empty};
    }
    const NumberStart prefix = numberPrefix(text);
    if (isReadAsZero(prefix, text)) {
        return {NumberForm::Odd};
    }
    if (prefix.error != std::errc()) {
        return {};
    }
    if (prefix.length == text.size()) {
        return {NumberForm::Good, prefix.value, prefix.precise};
    }
    const std::string_view rest = text.substr(prefix.length);
    if (hasFortranExponent(rest)) {
        return readFortranNumber(text, prefix.length);
    }
    if (isHexadecimal(text, prefix.length) || !isUnitBehind(rest)) {
        return {};
    }
    return {NumberForm::Odd, prefix.value, prefix.precise};
}

std::optional<std::uint64_t> readCount(std::string_view field) {
    const std::string_view text = withoutPlus(trimmed(field));
    std::uint64_t count = 0;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, count);
    if (result.ec == std::errc() && result.ptr == end) {
        return count <= kMaximumCount ? std::optional(count) : std::nullopt;
    }
    const ReadNumber number = readNumber(text);
    constexpr double exactLimit = 9007199254740992.0; // 2^53: doubles below it hold every whole number
    const bool isCount = number.form == NumberForm::Good && number.value >= 0.0 && number.value < exactLimit &&
                         std::trunc(number.value) == number.value;
    return isCount ? std::optional(static_cast<std::uint64_t>(number.value)) : std::nullopt;
}

std::string numberText(double value) {
    if (std::isnan(value) || isTiny(value)) {
        return "0";
    }
    constexpr double greatest = std::numeric_limits<double>::max();
    return shortest(std::clamp(value, -greatest, greatest) + 0.0);
}

std::string numberText(long double value) {
    const auto nearest = static_cast<double>(value);
    if (!std::isnormal(nearest)) {
        return numberText(nearest);
    }
    std::string text = shortest(value);
    return significantDigits(text) <= 17 ? text : numberText(nearest);
}

} // namespace OrvComtradeIntake
