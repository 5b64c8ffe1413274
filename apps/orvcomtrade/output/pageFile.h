#pragma once

#include "output/Output.h"

#include <OrvComtradeIntake/Opened.h>
#include <OrvComtradePage/Page.h>

#include <string>

/// Name of a recording, fit to be shown: that of its file, without the folder.
std::string recordingName(const std::string& path);

/// Writes the interactive page of a recording. `verdict` is what is said of it in a few words; `indexLink` leads to a
/// list of recordings, or is empty.
OrvComtradePage::PageSummary writePageOf(const std::string& path, const OrvComtradeIntake::Opened& opened,
                                         const std::string& verdict, const std::string& indexLink, Output& out);
