#include "DataReader.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace OrvComtradeIntake {

namespace {

constexpr std::size_t kTextLength = 64UL * 1024;

} // namespace

DataReader::DataReader(const DataSource& source)
    : _source(source), _file(open(source.file.c_str(), O_RDONLY | O_CLOEXEC)) {
    if (_file < 0) {
        throw std::system_error(errno, std::generic_category(), source.file);
    }
}

DataReader::~DataReader() {
    close(_file);
}

std::size_t DataReader::read(char* into, std::size_t most) {
    return _source.base64 ? _readDecoded(into, most) : _readFile(into, most);
}

std::size_t DataReader::_readFile(char* into, std::size_t most) {
    std::size_t done = 0;
    while (done < most && _position < _source.length) {
        const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(most - done, _source.length - _position));
        const ssize_t count = pread(_file, into + done, wanted, static_cast<off_t>(_source.offset + _position));
        if (count < 0 && errno != EINTR) {
            throw std::system_error(errno, std::generic_category(), _source.file);
        }
        if (count == 0) {
            break; // shorter than it was
        }
        done += count < 0 ? 0 : static_cast<std::size_t>(count);
        _position += count < 0 ? 0 : static_cast<std::uint64_t>(count);
    }
    return done;
}

std::size_t DataReader::_readDecoded(char* into, std::size_t most) {
    std::size_t done = 0;
    while (done < most && (_decodedUsed < _decoded.size() || _decodeMore())) {
        const std::size_t count = std::min(most - done, _decoded.size() - _decodedUsed);
        std::memcpy(into + done, _decoded.data() + _decodedUsed, count);
        done += count;
        _decodedUsed += count;
    }
    return done;
}

/// False at the end of the data.
bool DataReader::_decodeMore() {
    _decoded.clear();
    _decodedUsed = 0;
    while (_decoded.empty()) {
        _text.resize(kTextLength);
        _text.resize(_readFile(_text.data(), _text.size()));
        if (_text.empty()) {
            _decoder.finish(_decoded);
            return !_decoded.empty();
        }
        _decoder.decode(_text, _decoded);
    }
    return true;
}

std::uint64_t dataLength(const DataSource& source) {
    if (!source.base64) {
        return source.length;
    }
    DataReader reader(source);
    std::vector<char> block(kTextLength);
    std::uint64_t length = 0;
    while (const std::size_t count = reader.read(block.data(), block.size())) {
        length += count;
    }
    return length;
}

} // namespace OrvComtradeIntake
