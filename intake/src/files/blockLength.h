#pragma once

#include <cstddef>

namespace OrvComtradeIntake {

/// Bytes that are read from a file at a time: few enough to stay in the second-level cache, and in memory that the
/// process has used before.
constexpr std::size_t kBlockLength = 64UL * 1024;

} // namespace OrvComtradeIntake
