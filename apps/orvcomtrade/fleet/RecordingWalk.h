#pragma once

#include "input/ArchiveLimits.h"
#include "input/HeldFiles.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/// A file of a recording, as its folder shows it.
struct FileState {
    std::string name;
    std::uint64_t bytes = 0;
    std::int64_t modified = 0; ///< nanoseconds since 1970 in UTC
};

/// A recording that was met, or a folder that can't be searched.
struct FoundRecording {
    std::string path;             ///< of its `.cfg` or `.cff`, relative to the archive; within a .zip file it goes on
    std::vector<FileState> files; ///< all that have its name
    std::string problem;          ///< why there is nothing to open, or empty
    ReadFiles read;               ///< its files where they are in an archive of files
};

/// Whether one path comes before another in the walk: component by component, bytes compared.
bool isBeforeInWalk(const std::string& left, const std::string& right);

struct WalkOptions {
    bool followsLinks = false;                        ///< out of the archive
    bool entersArchives = false;                      ///< looks into .zip files, as if they were folders
    ArchiveLimits limits;                             ///< of these
    std::function<bool(const std::string&)> isWanted; ///< by its path; files of others are not even looked at
    std::function<void(FoundRecording)> onRecording;  ///< in the order of the walk
    std::function<void(const std::string&)> onNote;   ///< a sentence on what was left alone
};

/// Walks through the archive in the current folder, folder by folder, so that memory holds the names of one folder and
/// of those above it, however many recordings there are. The rules are those of `collectRecordings`, but a link to a
/// folder of the archive is not followed: what is there is met at its own place. Throws a Failure where a folder can't
/// be read for another reason than its permissions: what was missed might be taken for deleted.
void walkRecordings(const WalkOptions& options);
