#include "cfg/read/fields.h"

#include "base/characters.h"

#include <algorithm>
#include <utility>

namespace OrvComtradeIntake {

namespace {

// Where others separate the fields, or quotation marks stand around one, a comma in a number is a decimal one.
std::string withPoint(std::string_view field) {
    std::string text(field);
    const std::size_t comma = text.find(',');
    if (comma != std::string::npos) {
        text[comma] = '.';
    }
    return text;
}

// Of what stands behind the number: kHz, kV, kS/s, MHz, ...
double prefixOfUnit(std::string_view text) {
    const std::size_t begin = text.find_first_not_of("+-.0123456789eE ");
    const std::string_view unit = text.substr(std::min(begin, text.size()));
    if (unit.size() < 2) {
        return 1.0;
    }
    const bool isMega = unit.front() == 'M' || lowerCase(unit) == "mhz";
    return unit.front() == 'k' || unit.front() == 'K' ? 1e3 : isMega ? 1e6 : 1.0;
}

ReadNumber readField(CfgCursor& cursor, const CfgLine& line, std::size_t index, const char* name, double otherwise,
                     const char* repair, bool hasUnit) {
    const std::string text = withPoint(line[index].text);
    ReadNumber number = readNumber(text);
    if (text != line[index].text && isNumber(text)) {
        cursor.hasDecimalCommas = true;
        report(cursor.findings, Kind::DecimalComma, line, index, name, {{}, "read as " + escaped(text)});
    }
    if (number.form == NumberForm::Good) {
        return number;
    }
    if (number.form == NumberForm::Odd) {
        const double factor = hasUnit ? prefixOfUnit(text) : 1.0;
        number.value *= factor;
        number.precise *= static_cast<long double>(factor);
        report(cursor.findings, Kind::FieldMalformed, line, index, name, {{}, "read as " + numberText(number.value)});
        return number;
    }
    report(cursor.findings, kindOfFault(line, index), line, index, name, {{}, repair});
    return {number.form, otherwise, static_cast<long double>(otherwise)};
}

} // namespace

void report(Findings& findings, Kind kind, const CfgLine& line, std::size_t index, const char* name, Detail detail) {
    if (detail.found.empty()) {
        detail.found = escaped(line[index].raw);
    }
    findings.add(kind, line.place(index, name), std::move(detail));
}

Kind kindOfFault(const CfgLine& line, std::size_t index) {
    if (index >= line.written()) {
        return Kind::FieldMissing;
    }
    return line[index].text.empty() ? Kind::FieldEmpty : Kind::FieldMalformed;
}

std::string withoutCommas(std::string_view text) {
    std::string joined;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find(',', begin), text.size());
        const std::string_view part = trimmed(text.substr(begin, end - begin));
        joined += joined.empty() || part.empty() ? "" : " ";
        joined += part;
        begin = end + 1;
    }
    std::replace(joined.begin(), joined.end(), '\t', ' ');
    return joined;
}

std::string textOf(const CfgLine& line, std::size_t index) {
    return withoutCommas(line[index].text);
}

ReadNumber numberOf(CfgCursor& cursor, const CfgLine& line, std::size_t index, const char* name, double otherwise,
                    const char* repair) {
    return readField(cursor, line, index, name, otherwise, repair, false);
}

double quantityOf(CfgCursor& cursor, const CfgLine& line, std::size_t index, const char* name, double otherwise,
                  const char* repair) {
    return readField(cursor, line, index, name, otherwise, repair, true).value;
}

std::optional<std::uint64_t> countOf(CfgCursor& cursor, const CfgLine& line, std::size_t index, const char* name,
                                     const char* repair) {
    const std::string_view text = line[index].text;
    const std::optional<std::uint64_t> count = readCount(text);
    if (!count) {
        report(cursor.findings, kindOfFault(line, index), line, index, name, {{}, repair, "a whole number"});
    } else if (!std::all_of(text.begin(), text.end(), isDigit)) {
        report(cursor.findings, Kind::FieldMalformed, line, index, name,
               {{}, "read as " + std::to_string(*count), "a whole number"});
    }
    return count;
}

void reportRest(CfgCursor& cursor, const CfgLine& line, std::size_t index, const char* name) {
    if (line.count() > index) {
        report(cursor.findings, Kind::ExtraText, line, index, name, {escaped(line.textFrom(index)), "skipped"});
    } else if (line.written() > index) {
        report(cursor.findings, Kind::ExtraText, line, index, "", {"empty fields at the end", "skipped"});
    }
}

bool isNumberAlone(const CfgLine& line) {
    return line.count() == 1 && isNumber(line[0].text);
}

bool isNumber(std::string_view text) {
    const NumberForm form = readNumber(withPoint(text)).form;
    return form == NumberForm::Good || form == NumberForm::Odd;
}

} // namespace OrvComtradeIntake
