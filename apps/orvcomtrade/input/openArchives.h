#pragma once

#include "input/Archive.h"
#include "input/collectRecordings.h"

/// Puts the recordings of each archive in the place of the archive; one that can't be opened becomes an entry with a
/// problem.
void openArchives(EntryList& selection, const ArchiveLimits& limits);
