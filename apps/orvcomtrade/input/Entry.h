#pragma once

#include "input/HeldFiles.h"

#include <string>

/// One recording that the command line names, or that lies in a folder or an archive named there.
struct Entry {
    std::string path;      ///< the file of it to open, also where that lies in an archive; "-" is standard input
    std::string target;    ///< its place below an output folder, without an extension
    std::string problem{}; ///< why there is nothing to open, or empty
    bool isMet = false;    ///< by a search; nobody named a file of it
    bool isChosen = false; ///< it is known without reading it that the user asks for it
    std::string archive{}; ///< path of the archive that has it, or empty
    std::string inner{};   ///< of an archive that is yet to be opened: what of it is meant, or empty: all
    ReadFiles read{};      ///< its files where they are none of a folder; empty as long as an archive is not opened

    /// Whether the recordings of an archive are yet to take the place of this.
    bool isUnopenedArchive() const { return !archive.empty() && !read && problem.empty(); }
};
