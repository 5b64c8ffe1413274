#include "data/LineParser.h"

#include "base/characters.h"
#include "src/data/digits.h"

#include <algorithm>
#include <utility>

namespace OrvComtradeIntake {

namespace {

constexpr unsigned int kSurelyFits = 18; // digits
constexpr AnalogField kNoValue = {{static_cast<std::uint64_t>(MissingCode::kUsual), 0, false, false}, true};
constexpr long double kGreatestInteger = 9.2e18L; // of 64 bits, roughly

/// "0EOF": what was written behind the last line without a line end.
bool isZeroAndText(std::string_view column) {
    const std::size_t end = column.find_first_not_of('0');
    return end != 0 && end != std::string_view::npos && !isDigit(column[end]);
}

/// First CR, 0x1A or zero byte, or npos.
std::size_t firstControl(std::string_view line) {
    return std::min({line.find('\r'), line.find('\x1A'), line.find('\0')});
}

const char* behindBlanks(const char* at, const char* end) {
    while (at < end && isBlank(*at)) {
        ++at;
    }
    return at;
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
    if (behindBlanks(_begin, _end) == _end) {
        if (line.find('\x1A') != std::string_view::npos || line.find('\0') != std::string_view::npos) {
            sample.kind = LineKind::Bad;
            sample.add(LineFault::ControlLine);
        }
        return;
    }
    _readColumns(sample);
    if (sample.absent != 0 && countByBlanks(line) >= _layout.fields()) {
        sample.clear();
        _at = behindBlanks(_begin, _end);
        _byBlanks = true;
        _readColumns(sample);
        sample.add(LineFault::Blanks);
    }
    _judge(sample);
    const std::size_t control = firstControl(line);
    if (sample.kind != LineKind::Bad && control != std::string_view::npos) {
        sample.add(LineFault::Controls, 0, control);
    }
}

void LineParser::_readColumns(AsciiSample& sample) {
    _isOver = false;
    _good = 0;
    _bad = 0;
    _readNumber(sample);
    _readStamp(sample);
    _readAnalogs(sample);
    _readStates(sample);
    _readRest(sample);
}

void LineParser::_judge(AsciiSample& sample) const {
    sample.kind = LineKind::Whole;
    if (sample.absent != 0) {
        sample.kind = sample.number && _layout.fields() - sample.absent >= 2 ? LineKind::Short : LineKind::Bad;
    } else if (_good == 0 || (!sample.number && _bad > _good)) {
        sample.kind = LineKind::Bad; // as many columns, and hardly one of them makes sense
    }
    if (sample.kind == LineKind::Bad) {
        sample.faults.assign(1, {LineFault::BadLine, 0, 0});
    } else if (sample.kind == LineKind::Short) {
        _fillUp(sample);
    }
}

/// The channels behind the end of a line. A line that is no sample is spared that, which may be many for few bytes.
void LineParser::_fillUp(AsciiSample& sample) const {
    const std::size_t channels = _layout.fields() - 2 - sample.absent; // that are there
    const auto analogs = static_cast<std::ptrdiff_t>(std::min(channels, _layout.analogs));
    const auto states = static_cast<std::ptrdiff_t>(channels) - analogs;
    std::fill(sample.analog.begin() + analogs, sample.analog.end(), kNoValue);
    std::fill(sample.status.begin() + states, sample.status.end(), '0');
}

/// Whether the line has ended before these columns.
bool LineParser::_isAbsent(AsciiSample& sample, std::size_t columns) const {
    sample.absent += _isOver ? columns : 0;
    return _isOver;
}

/// A number of up to 18 digits, perhaps with a point and with blanks around it, taken at once; false leaves everything
/// as it is.
bool LineParser::_takeDecimal(Decimal& value, bool& hasPoint) {
    const char* at = behindBlanks(_at, _end);
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
    if (count == 0 || count > kSurelyFits || at > _end) {
        return false;
    }
    const char* const end = behindBlanks(at, _end);
    if (end != _end && *end != ',' && !(_byBlanks && end != at)) {
        return false;
    }
    value = {mantissa, -static_cast<int>(places), negative, false};
    _endAt(end);
    return true;
}

/// An integer without a point, in the same way.
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

/// Goes on behind a column.
void LineParser::_endAt(const char* at) {
    _at = _byBlanks ? behindBlanks(at, _end) : at;
    _isOver = _at >= _end;
    if (!_isOver && *_at == ',') {
        ++_at;
        _at = _byBlanks ? behindBlanks(_at, _end) : _at;
    }
}

/// The number of a column that the fast way does not read.
std::optional<Decimal> LineParser::_decimalOf(std::string_view text, std::size_t field, std::size_t offset,
                                              LineFault odd, AsciiSample& sample) {
    const std::optional<Decimal> number = readDecimal(text);
    if (text.empty()) {
        sample.add(LineFault::EmptyField, field, offset);
    } else if (!number) {
        sample.add(LineFault::BadField, field, offset);
        ++_bad;
    } else if (text.find_first_not_of("-0123456789") != std::string_view::npos) {
        sample.add(odd, field, offset);
    }
    _good += number ? 1U : 0U;
    return number;
}

void LineParser::_readNumber(AsciiSample& sample) {
    if (_isAbsent(sample)) {
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
        sample.add(LineFault::BadField, 0, offset);
    } else if (number) {
        sample.number = number->scaled(0);
    }
}

void LineParser::_readStamp(AsciiSample& sample) {
    if (_isAbsent(sample)) {
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
        sample.add(LineFault::OverlongStamp, 1, offset);
        return;
    }
    sample.stamp = number->scaled(0);
    if (!number->isInteger()) {
        sample.exactStamp = number;
    }
}

void LineParser::_readAnalogs(AsciiSample& sample) {
    sample.analog.resize(_layout.analogs);
    for (std::size_t i = 0; i < _layout.analogs && !_isAbsent(sample, _layout.analogs - i); ++i) {
        AnalogField& field = sample.analog[i];
        const std::size_t offset = _offset();
        bool hasPoint = false;
        if (!_takeDecimal(field.value, hasPoint)) {
            _readSlowAnalog(i, sample);
            continue;
        }
        ++_good;
        if (hasPoint) {
            sample.add(LineFault::Decimals, 2 + i, offset);
            field.value = field.value.mantissa % 10 == 0 ? field.value.normalised() : field.value;
        }
        const bool isInteger = field.value.exponent >= 0; // so few digits fit
        sample.hasDecimals = sample.hasDecimals || !isInteger;
        field.missing = isInteger && _missing.isMissing(field.value.scaled(0), i);
    }
}

void LineParser::_readSlowAnalog(std::size_t channel, AsciiSample& sample) {
    AnalogField& field = sample.analog[channel];
    field = kNoValue;
    const std::size_t offset = _offset();
    const std::string_view text = _take();
    if (text.empty() && _allowsEmpty) {
        return;
    }
    if (const auto number = _decimalOf(text, 2 + channel, offset, LineFault::Decimals, sample)) {
        const bool isInteger = number->isInteger();
        sample.hasDecimals = sample.hasDecimals || !isInteger;
        field = {*number, isInteger && _missing.isMissing(number->scaled(0), channel)};
    }
}

void LineParser::_readStates(AsciiSample& sample) {
    const std::size_t count = _layout.statuses;
    sample.status.resize(count);
    for (std::size_t i = 0; i < count && !_isAbsent(sample, count - i); ++i) {
        const std::size_t first = i;
        const char* at = _at;
        const auto isFast = [&] { return _end - at > 1 && (*at == '0' || *at == '1') && at[1] == ','; };
        for (char* const states = sample.status.data(); !_byBlanks && i + 1 < count && isFast(); at += 2) {
            states[i++] = *at;
        }
        _at = at;
        _good += i - first;
        sample.status[i] = _readState(2 + _layout.analogs + i, sample);
    }
}

char LineParser::_readState(std::size_t field, AsciiSample& sample) {
    const std::size_t offset = _offset();
    const std::string_view text = _take();
    if (text == "0" || text == "1") {
        ++_good;
        return text.front();
    }
    if (text.empty()) {
        sample.add(LineFault::EmptyField, field, offset);
        return '0';
    }
    sample.add(LineFault::State, field, offset);
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
    sample.add(isEmpty ? LineFault::TrailingComma : LineFault::Surplus, _layout.fields(), offset);
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
