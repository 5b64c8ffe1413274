#pragma once

#include "commands/Request.h"
#include "commands/runRecordings.h"

#include <optional>
#include <string>
#include <vector>

/// Whether the recording is to be left out because its file, the last one that is published, is there; then this has
/// been reported.
bool isLeftOut(const Entry& entry, const Request& request, const OutputRequest& output, const std::string& file,
               Job& out);

/// Says which files were written, for people only the first, which is the main one, and whether the recording was
/// repaired, where that matters.
void reportWritten(const Entry& entry, const Request& request, const std::vector<std::string>& files,
                   std::optional<bool> isRepaired, Job& out);
