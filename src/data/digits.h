#pragma once

#include "littleEndian.h"

#include <cstdint>

namespace OrvComtradeLib {

inline bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

constexpr unsigned int kDigitsAtOnce = 8;

/// The word of eight times the same byte.
constexpr std::uint64_t eightOf(unsigned char byte) {
    return UINT64_MAX / 0xFFU * byte;
}

/// The word of four times the same two bytes, the first one lowest: that of "0,0,0,0," for '0' and ','.
constexpr std::uint64_t fourOf(unsigned char first, unsigned char second) {
    return UINT64_MAX / 0xFFFFU * (first | static_cast<unsigned int>(second) << 8U);
}

/// Value of eight digits, each the value of a byte, the first one lowest. Neighbours are added to pairs, and the four
/// pairs to their sum, all in one word at a time: L. Lamport, "Multiple byte processing with full-word instructions",
/// 1975.
inline std::uint64_t valueOfDigits(std::uint64_t digits) {
    const std::uint64_t pairs = digits * 10 + (digits >> 8U); // in the bytes 0, 2, 4 and 6
    constexpr std::uint64_t everyOther = 0xFFU | std::uint64_t{0xFFU} << 32U;
    constexpr std::uint64_t firstAndThird = std::uint64_t{1000000} << 32U | 100U; // by what these pairs count
    constexpr std::uint64_t secondAndFourth = std::uint64_t{10000} << 32U | 1U;
    return ((pairs & everyOther) * firstAndThird + (pairs >> 16U & everyOther) * secondAndFourth) >> 32U;
}

/// Value of the decimal digits that eight bytes begin with; `count` gets their number, 0 to 8. All eight at a time:
/// columns differ in length, and a loop that ends unpredictably at each costs more than this arithmetic.
inline std::uint64_t leadingDigits(const char* bytes, unsigned int& count) {
    constexpr unsigned char highBit = 0x80;
    const std::uint64_t digits =
        readLittleEndian<std::uint64_t>(bytes) ^ eightOf('0'); // a digit becomes its value, 0 to 9
    const std::uint64_t others = ((digits + eightOf(highBit - 10)) | digits) & eightOf(highBit); // above 9
    count = others == 0 ? kDigitsAtOnce : static_cast<unsigned int>(__builtin_ctzll(others)) / 8;
    if (count == 0) {
        return 0;
    }
    return valueOfDigits(digits << (64 - 8 * count)); // zeros take the place of missing leading digits
}

} // namespace OrvComtradeLib
