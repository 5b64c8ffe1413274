#include "data/LineParser.h"

#include "base/characters.h"
#include "src/data/digits.h"

#include <algorithm>
#include <utility>

namespace OrvComtradeIntake {

namespace {

constexpr unsigned int kSurelyFits = 18;          // digits
constexpr long double kGreatestInteger = 9.2e18L; // of 64 bits, roughly

/// "0EOF": what was written behind the last line without a line end.
bool isZeroAndText(std::string_view column) {
    const std::size_t end = column.find_first_not_of('0');
    return end != 0 && end != std::string_view::npos && !isDigit(column[end]);
}

bool isControl(char character) {
    return character == '\r' || character == '\x1A' || character == '\0';
}

std::size_t countByBlanks(std::string_view line) {
    std::size_t count = 0;
    bool isInside = false;
    for (const char character : line) {
        const bool separates = isBlank(character) || character == ',';
        count += !separates && !isInside ? 1U : 0U;
        isInside = !separates;
    }
    return count;
}

/// Appends the digits at `at` to those of `value`; gives their number, not counting far beyond what surely fits.
unsigned int takeDigits(const char*& at, std::uint64_t& value) {
    unsigned int count = 0;
    const std::uint64_t first = OrvComtradeLib::leadingDigits(at, count);
    value = value * kPowersOfTen[count] + first;
    at += count;
    if (count == OrvComtradeLib::kDigitsAtOnce) {
        for (; isDigit(*at) && count <= kSurelyFits; ++at, ++count) {
            value = value * 10 + static_cast<std::uint64_t>(*at - '0');
        }
    }
    return count;
}

} // namespace

LineParser::LineParser(const Header& header)
    : _layout(header, DataType::Ascii), _missing(header), _allowsEmpty(header.revision >= 2013) {}

void LineParser::read(std::string_view line, AsciiSample& sample) {
    sample.clear();
    _begin = line.data();
    _at = _begin;
    _end = _begin + line.size();
    _byBlanks = false;
    if (std::all_of(line.begin(), line.end(), isBlank)) {
        if (std::any_of(line.begin(), line.end(), [](char c) { return c == '\x1A' || c == '\0'; })) {
            sample.kind = LineKind::Bad;
            sample.faults.push_back({LineFault::ControlLine, 0, 0});
        }
        return;
    }
    _readColumns(sample);
    if (_absent != 0 && countByBlanks(line) >= _layout.fields()) {
        sample.clear();
        _at = _begin;
        _byBlanks = true;
        _skipBlanks();
        _readColumns(sample);
        sample.faults.push_back({LineFault::Blanks, 0, 0});
    }
    _judge(sample);
    const auto control = static_cast<std::size_t>(std::find_if(line.begin(), line.end(), isControl) - line.begin());
    if (sample.kind != LineKind::Bad && control != line.size()) {
        sample.faults.push_back({LineFault::Controls, 0, control});
    }
}

void LineParser::_readColumns(AsciiSample& sample) {
    _isOver = false;
    _absent = 0;
    _good = 0;
    _bad = 0;
    _readNumber(sample);
    _readStamp(sample);
    sample.analog.resize(_layout.analogs);
    for (std::size_t i = 0; i < _layout.analogs; ++i) {
        sample.analog[i] = _readAnalog(i, sample);
    }
    sample.status.resize(_layout.statuses);
    for (std::size_t i = 0; i < _layout.statuses; ++i) {
        sample.status[i] = _readState(2 + _layout.analogs + i, sample);
    }
    _readRest(sample);
}

void LineParser::_judge(AsciiSample& sample) const {
    sample.kind = LineKind::Whole;
    if (_absent != 0) {
        sample.kind = sample.number && _layout.fields() - _absent >= 2 ? LineKind::Short : LineKind::Bad;
    } else if (_good == 0 || (!sample.number && _bad > _good)) {
        sample.kind = LineKind::Bad; // as many columns, and hardly one of them makes sense
    }
    if (sample.kind == LineKind::Bad) {
        sample.faults.assign(1, {LineFault::BadLine, 0, 0});
    }
}

bool LineParser::_isAbsent() {
    if (!_isOver) {
        return false;
    }
    ++_absent;
    return true;
}

/// A number of up to 18 digits, perhaps with a point, that ends with a comma or the line, taken at once; false leaves
/// everything as it is.
bool LineParser::_takeDecimal(Decimal& value, bool& hasPoint) {
    const char* at = _at;
    const bool negative = at != _end && *at == '-';
    at += negative ? 1 : 0;
    std::uint64_t mantissa = 0;
    unsigned int places = 0;
    unsigned int count = takeDigits(at, mantissa);
    hasPoint = *at == '.' && at < _end;
    if (hasPoint) {
        ++at;
        places = takeDigits(at, mantissa);
        count += places;
    }
    if (count == 0 || count > kSurelyFits || at > _end || !_isEnd(at)) {
        return false;
    }
    value = {mantissa, -static_cast<int>(places), negative, false};
    _endAt(at);
    return true;
}

/// A plain integer, in the same way.
bool LineParser::_takeInteger(std::int64_t& value) {
    const char* const before = _at;
    Decimal number;
    bool hasPoint = false;
    if (!_takeDecimal(number, hasPoint)) {
        return false;
    }
    if (hasPoint) {
        _at = before;
        _isOver = false;
        return false;
    }
    ++_good;
    value = number.scaled(0);
    return true;
}

std::string_view LineParser::_take() {
    const char* end = _at;
    while (end < _end && *end != ',' && !(_byBlanks && isBlank(*end))) {
        ++end;
    }
    const std::string_view column = trimmed({_at, static_cast<std::size_t>(end - _at)});
    _endAt(end);
    return column;
}

void LineParser::_endAt(const char* at) {
    _at = at;
    _skipBlanks();
    if (_at < _end && *_at == ',') {
        ++_at;
        _skipBlanks();
    } else if (_at >= _end) {
        _isOver = true;
    }
}

void LineParser::_skipBlanks() {
    while (_byBlanks && _at < _end && isBlank(*_at)) {
        ++_at;
    }
}

/// The number that a column holds which is not as plain as it should be.
std::optional<Decimal> LineParser::_decimalOf(std::string_view text, std::size_t field, std::size_t offset,
                                              LineFault odd, AsciiSample& sample) {
    const std::optional<Decimal> number = readDecimal(text);
    if (text.empty()) {
        sample.faults.push_back({LineFault::EmptyField, field, offset});
    } else if (!number) {
        sample.faults.push_back({LineFault::BadField, field, offset});
        ++_bad;
    } else if (text.find_first_not_of("-0123456789") != std::string_view::npos) {
        sample.faults.push_back({odd, field, offset});
    }
    _good += number ? 1U : 0U;
    return number;
}

void LineParser::_readNumber(AsciiSample& sample) {
    if (_isAbsent()) {
        return;
    }
    std::int64_t value = 0;
    if (_takeInteger(value)) {
        sample.number = value;
        return;
    }
    const std::size_t offset = _offset();
    const std::optional<Decimal> number = _decimalOf(_take(), 0, offset, LineFault::Decimals, sample);
    if (number && number->magnitude() >= kGreatestInteger) {
        sample.faults.push_back({LineFault::BadField, 0, offset});
    } else if (number) {
        sample.number = number->scaled(0);
    }
}

void LineParser::_readStamp(AsciiSample& sample) {
    if (_isAbsent()) {
        return;
    }
    std::int64_t value = 0;
    if (_takeInteger(value)) {
        sample.stamp = value;
        return;
    }
    const std::size_t offset = _offset();
    const std::string_view text = _take();
    if (text.empty()) { // a missing stamp is written so where a rate gives the times (8.4)
        return;
    }
    const std::optional<Decimal> number = _decimalOf(text, 1, offset, LineFault::DecimalStamp, sample);
    if (!number) {
        return;
    }
    if (number->magnitude() >= kGreatestInteger) {
        sample.faults.push_back({LineFault::OverlongStamp, 1, offset});
        return;
    }
    sample.stamp = number->scaled(0);
    if (!number->isInteger()) {
        sample.exactStamp = number;
    }
}

AnalogField LineParser::_readAnalog(std::size_t channel, AsciiSample& sample) {
    constexpr Decimal none{static_cast<std::uint64_t>(MissingCode::kUsual), 0, false, false};
    if (_isAbsent()) {
        return {none, true};
    }
    const std::size_t offset = _offset();
    Decimal value;
    bool hasPoint = false;
    if (_takeDecimal(value, hasPoint)) {
        ++_good;
        if (hasPoint) {
            sample.faults.push_back({LineFault::Decimals, 2 + channel, offset});
            value = value.normalised();
        }
    } else {
        const std::string_view text = _take();
        if (text.empty() && _allowsEmpty) {
            return {none, true};
        }
        const std::optional<Decimal> number = _decimalOf(text, 2 + channel, offset, LineFault::Decimals, sample);
        if (!number) {
            return {none, true};
        }
        value = *number;
    }
    const bool isInteger = value.isInteger();
    sample.hasDecimals = sample.hasDecimals || !isInteger;
    return {value, isInteger && _missing.isMissing(value.scaled(0), channel)};
}

char LineParser::_readState(std::size_t field, AsciiSample& sample) {
    if (_isAbsent()) {
        return '0';
    }
    if (_at < _end && (*_at == '0' || *_at == '1') && _isEnd(_at + 1)) {
        const char state = *_at;
        ++_good;
        _endAt(_at + 1);
        return state;
    }
    const std::size_t offset = _offset();
    const std::string_view text = _take();
    if (text == "0" || text == "1") {
        ++_good;
        return text.front();
    }
    if (text.empty()) {
        sample.faults.push_back({LineFault::EmptyField, field, offset});
        return '0';
    }
    sample.faults.push_back({LineFault::State, field, offset});
    const std::optional<Decimal> number = readDecimal(text);
    ++(number ? _good : _bad);
    return (number ? number->mantissa == 0 : isZeroAndText(text)) ? '0' : '1';
}

/// What stands behind the last column.
void LineParser::_readRest(AsciiSample& sample) {
    if (_isOver) {
        return;
    }
    const std::size_t offset = _offset();
    bool isEmpty = true;
    while (isEmpty && !_isOver) {
        isEmpty = _take().empty();
    }
    sample.faults.push_back({isEmpty ? LineFault::TrailingComma : LineFault::Surplus, _layout.fields(), offset});
}

bool isLost(const FieldFault& fault) {
    return fault.fault == LineFault::EmptyField || fault.fault == LineFault::BadField ||
           fault.fault == LineFault::State;
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

std::size_t columnsIn(std::string_view line) {
    const std::string_view text = trimmed(line);
    const auto commas = static_cast<std::size_t>(std::count(text.begin(), text.end(), ','));
    return text.empty() ? 0 : commas != 0 ? commas + 1 : countByBlanks(text);
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
