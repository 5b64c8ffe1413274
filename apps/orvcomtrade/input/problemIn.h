#pragma once

#include <OrvComtradeIntake/Opened.h>

#include <string>
#include <vector>

/// Why what `path` leads to can't be read: the first error, and how many there are beside it.
std::string problemIn(const OrvComtradeIntake::Opened& opened, const std::string& path);

/// Why what was found is not the whole: the data changed, or failed under the reader's hands. Empty where they did not.
std::string interruptionIn(const std::vector<OrvComtradeIntake::Finding>& findings);

/// A note that it is no recording at all, and what it is instead; empty where it is one. An empty file is taken for
/// what is left of a recording.
std::string noteOfNone(const OrvComtradeIntake::Opened& opened);
