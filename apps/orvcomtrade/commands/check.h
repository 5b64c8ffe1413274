#pragma once

#include "commands/Request.h"
#include "commands/runRecordings.h"

/// Prints what the intake found in a recording and whether it can be read; of a recording as it is, the library's
/// verdict.
void printCheck(const Entry& entry, const Request& request, Job& out);
