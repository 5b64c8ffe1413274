#pragma once

#include <vector>

namespace OrvComtradeLib {

/// Has the memory that holds the states fetched while earlier samples are looked at; changes nothing else.
inline void prefetchStates([[maybe_unused]] const std::vector<bool>& states) {
#if defined(__GLIBCXX__) && !defined(_GLIBCXX_DEBUG)
    __builtin_prefetch(states.begin()._M_p);
#endif
}

} // namespace OrvComtradeLib
