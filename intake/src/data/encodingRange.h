#pragma once

#include <OrvComtradeIntake/Header.h>

namespace OrvComtradeIntake {

/// Whether the range of the channel is that of an encoding, or the same in the unit of the channel: then it says
/// nothing of the values.
bool isRangeOfEncoding(const AnalogInfo& channel);

} // namespace OrvComtradeIntake
