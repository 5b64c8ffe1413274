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
    {Kind::BlankLines, "a blank line", "skipped", false},
    {Kind::ControlCharacters, "0x1A or zero bytes", "skipped", false},
    {Kind::BadDataLine, "a line that is not a sample", "skipped", false},
    {Kind::ShortDataLine, "fewer columns than channels", "the others read as missing values and states of 0", false},
    {Kind::EmptyDataField, "nothing", "read as a missing value or state 0; sample numbers are counted", true},
    {Kind::BadDataLine, "text that is not a number", "read as a missing value; sample numbers are counted", true},
    {Kind::StatusValue, "neither 0 nor 1", "read as 0 if it is zero, otherwise as 1", true},
    {Kind::Decimals, "a decimal point, a plus sign or an exponent", "read exactly", true},
    {Kind::StampDecimals, "a decimal point, a plus sign or an exponent", "read exactly", true},
    {Kind::StampRange, "more than 64 bits", "read as missing", true},
    {Kind::Separators, "columns separated by blanks", "read as separate columns", false},
    {Kind::ByteOrderMark, "a UTF-8 byte-order mark", "skipped", false},
    {Kind::ControlCharacters, "CR, 0x1A or zero bytes in a line", "read as blanks", false},
    {Kind::LineEnds, "CR alone", "read as a line end", false},
    {Kind::ExtraText, "a comma after the last column", "skipped", true},
    {Kind::SurplusColumns, "more columns than channels", "the first ones are read", true},
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
