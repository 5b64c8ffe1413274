#pragma once

#include "fleet/digest.h"

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

/// A shard's file is damaged: it ends early, or bytes of it have changed. The sentence names the file.
class DamagedShard : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Reads the file of a shard line by line, in memory of the longest line. See docs/fleet.md for the format.
class ShardReader {
public:
    /// Reads the first line. Throws a Failure if the file cannot be read, and DamagedShard.
    explicit ShardReader(const std::string& path);
    ~ShardReader();
    ShardReader(const ShardReader&) = delete;
    ShardReader& operator=(const ShardReader&) = delete;
    ShardReader(ShardReader&&) = delete;
    ShardReader& operator=(ShardReader&&) = delete;

    const std::string& path() const { return _path; }

    /// First line of the file, without its line end.
    const std::string& header() const { return _header; }

    /// Goes to the next recording. False at the end: the whole file is then known to be as it was written. Throws as
    /// the constructor does.
    bool next();

    /// Line of the recording, without its line end. Valid until `next`.
    std::string_view line() const { return _line; }

    /// Bytes of the file before this line, or before the last one at the end.
    std::uint64_t offset() const { return _offset; }

private:
    bool _readLine();
    void _fill();
    void _checkEnd() const;
    [[noreturn]] void _fail(const char* what) const;

    const std::string _path;
    const int _file;
    std::vector<char> _buffer;
    std::size_t _begin = 0; ///< of what was read but not returned yet
    std::size_t _end = 0;
    std::string _header;
    std::string_view _line;
    std::uint64_t _offset = 0;
    std::uint64_t _next = 0; ///< offset of the line after this one
    std::uint64_t _recordings = 0;
    Digest _digest; ///< of all lines but the last
};
