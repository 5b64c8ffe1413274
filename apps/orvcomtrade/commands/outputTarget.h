#pragma once

#include "commands/Request.h"

#include <string>
#include <vector>

/// Whether `output` names one file for the one recording there is, not a folder.
bool isOneFile(const Request& request, const OutputRequest& output);

bool endsWith(const std::string& text, const std::string& end);

/// Path of the entry's file below the folder `output` (or `output` itself, where it is one file), without extension
/// where `extension` is its extension.
std::string targetBase(const Entry& entry, const Request& request, const OutputRequest& output,
                       const std::string& extension);

/// Of several entries that have a file in the output folder in common, all but the first become problems. `endings` are
/// what the names of an entry's files have behind its target.
void refuseSharedTargets(EntryList& selection, const std::vector<std::string>& endings);
