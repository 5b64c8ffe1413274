#pragma once

#include "fleet/RecordingWalk.h"
#include "fleet/Shard.h"
#include "fleet/ShardReader.h"
#include "fleet/ShardWriter.h"
#include "fleet/indexLine.h"

#include <OrvComtradeIntake/Options.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

struct IndexOptions {
    Shard shard;
    std::string folder; ///< where the files of the shards are; absolute
    std::string root;   ///< the archive; it must be the current folder
    std::size_t jobs = 1;
    bool followsLinks = false;
    bool entersArchives = false;
    ArchiveLimits archive;
    OrvComtradeIntake::Options intake;
    std::function<void(const std::string&)> onNote; ///< a sentence
};

/// What became of the recordings of a shard.
struct IndexCounts {
    std::uint64_t recordings = 0;
    std::uint64_t unchanged = 0; ///< recordings that were not read again
    std::uint64_t unreadable = 0;
    std::uint64_t unsearched = 0; ///< folders that cannot be searched
};

/// Brings the file of a shard up to date. A damaged one is made from scratch. Throws a Failure, also if the archive has
/// no recording at all: it may be a disk that is not mounted.
IndexCounts indexArchive(const IndexOptions& options);
