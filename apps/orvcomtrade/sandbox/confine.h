#pragma once

#include "input/collectRecordings.h"

#include <string>
#include <vector>

/// From now on, the program reads nothing but the folders of the recordings, what links in them lead to, the archives,
/// and what the C library needs to convert texts. It writes nothing but files below the folders of the targets. Threads
/// that are already running keep their rights.
void confine(const EntryList& selection, const std::vector<std::string>& targets);
