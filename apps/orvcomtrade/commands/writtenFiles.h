#pragma once

#include "commands/Request.h"
#include "commands/runRecordings.h"

#include <optional>
#include <string>
#include <vector>

/// Whether the recording is left out because its file exists; if so, reports it. `file` is the one published last.
bool isLeftOut(const Entry& entry, const Request& request, const OutputRequest& output, const std::string& file,
               Job& out);

/// Reports the files that were written, and whether the recording was repaired, if that matters. Without JSON, only the
/// first file is named, which is the main one.
void reportWritten(const Entry& entry, const Request& request, const std::vector<std::string>& files,
                   std::optional<bool> isRepaired, Job& out);
