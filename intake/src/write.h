#pragma once

#include "Recording.h"

#include <OrvComtradeIntake/Form.h>

namespace OrvComtradeIntake {

/// Writes a readable recording; see Opened::write.
Losses writeRecording(const Recording& recording, const Sink& cfg, const Sink& dat, const Form& form);

} // namespace OrvComtradeIntake
