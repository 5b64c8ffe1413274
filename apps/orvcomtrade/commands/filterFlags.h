#pragma once

#include "commands/Flag.h"
#include "commands/Request.h"

#include <vector>

/// The flags that select recordings in folders and catalogues. The command then takes catalogues too.
std::vector<Flag> filterFlags(Request& request);
