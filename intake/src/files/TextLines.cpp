#include "files/TextLines.h"

#include "files/blockLength.h"

#include <algorithm>

namespace OrvComtradeIntake {

namespace {

std::size_t indexOf(char character, const std::vector<char>& block, std::size_t from, std::size_t end) {
    const std::size_t place = std::string_view(block.data(), end).find(character, from);
    return std::min(place, end);
}

} // namespace

TextLines::TextLines(const ByteSource& source) : _source(source), _end(source.length()), _block(kBlockLength) {}

std::optional<TextLines::Line> TextLines::next() {
    if (_position >= _end) {
        return std::nullopt;
    }
    const std::uint64_t blockEnd = _blockBegin + _filled;
    if (_position + kLong > blockEnd && blockEnd < _end) {
        _fillFrom(_position);
    }
    Line line;
    line.begin = _position;
    const auto begin = static_cast<std::size_t>(_position - _blockBegin);
    std::size_t end = _lineEndFrom(begin);
    const bool isShort = end - begin < kLong;
    while (end == _filled && _blockBegin + _filled < _end) {
        _fillFrom(_blockBegin + _filled);
        end = _lineEndFrom(0);
    }
    if (isShort) {
        line.text = std::string_view(_block.data() + begin, end - begin);
    }
    line.next = _behindLineEnd(end);
    _position = line.next;
    return line;
}

void TextLines::_fillFrom(std::uint64_t position) {
    const auto most = static_cast<std::size_t>(std::min<std::uint64_t>(_block.size(), _end - position));
    _filled = _source.read(position, _block.data(), most);
    _blockBegin = position;
    if (_filled < most) {
        _end = position + _filled;
    }
    _lineFeed = indexOf('\n', _block, 0, _filled);
    _carriageReturn = indexOf('\r', _block, 0, _filled);
}

/// Each byte is looked at once, whichever of the two ends the lines.
std::size_t TextLines::_lineEndFrom(std::size_t index) {
    if (_lineFeed < index) {
        _lineFeed = indexOf('\n', _block, index, _filled);
    }
    if (_carriageReturn < index) {
        _carriageReturn = indexOf('\r', _block, index, _filled);
    }
    return std::min(_lineFeed, _carriageReturn);
}

std::uint64_t TextLines::_behindLineEnd(std::size_t index) const {
    const std::uint64_t end = _blockBegin + index;
    if (index == _filled) {
        return end; // of the source
    }
    if (_block[index] == '\n') {
        return end + 1;
    }
    const char after = _byteAt(end + 1);
    if (after == '\n') {
        return end + 2;
    }
    return end + (after == '\r' && _byteAt(end + 2) == '\n' ? 3 : 1);
}

/// Zero behind the end.
char TextLines::_byteAt(std::uint64_t position) const {
    const std::uint64_t index = position - _blockBegin;
    if (index < _filled) {
        return _block[static_cast<std::size_t>(index)];
    }
    char byte = '\0';
    _source.read(position, &byte, 1);
    return byte;
}

} // namespace OrvComtradeIntake
