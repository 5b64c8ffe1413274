#pragma once

#include "Cfg.h"
#include "digits.h"
#include "littleEndian.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace OrvComtradeLib {

/// Grammar of an ASCII data line: sample number, timestamp, analog columns, status columns.
///
/// A numeric column is an integer: "-" or nothing, then digits; it ends at the first non-digit. A status column is one
/// character, false for "0" and true for any other. Columns part at one comma directly behind a column, at white
/// space, or at nothing at all. What follows the last expected column is ignored.
///
/// Deliberate: white space before a comma makes the comma the start of the next column, an empty status column reads
/// the second comma as true, and "+", "." and exponents are refused.
struct LineShape {
    explicit LineShape(const Cfg& cfg)
        : firstStatus(static_cast<std::uint32_t>(cfg.analogChannelCount) + 2),
          expectedFields(static_cast<std::uint32_t>(cfg.totalChannelCount) + 2) {}

    /// Bytes of the shortest line that holds every column: a digit each for the numbers and what parts them, a
    /// character each for the states, and the line feed.
    std::uint64_t shortestLine() const {
        const std::uint64_t numbers = std::min(firstStatus, expectedFields);
        return std::max<std::uint64_t>(numbers + expectedFields, 1);
    }

    std::uint32_t firstStatus;    ///< number of the first status column, counted from 0
    std::uint32_t expectedFields; ///< all columns, sample number and timestamp included
};

constexpr std::ptrdiff_t kBytesAtOnce = kDigitsAtOnce;

inline bool isLineSpace(char character) {
    return (character >= '\t' && character <= '\r') || character == ' ';
}

/// Reads the integer at `cursor`, which moves behind it; false when there is none. Wraps modulo 2^64.
inline bool scanInteger(const char*& cursor, const char* end, std::int64_t& value) {
    const bool negative = *cursor == '-';
    cursor += negative ? 1 : 0;
    if (cursor == end || !isDigit(*cursor)) {
        return false;
    }
    std::uint64_t magnitude = 0;
    for (; cursor != end && isDigit(*cursor); ++cursor) {
        magnitude = magnitude * 10 + static_cast<std::uint64_t>(*cursor - '0');
    }
    value = static_cast<std::int64_t>(negative ? 0 - magnitude : magnitude);
    return true;
}

/// Whether eight bytes are four status columns as most devices write them, "0" or "1" and a comma each; `states` then
/// gets the four states, the first in the lowest bit.
inline bool isFourStatusColumns(const char* bytes, std::uint64_t& states) {
    const std::uint64_t columns = readLittleEndian<std::uint64_t>(bytes);
    constexpr std::uint64_t stateBits = fourOf(1, 0); // by which "1" differs from "0"
    if ((columns & ~stateBits) != fourOf('0', ',')) {
        return false;
    }
    // State i is bit 16 i. The factor moves it to bit 48 + i.
    constexpr std::uint64_t gather = std::uint64_t{1} << 48U | std::uint64_t{1} << 33U | 1U << 18U | 1U << 3U;
    states = (columns & stateBits) * gather >> 48U;
    return true;
}

/// Reads one line column by column: the numeric columns first, then the status columns.
class LineScanner {
public:
    LineScanner(std::string_view line, const LineShape& shape)
        : _cursor(line.data()), _end(line.data() + line.size()), _shape(shape) {}

    /// Hands every numeric column to `onNumber(std::uint32_t field, std::int64_t value)`. False when the line is over
    /// before its status columns.
    template <class OnNumber> bool scanNumbers(OnNumber onNumber) {
        while (_field < _shape.firstStatus) {
            std::int64_t value = 0;
            const bool isFast = _isFastNumber(value);
            if (!isFast && !_isNumber(value)) {
                return false;
            }
            onNumber(_field, value);
            ++_field;
            if (isFast ? _field >= _shape.expectedFields : _isOver()) {
                return false;
            }
        }
        return true;
    }

    /// Hands the status columns to `onStates(std::uint64_t states, std::uint32_t count)`, one or four at a time, the
    /// first in the lowest bit.
    template <class OnStates> void scanStates(OnStates onStates) {
        while (_columnFollows()) {
            std::uint64_t states = 0;
            if (_end - _cursor >= kBytesAtOnce && _shape.expectedFields - _field >= 4 &&
                isFourStatusColumns(_cursor, states)) {
                onStates(states, 4);
                _cursor += kBytesAtOnce;
                _field += 4;
                if (_field >= _shape.expectedFields) {
                    return;
                }
                continue;
            }
            onStates(*_cursor != '0' ? 1 : 0, 1);
            ++_cursor;
            ++_field;
            if (_isOver()) {
                return;
            }
        }
    }

    /// What has not been scanned yet.
    std::string_view rest() const { return {_cursor, static_cast<std::size_t>(_end - _cursor)}; }

    /// Whether every expected column was there.
    bool isComplete() const { return !_malformed && _field >= _shape.expectedFields; }

private:
    /// Skips white space.
    bool _columnFollows() {
        while (_cursor != _end && isLineSpace(*_cursor)) {
            ++_cursor;
        }
        return _cursor != _end;
    }

    /// Behind a column: steps over its comma.
    bool _isOver() {
        if (_cursor != _end && *_cursor == ',') {
            ++_cursor;
        }
        return _cursor == _end || _field >= _shape.expectedFields;
    }

    /// A number as most devices write it, read fast: up to eight digits with a comma right behind them.
    bool _isFastNumber(std::int64_t& value) {
        if (_end - _cursor <= kBytesAtOnce + 1) {
            return false;
        }
        const bool negative = *_cursor == '-';
        const char* const digits = _cursor + (negative ? 1 : 0);
        unsigned int count = 0;
        const auto magnitude = static_cast<std::int64_t>(leadingDigits(digits, count));
        if (count == 0 || digits[count] != ',') {
            return false;
        }
        _cursor = digits + count + 1;
        value = negative ? -magnitude : magnitude;
        return true;
    }

    bool _isNumber(std::int64_t& value) {
        if (!_columnFollows()) {
            return false;
        }
        _malformed = !scanInteger(_cursor, _end, value);
        return !_malformed;
    }

    const char* _cursor;
    const char* _end;
    LineShape _shape;
    std::uint32_t _field = 0;
    bool _malformed = false;
};

} // namespace OrvComtradeLib
