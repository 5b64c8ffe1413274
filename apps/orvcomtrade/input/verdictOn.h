#pragma once

#include "input/Recording.h"

/// Whether the finding is about something that had to be repaired; what is only worth knowing did not.
bool isRepaired(const OrvComtradeIntake::Finding& finding);

/// "OK", "readable after 3 repairs" or "cannot be read", by what was found; an error among it makes a check fail also
/// where the recording can be read.
Verdict verdictOn(const std::string& path, bool isReadable, const std::vector<OrvComtradeIntake::Finding>& findings);
