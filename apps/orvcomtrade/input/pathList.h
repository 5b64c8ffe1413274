#pragma once

#include <string>
#include <vector>

/// The paths in a file, or in standard input where that is "-": one a line (blank lines are none, a carriage return
/// before the line's end is no part of it), or each ended by a NUL. Throws a Failure.
std::vector<std::string> pathList(const std::string& file, bool areEndedByNul);
