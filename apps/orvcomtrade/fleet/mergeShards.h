#pragma once

#include "fleet/CatalogueWriter.h"

#include <string>
#include <vector>

/// Throws a Failure where something stands at the target that may not be replaced: no catalogue, or one of a newer
/// version.
void refuseToReplaceOther(const std::string& target);

/// Makes a catalogue of all shards in these folders; the file stands under its name when it is whole. Throws a Failure,
/// also where a shard is missing or damaged; then what stood there is as it was.
CatalogueCounts mergeShards(const std::vector<std::string>& folders, const std::string& target);
