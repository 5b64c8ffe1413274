#pragma once

#include "base/characters.h"
#include "src/data/digits.h"

#include <cstdint>

namespace OrvComtradeIntake {

/// Reads the integer at `at` of a plain line (see PlainLines) and steps behind the comma, or the byte, that ends it.
inline std::int64_t takeInteger(const char*& at) {
    const bool isNegative = *at == '-';
    at += isNegative ? 1 : 0;
    unsigned int count = 0;
    std::uint64_t value = OrvComtradeLib::leadingDigits(at, count);
    at += count;
    if (count == OrvComtradeLib::kDigitsAtOnce) {
        for (; isDigit(*at); ++at) {
            value = value * 10 + static_cast<std::uint64_t>(*at - '0');
        }
    }
    ++at;
    return isNegative ? -static_cast<std::int64_t>(value) : static_cast<std::int64_t>(value);
}

} // namespace OrvComtradeIntake
