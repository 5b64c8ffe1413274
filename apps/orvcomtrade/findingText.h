#pragma once

#include "Finding.h"
#include "json.h"

#include <string>

/// Where it is: "file:line:field", or "file:byte 96:field" in binary data.
std::string findingPlace(const OrvComtradeIntake::Finding& finding);

/// What was found and expected, and what was done or can be done about it.
std::string findingSentence(const OrvComtradeIntake::Finding& finding);

/// "error", "warning" or "note".
const char* severityName(OrvComtradeIntake::Severity severity);

Json findingValue(const OrvComtradeIntake::Finding& finding);
