#pragma once

#include "commands/Request.h"

#include <string>
#include <vector>

/// Whether `output` names a file for a single recording, and not a folder.
bool isOneFile(const Request& request, const OutputRequest& output);

bool endsWith(const std::string& text, const std::string& end);

/// Path of the entry's file without its `extension`: below the folder `output`, or `output` itself if that is one file.
std::string targetBase(const Entry& entry, const Request& request, const OutputRequest& output,
                       const std::string& extension);

/// If several entries would write the same file, all but the first become problems. `endings` is what the names of an
/// entry's files have after its target.
void refuseSharedTargets(EntryList& selection, const std::vector<std::string>& endings);
