#pragma once

#include <cstdint>
#include <string>

/// Everything that comes from standard input. Throws a Failure for more than `most` bytes, or what can't be read.
std::string standardInput(std::uint64_t most);
