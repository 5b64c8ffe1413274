#pragma once

#include "cfg/DataFacts.h"
#include "cfg/ReadCfg.h"
#include "files/ByteSource.h"
#include "report/Findings.h"

#include <OrvComtradeIntake/Header.h>

namespace OrvComtradeIntake {

/// Whether the range of the channel is that of an encoding, also if it is given in the unit of the channel. Such a
/// range says nothing about the values.
bool isRangeOfEncoding(const AnalogInfo& channel);

/// The values that are within the range of a channel, as recorded.
struct RangeOfValues {
    double low = 0.0;
    double high = 0.0;
};

/// The range of the channel, and what leaves it by rounding.
RangeOfValues toleratedRange(const AnalogInfo& channel);

/// Compares every value with the range of its channel (IEEE C37.111-2013, 7.4.4), and looks for channels that never
/// change. Some deviations are tolerated, since recorders write them: an invalid range; the range of an encoding;
/// values that leave the range by rounding; a range that a tenth of the values leave, which must be meant for other
/// values, such as those in the unit.
void checkValues(const ByteSource& data, const ReadCfg& cfg, const DataFacts& facts, Findings& findings);

} // namespace OrvComtradeIntake
