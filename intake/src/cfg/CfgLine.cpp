#include "CfgLine.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace OrvComtradeIntake {

namespace {

// No line of the standard has as many; the rest of a longer one is not looked at.
constexpr std::size_t kMostFields = 64;

Finding findingOf(const std::string& file, const char* name, const Told& told) {
    Finding finding;
    finding.severity = told.severity;
    finding.code = told.code;
    finding.file = file;
    finding.field = name;
    finding.expected = told.expected;
    finding.done = told.done;
    finding.mended = told.isMended;
    return finding;
}

// In a line that was converted the places of the commas are those of the bytes in the file.
std::uint64_t offsetInFile(const TextLine& line, std::size_t index, std::size_t position) {
    if (line.commas.empty() || index == 0) {
        return line.offset + position;
    }
    return line.offset + line.commas[std::min(index, line.commas.size()) - 1] + 1;
}

} // namespace

CfgLine::CfgLine(const CfgText& text, const TextLine& line, Findings& findings)
    : _file(text.file), _line(line), _findings(findings) {
    const std::string_view all = line.text;
    _fields.reserve(std::min(fieldCount(line), kMostFields));
    for (std::size_t begin = 0; begin <= all.size() && _fields.size() < kMostFields;) {
        const std::size_t end = std::min(all.find(',', begin), all.size());
        const std::string_view raw = all.substr(begin, end - begin);
        _fields.push_back({raw, trimmed(raw), offsetInFile(line, _fields.size(), begin)});
        begin = end + 1;
    }
    _end.offset = _fields.back().offset + _fields.back().raw.size();
}

std::size_t CfgLine::libraryCount() const {
    return _fields.back().raw.empty() ? _fields.size() - 1 : _fields.size();
}

void CfgLine::tell(std::size_t index, const char* name, const Told& told) const {
    tell(index, name, told, shown((*this)[index].raw));
}

void CfgLine::tell(std::size_t index, const char* name, const Told& told, std::string found) const {
    Finding finding = findingOf(_file, name, told);
    finding.line = _line.number;
    finding.offset = (*this)[index].offset;
    finding.found = std::move(found);
    _findings.add(std::move(finding));
}

std::string CfgLine::textOf(std::size_t index, const char* name) const {
    const CfgField& field = (*this)[index];
    if (field.text != field.raw) {
        tell(index, name, {Severity::Warning, "blanks", "a text without blanks around it", "blanks left out", true});
    }
    return std::string(field.text);
}

ReadNumber CfgLine::numberOf(std::size_t index, const char* name, double otherwise, const char* done,
                             bool isReadByLibrary) const {
    ReadNumber number = readNumber((*this)[index].raw);
    const bool isMended = isReadByLibrary && !number.plain;
    if (number.form == NumberForm::Good) {
        if (isMended) {
            tell(index, name, {Severity::Warning, "blanks", "a number", "control characters left out", true});
        }
        return number;
    }
    if (number.form == NumberForm::Odd) {
        tell(index, name,
             {Severity::Warning, "field-malformed", "a number", "read as " + numberText(number.value), isMended});
        return number;
    }
    const char* const code = !has(index)                        ? "field-missing"
                             : number.form == NumberForm::Empty ? "field-empty"
                                                                : "field-malformed";
    tell(index, name, {Severity::Warning, code, "a number", done, isMended});
    number.value = otherwise;
    number.precise = static_cast<long double>(otherwise);
    return number;
}

void CfgLine::join(std::size_t index, std::size_t count, const char* name) {
    if (count < 2 || index + count > _fields.size()) {
        return;
    }
    std::string joined;
    for (std::size_t part = index; part < index + count; ++part) {
        const std::string_view text = _fields[part].text;
        joined += joined.empty() || text.empty() ? "" : " ";
        joined += text;
    }
    const std::string done = joined.empty() ? "a field left out" : "written as \"" + shown(joined) + '"';
    tell(index, name, {Severity::Warning, "comma-in-text", "one text without commas", done, true},
         shown(_rawOf(index, count)));
    _replace(index, count, std::move(joined));
}

void CfgLine::joinDecimal(std::size_t index, const char* name) {
    if (index + 2 > _fields.size()) {
        return;
    }
    std::string joined(_fields[index].text);
    joined.append(1, '.').append(_fields[index + 1].text);
    const std::string done = "read as " + numberText(readNumber(joined).value);
    tell(index, name, {Severity::Warning, "decimal-comma", "a decimal point", done, true}, shown(_rawOf(index, 2)));
    _replace(index, 2, std::move(joined));
}

std::string CfgLine::textFrom(std::size_t index) const {
    return index < _fields.size() ? _rawOf(index, _fields.size() - index) : std::string();
}

std::string CfgLine::_rawOf(std::size_t index, std::size_t count) const {
    std::string raw(_fields[index].raw);
    for (std::size_t part = index + 1; part < index + count; ++part) {
        raw.append(1, ',').append(_fields[part].raw);
    }
    return raw;
}

void CfgLine::_replace(std::size_t index, std::size_t count, std::string text) {
    _joined.reserve(kMostFields); // the fields view the texts, which must stay where they are
    _joined.push_back(std::move(text));
    _fields[index].raw = _fields[index].text = _joined.back();
    const auto first = std::next(_fields.begin(), static_cast<std::ptrdiff_t>(index) + 1);
    _fields.erase(first, std::next(first, static_cast<std::ptrdiff_t>(count) - 1));
}

void CfgCursor::tellMissing(const char* field, const Told& told) const {
    Finding finding = findingOf(text.file, field, told);
    if (!text.lines.empty()) {
        const TextLine& place = text.lines[std::min(next, text.lines.size() - 1)];
        finding.line = place.number;
        finding.offset = place.offset;
    }
    findings.add(std::move(finding));
}

std::size_t fieldCount(const TextLine& line) {
    return static_cast<std::size_t>(std::count(line.text.begin(), line.text.end(), ',')) + 1;
}

} // namespace OrvComtradeIntake
