#pragma once

#include "cfg/DataFacts.h"
#include "cfg/ReadCfg.h"
#include "files/ByteSource.h"
#include "report/Findings.h"

#include <optional>

namespace OrvComtradeIntake {

/// Surveys lines of text; see surveyData.
std::optional<DataFacts> surveyAscii(const ByteSource& data, const ReadCfg& cfg, Findings& findings);

} // namespace OrvComtradeIntake
