#pragma once

#include "Recording.h"

#include <OrvComtradeIntake/Form.h>

namespace OrvComtradeIntake {

/// Writes a readable recording; see Opened::write.
void writeRecording(const Recording& recording, const Sink& cfg, const Sink& dat, const Form& form);

/// The data of a readable recording as the library reads them, beside `libraryForm`.
void writeLibraryData(const Recording& recording, const Sink& dat);

} // namespace OrvComtradeIntake
