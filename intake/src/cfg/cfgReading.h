#pragma once

#include "cfg/ReadCfg.h"
#include "report/Findings.h"
#include "text/CfgText.h"

#include <optional>

namespace OrvComtradeIntake {

/// Understands the lines of a `.cfg` of any revision, with the faults that devices write. Each deviation is a finding.
/// Returns nothing, with a finding of severity Error, if the channels cannot be recognised.
///
/// Texts have no blanks around them and no commas in them. End samples are as written, and the data type is what the
/// type word says: the data later decide on both.
std::optional<ReadCfg> readCfg(const CfgText& text, Findings& findings, const Limits& limits = {});

} // namespace OrvComtradeIntake
