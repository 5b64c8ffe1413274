#pragma once

#include "fleet/CatalogueWriter.h"

#include <string>
#include <vector>

/// Throws a Failure if the target exists and may not be replaced: it is not a catalogue, or one of a newer version.
void refuseToReplaceOther(const std::string& target);

/// Makes a catalogue of all shards in these folders. The file gets its name only when it is complete. If it throws a
/// Failure, also for a missing or damaged shard, an existing target is unchanged.
CatalogueCounts mergeShards(const std::vector<std::string>& folders, const std::string& target);
