#pragma once

#include "base/decimal.h"
#include "data/DataLayout.h"
#include "data/missingValues.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace OrvComtradeIntake {

/// What may be wrong with a line of ASCII data.
enum class LineFault {
    BlankLine,
    ControlLine, ///< nothing but 0x1A or zero bytes
    BadLine,     ///< not a data line at all
    ShortLine,
    EmptyField,
    BadField,
    State,         ///< neither "0" nor "1"
    Decimals,      ///< an analog value or a number with a point, a plus sign or an exponent
    DecimalStamp,  ///< the same in a time stamp
    OverlongStamp, ///< a time stamp of more than 64 bits
    Blanks,        ///< columns separated by blanks
    Mark,          ///< a byte-order mark in front of the first line
    Controls,      ///< 0x1A, zero bytes or CR next to columns
    LineEnd,       ///< a lone CR before the line, in data whose lines end with LF
    TrailingComma, ///< a comma with nothing after it, where no column is due
    Surplus,       ///< more columns than are due
    Count          ///< number of faults
};

struct FieldFault {
    LineFault fault = LineFault::BadField;
    std::size_t field = 0;   ///< the first one: 0 number, 1 timestamp, then channels
    std::size_t offset = 0;  ///< in the line
    std::uint64_t count = 1; ///< of such faults, with no other between them
};

enum class LineKind { Blank, Bad, Short, Whole };

/// An analog value of a line. A missing one has the number that means a missing value, or 99999 if the column is empty.
struct AnalogField {
    Decimal value;
    bool missing = false;
};

/// A line of ASCII data as it is meant. If it is not a sample, the channels still hold values of an earlier line.
struct AsciiSample {
    LineKind kind = LineKind::Blank;
    std::optional<std::int64_t> number;
    std::optional<std::int64_t> stamp;
    std::optional<Decimal> exactStamp; ///< the exact stamp if `stamp` is rounded
    std::vector<AnalogField> analog;
    std::vector<char> status; ///< '0' or '1'
    std::size_t absent = 0;   ///< number of columns that the line lacks
    std::vector<FieldFault> faults;
    bool hasDecimals = false; ///< some analog value is not an integer of 64 bits

    /// Resets everything but the channels, which the next line overwrites.
    void clear() {
        kind = LineKind::Blank;
        number.reset();
        stamp.reset();
        exactStamp.reset();
        absent = 0;
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

/// Understands any line of ASCII data (IEEE C37.111-2013, 8.4). Columns are separated by commas, or by blanks if there
/// is no comma. Numbers may have signs, points and exponents.
class LineParser {
public:
    /// Bytes after a line that may be read with it; they may hold anything.
    static constexpr std::size_t kSlack = 32;

    explicit LineParser(const Header& header);

    /// Reads the line into `sample`.
    void read(std::string_view line, AsciiSample& sample);

private:
    void _readColumns(AsciiSample& sample);
    void _judge(AsciiSample& sample) const;
    void _fillUp(AsciiSample& sample) const;
    void _readNumber(AsciiSample& sample);
    void _readStamp(AsciiSample& sample);
    void _readAnalogs(AsciiSample& sample);
    void _readSlowAnalog(std::size_t channel, AsciiSample& sample);
    void _readStates(AsciiSample& sample);
    char _readState(std::size_t field, AsciiSample& sample);
    void _readRest(AsciiSample& sample);
    std::optional<Decimal> _decimalOf(std::string_view text, std::size_t field, std::size_t offset, LineFault odd,
                                      AsciiSample& sample);
    bool _isAbsent(AsciiSample& sample, std::size_t columns = 1) const;
    bool _takeDecimal(Decimal& value, bool& hasPoint);
    bool _takeInteger(std::int64_t& value);
    std::string_view _take();
    void _endAt(const char* at);
    std::size_t _offset() const { return static_cast<std::size_t>(_at - _begin); }

    DataLayout _layout;
    MissingCode _missing;
    bool _allowsEmpty; ///< an empty column is a missing value

    const char* _begin = nullptr;
    const char* _at = nullptr;
    const char* _end = nullptr;
    bool _isOver = false;   ///< no column is left
    bool _byBlanks = false; ///< columns are separated by blanks
    std::size_t _good = 0;  ///< columns that hold what they should
    std::size_t _bad = 0;   ///< columns that make no sense
};

/// Whether the value of the column is lost.
bool isLost(const FieldFault& fault);

/// The time stamp multiplied by ten to the power of `exponent`, rounded.
std::int64_t scaledStamp(std::int64_t stamp, int exponent);
std::optional<std::int64_t> scaledStamp(const AsciiSample& sample, int exponent);

/// Number of columns of a line, separated by commas, or by blanks if there is no comma; 0 for an empty line.
std::size_t columnsIn(std::string_view line);

/// Name of a column in findings: "n", "timestamp", "A3", "D5"; "column 12" after the last channel.
std::string fieldName(std::size_t field, const DataLayout& layout);

} // namespace OrvComtradeIntake
