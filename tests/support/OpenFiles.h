#pragma once

#include <cstddef>
#include <filesystem>
#include <iterator>

namespace orvtest {

/// How many files the program has open. Compare it only with another call: counting opens a file itself.
inline std::ptrdiff_t openFiles() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), std::filesystem::directory_iterator());
}

} // namespace orvtest
