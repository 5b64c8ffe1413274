#pragma once

#include "files/ByteSource.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace OrvComtradeIntake {

/// Reads binary data in blocks of whole records.
class RecordReader {
public:
    RecordReader(const ByteSource& source, std::size_t stride);

    /// Goes on with the record of that 0-based index.
    void seek(std::uint64_t record) { _position = record * _stride; }

    /// The next records: their number, 0 at the end; they stay until the next call.
    std::size_t next();

    const char* records() const { return _block.data(); }

private:
    const ByteSource _source;
    std::size_t _stride;
    std::uint64_t _position = 0;
    std::vector<char> _block;
};

} // namespace OrvComtradeIntake
