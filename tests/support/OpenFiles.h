#pragma once

#include <cstddef>
#include <filesystem>
#include <iterator>

namespace orvtest {

/// How many files the program has open. Comparable with another call alone: looking opens one itself.
inline std::ptrdiff_t openFiles() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), std::filesystem::directory_iterator());
}

} // namespace orvtest
