#pragma once

#include "cfg/DataFacts.h"
#include "cfg/ReadCfg.h"
#include "files/ByteSource.h"
#include "report/Findings.h"

#include <OrvComtradeIntake/Header.h>

namespace OrvComtradeIntake {

/// Whether the range of the channel is that of an encoding, or the same in the unit of the channel: then it says
/// nothing of the values.
bool isRangeOfEncoding(const AnalogInfo& channel);

/// Compares every value with the range of its channel (IEEE C37.111-2013, 7.4.4), and looks for channels that never
/// change. Tolerated, since recorders do so: a range that is none, or that is the range of an encoding; values that
/// leave it by rounding; a range that a tenth of the values leave, which is of other values, those in the unit for
/// example.
void checkValues(const ByteSource& data, const ReadCfg& cfg, const DataFacts& facts, Findings& findings);

} // namespace OrvComtradeIntake
