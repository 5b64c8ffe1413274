#pragma once

#include "input/HeldFiles.h"

#include <string>

/// One recording that the command line names, or that lies in a folder or an archive named there; also a folder named
/// there that has none.
struct Entry {
    std::string path;      ///< file to open, which may be in an archive; "-" is standard input
    std::string target;    ///< path of its output below an output folder, without an extension
    std::string problem{}; ///< why there is nothing to open, or empty
    bool isMet = false;    ///< a search found it: the command line does not name it
    bool isChosen = false; ///< the user is known to want it, without reading it
    std::string archive{}; ///< path of the archive that has it, or empty
    std::string inner{};   ///< for an archive that is not opened yet: the wanted part of it; empty: all
    ReadFiles read{};      ///< reads its files if they are not in a folder; null until an archive is opened
    bool isEmptyFolder = false;

    /// Whether this is an archive that its recordings have yet to replace.
    bool isUnopenedArchive() const { return !archive.empty() && !read && problem.empty(); }
};
