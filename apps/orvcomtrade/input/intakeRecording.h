#pragma once

#include "input/Entry.h"
#include "input/Recording.h"

#include <OrvComtradeIntake/Opened.h>
#include <OrvComtradeIntake/Options.h>

#include <memory>
#include <string>

/// Opens a recording with the intake.
Recording intakeRecording(const Entry& entry, const OrvComtradeIntake::Options& options);

/// The same, and reads columns, mostly in a single walk over the data. All columns are then in memory.
Recording intakeRecording(const Entry& entry, const OrvComtradeIntake::Options& options,
                          OrvComtradeIntake::Columns& columns, const OrvComtradeIntake::Selection& selection);

/// A readable recording, as the intake opened it.
struct Readable {
    std::shared_ptr<const HeldFiles> held; ///< the bytes that `opened` reads; null if it reads files
    OrvComtradeIntake::Opened opened;
    std::string objection; ///< sentence why it can be read only with --force, or empty
};

/// Opens a recording with the intake. If it cannot be read, throws a Failure that names the file and what is wrong.
Readable openReadable(const Entry& entry, const OrvComtradeIntake::Options& options);
