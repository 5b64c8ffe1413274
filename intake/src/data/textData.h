#pragma once

#include "Configuration.h"
#include "DataSource.h"

namespace OrvComtradeIntake {

/// Whether data that ought to be binary records begin with lines of numbers instead (a record's sample number has bytes
/// that no text has) and are not as long as the records declared.
bool isTextData(const DataSource& source, const Configuration& configuration);

} // namespace OrvComtradeIntake
