#pragma once

#include "commands/Request.h"
#include "commands/runRecordings.h"

/// Prints what a recording is and which channels it has.
void printInfo(const Entry& entry, const Request& request, Job& out);
