#include "text/CfgText.h"

#include "base/characters.h"
#include "base/utf16.h"
#include "base/utf8.h"
#include "text/encoding.h"

#include <algorithm>
#include <utility>

namespace OrvComtradeIntake {

namespace {

bool isStrayControl(char character) {
    return character != ' ' && character != '\t' && isBlank(character);
}

bool isSeparator(char character) {
    return character == ',' || character == ';' || character == '\t';
}

/// A line before its text is converted to UTF-8.
struct RawLine {
    std::string_view bytes;
    std::size_t number = 0;
    std::uint64_t offset = 0;
};

/// Line ends other than CR LF.
struct OddEnds {
    std::uint64_t count = 0;
    Place first;
    const char* found = "";
};

class CfgTextReader {
public:
    CfgTextReader(const std::string& file, std::uint64_t offset, std::size_t firstLine, std::size_t mostLines,
                  Findings& findings)
        : _findings(findings), _offset(offset), _number(firstLine), _mostLines(mostLines) {
        _text.file = file;
    }

    CfgText read(std::string_view bytes, const std::string& encoding) {
        if (!encoding.empty()) {
            const Decoder mustBeKnown(encoding);
        }
        if (const std::string_view wide = utf16Name(bytes); !wide.empty()) {
            bytes = _decode(bytes, std::string(wide));
        }
        _skipByteOrderMark(bytes);
        const bool hasFeeds = bytes.find('\n') != std::string_view::npos;
        _lineEnd = hasFeeds || bytes.find('\r') == std::string_view::npos ? '\n' : '\r';
        _splitLines(bytes.substr(0, _lengthOfBody(bytes)));
        _reportLineEnds();
        _convertLines(encoding);
        return std::move(_text);
    }

private:
    Place _place(const RawLine& line) const { return {_text.file, line.number, "", line.offset}; }

    std::string_view _decode(std::string_view bytes, const std::string& encoding) {
        bool isDamaged = false;
        _isWide = true;
        _text.encoding = encoding;
        _decoded = Decoder(encoding).toUtf8(bytes, isDamaged);
        const Place place = _place({{}, _number, _offset});
        _findings.add(Kind::Encoding, place, {_text.encoding, "converted to UTF-8"});
        if (isDamaged) {
            _findings.add(Kind::DamagedText, place, {"invalid characters", "replaced by U+FFFD"});
        }
        return _decoded;
    }

    std::uint64_t _bytesInFile(std::string_view text) const { return _isWide ? utf16Length(text) : text.size(); }

    void _skipByteOrderMark(std::string_view& bytes) {
        if (!hasByteOrderMark(bytes)) {
            return;
        }
        if (!_isWide) { // where the mark shows the order of the bytes
            _reportByteOrderMark({{}, _number, _offset});
        }
        bytes.remove_prefix(kByteOrderMark.size());
        _offset += _bytesInFile(kByteOrderMark);
    }

    void _reportByteOrderMark(const RawLine& line) {
        _findings.add(Kind::ByteOrderMark, _place(line), {"a UTF-8 byte-order mark", "skipped"});
    }

    // Up to the end of the last line that has more than blanks, zero bytes and 0x1A.
    std::size_t _lengthOfBody(std::string_view bytes) const {
        const std::string_view rest = trimmed(bytes);
        const auto end = rest.empty() ? 0 : static_cast<std::size_t>(rest.data() + rest.size() - bytes.data());
        return end == 0 ? 0 : std::min(bytes.find(_lineEnd, end), bytes.size() - 1) + 1;
    }

    void _splitLines(std::string_view body) {
        const auto ends = static_cast<std::size_t>(std::count(body.begin(), body.end(), _lineEnd));
        _raw.reserve(std::min(ends + 1, _mostLines)); // growing would take three times the room
        while (!body.empty()) {
            const std::size_t length = std::min(body.find(_lineEnd), body.size());
            const std::size_t taken = std::min(length + 1, body.size());
            _addLine({body.substr(0, length), _number, _offset}, taken > length);
            _offset += _bytesInFile(body.substr(0, taken));
            _number += taken > length ? 1 : 0;
            body.remove_prefix(taken);
        }
    }

    void _addLine(RawLine line, bool isEnded) {
        if (isEnded) {
            _cutLineEnd(line);
        }
        if (_raw.empty()) {
            _skipLateMarks(line);
        }
        if (trimmed(line.bytes).empty()) {
            _findings.add(Kind::BlankLines, _place(line), {"a blank line", "skipped"});
            return;
        }
        if (_text.lineCount++ < _mostLines) {
            _raw.push_back(line);
        }
    }

    // A second mark, or one behind blank lines: the station name would begin with it.
    void _skipLateMarks(RawLine& line) {
        std::string_view text = trimmed(line.bytes);
        while (hasByteOrderMark(text)) {
            _reportByteOrderMark(line);
            const auto skipped = static_cast<std::size_t>(text.data() - line.bytes.data()) + kByteOrderMark.size();
            line.offset += _bytesInFile(line.bytes.substr(0, skipped));
            line.bytes.remove_prefix(skipped);
            text = trimmed(line.bytes);
        }
    }

    void _cutLineEnd(RawLine& line) {
        const std::size_t last = line.bytes.find_last_not_of('\r');
        const std::size_t length = last == std::string_view::npos ? 0 : last + 1;
        const std::size_t returns = line.bytes.size() - length;
        line.bytes = line.bytes.substr(0, length);
        if (returns == 1 && _lineEnd == '\n') {
            return;
        }
        if (_oddEnds.count++ == 0) {
            _oddEnds.first = _place(line);
            _oddEnds.found = _lineEnd == '\r' ? "CR" : returns == 0 ? "LF" : "CR CR LF";
        }
    }

    void _reportLineEnds() {
        if (_oddEnds.count != 0) {
            _findings.add(Kind::LineEnds, _oddEnds.first, {_oddEnds.found, {}, {}, _oddEnds.count});
        }
    }

    void _convertLines(const std::string& chosen) {
        std::string highLines;
        for (const RawLine& line : _raw) {
            if (!isAscii(line.bytes)) {
                highLines.append(line.bytes).append(1, '\n');
            }
        }
        const bool isChosen = !chosen.empty() && !highLines.empty() && upperCase(chosen).substr(0, 6) != "UTF-16";
        const std::string encoding = _isWide ? "UTF-8" : isChosen ? chosen : detectEncoding(highLines);
        _text.encoding = _isWide ? _text.encoding : encoding;
        Decoder decoder(encoding);
        _text.lines.reserve(_raw.size());
        for (const RawLine& line : _raw) {
            _text.lines.push_back(_converted(line, decoder));
        }
    }

    TextLine _converted(const RawLine& line, Decoder& decoder) {
        TextLine converted;
        converted.number = line.number;
        converted.offset = line.offset;
        bool isDamaged = false;
        converted.text = isAscii(line.bytes) ? std::string(line.bytes) : decoder.toUtf8(line.bytes, isDamaged);
        if (isDamaged) {
            _findings.add(Kind::DamagedText, _place(line), {escaped(line.bytes), "invalid bytes replaced by U+FFFD"});
        }
        const bool isConverted = converted.text != line.bytes;
        if (isConverted && _text.encoding != "UTF-8") {
            _findings.add(Kind::Encoding, _place(line), {_text.encoding, "converted to UTF-8"});
        }
        if (isConverted || _isWide) {
            converted.fieldEnds = _fieldEnds(line.bytes);
        }
        _replaceControls(line, converted.text);
        return converted;
    }

    std::vector<std::size_t> _fieldEnds(std::string_view bytes) const {
        std::vector<std::size_t> places;
        std::uint64_t place = 0;
        for (std::size_t index = 0; index < bytes.size(); ++index) {
            place += _bytesInFile(bytes.substr(index, 1));
            if (isSeparator(bytes[index])) {
                places.push_back(static_cast<std::size_t>(place));
            }
        }
        places.push_back(static_cast<std::size_t>(place));
        return places;
    }

    // Old systems end a file with 0x1A, and some fill it up with zero bytes.
    void _replaceControls(const RawLine& line, std::string& text) {
        const bool isLast = line.bytes.data() == _raw.back().bytes.data();
        const std::string_view looked = isLast ? trimmed(text) : text;
        if (std::any_of(looked.begin(), looked.end(), isStrayControl)) {
            _findings.add(Kind::ControlCharacters, _place(line), {escaped(line.bytes), "read as blanks"});
        }
        std::replace_if(text.begin(), text.end(), isStrayControl, ' ');
    }

    Findings& _findings;
    CfgText _text;
    std::string _decoded; ///< the whole text, if it is UTF-16
    bool _isWide = false; ///< it is
    std::vector<RawLine> _raw;
    OddEnds _oddEnds;
    std::uint64_t _offset;
    std::size_t _number;
    std::size_t _mostLines;
    char _lineEnd = '\n';
};

} // namespace

CfgText readCfgText(std::string_view bytes, const std::string& file, std::uint64_t offset, std::size_t firstLine,
                    const std::string& encoding, Findings& findings, std::size_t mostLines) {
    return CfgTextReader(file, offset, firstLine, mostLines, findings).read(bytes, encoding);
}

} // namespace OrvComtradeIntake
