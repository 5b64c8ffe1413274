#pragma once

#include "fleet/ShardReader.h"
#include "fleet/digest.h"
#include "output/SafeFile.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Writes the file of a shard whole, or leaves the one that stands there, where every line would be the same.
class ShardWriter {
public:
    /// `old` is the file that stands there, or null; it must outlive this object.
    ShardWriter(std::string target, std::string header, const ShardReader* old);

    /// A line of the old file that stays, read in its order.
    void keep(std::string_view line);

    /// A line that the old file does not have.
    void add(std::string_view line);

    /// A line of the old file that goes.
    void drop();

    /// Publishes the file. Throws a Failure; then the old file is as it was.
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
