#pragma once

#include "cfg/ReadCfg.h"
#include "report/Findings.h"
#include "text/CfgText.h"

#include <optional>

namespace OrvComtradeIntake {

/// Understands the lines of a `.cfg`, of any revision and with the faults that devices write; each deviation is a
/// finding. Nothing, with a finding of severity Error, where the channels can't be made out.
///
/// Texts are without blanks around them and commas in them. End samples are as written, and the data type is what the
/// type word says: the data decide on both.
std::optional<ReadCfg> readCfg(const CfgText& text, Findings& findings, const Limits& limits = {});

} // namespace OrvComtradeIntake
