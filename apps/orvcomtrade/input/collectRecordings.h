#pragma once

#include "input/Entry.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// Where recordings are looked for.
struct Search {
    bool followsLinks = false;     ///< follows links that lead out of a folder that is searched
    bool entersArchives = false;   ///< enters archives in a folder
    std::uint64_t mostOfInput = 0; ///< most bytes of standard input
    std::string outputFolder{};    ///< folder that recordings are written to, or empty
};

/// A path that leads to an archive, or into one.
struct PlaceInArchive {
    std::string archive; ///< path of the file
    std::string inner;   ///< rest of the path after the archive, or empty
};

/// Splits a path after the archive; nothing if no part of it is an archive.
std::optional<PlaceInArchive> placeInArchive(const std::string& path);

struct EntryList {
    std::vector<Entry> entries;
    bool single = false;            ///< the command line names one file, not a folder or several files
    std::vector<std::string> notes; ///< sentences for standard error
};

/// Finds the recordings of files and folders, in the order in which these are named.
///
/// The files of one recording are one entry. Folders are searched to any depth, in the order of names, and each only
/// once, whatever links lead to it. In a folder, every `.cfg` is a recording, and so is every `.cff` without a `.cfg`
/// of its name. A folder that cannot be searched is an entry with a problem.
///
/// A folder that recordings are written to is searched only if it is named: what an earlier run left there is not a
/// recording of its own. A link that leads out of the folder that is searched is followed only with `followsLinks`; a
/// link that is named always is.
///
/// An archive is one entry, which is not opened here. A path may lead into an archive. "-" is standard input; a second
/// one throws a Failure.
EntryList collectRecordings(const std::vector<std::string>& paths, const Search& search);
