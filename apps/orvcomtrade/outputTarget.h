#pragma once

#include "Request.h"

#include <string>

/// Whether `output` names one file for the one recording there is, not a folder.
bool isOneFile(const Request& request, const OutputRequest& output);

/// Path of the entry's file below the folder `output` (or `output` itself, where it is one file), without extension
/// where `extension` is its extension.
std::string targetBase(const Entry& entry, const Request& request, const OutputRequest& output,
                       const std::string& extension);

/// Of several entries with one place in the output folder, all but the first become problems.
void refuseSharedTargets(Selection& selection);
