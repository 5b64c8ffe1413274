#pragma once

#include "commands/Request.h"
#include "commands/runRecordings.h"
#include "input/Recording.h"

/// Reports channels whose values are not on the requested side, since their lines give no usable ratio.
void noteSides(const Recording& recording, const Entry& entry, const Request& request, Job& out);
