#pragma once

#include <string>
#include <vector>

/// One recording that the command line names, or that lies in a folder named there.
struct Entry {
    std::string path;    ///< the file of it to open
    std::string target;  ///< its place below an output folder, without an extension
    std::string problem; ///< why there is nothing to open, or empty
    bool isMet = false;  ///< by a search; nobody named a file of it
};

struct Selection {
    std::vector<Entry> entries;
    bool single = false;            ///< one file is named: no folder, and not several
    std::vector<std::string> notes; ///< sentences for standard error
};

/// The recordings of files and folders in the order in which they are named; folders are searched to any depth, in the
/// order of their names, each once, whatever links lead to it. The files of one recording are one entry. Of a folder
/// every `.cfg` is a recording, and every `.cff` that has none beside it. What can't be searched is an entry with a
/// problem. A folder that recordings are written to is not searched, unless it is named: what an earlier run left there
/// is no recording of its own. A link that leads out of the folder that is searched is only followed if `followsLinks`;
/// one that is named always is.
Selection collectRecordings(const std::vector<std::string>& paths, bool followsLinks,
                            const std::string& outputFolder = {});
