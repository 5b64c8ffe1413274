#pragma once

#include "littleEndian.h"

#include <cstdint>

namespace OrvComtradeLib {

inline bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

constexpr unsigned int kDigitsAtOnce = 8;

/// Value of the decimal digits that eight bytes begin with; `count` gets their number, 0 to 8. All eight at a time:
/// columns differ in length, and a loop that ends unpredictably at each costs more than this arithmetic.
inline std::uint64_t leadingDigits(const char* bytes, unsigned int& count) {
    const std::uint64_t digits =
        readLittleEndian<std::uint64_t>(bytes) ^ 0x3030303030303030U; // a digit becomes its value, 0 to 9
    const std::uint64_t others = ((digits + 0x7676767676767676U) | digits) & 0x8080808080808080U;
    count = others == 0 ? kDigitsAtOnce : static_cast<unsigned int>(__builtin_ctzll(others)) / 8;
    if (count == 0) {
        return 0;
    }
    const std::uint64_t padded = digits << (64 - 8 * count); // zeros take the place of missing leading digits
    const std::uint64_t pairs = padded * 10 + (padded >> 8U);
    const std::uint64_t pairMask = 0x000000FF000000FFU;
    return ((pairs & pairMask) * 0x000F424000000064U + (pairs >> 16U & pairMask) * 0x0000271000000001U) >> 32U;
}

} // namespace OrvComtradeLib
