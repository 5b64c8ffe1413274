#pragma once

#include "commands/runRecordings.h"

#include <OrvComtradeIntake/Opened.h>

#include <string>
#include <vector>

/// Endings of the names of a written recording's files. The configuration comes last: without it, the others mean
/// nothing.
std::vector<std::string> endingsOf(const OrvComtradeIntake::Opened& opened, const OrvComtradeIntake::Form& form);

struct WrittenRecording {
    std::vector<std::string> files; ///< paths, the configuration last
    OrvComtradeIntake::Losses losses;
};

/// Writes a recording to `base` and these endings, header and information file as they were read. All files appear, or
/// none. Throws a Failure.
WrittenRecording writeRecording(const OrvComtradeIntake::Opened& opened, const std::string& base,
                                const OrvComtradeIntake::Form& form, bool replace);

/// What was lost because the revision has no place for it, in words: "sides and ratios".
std::vector<std::string> droppedWords(const OrvComtradeIntake::Losses& losses);

/// Reports header and information files that could not be read, and so are not written, with a note and a failure.
void reportMissingTexts(const OrvComtradeIntake::Opened& opened, Job& out);
