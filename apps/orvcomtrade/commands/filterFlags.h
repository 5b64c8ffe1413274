#pragma once

#include "commands/Flag.h"
#include "commands/Request.h"

#include <vector>

/// Which recordings of many a command is to take, of folders and of catalogues, which it takes then too.
std::vector<Flag> filterFlags(Request& request);
