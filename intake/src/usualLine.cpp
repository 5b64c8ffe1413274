#include "usualLine.h"

#include <array>
#include <cstring>

namespace OrvComtradeIntake {

namespace {

constexpr unsigned int kMostDigits = 18; // of an integer that is surely within 64 bits
constexpr unsigned int kAtOnce = 8;

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

/// Value of the decimal digits that eight bytes begin with; `count` gets their number, 0 to 8. All at a time: columns
/// differ in length, and a loop that ends unpredictably at each costs more than this arithmetic.
std::uint64_t leadingDigits(const char* bytes, unsigned int& count) {
    std::uint64_t digits = 0;
    std::memcpy(&digits, bytes, sizeof digits);
#if __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
    digits = __builtin_bswap64(digits);
#endif
    digits ^= 0x3030303030303030U; // a digit becomes its value, 0 to 9
    const std::uint64_t others = ((digits + 0x7676767676767676U) | digits) & 0x8080808080808080U;
    count = others == 0 ? kAtOnce : static_cast<unsigned int>(__builtin_ctzll(others)) / 8;
    if (count == 0) {
        return 0;
    }
    const std::uint64_t padded = digits << (64 - 8 * count); // zeros take the place of missing leading digits
    const std::uint64_t pairs = padded * 10 + (padded >> 8U);
    const std::uint64_t pairMask = 0x000000FF000000FFU;
    return ((pairs & pairMask) * 0x000F424000000064U + (pairs >> 16U & pairMask) * 0x0000271000000001U) >> 32U;
}

/// Reads a usual line column by column.
class UsualLine {
public:
    UsualLine(std::string_view line, const DataLayout& layout, AsciiSample& sample)
        : _begin(line.data()), _at(line.data()), _end(line.data() + line.size()), _layout(layout), _sample(sample) {}

    bool read() {
        _sample.analog.resize(_layout.analogs);
        _sample.status.resize(_layout.statuses);
        if (!_readInteger(_sample.number) || !_readInteger(_sample.stamp)) {
            return false;
        }
        for (std::size_t i = 0; i < _layout.analogs; ++i) {
            if (!_readAnalog(i)) {
                return false;
            }
        }
        return _areStates();
    }

private:
    /// Digits at the cursor, which moves behind them, after those of `value`.
    unsigned int _takeDigits(std::uint64_t& value) {
        unsigned int count = 0;
        const std::uint64_t first = leadingDigits(_at, count);
        value = value * kPowersOfTen[count] + first;
        _at += count;
        if (count == kAtOnce) {
            for (; isDigit(*_at) && count <= kMostDigits; ++_at, ++count) {
                value = value * 10 + static_cast<std::uint64_t>(*_at - '0');
            }
        }
        return count;
    }

    /// At the end of a column: steps over the comma, which none follows at the line's end.
    bool _endColumn(bool isLast) {
        if (isLast) {
            return _at == _end;
        }
        return _at < _end && *_at++ == ',';
    }

    bool _readInteger(std::optional<std::int64_t>& number) {
        const bool negative = *_at == '-';
        _at += negative ? 1 : 0;
        std::uint64_t magnitude = 0;
        const unsigned int count = _takeDigits(magnitude);
        if (count == 0 || count > kMostDigits) {
            return false;
        }
        const auto value = static_cast<std::int64_t>(magnitude);
        number = negative ? -value : value;
        const bool isLast = &number == &_sample.stamp && _layout.fields() == 2;
        return isLast || _hasStatesOnly(number) ? _at <= _end : _endColumn(false);
    }

    bool _readAnalog(std::size_t i);
    bool _areStates();
};

} // namespace
} // namespace OrvComtradeIntake
