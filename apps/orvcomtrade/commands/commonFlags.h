#pragma once

#include "commands/Flag.h"
#include "commands/Request.h"

#include <vector>

/// Of every command that reads recordings. `mayBeAsIs` says whether it may leave the intake out.
std::vector<Flag> readingFlags(Request& request, bool mayBeAsIs = true);

/// Where to write; `details` say what it is for one recording and for several.
Flag outputFlag(OutputRequest& output, std::string summary, std::string details);

/// From how many bytes of recorded values on a page is reduced; of the commands that write pages.
Flag fullBytesFlag(std::size_t& bytes);

/// Reads what makes no sense; of a command that writes files, replaces those that exist as well.
Flag forceFlag(Request& request);
Flag forceFlag(Request& request, OutputRequest& output);
