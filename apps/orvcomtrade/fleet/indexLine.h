#pragma once

#include "fleet/RecordingWalk.h"

#include <OrvComtradeIntake/Options.h>

#include <string>

/// What the index keeps of a recording.
struct IndexLine {
    std::string text; ///< without a line end; empty if it is not a recording
    std::string note; ///< says what it is instead
    bool isReadable = false;
};

/// Reads a recording of the archive in the current folder. `head` is what `lineHead` gives.
IndexLine indexLine(const FoundRecording& found, const std::string& head, const OrvComtradeIntake::Options& options);
