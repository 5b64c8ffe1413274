#pragma once

#include "base/decimal.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace OrvComtradeIntake {

/// What may be wrong with a line of ASCII data.
enum class LineFault {
    BlankLine,
    ControlLine, ///< 0x1A or zero bytes alone
    BadLine,     ///< no data line at all
    ShortLine,
    EmptyField,
    BadField,
    State,         ///< neither "0" nor "1"
    Decimals,      ///< an analog value or a number with a point, a plus sign or an exponent
    DecimalStamp,  ///< the same in a time stamp
    OverlongStamp, ///< a time stamp of more than 64 bits
    Blanks,        ///< columns separated by blanks
    Mark,          ///< a byte-order mark in front of the first line
    Controls,      ///< 0x1A, zero bytes or CR beside columns
    LineEnd,       ///< CR alone in front of the line, among lines that end with LF
    TrailingComma, ///< and nothing behind it, where no column is due
    Surplus,       ///< more columns than are due
    Count          ///< of the others
};

struct FieldFault {
    LineFault fault = LineFault::BadField;
    std::size_t field = 0;   ///< the first one: 0 number, 1 timestamp, then channels
    std::size_t offset = 0;  ///< in the line
    std::uint64_t count = 1; ///< of such faults, with no other between them
};

enum class LineKind { Blank, Bad, Short, Whole };

/// An analog value of a line. A missing one has the number that stands for it, or 99999 where nothing stands there.
struct AnalogField {
    Decimal value;
    bool missing = false;
};

/// A line of ASCII data as it is meant.
struct AsciiSample {
    LineKind kind = LineKind::Blank;
    std::optional<std::int64_t> number;
    std::optional<std::int64_t> stamp;
    std::optional<Decimal> exactStamp; ///< where `stamp` is rounded
    std::vector<AnalogField> analog;
    std::vector<char> status; ///< '0' or '1'
    std::vector<FieldFault> faults;
    bool hasDecimals = false; ///< some analog value is no integer of 64 bits

    /// All but the channels, which are written over.
    void clear() {
        kind = LineKind::Blank;
        number.reset();
        stamp.reset();
        exactStamp.reset();
        faults.clear();
        hasDecimals = false;
    }

    void add(LineFault fault, std::size_t field = 0, std::size_t offset = 0) {
        if (!faults.empty() && faults.back().fault == fault) {
            ++faults.back().count;
        } else {
            faults.push_back({fault, field, offset});
        }
    }
};

} // namespace OrvComtradeIntake
