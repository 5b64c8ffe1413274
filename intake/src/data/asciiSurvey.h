#pragma once

#include "cfg/DataFacts.h"
#include "cfg/ReadCfg.h"
#include "data/ColumnTap.h"
#include "files/ByteSource.h"
#include "report/Findings.h"

#include <cstdint>
#include <optional>

namespace OrvComtradeIntake {

/// Surveys ASCII data as surveyData does. Stops if there are more samples than `mostSamples`. `tap` may be null.
std::optional<DataFacts> surveyAscii(const ByteSource& data, const ReadCfg& cfg, std::uint64_t mostSamples,
                                     Findings& findings, ColumnTap* tap = nullptr);

} // namespace OrvComtradeIntake
