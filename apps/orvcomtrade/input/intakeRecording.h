#pragma once

#include "input/Entry.h"
#include "input/Recording.h"

#include <OrvComtradeIntake/Opened.h>
#include <OrvComtradeIntake/Options.h>

#include <memory>
#include <string>

/// A recording as the intake understands its files.
Recording intakeRecording(const Entry& entry, const OrvComtradeIntake::Options& options);

/// The same with its columns, most often in one reading of the data. They are in memory as a whole.
Recording intakeRecording(const Entry& entry, const OrvComtradeIntake::Options& options,
                          OrvComtradeIntake::Columns& columns, const OrvComtradeIntake::Selection& selection);

/// A recording that can be read, as the intake has it.
struct Readable {
    std::shared_ptr<const HeldFiles> held; ///< what `opened` reads where that is no file of its own, or null
    OrvComtradeIntake::Opened opened;
    std::string objection; ///< sentence why it can be read by force alone, or empty
};

/// The same. A Failure that names the file and what is wrong with it where it can't be read.
Readable openReadable(const Entry& entry, const OrvComtradeIntake::Options& options);
