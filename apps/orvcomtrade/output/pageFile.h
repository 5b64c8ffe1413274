#pragma once

#include "output/Output.h"

#include <OrvComtradeIntake/Opened.h>

#include <OrvComtradePage/Page.h>
#include <cstddef>
#include <string>

/// Name of a recording, fit to be shown: that of its file, without the folder.
std::string recordingName(const std::string& path);

/// Writes the interactive page of a recording. `verdict` is what is said of it in a few words; `indexLink` leads to a
/// list of recordings, or is empty; `fullBytes` is from how many recorded bytes on it is reduced.
OrvComtradePage::PageSummary writePageOf(const std::string& path, const OrvComtradeIntake::Opened& opened,
                                         const std::string& verdict, const std::string& indexLink,
                                         std::size_t fullBytes, Output& out);
