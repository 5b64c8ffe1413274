#pragma once

#include "Cfg.h"

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

/// Reads the integer at `cursor`, which moves behind it; false when there is none. Wraps modulo 2^64.
inline bool scanInteger(const char*& cursor, const char* end, std::int64_t& value) {
    const bool negative = *cursor == '-';
    if (negative) {
        ++cursor;
    }
    if (cursor == end || !isDigit(*cursor)) {
        return false;
    }
    std::uint64_t magnitude = 0;
    do {
        magnitude = magnitude * 10 + static_cast<std::uint64_t>(*cursor - '0');
        ++cursor;
    } while (cursor != end && isDigit(*cursor));
    value = static_cast<std::int64_t>(negative ? 0 - magnitude : magnitude);
    return true;
}

/// Scans the line from `cursor` to `end`, handing each column on as it is met: `onTimestamp(std::uint32_t)`,
/// `onAnalog(std::uint32_t channel, double raw)` and `onStatus(bool)`. True when every expected column was there.
template <class OnTimestamp, class OnAnalog, class OnStatus>
bool scanLine(const char* cursor, const char* end, const LineShape& shape, OnTimestamp onTimestamp, OnAnalog onAnalog,
              OnStatus onStatus) {
    std::uint32_t field = 0;
    for (;;) {
        while (cursor != end && isLineSpace(*cursor)) {
            ++cursor;
        }
        if (cursor == end) {
            return field >= shape.expectedFields;
        }
        if (field >= shape.firstStatus) {
            onStatus(*cursor != '0');
            ++cursor;
        } else {
            std::int64_t value = 0;
            if (!scanInteger(cursor, end, value)) {
                return false;
            }
            if (field == 1) {
                onTimestamp(static_cast<std::uint32_t>(value));
            } else if (field > 1) {
                onAnalog(field - 2, static_cast<double>(value));
            }
        }
        ++field;
        if (cursor == end) {
            return field >= shape.expectedFields;
        }
        if (*cursor == ',') {
            ++cursor;
            if (cursor == end) {
                return field >= shape.expectedFields;
            }
        }
        if (field >= shape.expectedFields) {
            return true;
        }
    }
}

} // namespace OrvComtradeLib
