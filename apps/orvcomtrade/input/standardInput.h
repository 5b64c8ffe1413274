#pragma once

#include <cstdint>
#include <string>

/// All bytes of standard input. Throws a Failure if there are more than `most`, or if they cannot be read.
std::string standardInput(std::uint64_t most);
