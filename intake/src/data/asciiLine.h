#pragma once

#include "DataLayout.h"
#include "decimal.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace OrvComtradeIntake {

/// What may be odd about a line of ASCII data.
enum class LineFault {
    EmptyLine,  ///< of no byte, which the library passes over
    BlankLine,  ///< of blanks, which it does not
    Substitute, ///< 0x1A or zero bytes alone
    BadLine,    ///< no data line at all
    ShortLine,
    LineEnd, ///< CR alone
    EmptyField,
    BadField,
    State,         ///< neither "0" nor "1"
    Decimals,      ///< a point, a plus sign, an exponent, or more than 64 bits
    DecimalStamp,  ///< a point, a plus sign or an exponent in a time stamp
    OverlongStamp, ///< a time stamp of more than 64 bits
    Blanks,        ///< where the library takes them for something else
    Mark,          ///< a byte-order mark in front of the first line
    InnerReturn,
    InnerSubstitute, ///< 0x1A or zero bytes beside columns
    TrailingComma,   ///< and nothing behind it, where no column is due
    Surplus,         ///< more columns than are due
    Count            ///< of the others
};

struct FieldFault {
    LineFault fault = LineFault::BadField;
    std::size_t field = 0;  ///< 0 number, 1 timestamp, then channels
    std::size_t offset = 0; ///< in the line
    std::size_t places = 1; ///< in the line; this is the first
};

enum class LineKind { Blank, Bad, Short, Whole };

/// An analog value of a line.
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
    std::vector<FieldFault> remarks; ///< what need not keep the library from reading the line rightly
    bool hasDecimals = false;        ///< some analog value is no integer of 64 bits
};

/// Understands a line, its columns parted by commas or else by blanks.
void readAsciiLine(std::string_view line, const DataLayout& layout, AsciiSample& sample);

/// Whether the library takes the line for the same sample; time stamps count if times come from them.
bool libraryReadsLine(std::string_view line, const DataLayout& layout, bool stamped, const AsciiSample& sample);

/// Whether the library, which takes 32 bits of it, reads the time stamp for the same number.
bool isStampOf32Bits(const AsciiSample& sample);

/// The time stamp times ten to the power of `exponent`, rounded.
std::int64_t scaledStamp(std::int64_t stamp, int exponent);
std::optional<std::int64_t> scaledStamp(const AsciiSample& sample, int exponent);

/// Whether it is about a column that holds nothing of sense.
bool isLost(const FieldFault& fault);

/// Whether it is about what stands behind the last column, which the library does not look at.
bool isSurplus(const FieldFault& remark);

/// Columns of any line, parted by commas or, where there is none, by blanks; 0 for a line without any character.
std::size_t columnsIn(std::string_view line);

/// "n", "timestamp", "A3", "D5", "column 12" behind the last channel.
std::string fieldName(std::size_t field, const DataLayout& layout);

} // namespace OrvComtradeIntake
