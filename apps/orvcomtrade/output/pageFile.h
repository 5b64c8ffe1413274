#pragma once

#include "output/Output.h"

#include <OrvComtradeIntake/Opened.h>
#include <OrvComtradePage/Page.h>

#include <string>

/// Name of a recording in characters that can be shown: that of its file, without the folder.
std::string recordingName(const std::string& path);

/// Writes the interactive page of a recording. Sets its name, and that of the program, in `options`.
OrvComtradePage::PageSummary writePageOf(const std::string& path, const OrvComtradeIntake::Opened& opened,
                                         OrvComtradePage::PageOptions options, Output& out);
