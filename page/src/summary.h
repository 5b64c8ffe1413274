#pragma once

#include "RecordedColumns.h"

#include <OrvComtradeIntake/Opened.h>
#include <OrvComtradePage/Page.h>

namespace OrvComtradePage {

/// What a list of pages says of the recording, but for the size of its page.
PageSummary summaryOf(const OrvComtradeIntake::Opened& opened, const RecordedColumns& columns);

} // namespace OrvComtradePage
