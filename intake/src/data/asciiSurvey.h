#pragma once

#include "cfg/DataFacts.h"
#include "cfg/ReadCfg.h"
#include "data/ColumnTap.h"
#include "files/ByteSource.h"
#include "report/Findings.h"

#include <cstdint>
#include <optional>

namespace OrvComtradeIntake {

/// Surveys lines of text, and ends where there are more samples than `mostSamples`; see surveyData. `tap` may be null.
std::optional<DataFacts> surveyAscii(const ByteSource& data, const ReadCfg& cfg, std::uint64_t mostSamples,
                                     Findings& findings, ColumnTap* tap = nullptr);

} // namespace OrvComtradeIntake
