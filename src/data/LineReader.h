#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <streambuf>
#include <string_view>

namespace OrvComtradeLib {

/// Cuts a stream into lines without holding more of it than a block, or the longest line.
class LineReader {
public:
    explicit LineReader(std::streambuf& source) : _source(source), _bytes(new char[kBlockLength]) {}

    /// The next line without its line feed, valid until the next call; false when there is none. The last line may
    /// lack a line feed. Throws what the stream buffer throws when it cannot be read.
    bool next(std::string_view& line) {
        std::size_t searched = _begin;
        for (;;) {
            const char* const from = _bytes.get() + searched;
            if (const void* const feed = searched < _end ? std::memchr(from, '\n', _end - searched) : nullptr) {
                const std::size_t lineEnd = searched + static_cast<std::size_t>(static_cast<const char*>(feed) - from);
                line = {_bytes.get() + _begin, lineEnd - _begin};
                _begin = lineEnd + 1;
                return true;
            }
            searched = _end - _begin;
            if (!_readMore()) {
                line = {_bytes.get() + _begin, _end - _begin};
                _begin = _end;
                return !line.empty();
            }
        }
    }

    /// Reads the rest of the stream and forgets it.
    void drain() {
        do {
            _begin = _end;
        } while (_readMore());
    }

private:
    static constexpr std::size_t kBlockLength = 256UL * 1024;

    /// Moves what is left to the front and reads behind it; false at the end of the stream.
    bool _readMore() {
        std::copy(_bytes.get() + _begin, _bytes.get() + _end, _bytes.get());
        _end -= _begin;
        _begin = 0;
        if (_end == _capacity) {
            std::unique_ptr<char[]> larger(new char[2 * _capacity]);
            std::copy(_bytes.get(), _bytes.get() + _end, larger.get());
            _bytes = std::move(larger);
            _capacity *= 2;
        }
        const auto room = static_cast<std::streamsize>(_capacity - _end);
        const std::streamsize count = _source.sgetn(_bytes.get() + _end, room);
        _end += static_cast<std::size_t>(count);
        return count > 0;
    }

    std::streambuf& _source;
    std::unique_ptr<char[]> _bytes;
    std::size_t _capacity = kBlockLength;
    std::size_t _begin = 0; ///< first byte that belongs to no line yet
    std::size_t _end = 0;   ///< end of the bytes read
};

} // namespace OrvComtradeLib
