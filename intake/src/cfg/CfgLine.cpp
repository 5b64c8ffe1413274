#include "cfg/CfgLine.h"

#include "base/characters.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace OrvComtradeIntake {

namespace {

// No line of the standard has as many; the rest of a longer one is not looked at.
constexpr std::size_t kMostFields = 64;

constexpr std::size_t kNone = std::string_view::npos;

std::size_t behindBlanks(std::string_view text, std::size_t index, char separator) {
    while (index < text.size() && text[index] != separator && isBlank(text[index])) {
        ++index;
    }
    return index;
}

// End of a field within quotation marks, which is cut at none of the separators in them, or nothing.
std::size_t quotedEnd(std::string_view text, std::size_t begin, char separator) {
    std::size_t index = behindBlanks(text, begin, separator);
    if (index == text.size() || text[index] != '"') {
        return kNone;
    }
    index = text.find('"', index + 1);
    while (index != kNone && text.substr(index + 1, 1) == "\"") { // doubled: a part of the text
        index = text.find('"', index + 2);
    }
    if (index == kNone) {
        return kNone;
    }
    const std::size_t end = behindBlanks(text, index + 1, separator);
    return end == text.size() || text[end] == separator ? end : kNone;
}

std::string withoutDoubledQuotes(std::string_view text) {
    std::string single;
    for (std::size_t index = 0; index < text.size(); ++index) {
        single += text[index];
        const bool isDoubled = text[index] == '"' && index + 1 < text.size() && text[index + 1] == '"';
        index += isDoubled ? 1U : 0U;
    }
    return single;
}

/// Goes through a line from left to right and gives the place of a field in the file.
class Places {
public:
    explicit Places(const TextLine& line) : _line(line) {}

    std::uint64_t of(std::size_t begin) {
        const std::vector<std::size_t>& places = _line.fieldEnds;
        if (begin == 0 || places.empty()) {
            return _line.offset + begin;
        }
        for (; _next < begin; ++_next) {
            const char character = _line.text[_next];
            _passed += character == ',' || character == ';' || character == '\t' ? 1U : 0U;
        }
        return _line.offset + places[std::min(std::max<std::size_t>(_passed, 1), places.size()) - 1];
    }

    std::uint64_t ofEnd() const {
        return _line.offset + (_line.fieldEnds.empty() ? _line.text.size() : _line.fieldEnds.back());
    }

private:
    const TextLine& _line;
    std::size_t _next = 0;
    std::size_t _passed = 0;
};

} // namespace

bool beginsWithinQuotes(std::string_view line, char separator) {
    return quotedEnd(line, 0, separator) != kNone;
}

CfgLine::CfgLine(const std::string& file, const TextLine& line, char separator)
    : _file(&file), _number(line.number), _separator(separator) {
    const std::string_view all = line.text;
    Places places(line);
    _fields.reserve(16);
    for (std::size_t begin = 0; begin <= all.size() && _fields.size() < kMostFields;) {
        const std::size_t quoted = quotedEnd(all, begin, separator);
        const std::size_t end = quoted != kNone ? quoted : std::min(all.find(separator, begin), all.size());
        _add(all.substr(begin, end - begin), places.of(begin));
        if (quoted != kNone) {
            const std::string_view text = _fields.back().text;
            _texts.push_back(withoutDoubledQuotes(text.substr(1, text.size() - 2)));
            _fields.back().text = trimmed(_texts.back());
            _hasQuotes = true;
        }
        begin = end + 1;
    }
    _end.offset = places.ofEnd();
    _findLast();
}

void CfgLine::_add(std::string_view raw, std::uint64_t offset) {
    _fields.push_back({raw, trimmed(raw), offset});
}

void CfgLine::_findLast() {
    _count = _fields.size();
    while (_count > 0 && _fields[_count - 1].text.empty()) {
        --_count;
    }
}

Place CfgLine::place(std::size_t index, const char* name) const {
    return {*_file, _number, name, (*this)[index].offset};
}

std::string CfgLine::textFrom(std::size_t index, std::size_t most) const {
    std::string text;
    for (std::size_t part = index; part < _fields.size() && part - index < most; ++part) {
        text += part == index ? std::string() : std::string(1, _separator);
        text += _fields[part].raw;
    }
    return text;
}

void CfgLine::replace(std::size_t index, std::size_t count, std::string text) {
    _texts.push_back(std::move(text));
    _fields[index].raw = _fields[index].text = _texts.back();
    const auto first = std::next(_fields.begin(), static_cast<std::ptrdiff_t>(index) + 1);
    _fields.erase(first, std::next(first, static_cast<std::ptrdiff_t>(count) - 1));
    _findLast();
}

CfgLine CfgCursor::peek(std::size_t ahead) const {
    return {text.file, text.lines[next + ahead], separator};
}

CfgLine CfgCursor::take() {
    CfgLine line = peek();
    ++next;
    if (line.hasQuotes()) {
        findings.add(Kind::Quotes, line.place(0, ""), {escaped(line.textFrom(0)), "read without them"});
    }
    return line;
}

Place CfgCursor::place(const char* field) const {
    if (text.lines.empty()) {
        return {text.file, 0, field, 0};
    }
    const TextLine& line = text.lines[std::min(next, text.lines.size() - 1)];
    return {text.file, line.number, field, line.offset};
}

} // namespace OrvComtradeIntake
