#pragma once

#include "fleet/CatalogueReader.h"
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
    std::vector<std::string> lists; ///< files that name further paths; "-" is standard input
    bool listsHaveNuls = false;     ///< paths in lists end with NUL instead of a line end
    bool entersArchives = false;    ///< a search also enters archives in the folder
    bool followsLinks = false;      ///< a search also follows links that lead out of the folder
    bool quiet = false;             ///< standard error reports failures only
    bool verbose = false;           ///< standard error reports how each recording was read
    bool unconfined = false;        ///< other files may be opened while recordings are read
    bool takesCatalogues = false;   ///< words may name catalogues
    CatalogueRequest wanted;        ///< which recordings, whether from a catalogue or not
    EntryList selection;            ///< what the paths lead to

    /// Whether the output of each recording must name the recording.
    bool several() const { return !selection.single; }

    static constexpr std::size_t kMostJobs = 256;
    static std::size_t defaultJobs(); ///< hardware threads
};

/// What to do if the file to be written exists.
enum class Existing {
    Refuse, ///< the recording counts as failed
    Replace,
    Skip,  ///< the recording is left out
    Update ///< Skip if the file is as new as the recording, otherwise Replace
};

/// What the commands that write files take.
struct OutputRequest {
    std::string target; ///< file or folder, or empty: standard output
    Existing existing = Existing::Refuse;

    bool replaces() const { return existing == Existing::Replace || existing == Existing::Update; }
};
