#pragma once

#include "DataSource.h"

namespace OrvComtradeIntake {

/// Whether the data begin with lines of numbers rather than with a binary record, the sample number of which has bytes
/// that no text has.
bool isTextData(const DataSource& source);

} // namespace OrvComtradeIntake
