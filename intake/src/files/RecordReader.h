#pragma once

#include "DataReader.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace OrvComtradeIntake {

/// Reads binary data in blocks of whole records.
class RecordReader {
public:
    RecordReader(const DataSource& source, std::size_t recordLength);

    /// The next records: their number, 0 at the end; they stay until the next call.
    std::size_t next();

    const char* records() const { return _block.get(); }

    /// Bytes after the last whole record, once `next` gave 0.
    std::size_t leftOver() const { return _leftOver; }

private:
    DataReader _reader;
    std::size_t _recordLength;
    std::size_t _blockLength;
    std::size_t _leftOver = 0;
    std::unique_ptr<char[]> _block;
};

/// The little-endian field at `bytes`, on any host.
inline std::uint16_t littleEndian16(const char* bytes) {
    const auto byte = [bytes](int i) { return static_cast<unsigned int>(static_cast<unsigned char>(bytes[i])); };
    return static_cast<std::uint16_t>(byte(0) | byte(1) << 8U);
}

inline std::uint32_t littleEndian32(const char* bytes) {
    return littleEndian16(bytes) | static_cast<std::uint32_t>(littleEndian16(bytes + 2)) << 16U;
}

inline void putLittleEndian32(char* bytes, std::uint32_t value) {
    for (unsigned int i = 0; i < 4; ++i) {
        bytes[i] = static_cast<char>(static_cast<unsigned char>(value >> 8 * i));
    }
}

} // namespace OrvComtradeIntake
