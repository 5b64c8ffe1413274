#pragma once

#include "input/Entry.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// Where recordings are looked for.
struct Search {
    bool followsLinks = false;     ///< out of a folder that is searched
    bool entersArchives = false;   ///< that lie in a folder
    std::uint64_t mostOfInput = 0; ///< bytes of standard input
    std::string outputFolder{};    ///< that recordings are written to, or nothing
};

/// A path that leads to an archive, or into one.
struct PlaceInArchive {
    std::string archive; ///< path of the file
    std::string inner;   ///< what stands behind it, or nothing
};

/// None where no part of the path is an archive.
std::optional<PlaceInArchive> placeInArchive(const std::string& path);

struct EntryList {
    std::vector<Entry> entries;
    bool single = false;            ///< one file is named: no folder, and not several
    std::vector<std::string> notes; ///< sentences for standard error
};

/// The recordings of files and folders in the order in which they are named; folders are searched to any depth, in the
/// order of their names, each once, whatever links lead to it. The files of one recording are one entry. Of a folder
/// every `.cfg` is a recording, and every `.cff` that has none beside it. What can't be searched is an entry with a
/// problem. A folder that recordings are written to is not searched, unless it is named: what an earlier run left there
/// is no recording of its own. A link that leads out of the folder that is searched is only followed if `followsLinks`;
/// one that is named always is. An archive is one entry, which is not opened; a path may go on within it. "-" is
/// standard input, once. Throws a Failure for a second time.
EntryList collectRecordings(const std::vector<std::string>& paths, const Search& search);
