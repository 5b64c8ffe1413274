#pragma once

#include "RecordedColumns.h"

#include <OrvComtradeIntake/Opened.h>
#include <OrvComtradePage/Page.h>

namespace OrvComtradePage {

/// What a list of pages shows of the recording. The size of the page is not set.
PageSummary summaryOf(const OrvComtradeIntake::Opened& opened, const RecordedColumns& columns);

} // namespace OrvComtradePage
