#pragma once

#include "LineReader.h"
#include "asciiLine.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace OrvComtradeIntake {

/// The lines of ASCII data, without a byte-order mark in front of the first. CR alone ends a line as well, unless only
/// all that stands around it is a sample: then the line is handed out with the CR in it.
class DataLines {
public:
    /// Bytes behind every line that may be read, for vector units.
    static constexpr std::size_t kSlack = LineReader::kSlack;

    DataLines(const DataSource& source, const DataLayout& layout);

    /// The next line, valid until the next call of a member; false at the end.
    bool next(DataLine& line);

    /// Whether a byte-order mark was left out since the last call.
    bool takeMark() { return std::exchange(_hasMark, false); }

    /// As of LineReader.
    template <class Take> std::uint64_t takeLines(Take take);

private:
    struct Part {
        DataLine line;
        std::size_t begin = 0; ///< in the text
        std::size_t length = 0;
    };

    void _leaveOutMark(DataLine& line);
    bool _mayBePart(const DataLine& line);
    void _join(DataLine& line);
    bool _gather(DataLine& line);
    void _add(const DataLine& line);
    std::size_t _lostColumns(std::string_view text);
    bool _isOneSample(bool isAllOfLine);
    void _giveNext(DataLine& line);

    DataLayout _layout;
    std::size_t _longestLine;
    LineReader _lines;
    bool _hasMark = false;
    bool _isAfterFeed = true; ///< the next line begins behind LF
    std::vector<Part> _parts; ///< lines that were read ahead
    std::size_t _given = 0;   ///< of these
    std::string _text;        ///< of the parts, a CR between any two
    std::size_t _commas = 0;  ///< in the text
    AsciiSample _tried;
};

template <class Take> std::uint64_t DataLines::takeLines(Take take) {
    if (_given < _parts.size()) {
        return 0;
    }
    const std::uint64_t taken = _lines.takeLines(take);
    _isAfterFeed = _isAfterFeed || taken != 0;
    return taken;
}

} // namespace OrvComtradeIntake
