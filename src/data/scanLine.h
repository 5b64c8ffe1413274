#pragma once

#include "Cfg.h"
#include "littleEndian.h"

#include <cstddef>
#include <cstdint>

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

    std::uint32_t firstStatus;    ///< number of the first status column, counted from 0
    std::uint32_t expectedFields; ///< all columns, sample number and timestamp included
};

inline bool isLineSpace(char character) {
    return (character >= '\t' && character <= '\r') || character == ' ';
}

inline bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

constexpr std::ptrdiff_t kBytesAtOnce = 8;

/// Value of the decimal digits that eight bytes begin with; `count` gets their number, 0 to 8. All eight at a time:
/// columns differ in length, and a loop that ends unpredictably at each costs more than this arithmetic.
inline std::uint64_t leadingDigits(const char* bytes, unsigned int& count) {
    const std::uint64_t digits =
        readLittleEndian<std::uint64_t>(bytes) ^ 0x3030303030303030U; // a digit becomes its value, 0 to 9
    const std::uint64_t others = ((digits + 0x7676767676767676U) | digits) & 0x8080808080808080U;
    count = others == 0 ? 8 : static_cast<unsigned int>(__builtin_ctzll(others)) / 8;
    if (count == 0) {
        return 0;
    }
    const std::uint64_t padded = digits << (64 - 8 * count); // zeros take the place of missing leading digits
    const std::uint64_t pairs = padded * 10 + (padded >> 8U);
    const std::uint64_t pairMask = 0x000000FF000000FFU;
    return ((pairs & pairMask) * 0x000F424000000064U + (pairs >> 16U & pairMask) * 0x0000271000000001U) >> 32U;
}

/// Reads the integer at `cursor`, which moves behind it; false when there is none. Wraps modulo 2^64.
inline bool scanInteger(const char*& cursor, const char* end, std::int64_t& value) {
    const bool negative = *cursor == '-';
    cursor += negative ? 1 : 0;
    std::uint64_t magnitude = 0;
    unsigned int count = 0;
    if (end - cursor >= kBytesAtOnce) {
        magnitude = leadingDigits(cursor, count);
        cursor += count;
    }
    if (count == 0 || count == kBytesAtOnce) {
        const char* const rest = cursor;
        for (; cursor != end && isDigit(*cursor); ++cursor) {
            magnitude = magnitude * 10 + static_cast<std::uint64_t>(*cursor - '0');
        }
        if (count == 0 && cursor == rest) {
            return false;
        }
    }
    value = static_cast<std::int64_t>(negative ? 0 - magnitude : magnitude);
    return true;
}

/// Whether eight bytes are four status columns as most devices write them, "0" or "1" and a comma each; `states` then
/// gets the four states, the first in the lowest bit.
inline bool isFourStatusColumns(const char* bytes, std::uint64_t& states) {
    const std::uint64_t columns = readLittleEndian<std::uint64_t>(bytes);
    if ((columns & 0xFFFEFFFEFFFEFFFEU) != 0x2C302C302C302C30U) {
        return false;
    }
    states = (columns & 0x0001000100010001U) * 0x0001000200040008U >> 48U; // moves the four lowest bits together
    return true;
}

/// Scans the line from `cursor` to `end`, handing each column on as it is met: `onTimestamp(std::uint32_t)`,
/// `onAnalog(std::uint32_t channel, double raw)` and `onStatus(std::uint64_t states, std::uint32_t count)`, first state
/// in the lowest bit. True when every expected column was there.
template <class OnTimestamp, class OnAnalog, class OnStatus>
bool scanLine(const char* cursor, const char* end, const LineShape& shape, OnTimestamp onTimestamp, OnAnalog onAnalog,
              OnStatus onStatus) {
    std::uint32_t field = 0;
    const auto columnFollows = [&] {
        while (cursor != end && isLineSpace(*cursor)) {
            ++cursor;
        }
        return cursor != end;
    };
    const auto isOver = [&] { // behind a column
        if (cursor != end && *cursor == ',') {
            ++cursor;
        }
        return cursor == end || field >= shape.expectedFields;
    };

    while (field < shape.firstStatus) {
        if (!columnFollows()) {
            return field >= shape.expectedFields;
        }
        std::int64_t value = 0;
        if (!scanInteger(cursor, end, value)) {
            return false;
        }
        if (field == 1) {
            onTimestamp(static_cast<std::uint32_t>(value));
        } else if (field > 1) {
            onAnalog(field - 2, static_cast<double>(value));
        }
        ++field;
        if (isOver()) {
            return field >= shape.expectedFields;
        }
    }
    while (columnFollows()) {
        std::uint64_t states = 0;
        if (end - cursor >= kBytesAtOnce && shape.expectedFields - field >= 4 && isFourStatusColumns(cursor, states)) {
            onStatus(states, 4);
            cursor += kBytesAtOnce;
            field += 4;
            if (cursor == end || field >= shape.expectedFields) {
                break;
            }
            continue;
        }
        onStatus(*cursor != '0' ? 1 : 0, 1);
        ++cursor;
        ++field;
        if (isOver()) {
            break;
        }
    }
    return field >= shape.expectedFields;
}

} // namespace OrvComtradeLib
