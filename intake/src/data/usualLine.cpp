#include "usualLine.h"

#include <cstring>

namespace OrvComtradeIntake {

namespace {

constexpr unsigned int kMostDigits = 18; // of an integer that is surely within 64 bits
constexpr unsigned int kAtOnce = 8;
constexpr unsigned int kMissingDigits = 5; // of 99999

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

/// Whether a number with so many places behind its point is 99999.
bool isMissing(std::uint64_t mantissa, unsigned int places) {
    return places + kMissingDigits <= kMostDigits &&
           mantissa == static_cast<std::uint64_t>(kMissingText) * kPowersOfTen[places];
}

/// Reads a usual line column by column.
class UsualLine {
public:
    UsualLine(std::string_view line, const DataLayout& layout, AsciiSample& sample)
        : _begin(line.data()), _at(line.data()), _end(line.data() + line.size()), _layout(layout), _sample(sample) {}

    bool read() {
        _sample.analog.resize(_layout.analogs);
        _sample.status.resize(_layout.statuses);
        if (!_readInteger(_sample.number) || !_takeComma() || !_readInteger(_sample.stamp)) {
            return false;
        }
        for (std::size_t i = 0; i < _layout.analogs; ++i) {
            if (!_takeComma() || !_readAnalog(i)) {
                return false;
            }
        }
        return _readStates() && _isClear();
    }

private:
    bool _takeComma() { return _at < _end && *_at++ == ','; }

    /// Appends the digits at the cursor to those of `value`; gives their number, not counting far beyond the most.
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

    bool _readInteger(std::optional<std::int64_t>& number) {
        const bool negative = *_at == '-';
        _at += negative ? 1 : 0;
        std::uint64_t magnitude = 0;
        const unsigned int count = _takeDigits(magnitude);
        const auto value = static_cast<std::int64_t>(magnitude);
        number = negative ? -value : value;
        return count != 0 && count <= kMostDigits;
    }

    bool _readAnalog(std::size_t channel) {
        const char* const column = _at;
        _at += *_at == '-' || *_at == '+' ? 1 : 0;
        std::uint64_t mantissa = 0;
        unsigned int count = _takeDigits(mantissa);
        unsigned int places = 0;
        const bool hasPoint = *_at == '.';
        if (hasPoint) {
            ++_at;
            places = _takeDigits(mantissa);
            count += places;
        }
        if (count == 0 || count > kMostDigits) {
            return false;
        }
        _addIfOdd(hasPoint || *column == '+', channel, column);
        AnalogField& field = _sample.analog[channel];
        field.value = {mantissa, -static_cast<int>(places), *column == '-', false};
        field.missing = *column != '-' && isMissing(mantissa, places);
        _sample.hasDecimals = _sample.hasDecimals || places != 0;
        return true;
    }

    /// Signs are as good as drawn: no branch that depends on this one's alone.
    void _addIfOdd(bool isOdd, std::size_t channel, const char* column) {
        _odd += isOdd ? 1U : 0U;
        if (_firstColumn == nullptr && isOdd) {
            _firstOdd = channel;
            _firstColumn = column;
        }
    }

    bool _readStates() {
        const std::size_t count = _layout.statuses;
        if (static_cast<std::size_t>(_end - _at) != 2 * count || _at > _end) {
            return false;
        }
        // For vector units: no branch in the loop, no member that a state written might change.
        const char* const columns = _at;
        char* const states = _sample.status.data();
        int wrong = 0;
        for (std::size_t i = 0; i < count; ++i) {
            const char state = columns[2 * i + 1];
            wrong |= (columns[2 * i] ^ ',') | ((state ^ '0') & ~1);
            states[i] = state;
        }
        return wrong == 0;
    }

    /// Adds the fault. The library can't read on behind an odd column, with one exception: a point behind the last
    /// number would be a state, or is never looked at.
    bool _isClear() {
        if (_odd == 0) {
            return true;
        }
        const auto offset = static_cast<std::size_t>(_firstColumn - _begin);
        _sample.faults.push_back({LineFault::Decimals, 2 + _firstOdd, offset, _odd});
        return _firstOdd + 1 != _layout.analogs || *_firstColumn == '+';
    }

    const char* _begin;
    const char* _at;
    const char* _end;
    const DataLayout& _layout;
    AsciiSample& _sample;
    std::size_t _odd = 0; ///< columns with a plus sign or a point
    std::size_t _firstOdd = 0;
    const char* _firstColumn = nullptr;
};

} // namespace

bool readUsualLine(std::string_view line, const DataLayout& layout, AsciiSample& sample) {
    sample.kind = LineKind::Whole;
    sample.faults.clear();
    sample.remarks.clear();
    sample.exactStamp.reset();
    sample.hasDecimals = false;
    return UsualLine(line, layout, sample).read();
}

} // namespace OrvComtradeIntake
