#pragma once

#include "cfg/DataFacts.h"
#include "cfg/ReadCfg.h"
#include "files/ByteSource.h"
#include "report/Findings.h"

#include <OrvComtradeIntake/Header.h>

namespace OrvComtradeIntake {

/// Compares every value with the range of its channel (IEEE C37.111-2013, 7.4.4), and looks for channels that never
/// change. Some deviations are tolerated, since recorders write them: an invalid range; the range of an encoding;
/// values that leave the range by rounding; a range that a tenth of the values leave, which must be meant for other
/// values, such as those in the unit.
void checkValues(const ByteSource& data, const ReadCfg& cfg, const DataFacts& facts, Findings& findings);

} // namespace OrvComtradeIntake
