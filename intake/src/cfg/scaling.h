#pragma once

#include "cfg/ReadCfg.h"
#include "report/Findings.h"

#include <OrvComtradeIntake/Header.h>
#include <OrvComtradeIntake/Options.h>

namespace OrvComtradeIntake {

/// Side of the values that a caller gets who wants a side. It is the wanted one if it can be given. Otherwise, or if no
/// side is wanted, it is that of the line (Recorded if it declares none). Revision 1991 has no sides.
Side givenSide(const AnalogInfo& channel, int revision, Side wanted);

/// Reports channels whose values cannot be given on the wanted side, unless their lines are reported already. Also
/// reports ratios that look wrong, if values are converted by them.
void checkScaling(const ReadCfg& cfg, Side wanted, Findings& findings);

/// The channel as the library must read it to give values of the wanted side in base units. The prefix of the unit (kV
/// becomes V) and the ratio are multiplied into a and b, and a is divided by ten to the power of `exponent`. Primary
/// values get ratio 1: with another ratio the library would convert `a` but not `b`.
AnalogInfo channelForLibrary(const AnalogInfo& channel, const AnalogSource& source, int revision, Side wanted,
                             int exponent);

} // namespace OrvComtradeIntake
