#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace OrvComtradePage {

/// Packs words of 32 bits in blocks of 64. Each block takes as many bits per word as its largest difference needs: the
/// words of a wave differ little from what the ones before them predict.
///
/// A block holds differences of one order from 0 to 3, modulo 2^32. Order 0 are the words themselves; order k are the
/// differences between neighbours of order k - 1. Zeros stand before the first word. The sign of a difference is its
/// lowest bit: 0, -1, 1, -2, ... are written as 0, 1, 2, 3, ...
///
/// Each difference is written with as many low bits as the widest of the block has. They follow one another from the
/// lowest bit of little-endian words of 32 bits on, and each block begins with a new word. After all blocks comes one
/// byte per block: the number of bits plus 64 times the order.
class WordPacker {
public:
    static constexpr std::size_t kBlock = 64;

    /// The number of bits of a difference becomes a multiple of `step`, a divisor of 32. With 8, bytes stay whole, so
    /// that a compressor can find the same bytes again.
    explicit WordPacker(unsigned step = 1) : _step(step) {}

    /// Adds the next words: `kBlock`, or fewer at the end.
    void add(const std::uint32_t* words, std::size_t count);

    /// Returns all words added, packed.
    std::string take();

private:
    static constexpr std::size_t kBefore = 3; // earlier words that a difference of the highest order needs

    using Series = std::array<std::uint32_t, kBefore + kBlock>;

    void _put(const std::uint32_t* differences, std::size_t count, unsigned width);

    unsigned _step;
    Series _series{}; ///< the last words before a block, then its own
    std::string _bytes;
    std::string _heads; ///< a byte for each block
};

} // namespace OrvComtradePage
