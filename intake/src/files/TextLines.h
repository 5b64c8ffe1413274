#pragma once

#include "files/ByteSource.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace OrvComtradeIntake {

/// Walks over the lines of a source in search of short ones. Lines end with LF, CR, CR LF or CR CR LF. Memory holds one
/// block, however long a line is.
class TextLines {
public:
    /// Lines with fewer bytes are short.
    static constexpr std::size_t kLong = 256;

    struct Line {
        std::uint64_t begin = 0;
        std::uint64_t next = 0; ///< where the line after it begins
        std::string_view text;  ///< without the line end, valid until the next call; empty for one that is not short
    };

    explicit TextLines(const ByteSource& source);

    /// The next line; nothing at the end. Throws `std::system_error`.
    std::optional<Line> next();

    /// Goes on at a position behind the last line.
    void goTo(std::uint64_t position) { _position = position; }

private:
    void _fillFrom(std::uint64_t position);
    std::size_t _lineEndFrom(std::size_t index);
    std::uint64_t _behindLineEnd(std::size_t index) const;
    char _byteAt(std::uint64_t position) const;

    ByteSource _source;
    std::uint64_t _end; ///< of the source; less where a file has become shorter
    std::vector<char> _block;
    std::uint64_t _blockBegin = 0;
    std::size_t _filled = 0;
    std::size_t _lineFeed = 0;       ///< next index in the block, or `_filled`
    std::size_t _carriageReturn = 0; ///< likewise
    std::uint64_t _position = 0;
};

} // namespace OrvComtradeIntake
