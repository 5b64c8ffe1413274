#pragma once

#include <OrvComtradeIntake/Opened.h>

#include <string>
#include <vector>

/// Why the recording of `path` cannot be read: the first error, and the number of others.
std::string problemIn(const OrvComtradeIntake::Opened& opened, const std::string& path);

/// Why the findings are incomplete: the data changed, or could not be read, meanwhile. Empty if they are complete.
std::string interruptionIn(const std::vector<OrvComtradeIntake::Finding>& findings);

/// A note that the file is not a recording at all, and what it is instead; empty if it is one. An empty file counts as
/// what is left of a recording.
std::string noteOfNone(const OrvComtradeIntake::Opened& opened);
