#pragma once

#include "Request.h"
#include "runRecordings.h"

/// Writes the recording's clean pair into a folder; where nothing needs mending, copies of its files.
void normalizeRecording(const Entry& entry, const Request& request, const OutputRequest& output, Job& out);
