#pragma once

#include "data/RecordDecoder.h"
#include "files/ByteSource.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace OrvComtradeIntake {

/// Reads binary data in blocks of whole records.
class RecordReader {
public:
    /// Blocks have about `length` bytes, but no more than the data: new memory costs time.
    RecordReader(const ByteSource& source, std::size_t stride, std::size_t length = kUsualLength)
        : _source(source), _stride(stride),
          _length(std::max<std::size_t>(std::min<std::uint64_t>(length, source.length()) / stride, 1) * stride),
          _block(_length + RecordDecoder::kSlack) {}

    /// Continues with the record of this 0-based index.
    void seek(std::uint64_t record) { _position = record * _stride; }

    /// Reads the next records, which are valid until the next call. Returns their number, 0 at the end.
    std::size_t next() {
        const std::size_t records = _source.read(_position, _block.data(), _length) / _stride;
        _position += records * _stride;
        return records;
    }

    /// The records read last. RecordDecoder::kSlack bytes after them are readable.
    const char* records() const { return _block.data(); }

private:
    static constexpr std::size_t kUsualLength =
        64UL * 1024; // stays in the second-level cache, and in memory used before

    const ByteSource _source;
    std::size_t _stride;
    std::size_t _length; ///< of the records of a block
    std::uint64_t _position = 0;
    std::vector<char> _block;
};

} // namespace OrvComtradeIntake
