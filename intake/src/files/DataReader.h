#pragma once

#include "DataSource.h"
#include "base64.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace OrvComtradeIntake {

/// Reads the bytes of the data in large pieces, decoded where they are base64 text. Not by mapping the file: one that
/// is cut short meanwhile would end the program.
class DataReader {
public:
    /// Throws `std::system_error` if the file can't be opened.
    explicit DataReader(const DataSource& source);
    ~DataReader();
    DataReader(const DataReader&) = delete;
    DataReader& operator=(const DataReader&) = delete;
    DataReader(DataReader&&) = delete;
    DataReader& operator=(DataReader&&) = delete;

    /// Puts up to `most` bytes into `into`; fewer only at the end of the data. Throws `std::system_error`.
    std::size_t read(char* into, std::size_t most);

private:
    std::size_t _readFile(char* into, std::size_t most);
    std::size_t _readDecoded(char* into, std::size_t most);
    bool _decodeMore();

    const DataSource _source;
    int _file;
    std::uint64_t _position = 0; ///< in the source
    Base64Decoder _decoder;
    std::string _text;
    std::string _decoded;
    std::size_t _decodedUsed = 0;
};

/// Number of bytes of the data, decoded.
std::uint64_t dataLength(const DataSource& source);

/// Place in the file of a byte of the data; for base64 text, where the text begins.
inline std::uint64_t offsetInFile(const DataSource& source, std::uint64_t position) {
    return source.offset + (source.base64 ? 0 : position);
}

} // namespace OrvComtradeIntake
