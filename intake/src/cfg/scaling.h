#pragma once

#include "cfg/ReadCfg.h"
#include "report/Findings.h"

#include <OrvComtradeIntake/Header.h>
#include <OrvComtradeIntake/Options.h>

namespace OrvComtradeIntake {

/// Side of the values that are given where the caller wants a side: that of the line (Recorded where it declares none)
/// if nothing was asked for, or if the ratio can't be used. Revision 1991 has no sides.
Side givenSide(const AnalogInfo& channel, int revision, Side wanted);

/// Reports channels that can't be given on the side that was asked for, unless their lines are reported already, and
/// ratios that look wrong where values are converted by them.
void checkScaling(const ReadCfg& cfg, Side wanted, Findings& findings);

/// The channel as the library must read it to give values of the wanted side in base units: the prefix of the unit (kV
/// becomes V) and the ratio multiplied into a and b, a divided by ten to the power of `exponent`, primary values with
/// ratio 1, since the library would convert `a` of others and not `b`.
AnalogInfo channelForLibrary(const AnalogInfo& channel, const AnalogSource& source, int revision, Side wanted,
                             int exponent);

} // namespace OrvComtradeIntake
