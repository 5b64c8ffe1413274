#pragma once

#include "data/AsciiSample.h"
#include "data/DataLayout.h"
#include "data/MissingCode.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace OrvComtradeIntake {

/// Understands any line of ASCII data (IEEE C37.111-2013, 8.4): columns separated by commas or else by blanks; numbers
/// with signs, points and exponents.
class LineParser {
public:
    /// Bytes behind a line that are read with it, whatever they hold.
    static constexpr std::size_t kSlack = 32;

    explicit LineParser(const Header& header);

    /// Reads the line into `sample`.
    void read(std::string_view line, AsciiSample& sample);

private:
    void _readColumns(AsciiSample& sample);
    void _judge(AsciiSample& sample) const;
    void _readNumber(AsciiSample& sample);
    void _readStamp(AsciiSample& sample);
    void _readAnalogs(AsciiSample& sample);
    void _readOddAnalog(std::size_t channel, AsciiSample& sample);
    void _readStates(AsciiSample& sample);
    char _readState(std::size_t field, AsciiSample& sample);
    void _readRest(AsciiSample& sample);
    std::optional<Decimal> _decimalOf(std::string_view text, std::size_t field, std::size_t offset, LineFault odd,
                                      AsciiSample& sample);
    bool _isAbsent();
    bool _takeDecimal(Decimal& value, bool& hasPoint);
    bool _takeInteger(std::int64_t& value);
    std::string_view _take();
    void _endAt(const char* at);
    std::size_t _offset() const { return static_cast<std::size_t>(_at - _begin); }

    DataLayout _layout;
    MissingCode _missing;
    bool _allowsEmpty; ///< nothing between two commas is a missing value

    const char* _begin = nullptr;
    const char* _at = nullptr;
    const char* _end = nullptr;
    bool _isOver = false;    ///< no column is left
    bool _byBlanks = false;  ///< columns are separated by blanks
    std::size_t _absent = 0; ///< columns that the line is too short for
    std::size_t _good = 0;   ///< columns that hold what they should
    std::size_t _bad = 0;    ///< columns of which no sense can be made
};

/// Whether it is about a column that holds nothing of sense.
bool isLost(const FieldFault& fault);

/// The time stamp times ten to the power of `exponent`, rounded.
std::int64_t scaledStamp(std::int64_t stamp, int exponent);
std::optional<std::int64_t> scaledStamp(const AsciiSample& sample, int exponent);

/// Columns of any line, separated by commas or, where there is none, by blanks; 0 for a line without any character.
std::size_t columnsIn(std::string_view line);

/// "n", "timestamp", "A3", "D5", "column 12" behind the last channel.
std::string fieldName(std::size_t field, const DataLayout& layout);

} // namespace OrvComtradeIntake
