#pragma once

#include "input/ArchiveLimits.h"

#include <OrvComtradeIntake/Options.h>

/// How the command line wants recordings to be read.
struct LoadOptions {
    bool asIs = false; ///< the library reads the files as they are
    OrvComtradeIntake::Options intake;
    ArchiveLimits archive;
};
