#include "data/LineReader.h"

#include "files/blockLength.h"

#include <algorithm>
#include <cstring>

namespace OrvComtradeIntake {

namespace {

/// First such byte, or `end`.
char* find(char* begin, char* end, char byte) {
    void* const place = std::memchr(begin, byte, static_cast<std::size_t>(end - begin));
    return place == nullptr ? end : static_cast<char*>(place);
}

bool isZeroByte(char byte) {
    return byte == '\0';
}

} // namespace

LineReader::LineReader(const ByteSource& source, std::size_t longestLine)
    : _source(source), _longestLine(longestLine),
      _bytes(static_cast<std::size_t>(std::min<std::uint64_t>(kBlockLength, source.length() + 1)) + 2 * kSlack, '\n'),
      _cursor(_begin()), _end(_begin()) {
    _fill();
    const bool hasFeed = find(_cursor, _end, '\n') != _end;
    _separator = hasFeed || find(_cursor, _end, '\r') == _end ? '\n' : '\r';
    _lineEnd = _firstLineEnd();
}

bool LineReader::next(DataLine& line) {
    if (_isCut) {
        _passOver();
    }
    const char* const end = _findEnd();
    if (_cursor == _end) {
        return false;
    }
    line.text = std::string_view(_cursor, static_cast<std::size_t>(end - _cursor));
    line.number = ++_number;
    line.position = _position;
    _isCut = end == _end && !_isOver;
    _isCutInZeros = _isCut && std::all_of(line.text.begin(), line.text.end(), isZeroByte);
    line.isLast = end == _end && _isOver;
    line.hasReturn = false;
    while (!_isCut && !line.text.empty() && line.text.back() == '\r') {
        line.text.remove_suffix(1);
        line.hasReturn = true;
    }
    const auto step = end - _cursor + (end != _end ? 1 : 0);
    _cursor += step;
    _position += static_cast<std::uint64_t>(step);
    return true;
}

/// One without an end says nothing.
LineReader::LineEnd LineReader::_firstLineEnd() {
    if (_separator == '\r') {
        return LineEnd::Cr;
    }
    const char* const feed = find(_cursor, _end, '\n');
    if (feed == _end) {
        return LineEnd::CrLf;
    }
    const auto hasReturn = [&](std::ptrdiff_t before) { return feed - _cursor >= before && feed[-before] == '\r'; };
    return !hasReturn(1) ? LineEnd::Lf : hasReturn(2) ? LineEnd::CrCrLf : LineEnd::CrLf;
}

/// End of the line at the cursor.
const char* LineReader::_findEnd() {
    for (;;) {
        char* const end = find(_cursor, _end, _separator);
        if (end != _end || !_fill()) {
            return end;
        }
    }
}

/// Reads more behind what is there; false if that is the end of the data, or of what a line may take.
bool LineReader::_fill() {
    const auto rest = static_cast<std::size_t>(_end - _cursor);
    if (_isOver || rest >= _longestLine) {
        return false;
    }
    if (rest > kBlockLength / 2 && _bytes.size() < 2 * (rest + kSlack)) {
        std::vector<char> larger(2 * rest + 2 * kSlack, '\n');
        std::memcpy(larger.data() + kSlack, _cursor, rest);
        _bytes.swap(larger);
    } else {
        std::memmove(_begin(), _cursor, rest);
    }
    _begin()[-1] = '\n'; // the cursor is at the beginning of a line
    _cursor = _begin();
    const std::size_t room = _bytes.size() - 2 * kSlack - rest;
    const std::size_t count = _source.read(_read, _cursor + rest, room);
    _read += count;
    _end = _cursor + rest + count;
    _isOver = count < room;
    return true;
}

/// Goes on behind the end of a line that was cut, or behind the zero bytes that it consists of: files that were made
/// larger than the data so far have many of them.
void LineReader::_passOver() {
    _isCut = false;
    char* end = nullptr;
    do {
        end = _isCutInZeros ? std::find_if_not(_cursor, _end, isZeroByte) : find(_cursor, _end, _separator);
        _position += static_cast<std::uint64_t>(end - _cursor);
        _cursor = end;
    } while (end == _end && _fill());
    if (!_isCutInZeros && _cursor != _end) {
        ++_cursor;
        ++_position;
    }
}

} // namespace OrvComtradeIntake
