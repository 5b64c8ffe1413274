#pragma once

#include <string>
#include <vector>

/// The name that `typed` was probably meant to be, or empty. At most two letters may be wrong, missing, surplus or
/// swapped.
std::string nearestName(const std::string& typed, const std::vector<std::string>& names);
