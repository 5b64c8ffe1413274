#pragma once

#include "fleet/ShardReader.h"
#include "fleet/digest.h"
#include "output/SafeFile.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Writes the file of a shard as a whole, or leaves the existing one if every line would be the same.
class ShardWriter {
public:
    /// `old` is the existing file, or null; it must outlive this object.
    ShardWriter(std::string target, std::string header, const ShardReader* old);

    /// Keeps the next line of the old file.
    void keep(std::string_view line);

    /// Adds a line that the old file does not have.
    void add(std::string_view line);

    /// Leaves out the next line of the old file.
    void drop();

    /// Publishes the file. If it throws a Failure, the old file is unchanged.
    void finish();

private:
    void _begin();
    void _write(std::string_view line);

    const std::string _target;
    const std::string _header;
    const ShardReader* const _old;
    std::uint64_t _kept = 0; ///< lines of the old file, before the first difference
    std::uint64_t _recordings = 0;
    Digest _digest;
    SafeFiles _files;
    SafeFile* _file = nullptr; ///< from the first difference on
};
