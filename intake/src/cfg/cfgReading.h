#pragma once

#include "CfgText.h"
#include "Configuration.h"
#include "Findings.h"

#include <optional>

namespace OrvComtradeIntake {

/// Understands the lines of a `.cfg`, of any revision and with the faults that devices write; each mend is a finding.
/// Nothing, with a finding of severity Error, where the channels can't be told.
/// Every text is trimmed; what the library would read otherwise than it is meant (a unit that begins with a letter
/// which the library takes for a prefix, say) is mended by writeConfiguration, not here.
std::optional<Configuration> readConfiguration(const CfgText& text, Findings& findings);

} // namespace OrvComtradeIntake
