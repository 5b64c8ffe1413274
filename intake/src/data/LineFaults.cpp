#include "data/LineFaults.h"

#include "data/LineParser.h"

namespace OrvComtradeIntake {

namespace {

struct FaultText {
    Kind kind;
    const char* found;
    const char* repair;
    bool isOfField;
};

/// In the order of LineFault.
constexpr std::array<FaultText, static_cast<std::size_t>(LineFault::Count)> kTexts = {{
    {Kind::BlankLines, "a blank line", "left out", false},
    {Kind::ControlCharacters, "0x1A or zero bytes", "left out", false},
    {Kind::BadDataLine, "no sample", "left out", false},
    {Kind::ShortDataLine, "fewer columns than channels", "missing values and states of 0 in their place", false},
    {Kind::EmptyDataField, "nothing", "taken as a missing value, as state 0, or counted", true},
    {Kind::BadDataLine, "no number", "taken as a missing value, or counted", true},
    {Kind::StatusValue, "neither 0 nor 1", "read as 0 where it is zero, else as 1", true},
    {Kind::Decimals, "a decimal point, a plus sign or an exponent", "read exactly", true},
    {Kind::StampDecimals, "a decimal point, a plus sign or an exponent", "read exactly", true},
    {Kind::StampRange, "more than 64 bits", "taken as missing", true},
    {Kind::Separators, "columns separated by blanks", "read so", false},
    {Kind::ByteOrderMark, "a UTF-8 byte-order mark", "left out", false},
    {Kind::ControlCharacters, "CR, 0x1A or zero bytes in a line", "taken as blanks", false},
    {Kind::LineEnds, "CR alone", "read as a line end", false},
    {Kind::ExtraText, "a comma behind the last column", "not read", true},
    {Kind::SurplusColumns, "more columns than channels", "the first ones read", true},
}};

} // namespace

void LineFaults::add(const FieldFault& fault, std::size_t line, std::uint64_t position) {
    Places& places = _places[static_cast<std::size_t>(fault.fault)];
    if (places.count == 0) {
        places.line = line;
        places.field = fault.field;
        places.position = position + fault.offset;
    }
    places.count += fault.count;
    _any = true;
}

void LineFaults::add(const LineFaults& other) {
    if (!other._any) {
        return;
    }
    _any = true;
    for (std::size_t i = 0; i < _places.size(); ++i) {
        const std::uint64_t count = _places[i].count + other._places[i].count;
        if (_places[i].count == 0) {
            _places[i] = other._places[i];
        }
        _places[i].count = count;
    }
}

void LineFaults::clear() {
    if (_any) {
        *this = LineFaults();
    }
}

LineFaults LineFaults::only(LineFault fault) const {
    const auto index = static_cast<std::size_t>(fault);
    LineFaults some;
    some._places[index] = _places[index];
    some._any = _places[index].count != 0;
    return some;
}

void LineFaults::report(const ByteSource& source, const DataLayout& layout, bool allowsDecimals,
                        Findings& findings) const {
    for (std::size_t i = 0; i < _places.size(); ++i) {
        const Places& places = _places[i];
        const bool isFault =
            places.count != 0 && !(allowsDecimals && i == static_cast<std::size_t>(LineFault::Decimals));
        if (!isFault) {
            continue;
        }
        const FaultText& text = kTexts[i];
        const std::string field = text.isOfField ? fieldName(places.field, layout) : "DAT";
        findings.add(text.kind, source.place(places.line, field, places.position),
                     {text.found, text.repair, "", places.count});
    }
}

} // namespace OrvComtradeIntake
