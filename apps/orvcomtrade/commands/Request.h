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
    bool listsHaveNuls = false;     ///< that end each path
    bool entersArchives = false;    ///< that lie in a folder that is searched
    bool followsLinks = false;      ///< out of a folder that is searched
    bool quiet = false;             ///< nothing on standard error but what failed
    bool verbose = false;           ///< standard error says how each recording was read
    bool unconfined = false;        ///< other files may be opened while recordings are read
    bool takesCatalogues = false;   ///< words may name catalogues
    CatalogueRequest wanted;        ///< which recordings, of a catalogue or met in another way
    EntryList selection;            ///< what the paths lead to

    /// Whether each recording's output has to say whose it is.
    bool several() const { return !selection.single; }

    static constexpr std::size_t kMostJobs = 256;
    static std::size_t defaultJobs(); ///< hardware threads
};

/// What becomes of a file that exists where one is to be written.
enum class Existing {
    Refuse, ///< the recording counts as failed
    Replace,
    Skip,  ///< the recording is left out
    Update ///< as Skip where the file is as new as the recording, else as Replace
};

/// What the commands that write files take.
struct OutputRequest {
    std::string target; ///< file or folder, or empty: standard output
    Existing existing = Existing::Refuse;

    bool replaces() const { return existing == Existing::Replace || existing == Existing::Update; }
};
