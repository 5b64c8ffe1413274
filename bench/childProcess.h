#pragma once

/// Programs that are measured from outside.

#include <string>
#include <vector>

namespace orvbench {

/// What a run of a program cost.
struct Cost {
    double seconds = 0.0;   ///< of processor time
    double peakBytes = 0.0; ///< of memory at once
};

/// Runs a program, whose standard output goes nowhere. Throws if it fails.
Cost costOf(const std::vector<std::string>& words);

/// Runs a program and gives what it prints. Throws if it fails.
std::string outputOf(const std::vector<std::string>& words);

} // namespace orvbench
