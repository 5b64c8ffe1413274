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

/// A recording that was found, or a folder that cannot be searched.
struct FoundRecording {
    std::string path;             ///< of its `.cfg` or `.cff`, relative to the archive; may lead into a .zip file
    std::vector<FileState> files; ///< all files of its name
    std::string problem;          ///< why there is nothing to open, or empty
    ReadFiles read;               ///< reads its files if they are in a .zip file
};

/// Whether one path comes before another in the walk: component by component, bytes compared.
bool isBeforeInWalk(const std::string& left, const std::string& right);

struct WalkOptions {
    bool followsLinks = false;                        ///< follows links that lead out of the archive
    bool entersArchives = false;                      ///< looks into .zip files as if they were folders
    ArchiveLimits limits;                             ///< for .zip files
    std::function<bool(const std::string&)> isWanted; ///< gets the path; files of other recordings are not looked at
    std::function<void(FoundRecording)> onRecording;  ///< called in the order of the walk
    std::function<void(const std::string&)> onNote;   ///< gets a sentence about what was left out
};

/// Walks through the archive in the current folder, folder by folder. Memory holds the names of one folder and of those
/// above it, however many recordings there are. The rules are those of `collectRecordings`, except that a link to a
/// folder of the archive is not followed: its recordings are found at their own place. Throws a Failure if a folder
/// cannot be read for another reason than its permissions: its recordings might be taken for deleted.
void walkRecordings(const WalkOptions& options);
