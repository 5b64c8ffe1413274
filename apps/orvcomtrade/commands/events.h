#pragma once

#include "commands/Request.h"
#include "commands/runRecordings.h"

/// Prints the status changes of a recording in the order of time, each channel by its own bit.
void printEvents(const Entry& entry, const Request& request, Job& out);
