#include "CfgText.h"

#include "encoding.h"
#include "numbers.h"
#include "toUtf8.h"
#include "utf8.h"

#include <algorithm>
#include <utility>

namespace OrvComtradeIntake {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

bool isControl(char character) {
    const auto byte = static_cast<unsigned char>(character);
    return (byte < 0x20 && byte != '\t') || byte == 0x7F;
}

/// A line as it stands in the file.
struct RawLine {
    std::string_view bytes;
    std::size_t number = 0;
    std::uint64_t offset = 0;
};

class CfgTextReader {
public:
    CfgTextReader(const std::string& file, std::uint64_t offset, std::size_t firstLine, Findings& findings)
        : _findings(findings), _offset(offset), _number(firstLine) {
        _text.file = file;
    }

    CfgText read(std::string_view bytes, const std::string& encoding) {
        _skipByteOrderMark(bytes);
        const bool hasFeeds = bytes.find('\n') != std::string_view::npos;
        _lineEnd = hasFeeds || bytes.find('\r') == std::string_view::npos ? '\n' : '\r';
        const std::string_view body = bytes.substr(0, _lengthOfBody(bytes));
        _splitLines(body);
        _readTail(bytes.substr(body.size()));
        _convertLines(encoding);
        return std::move(_text);
    }

private:
    void _tell(Severity severity, const char* code, const RawLine& line, std::string found, std::string expected,
               std::string done, bool isMended) {
        Finding finding;
        finding.severity = severity;
        finding.code = code;
        finding.file = _text.file;
        finding.line = line.number;
        finding.offset = line.offset;
        finding.found = std::move(found);
        finding.expected = std::move(expected);
        finding.done = std::move(done);
        finding.mended = isMended;
        _findings.add(std::move(finding));
    }

    void _skipByteOrderMark(std::string_view& bytes) {
        if (bytes.substr(0, kByteOrderMark.size()) != kByteOrderMark) {
            return;
        }
        _tell(Severity::Warning, "byte-order-mark", {{}, _number, _offset}, "a UTF-8 byte-order mark",
              "the station name", "left out", true);
        bytes.remove_prefix(kByteOrderMark.size());
        _offset += kByteOrderMark.size();
    }

    // Up to the last byte that is no blank and no control character.
    static std::size_t _lengthOfBody(std::string_view bytes) {
        const std::string_view rest = trimmed(bytes);
        return rest.empty() ? 0 : static_cast<std::size_t>(rest.data() + rest.size() - bytes.data());
    }

    void _splitLines(std::string_view body) {
        while (!body.empty()) {
            const std::size_t length = std::min(body.find(_lineEnd), body.size());
            const std::size_t taken = std::min(length + 1, body.size());
            _addLine({body.substr(0, length), _number, _offset}, taken > length);
            body.remove_prefix(taken);
            _offset += taken;
            _number += taken > length ? 1 : 0;
        }
    }

    // Further ones, or behind blank lines: the station name would begin with it, and so would the file written.
    void _skipByteOrderMarks(RawLine& line) {
        std::string_view text = trimmed(line.bytes);
        while (text.substr(0, kByteOrderMark.size()) == kByteOrderMark) {
            _tell(Severity::Warning, "byte-order-mark", line, "a UTF-8 byte-order mark", "the station name", "left out",
                  true);
            const auto skipped = static_cast<std::size_t>(text.data() - line.bytes.data()) + kByteOrderMark.size();
            line.bytes.remove_prefix(skipped);
            line.offset += skipped;
            text = trimmed(line.bytes);
        }
    }

    void _addLine(RawLine line, bool isEnded) {
        if (isEnded) {
            _readLineEnd(line);
        }
        if (_raw.empty()) {
            _skipByteOrderMarks(line);
        }
        if (trimmed(line.bytes).empty()) {
            _tell(Severity::Warning, "blank-line", line, "a blank line", "", "left out", true);
            return;
        }
        _raw.push_back(line);
    }

    void _readLineEnd(RawLine& line) {
        const std::size_t last = line.bytes.find_last_not_of('\r');
        const std::size_t length = last == std::string_view::npos ? 0 : last + 1;
        const bool hasReturn = length < line.bytes.size() || _lineEnd == '\r';
        line.bytes = line.bytes.substr(0, length);
        if (hasReturn) {
            _tellLineEnd(line);
        }
    }

    void _tellLineEnd(const RawLine& line) {
        _tell(Severity::Warning, "line-ends", line, _lineEnd == '\r' ? "CR" : "CR LF", "LF, which the library needs",
              "written with LF", true);
    }

    // What follows the last line: its end, blank lines, 0x1A. The library never looks at it where the lines are
    // complete.
    void _readTail(std::string_view tail) {
        const RawLine place{{}, _number, _offset};
        const bool hasSubstitute = tail.find_first_not_of(" \t\r\n") != std::string_view::npos;
        const std::size_t end = tail.find(_lineEnd);
        const std::string_view ofLine = tail.substr(0, end);
        const std::string_view after = end == std::string_view::npos ? "" : tail.substr(end + 1);
        _text.endsBlank = !after.empty();
        if (ofLine.find('\r') != std::string_view::npos || (end != std::string_view::npos && _lineEnd == '\r')) {
            _tellLineEnd(_raw.empty() ? place : _raw.back());
        }
        if (hasSubstitute) {
            _tell(Severity::Note, "substitute-character", place, shown(tail, 16), "the end of the file", "", false);
        } else if (!after.empty()) {
            _tell(Severity::Note, "blank-line", place, "blank lines at the end", "the end of the file", "", false);
        }
        if (!_raw.empty()) {
            _raw.back().bytes = {_raw.back().bytes.data(), _raw.back().bytes.size() + _lengthOfBlanks(ofLine)};
        }
    }

    static std::size_t _lengthOfBlanks(std::string_view ofLine) {
        const std::size_t last = ofLine.find_last_not_of('\r');
        return last == std::string_view::npos ? 0 : last + 1;
    }

    void _convertLines(const std::string& encoding) {
        std::string highLines;
        for (const RawLine& line : _raw) {
            if (!isAscii(line.bytes)) {
                highLines.append(line.bytes).append(1, '\n');
            }
        }
        if (!encoding.empty()) {
            requireEncoding(encoding);
        }
        const bool isChosen = !encoding.empty() && !highLines.empty();
        _text.encoding = isChosen ? encoding : detectEncoding(highLines);
        _text.lines.reserve(_raw.size());
        for (std::size_t index = 0; index < _raw.size(); ++index) {
            _text.lines.push_back(_converted(_raw[index], index == 0));
        }
    }

    TextLine _converted(const RawLine& line, bool isStation) {
        TextLine converted;
        converted.number = line.number;
        converted.offset = line.offset;
        bool isDamaged = false;
        if (isAscii(line.bytes)) {
            converted.text = line.bytes;
        } else {
            converted.text = convertToUtf8(line.bytes, _text.encoding, isDamaged);
        }
        if (converted.text != line.bytes) {
            _tellEncoding(line, converted, isStation, isDamaged);
        }
        _replaceControls(line, converted.text);
        return converted;
    }

    void _tellEncoding(const RawLine& line, TextLine& converted, bool isStation, bool isDamaged) {
        for (std::size_t index = 0; index < line.bytes.size(); ++index) {
            if (line.bytes[index] == ',') {
                converted.commas.push_back(index);
            }
        }
        if (isDamaged) {
            _tell(Severity::Warning, "encoding", line, shown(line.bytes), "text in " + _text.encoding,
                  "bytes that are none replaced by U+FFFD", true);
        }
        const std::string bytes(line.bytes);
        const bool isRead = !isStation && toUtf8::detectAndConvert(bytes) == converted.text;
        if (isRead) {
            _tell(Severity::Note, "encoding", line, _text.encoding, "UTF-8", "", false);
        } else {
            _tell(Severity::Warning, "encoding", line, _text.encoding + ", which the library reads otherwise here",
                  "UTF-8", "converted to UTF-8", true);
        }
    }

    void _replaceControls(const RawLine& line, std::string& text) {
        if (std::none_of(text.begin(), text.end(), isControl)) {
            return;
        }
        std::replace_if(text.begin(), text.end(), isControl, ' ');
        const std::string_view solid = trimmed(line.bytes);
        const bool isWithin = std::any_of(solid.begin(), solid.end(), isControl);
        const bool isLast = line.bytes.data() == _raw.back().bytes.data();
        if (isWithin || !isLast) { // the tail has told those of the last line
            _tell(Severity::Warning, "substitute-character", line, shown(line.bytes), "text without control characters",
                  "taken for blanks", true);
        }
    }

    Findings& _findings;
    CfgText _text;
    std::vector<RawLine> _raw;
    std::uint64_t _offset;
    std::size_t _number;
    char _lineEnd = '\n';
};

} // namespace

CfgText readCfgText(std::string_view bytes, const std::string& file, std::uint64_t offset, std::size_t firstLine,
                    const std::string& encoding, Findings& findings) {
    return CfgTextReader(file, offset, firstLine, findings).read(bytes, encoding);
}

} // namespace OrvComtradeIntake
