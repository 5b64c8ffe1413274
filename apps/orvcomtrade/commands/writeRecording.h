#pragma once

#include "commands/runRecordings.h"

#include <OrvComtradeIntake/Opened.h>

#include <string>
#include <vector>

/// What the names of the files of a recording that is written end in, the configuration last: without it the others
/// mean nothing.
std::vector<std::string> endingsOf(const OrvComtradeIntake::Opened& opened, const OrvComtradeIntake::Form& form);

struct WrittenRecording {
    std::vector<std::string> files; ///< paths, the configuration last
    OrvComtradeIntake::Losses losses;
};

/// Writes a recording to `base` and these endings, header and information file as they were read. All files appear, or
/// none. Throws a Failure.
WrittenRecording writeRecording(const OrvComtradeIntake::Opened& opened, const std::string& base,
                                const OrvComtradeIntake::Form& form, bool replace);

/// What the revision had no place for, in words: "sides and ratios".
std::vector<std::string> droppedWords(const OrvComtradeIntake::Losses& losses);

/// A header or information file that can't be read is not written either: a note, and a failure.
void reportMissingTexts(const OrvComtradeIntake::Opened& opened, Job& out);
