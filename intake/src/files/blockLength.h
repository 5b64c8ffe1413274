#pragma once

#include <cstddef>

namespace OrvComtradeIntake {

/// What is read of a file at once: stays in the second-level cache, and in memory that was used before.
constexpr std::size_t kBlockLength = 64UL * 1024;

} // namespace OrvComtradeIntake
