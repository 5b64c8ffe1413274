#include "LineReader.h"

#include <algorithm>

namespace OrvComtradeIntake {

namespace {

constexpr std::size_t kBlockLength = 64UL * 1024; // stays in the second-level cache, and in memory used before

/// First such byte, or `end`.
char* find(char* begin, char* end, char byte) {
    void* const place = std::memchr(begin, byte, static_cast<std::size_t>(end - begin));
    return place == nullptr ? end : static_cast<char*>(place);
}

bool isZero(char byte) {
    return byte == '\0';
}

} // namespace

LineReader::LineReader(const DataSource& source, std::size_t longestLine)
    : _reader(source), _longestLine(longestLine),
      _bytes(static_cast<std::size_t>(std::min<std::uint64_t>(kBlockLength, source.length + 1)) + 2 * kSlack, '\n'),
      _cursor(_begin()), _end(_begin()) {}

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
    line.hasReturn = end != _end && *end == '\r';
    const char* const feed = end + (line.hasReturn ? 1 : 0);
    line.hasFeed = feed != _end && *feed == '\n';
    _isCut = end == _end && !_isOver;
    _isCutInZeros = _isCut && std::all_of(line.text.begin(), line.text.end(), isZero);
    line.hasFeed = line.hasFeed || _isCut;
    const auto step = feed - _cursor + (feed != _end && *feed == '\n' ? 1 : 0);
    _cursor += step;
    _position += static_cast<std::uint64_t>(step);
    return true;
}

/// End of the line at the cursor, with what follows a CR in memory as well.
const char* LineReader::_findEnd() {
    for (;;) {
        if (_feed == nullptr || _feed < _cursor) {
            _feed = find(_cursor, _end, '\n');
        }
        char* const end = find(_cursor, _feed, '\r');
        const bool isKnown = end != _end && (*end == '\n' || end + 1 != _end || _isOver);
        if (isKnown || !_fill()) {
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
    const std::size_t count = _reader.read(_cursor + rest, room);
    _end = _cursor + rest + count;
    _isOver = count < room;
    _feed = nullptr;
    return true;
}

/// Goes on behind the end of a line that was cut, or behind the zero bytes that it consists of: files that were made
/// larger than the data so far have many of them.
void LineReader::_passOver() {
    _isCut = false;
    char* end = nullptr;
    do {
        end = _isCutInZeros ? std::find_if_not(_cursor, _end, isZero)
                            : std::min(find(_cursor, _end, '\n'), find(_cursor, _end, '\r'));
        _position += static_cast<std::uint64_t>(end - _cursor);
        _cursor = end;
    } while (end == _end && _fill());
    for (const char byte : {'\r', '\n'}) {
        if ((_cursor != _end || _fill()) && _cursor != _end && *_cursor == byte) {
            ++_cursor;
            ++_position;
        }
    }
}

} // namespace OrvComtradeIntake
