#pragma once

#include "commands/Request.h"
#include "commands/runRecordings.h"
#include "input/Recording.h"

/// Loads what a command is to work on. A note names what is readable because of --force alone. Throws a Failure.
Recording loadEntry(const Entry& entry, const Request& request, Job& out);
