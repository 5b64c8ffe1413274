#pragma once

#include "input/collectRecordings.h"

#include <string>
#include <vector>

/// From now on the program reads nothing but the folders that the recordings lie in, what links in them lead to, the
/// archives, and what the C library needs to convert texts; it writes nowhere but below the folders of the targets.
/// Threads that are running keep what they had.
void confine(const EntryList& selection, const std::vector<std::string>& targets);
