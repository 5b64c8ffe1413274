#pragma once

#include <string>
#include <vector>

/// The paths in a file, or in standard input if `file` is "-": one per line, or each ended by a NUL. Blank lines, and a
/// carriage return before a line's end, are ignored. Throws a Failure.
std::vector<std::string> pathList(const std::string& file, bool areEndedByNul);
