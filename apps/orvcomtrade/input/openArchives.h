#pragma once

#include "input/Archive.h"
#include "input/collectRecordings.h"

/// Replaces each archive by its recordings. An archive that cannot be opened becomes an entry with a problem.
void openArchives(EntryList& selection, const ArchiveLimits& limits);
