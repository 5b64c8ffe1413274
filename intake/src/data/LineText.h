#pragma once

#include "data/singleText.h"
#include "src/data/digits.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

namespace OrvComtradeIntake {

/// Appends a line to a text, column by column. Room for the whole line is made at once, which is faster than an append
/// for each column.
class LineText {
public:
    /// Numbers are divided by ten to the power of `decimals` at most, which may be negative.
    LineText(std::string& text, std::size_t numbers, std::size_t states, int decimals) : _text(text) {
        const std::size_t begin = text.size();
        const std::size_t longest = kLongestNumber + static_cast<std::size_t>(std::abs(decimals));
        text.resize(begin + numbers * longest + states * kStateLength + kLongestLineEnd);
        _at = text.data() + begin;
        _end = text.data() + text.size();
    }

    void addNumber(std::int64_t value) {
        *_at = '-'; // overwritten if it isn't negative
        _at += value < 0 ? 1 : 0;
        const auto bits = static_cast<std::uint64_t>(value);
        const std::uint64_t magnitude = value < 0 ? 0 - bits : bits;
        if (magnitude < kRangeOfEight) {
            _addUpToEight(magnitude);
        } else {
            _at = std::to_chars(_at, _end, magnitude).ptr;
        }
        *_at++ = ',';
    }

    /// Appends the number divided by ten to the power of `decimals`, exactly.
    void addDecimal(std::int64_t value, int decimals) {
        if (decimals == 0 || value == 0) {
            addNumber(value);
            return;
        }
        std::array<char, 24> digits{};
        const auto bits = static_cast<std::uint64_t>(value);
        const char* const end =
            std::to_chars(digits.data(), digits.data() + digits.size(), value < 0 ? 0 - bits : bits).ptr;
        const auto count = static_cast<int>(end - digits.data());
        _addDigits(digits.data(), count, decimals, value < 0);
    }

    /// Appends a single, as `writeSingle` does.
    void addReal(float value) {
        _at = writeSingle(_at, _end, value);
        *_at++ = ',';
    }

    /// Appends a finite number of any size with all its digits.
    void addLong(double value) {
        std::array<char, 400> digits{}; // a double has 309 before the point
        const char* const end =
            std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed).ptr;
        const auto length = static_cast<std::size_t>(_at - _text.data());
        _text.resize(_text.size() + digits.size());
        _at = std::copy(static_cast<const char*>(digits.data()), end, _text.data() + length);
        _end = _text.data() + _text.size();
        *_at++ = ',';
    }

    /// Appends an empty column.
    void addNothing() { *_at++ = ','; }

    /// Appends the `count` lowest bits of a word as columns, the lowest first.
    void addStates(std::uint64_t word, std::size_t count) {
        char* const columns = _at; // no member that a character written might change, for the sake of vector units
        for (std::size_t i = 0; i < count; ++i) {
            columns[2 * i] = static_cast<char>('0' + (word >> i & 1U));
            columns[2 * i + 1] = ',';
        }
        _at = columns + kStateLength * count;
    }

    /// Replaces the last comma by the line end.
    void finish(std::string_view lineEnd) {
        --_at;
        for (const char byte : lineEnd) {
            *_at++ = byte;
        }
        _text.resize(static_cast<std::size_t>(_at - _text.data()));
    }

private:
    static constexpr std::uint64_t kRangeOfEight = 100000000;
    static constexpr std::size_t kLongestNumber = 24; ///< 64 bits with a sign and a point, or a single, and a comma
    static constexpr std::size_t kStateLength = 2;
    static constexpr std::size_t kLongestLineEnd = 8;

    /// Puts the point before the last `decimals` digits. Zeros are put in front if there are fewer digits; zeros at the
    /// end are left out.
    void _addDigits(const char* digits, int count, int decimals, bool isNegative) {
        *_at = '-'; // overwritten if it isn't negative
        _at += isNegative ? 1 : 0;
        int last = count;
        while (last > count - decimals && last > 0 && digits[last - 1] == '0') {
            --last;
        }
        for (int place = std::min(0, count - decimals - 1); place < last; ++place) {
            if (place == count - decimals) {
                *_at++ = '.';
            }
            *_at++ = place < 0 ? '0' : digits[place];
        }
        for (int place = last; place < count - decimals; ++place) {
            *_at++ = '0';
        }
        *_at++ = ',';
    }

    /// Splits the number into halves of four digits, then pairs, then digits, all in one word, with the first digit in
    /// the lowest byte. It always writes eight bytes; what follows overwrites the surplus.
    void _addUpToEight(std::uint64_t number) {
        constexpr std::uint64_t hundredth = ((1U << 20U) + 99) / 100; // rounded up: exact for what is below 10000
        constexpr std::uint64_t tenth = ((1U << 10U) + 9) / 10;       // likewise, below 100
        constexpr std::uint64_t lowBitsOfHalves = 0x7FU | std::uint64_t{0x7FU} << 32U;
        const std::uint64_t halves = number / 10000 | number % 10000 << 32U;
        const std::uint64_t hundreds = halves * hundredth >> 20U & lowBitsOfHalves;
        const std::uint64_t quarters = hundreds | (halves - 100 * hundreds) << 16U;
        const std::uint64_t tens = quarters * tenth >> 10U & OrvComtradeLib::fourOf(0xF, 0);
        const std::uint64_t digits = tens | (quarters - 10 * tens) << 8U;
        const std::uint64_t lastOne = std::uint64_t{1} << 56U; // of a 0 one digit counts
        const int leadingZeros = __builtin_ctzll(digits | lastOne) / 8;
        std::uint64_t text = (digits | OrvComtradeLib::eightOf('0')) >> 8 * leadingZeros;
#if __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
        text = __builtin_bswap64(text);
#endif
        std::memcpy(_at, &text, sizeof text);
        _at += 8 - leadingZeros;
    }

    std::string& _text;
    char* _at;
    char* _end;
};

} // namespace OrvComtradeIntake
