#pragma once

#include "input/Recording.h"

/// Whether the finding is about something that had to be repaired. Notes do not count.
bool isRepaired(const OrvComtradeIntake::Finding& finding);

/// "OK", "readable after 3 repairs" or "cannot be read", by what was found. An error makes a check fail even if the
/// recording can be read.
Verdict verdictOn(const std::string& path, bool isReadable, const std::vector<OrvComtradeIntake::Finding>& findings);
