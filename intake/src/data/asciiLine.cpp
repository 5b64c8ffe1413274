#include "asciiLine.h"

#include <algorithm>

namespace OrvComtradeIntake {

namespace {

constexpr std::size_t kSurelyFits = 18;           // digits
constexpr long double kGreatestInteger = 9.2e18L; // of 64 bits, roughly

bool isBlank(char character) {
    return (character >= '\t' && character <= '\r') || character == ' ';
}

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

bool isIgnored(char character) {
    return isBlank(character) || character == '\x1A' || character == '\0';
}

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isIgnored(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isIgnored(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

/// "0EOF": what was written behind the last line without a line end.
bool isZeroAndText(std::string_view column) {
    const std::size_t end = column.find_first_not_of('0');
    return end != 0 && end != std::string_view::npos && !isDigit(column[end]);
}

/// Hands out the columns of a line one after the other.
class Columns {
public:
    Columns(std::string_view line, bool byBlanks) : _line(line), _byBlanks(byBlanks) { _skipBlanks(); }

    bool any() const { return _cursor <= _line.size() && !_over; }

    std::size_t offset() const { return _cursor; }

    /// A plain integer that ends with a comma or the line, taken at once; false leaves everything as it is.
    bool takeInteger(std::int64_t& value) {
        std::size_t at = _cursor;
        const bool negative = at < _line.size() && _line[at] == '-';
        at += negative ? 1 : 0;
        const std::size_t begin = at;
        std::int64_t magnitude = 0;
        for (; at < _line.size() && at - begin < kSurelyFits && isDigit(_line[at]); ++at) {
            magnitude = magnitude * 10 + (_line[at] - '0');
        }
        if (at == begin || !_isEnd(at)) {
            return false;
        }
        value = negative ? -magnitude : magnitude;
        _endAt(at);
        return true;
    }

    /// The same for a column of one character.
    bool takeState(char& state) {
        if (_cursor >= _line.size() || (_line[_cursor] != '0' && _line[_cursor] != '1') || !_isEnd(_cursor + 1)) {
            return false;
        }
        state = _line[_cursor];
        _endAt(_cursor + 1);
        return true;
    }

    std::string_view take() {
        std::size_t end = _cursor;
        while (end < _line.size() && _line[end] != ',' && !(_byBlanks && isBlank(_line[end]))) {
            ++end;
        }
        const std::string_view column = trimmed(_line.substr(_cursor, end - _cursor));
        _endAt(end);
        return column;
    }

private:
    bool _isEnd(std::size_t at) const { return at == _line.size() || _line[at] == ','; }

    void _endAt(std::size_t end) {
        _cursor = end;
        if (_byBlanks) {
            _skipBlanks();
        }
        if (_cursor < _line.size() && _line[_cursor] == ',') {
            ++_cursor;
            if (_byBlanks) {
                _skipBlanks();
            }
        } else if (_cursor >= _line.size()) {
            _over = true;
        }
    }

    void _skipBlanks() {
        while (_byBlanks && _cursor < _line.size() && isIgnored(_line[_cursor])) {
            ++_cursor;
        }
    }

    std::string_view _line;
    bool _byBlanks;
    std::size_t _cursor = 0;
    bool _over = false;
};

std::size_t countColumns(std::string_view line, bool byBlanks) {
    Columns columns(line, byBlanks);
    std::size_t count = 0;
    for (; columns.any(); ++count) {
        columns.take();
    }
    return count;
}

bool isPartedByBlanks(std::string_view line, std::size_t fields) {
    const auto commas = static_cast<std::size_t>(std::count(line.begin(), line.end(), ','));
    if (commas + 1 >= fields || std::none_of(line.begin(), line.end(), isBlank)) {
        return false;
    }
    return countColumns(line, true) >= fields;
}

/// Reads the columns of one line into a sample.
class LineParser {
public:
    LineParser(std::string_view line, const DataLayout& layout, AsciiSample& sample)
        : _columns(line, isPartedByBlanks(line, layout.fields())), _layout(layout), _sample(sample) {}

    void parse() {
        _sample.number = _integer(0);
        _readStamp();
        for (std::size_t i = 0; i < _layout.analogs; ++i) {
            _sample.analog.push_back(_analog(2 + i));
        }
        for (std::size_t i = 0; i < _layout.statuses; ++i) {
            _sample.status.push_back(_state(2 + _layout.analogs + i));
        }
        _sample.kind = LineKind::Whole;
        if (_absent != 0) {
            _sample.kind = _sample.number && _layout.fields() - _absent >= 2 ? LineKind::Short : LineKind::Bad;
        } else if (_good == 0 || (!_sample.number && _bad > _good)) {
            _sample.kind = LineKind::Bad; // as many columns, and hardly one of them makes sense
        } else {
            _remarkSurplus();
        }
    }

private:
    void _add(LineFault fault, std::size_t field, std::size_t offset) {
        _sample.faults.push_back({fault, field, offset});
    }

    void _remarkSurplus() {
        if (!_columns.any()) {
            return;
        }
        const std::size_t offset = _columns.offset();
        bool isEmpty = true;
        while (isEmpty && _columns.any()) {
            isEmpty = _columns.take().empty();
        }
        _sample.remarks.push_back({isEmpty ? LineFault::TrailingComma : LineFault::Surplus, _layout.fields(), offset});
    }

    bool _isAbsent() {
        if (_columns.any()) {
            return false;
        }
        ++_absent;
        return true;
    }

    std::optional<Decimal> _decimal(std::size_t field) {
        const std::size_t offset = _columns.offset();
        const std::string_view text = _columns.take();
        const std::optional<Decimal> number = readDecimal(text);
        if (text.empty()) {
            _add(LineFault::EmptyField, field, offset);
        } else if (!number) {
            _add(LineFault::BadField, field, offset);
            ++_bad;
        } else if (!number->isInteger() || text.find_first_not_of("-0123456789") != std::string_view::npos) {
            _add(LineFault::Decimals, field, offset);
        }
        _good += number ? 1U : 0U;
        return number;
    }

    std::optional<std::int64_t> _integer(std::size_t field) {
        if (_isAbsent()) {
            return {};
        }
        std::int64_t value = 0;
        if (_columns.takeInteger(value)) {
            ++_good;
            return value;
        }
        const std::size_t offset = _columns.offset();
        const std::optional<Decimal> number = _decimal(field);
        if (number && number->magnitude() >= kGreatestInteger) {
            _add(LineFault::BadField, field, offset);
            return {};
        }
        return number ? std::optional<std::int64_t>(number->scaled(0)) : std::nullopt;
    }

    void _readStamp() {
        _sample.stamp.reset();
        if (_isAbsent()) {
            return;
        }
        std::int64_t value = 0;
        if (_columns.takeInteger(value)) {
            ++_good;
            _sample.stamp = value;
            return;
        }
        const std::size_t offset = _columns.offset();
        const std::string_view text = _columns.take();
        const std::optional<Decimal> number = readDecimal(text);
        if (!number) {
            _add(text.empty() ? LineFault::EmptyField : LineFault::BadField, 1, offset);
            return;
        }
        ++_good;
        if (number->magnitude() >= kGreatestInteger) {
            _add(LineFault::OverlongStamp, 1, offset);
            return;
        }
        if (!number->isInteger() || text.find_first_not_of("-0123456789") != std::string_view::npos) {
            _add(LineFault::DecimalStamp, 1, offset);
        }
        _sample.stamp = number->scaled(0);
        if (!number->isInteger()) {
            _sample.exactStamp = number;
        }
    }

    AnalogField _analog(std::size_t field) {
        if (_isAbsent()) {
            return {Decimal(), true};
        }
        std::int64_t value = 0;
        if (_columns.takeInteger(value)) {
            ++_good;
            const auto magnitude = static_cast<std::uint64_t>(value < 0 ? -value : value);
            return {Decimal{magnitude, 0, value < 0, false}, value == kMissingText};
        }
        const std::optional<Decimal> number = _decimal(field);
        if (!number) {
            return {Decimal(), true};
        }
        _sample.hasDecimals = _sample.hasDecimals || !number->isInteger();
        const bool isMarker = number->isInteger() && number->scaled(0) == kMissingText;
        return {*number, isMarker};
    }

    char _state(std::size_t field) {
        char state = '0';
        if (_isAbsent()) {
            return state;
        }
        if (_columns.takeState(state)) {
            ++_good;
            return state;
        }
        const std::size_t offset = _columns.offset();
        const std::string_view text = _columns.take();
        if (text.empty()) {
            _add(LineFault::EmptyField, field, offset);
            return '0';
        }
        if (text == "0" || text == "1") {
            ++_good;
            return text.front();
        }
        _add(LineFault::State, field, offset);
        const std::optional<Decimal> number = readDecimal(text);
        ++(number ? _good : _bad);
        return (number ? number->mantissa == 0 : isZeroAndText(text)) ? '0' : '1';
    }

    Columns _columns;
    const DataLayout& _layout;
    AsciiSample& _sample;
    std::size_t _absent = 0; ///< columns that the line is too short for
    std::size_t _good = 0;   ///< columns that hold what they should
    std::size_t _bad = 0;    ///< columns of which no sense can be made
};

/// Reads a line as the library does: a number is "-" or nothing and digits, a state one character, and columns part at
/// one comma directly behind a column, at white space, or at nothing at all.
class LibraryLine {
public:
    LibraryLine(std::string_view line, std::size_t fields) : _line(line), _fields(fields) {}

    /// False at the end of the line, and behind the last column.
    bool columnFollows() {
        while (_cursor < _line.size() && isBlank(_line[_cursor])) {
            ++_cursor;
        }
        return _cursor < _line.size() && _field < _fields;
    }

    bool number(std::int64_t& value) {
        if (!columnFollows()) {
            return false;
        }
        const bool negative = _line[_cursor] == '-';
        _cursor += negative ? 1 : 0;
        const std::size_t begin = _cursor;
        std::uint64_t magnitude = 0;
        for (; _cursor < _line.size() && isDigit(_line[_cursor]); ++_cursor) {
            magnitude = magnitude * 10 + static_cast<std::uint64_t>(_line[_cursor] - '0');
        }
        value = static_cast<std::int64_t>(negative ? 0 - magnitude : magnitude);
        return _cursor != begin && _endColumn();
    }

    bool state(char& value) {
        if (!columnFollows()) {
            return false;
        }
        value = _line[_cursor] == '0' ? '0' : '1';
        ++_cursor;
        return _endColumn();
    }

private:
    bool _endColumn() {
        if (_cursor < _line.size() && _line[_cursor] == ',') {
            ++_cursor;
        }
        ++_field;
        return true;
    }

    std::string_view _line;
    std::size_t _fields;
    std::size_t _cursor = 0;
    std::size_t _field = 0;
};

void remark(LineFault fault, std::size_t offset, AsciiSample& sample) {
    if (offset != std::string_view::npos) {
        sample.remarks.push_back({fault, 0, offset});
    }
}

bool isSameValue(std::int64_t value, const AnalogField& field) {
    return field.value.isInteger() && (!field.missing || value == kMissingText) && field.value.scaled(0) == value;
}

} // namespace

void readAsciiLine(std::string_view line, const DataLayout& layout, AsciiSample& sample) {
    sample.kind = LineKind::Blank;
    sample.analog.clear();
    sample.status.clear();
    sample.faults.clear();
    sample.remarks.clear();
    sample.exactStamp.reset();
    sample.hasDecimals = false;
    if (std::all_of(line.begin(), line.end(), isBlank)) {
        return;
    }
    if (std::all_of(line.begin(), line.end(), isIgnored)) {
        sample.kind = LineKind::Bad;
        sample.faults.push_back({LineFault::Substitute, 0, 0});
        return;
    }
    LineParser(line, layout, sample).parse();
    if (sample.kind == LineKind::Bad) {
        sample.faults.assign(1, {LineFault::BadLine, 0, 0});
        return;
    }
    remark(LineFault::InnerReturn, line.find('\r'), sample);
    remark(LineFault::InnerSubstitute, line.find_first_of(std::string_view("\x1A\0", 2)), sample);
}

bool libraryReadsLine(std::string_view line, const DataLayout& layout, bool stamped, const AsciiSample& sample) {
    LibraryLine library(line, layout.fields());
    std::int64_t value = 0;
    if (!library.number(value) || !library.number(value)) {
        return false;
    }
    if (stamped && (!isStampOf32Bits(sample) || *sample.stamp != static_cast<std::uint32_t>(value))) {
        return false;
    }
    for (const AnalogField& field : sample.analog) {
        if (!library.number(value) || !isSameValue(value, field)) {
            return false;
        }
    }
    return std::all_of(sample.status.begin(), sample.status.end(), [&](char meant) {
        char state = '0';
        return library.state(state) && state == meant;
    });
}

bool isStampOf32Bits(const AsciiSample& sample) {
    return sample.stamp && !sample.exactStamp && *sample.stamp >= 0 && *sample.stamp <= UINT32_MAX;
}

std::int64_t scaledStamp(std::int64_t stamp, int exponent) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(stamp) *
                                     kPowersOfTen[static_cast<std::size_t>(exponent)]);
}

std::optional<std::int64_t> scaledStamp(const AsciiSample& sample, int exponent) {
    if (!sample.stamp) {
        return {};
    }
    return sample.exactStamp ? sample.exactStamp->scaled(exponent) : scaledStamp(*sample.stamp, exponent);
}

bool isLost(const FieldFault& fault) {
    return fault.fault == LineFault::EmptyField || fault.fault == LineFault::BadField ||
           fault.fault == LineFault::State;
}

bool isSurplus(const FieldFault& remark) {
    return remark.fault == LineFault::TrailingComma || remark.fault == LineFault::Surplus;
}

std::size_t columnsIn(std::string_view line) {
    const bool hasNone = std::all_of(line.begin(), line.end(), isIgnored);
    return hasNone ? 0 : countColumns(line, line.find(',') == std::string_view::npos);
}

std::string fieldName(std::size_t field, const DataLayout& layout) {
    if (field < 2) {
        return field == 0 ? "n" : "timestamp";
    }
    if (field >= layout.fields()) {
        return "column " + std::to_string(field + 1);
    }
    field -= 2;
    return field < layout.analogs ? "A" + std::to_string(field + 1) : "D" + std::to_string(field - layout.analogs + 1);
}

} // namespace OrvComtradeIntake
