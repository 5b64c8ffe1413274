#pragma once

#include "files/ByteSource.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace OrvComtradeIntake {

/// A line of ASCII data without its line end.
struct DataLine {
    std::string_view text;      ///< may have CR within
    bool hasReturn = false;     ///< CR stood before the line feed
    bool isLast = false;        ///< the data end with this line, which has no line end
    std::size_t number = 0;     ///< 1-based
    std::uint64_t position = 0; ///< of its first byte, in the data
};

/// Cuts ASCII data into lines in constant memory. Lines end at LF, with any CR before it, or at CR if the data have no
/// LF. A line that is longer than any sample can be is cut, and the rest of it is skipped.
class LineReader {
public:
    /// Bytes before and after every line that may be read: vector units read more than the line.
    static constexpr std::size_t kSlack = 64;

    LineReader(const ByteSource& source, std::size_t longestLine);

    /// The next line, valid until the next call of a member; false at the end.
    bool next(DataLine& line);

    /// How lines end.
    enum class LineEnd { CrLf, CrCrLf, Lf, Cr };
    LineEnd lineEnd() const { return _lineEnd; } ///< that of the first line

    /// Calls `take(begin, end, number, position)` with the bytes in memory and the number and position of their first
    /// line. It returns how many lines it took (`count`) and where they end (`end`). It is not called if lines end with
    /// CR. Returns how many lines were taken.
    template <class Take> std::uint64_t takeLines(Take take);

private:
    LineEnd _firstLineEnd();
    bool _fill();
    const char* _findEnd();
    void _passOver();

    char* _begin() { return _bytes.data() + kSlack; }

    const ByteSource _source;
    std::size_t _longestLine;
    std::vector<char> _bytes;
    char* _cursor;
    char* _end;
    std::uint64_t _read = 0;    ///< bytes of the source read so far
    bool _isOver = false;       ///< all data are in memory
    bool _isCut = false;        ///< the cursor is inside a line that is too long
    bool _isCutInZeros = false; ///< and all of that line so far are zero bytes
    char _separator = '\n';
    LineEnd _lineEnd = LineEnd::CrLf;
    std::size_t _number = 0;
    std::uint64_t _position = 0; ///< of the cursor
};

template <class Take> std::uint64_t LineReader::takeLines(Take take) {
    if (_isCut || _cursor == _end || _separator != '\n') {
        return 0;
    }
    const auto taken = take(static_cast<const char*>(_cursor), static_cast<const char*>(_end), _number + 1, _position);
    const auto step = taken.end - _cursor;
    _cursor += step;
    _position += static_cast<std::uint64_t>(step);
    _number += taken.count;
    return taken.count;
}

} // namespace OrvComtradeIntake
