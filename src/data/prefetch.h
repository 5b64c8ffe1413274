#pragma once

#include <cstddef>
#include <vector>

namespace OrvComtradeLib {

// The values and the states of every sample lie in memory blocks of their own, wherever the allocator put them. A walk
// over the samples has those of a later one fetched meanwhile; nothing else changes.

constexpr std::size_t kSamplesAhead = 8;

/// Has the memory that holds the states fetched.
inline void prefetchStates([[maybe_unused]] const std::vector<bool>& states) {
#if defined(__GLIBCXX__) && !defined(_GLIBCXX_DEBUG)
    __builtin_prefetch(states.begin()._M_p);
#endif
}

/// Has the memory that holds the value of one channel fetched, if there is one.
inline void prefetchValue([[maybe_unused]] const std::vector<double>& values, [[maybe_unused]] std::size_t channel) {
#if defined(__GNUC__)
    if (channel < values.size()) {
        __builtin_prefetch(&values[channel]);
    }
#endif
}

} // namespace OrvComtradeLib
