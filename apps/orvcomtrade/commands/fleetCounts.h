#pragma once

#include "output/json.h"

#include <string>
#include <utility>
#include <vector>

/// Prints the result for an archive: `sentence` about the file, or with JSON, an object with the counts.
void printFleetCounts(const std::string& target, const std::string& sentence,
                      const std::vector<std::pair<const char*, Json>>& counts, bool isJson);
