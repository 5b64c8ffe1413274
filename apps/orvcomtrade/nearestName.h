#pragma once

#include <string>
#include <vector>

/// The name that `typed` was most likely meant to be, or nothing: at most two letters are wrong, missing, too many or
/// have changed places.
std::string nearestName(const std::string& typed, const std::vector<std::string>& names);
