#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace OrvComtradePage {

/// Words of 32 bits in blocks of 64, each with as few bits a word as its largest difference takes: the words of a wave
/// differ little from where the ones before them point to.
///
/// A block is the differences of an order of 0 to 3 (0: the words; k: the differences of those of order k - 1), modulo
/// 2^32, before the first word come zeros. The sign of a difference stands in its lowest bit: 0, -1, 1, -2, ... are
/// 0, 1, 2, 3, ... Of each as many low bits as the widest of the block has follow one another, from the lowest bit of
/// little-endian words of 32 bits on; a block begins with a word of its own. Behind all blocks stands a byte for each:
/// the bits of a difference, and 64 times the order.
class WordPacker {
public:
    static constexpr std::size_t kBlock = 64;

    /// The bits of a difference are a multiple of `step`, a divisor of 32: 8 keeps bytes together for what looks for
    /// the same ones again.
    explicit WordPacker(unsigned step = 1) : _step(step) {}

    /// The next words: `kBlock`, or fewer at the end.
    void add(const std::uint32_t* words, std::size_t count);

    /// All that was added, packed.
    std::string take();

private:
    static constexpr std::size_t kBefore = 3; // words that a difference of the highest order goes back

    using Series = std::array<std::uint32_t, kBefore + kBlock>;

    void _put(const std::uint32_t* differences, std::size_t count, unsigned width);

    unsigned _step;
    Series _series{}; ///< the last words before a block, then its own
    std::string _bytes;
    std::string _heads; ///< a byte for each block
};

} // namespace OrvComtradePage
