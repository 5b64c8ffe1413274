#pragma once

#include "input/LoadOptions.h"
#include "input/collectRecordings.h"

#include <cstddef>
#include <string>
#include <vector>

/// What every command takes.
struct Request {
    std::vector<std::string> paths;
    LoadOptions load;
    std::size_t jobs = defaultJobs();
    bool json = false;
    bool followsLinks = false; ///< out of a folder that is searched
    bool unconfined = false;   ///< other files may be opened while recordings are read
    Selection selection;       ///< what the paths lead to

    /// Whether each recording's output has to say whose it is.
    bool several() const { return !selection.single; }

    static constexpr std::size_t kMostJobs = 256;
    static std::size_t defaultJobs(); ///< hardware threads
};

/// What the commands that write files take.
struct OutputRequest {
    std::string target;   ///< file or folder, or empty: standard output
    bool replace = false; ///< files that exist
};
