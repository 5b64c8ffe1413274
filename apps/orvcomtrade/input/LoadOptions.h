#pragma once

#include "input/ArchiveLimits.h"

#include <OrvComtradeIntake/Options.h>

/// How the command line wants recordings to be read.
struct LoadOptions {
    bool asIs = false; ///< the files go to the library untouched
    OrvComtradeIntake::Options intake;
    ArchiveLimits archive;
};
