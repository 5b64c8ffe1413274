#pragma once

#include <cstdint>
#include <optional>
#include <string>

/// One of several parts of an archive, which can be worked on separately: the recordings whose paths hash to it.
struct Shard {
    std::uint32_t number = 1; ///< from 1
    std::uint32_t count = 1;

    /// From "K/N".
    static std::optional<Shard> of(const std::string& text);

    /// From the name of a shard's file.
    static std::optional<Shard> ofFile(const std::string& name);

    /// "shard-0002-of-0016.jsonl"
    std::string fileName() const;

    /// Whether a recording belongs to it: XXH3 (64 bits, seed 0) of the path relative to the archive, modulo `count`.
    bool holds(const std::string& path) const;
};
