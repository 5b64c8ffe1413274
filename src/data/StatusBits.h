#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace OrvComtradeLib {

/// The status bits of one sample while they are collected, 64 to a word; reused from sample to sample.
class StatusBits {
public:
    /// Forgets all bits and makes room for `most`, which the appended ones must not exceed.
    void reset(std::size_t most) {
        const std::size_t words = most / kBitsPerWord + 2;
        if (_words.size() < words) {
            _words.resize(words);
        }
        _words[0] = 0;
        _count = 0;
    }

    /// Appends the lowest `count` bits, at most 16 of them, least significant first; higher ones must be zero.
    void append(std::uint64_t bits, std::uint32_t count) {
        const std::size_t word = _count / kBitsPerWord;
        const std::size_t shift = _count % kBitsPerWord;
        _words[word] |= bits << shift;
        _words[word + 1] = bits >> 1U >> (kBitsPerWord - 1 - shift); // what does not fit, or zero
        _count += count;
    }

    /// Replaces `states`, which has no room reserved, by the bits collected.
    void copyTo(std::vector<bool>& states) const {
        if (_count == 0) {
            return;
        }
        states = std::vector<bool>(_count);
#if defined(__GLIBCXX__) && !defined(_GLIBCXX_DEBUG)
        // Whole words at a time: this library keeps 64 states to a word, and there is no standard way to reach them.
        std::copy_n(_words.data(), (_count + kBitsPerWord - 1) / kBitsPerWord, states.begin()._M_p);
#else
        for (std::size_t i = 0; i < _count; ++i) {
            states[i] = (_words[i / kBitsPerWord] >> i % kBitsPerWord & 1U) != 0;
        }
#endif
    }

private:
    static constexpr std::size_t kBitsPerWord = 64;

    std::vector<std::uint64_t> _words;
    std::size_t _count = 0;
};

} // namespace OrvComtradeLib
