#include "fleet/ShardReader.h"

#include "fleet/shardLines.h"
#include "output/Failure.h"
#include "output/printable.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr std::size_t kPiece = 1UL << 20U;

[[noreturn]] void failToRead(const std::string& path) {
    throw Failure(kRecordingProblem, fmt::format("{}: cannot be read: {}", printable(path), std::strerror(errno)));
}

/// Without waiting for a pipe that has the name.
int openToRead(const std::string& path) {
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0) {
        failToRead(path);
    }
    struct stat status = {};
    if (fstat(file, &status) == 0 && !S_ISREG(status.st_mode)) {
        close(file);
        throw Failure(kRecordingProblem, fmt::format("{}: no regular file", printable(path)));
    }
    return file;
}

} // namespace

ShardReader::ShardReader(const std::string& path) : _path(path), _file(openToRead(path)), _buffer(kPiece) {
    try {
        if (!_readLine() || !isShardHeader(_line)) {
            _fail("it is not a shard, or one of another version");
        }
    } catch (...) {
        close(_file);
        throw;
    }
    _header = _line;
    _digest.add(_line);
    _digest.add("\n");
}

ShardReader::~ShardReader() {
    close(_file);
}

bool ShardReader::next() {
    if (!_readLine()) {
        _fail("it ends early");
    }
    if (isShardEnd(_line)) {
        _checkEnd();
        return false;
    }
    _digest.add(_line);
    _digest.add("\n");
    ++_recordings;
    return true;
}

void ShardReader::_checkEnd() const {
    if (_line != shardEnd(_recordings, _digest)) {
        _fail("its bytes have changed");
    }
}

/// False where there is none that has its end.
bool ShardReader::_readLine() {
    std::size_t known = 0;
    for (;;) {
        const char* const begin = _buffer.data() + _begin;
        const auto* const end = static_cast<const char*>(std::memchr(begin + known, '\n', _end - _begin - known));
        if (end != nullptr) {
            _line = std::string_view(begin, static_cast<std::size_t>(end - begin));
            _begin += _line.size() + 1;
            _offset = _next;
            _next += _line.size() + 1;
            return true;
        }
        known = _end - _begin;
        _fill();
        if (_end - _begin == known) {
            return false;
        }
    }
}

void ShardReader::_fill() {
    if (_begin > 0) {
        std::copy(_buffer.begin() + static_cast<std::ptrdiff_t>(_begin),
                  _buffer.begin() + static_cast<std::ptrdiff_t>(_end), _buffer.begin());
        _end -= _begin;
        _begin = 0;
    }
    if (_end == _buffer.size()) {
        _buffer.resize(2 * _buffer.size());
    }
    ssize_t count = 0;
    do {
        count = read(_file, _buffer.data() + _end, _buffer.size() - _end);
    } while (count < 0 && errno == EINTR);
    if (count < 0) {
        failToRead(_path);
    }
    _end += static_cast<std::size_t>(count);
}

void ShardReader::_fail(const char* what) const {
    throw DamagedShard(fmt::format("{}: damaged: {}", printable(_path), what));
}
