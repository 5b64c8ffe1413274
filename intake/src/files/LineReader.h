#pragma once

#include "DataReader.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

namespace OrvComtradeIntake {

/// A line of ASCII data without its line end.
struct DataLine {
    std::string_view text;
    bool hasFeed = false;       ///< ends with LF or CR LF; else with CR alone, or with the data
    bool hasReturn = false;     ///< ends with CR or CR LF
    std::size_t number = 0;     ///< 1-based
    std::uint64_t position = 0; ///< of its first byte, in the data
};

/// Cuts ASCII data into lines at LF, CR LF and CR, in constant memory: of a line that is longer than any sample can be,
/// the rest is passed over.
class LineReader {
public:
    /// Bytes in front of every line and behind it that may be read, for vector units.
    static constexpr std::size_t kSlack = 64;

    LineReader(const DataSource& source, std::size_t longestLine);

    /// The next line, valid until the next call of a member; false at the end.
    bool next(DataLine& line);

    /// Hands the bytes in memory to `take(begin, end)`, and goes on behind the `count` lines up to `end` that it gives.
    template <class Take> std::uint64_t takeLines(Take take);

private:
    bool _fill();
    const char* _findEnd();
    void _passOver();

    char* _begin() { return _bytes.data() + kSlack; }

    DataReader _reader;
    std::size_t _longestLine;
    std::vector<char> _bytes;
    char* _cursor;
    char* _end;
    char* _feed = nullptr;      ///< the next LF at or behind the cursor; `_end` if there is none, nullptr if unknown
    bool _isOver = false;       ///< all data are in memory
    bool _isCut = false;        ///< the cursor is inside a line that is too long
    bool _isCutInZeros = false; ///< of which all so far were zero bytes
    std::size_t _number = 0;
    std::uint64_t _position = 0; ///< of the cursor
};

template <class Take> std::uint64_t LineReader::takeLines(Take take) {
    if (_isCut || _cursor == _end) {
        return 0;
    }
    const auto taken = take(_cursor, _end);
    const auto step = taken.end - _cursor;
    _cursor += step;
    _position += static_cast<std::uint64_t>(step);
    _number += taken.count;
    _feed = nullptr;
    return taken.count;
}

} // namespace OrvComtradeIntake
