#pragma once

#include "CfgText.h"
#include "Configuration.h"
#include "Findings.h"

#include <cstdint>
#include <string>
#include <vector>

namespace OrvComtradeIntake {

/// Makes the rates and the time multiplier those that give the library the standard's times for `present` samples, and
/// the number of the last sample `present`. End samples are cumulative by the standard (IEEE C37.111-2013, 7.4.7),
/// while the library takes each but the last as the length of its segment; a writer that meant lengths is told by their
/// sum being `present`. Each change is a finding.
void settleRates(Configuration& configuration, std::uint64_t present, const CfgText& text, Findings& findings);

/// Makes `a`, `b`, unit and side of every channel those that give the library values of the chosen side in base units:
/// unit prefixes multiplied in (kV becomes V), the ratio multiplied in where the side changes, primary values declared
/// with ratio 1 (the library would convert `a` alone). Each kind of change is a finding.
void settleScaling(Configuration& configuration, Side side, const CfgText& text, Findings& findings);

/// Raw values of a channel are written multiplied by ten to the power of `exponents[channel]`: divides `a` by it.
void divideFactors(Configuration& configuration, const std::vector<int>& exponents);

/// The `.cfg`: UTF-8, LF, numbers in their shortest form that reads back exactly. The library reads it with
/// `CfgLoaded`. Where rates stand as lengths that a reader of the standard would take otherwise (three or more), a last
/// line that no reader reads marks it.
std::string writeConfiguration(const Configuration& configuration);

} // namespace OrvComtradeIntake
