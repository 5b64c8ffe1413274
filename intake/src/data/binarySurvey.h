#pragma once

#include "cfg/DataFacts.h"
#include "cfg/ReadCfg.h"
#include "data/ColumnTap.h"
#include "files/ByteSource.h"
#include "report/Findings.h"

#include <cstddef>
#include <optional>

namespace OrvComtradeIntake {

/// Surveys records of type `cfg.header.dataType` as surveyData does. It is `stride` bytes from one to the next. `tap`
/// may be null.
std::optional<DataFacts> surveyBinary(const ByteSource& data, const ReadCfg& cfg, std::size_t stride, bool acceptsAny,
                                      Findings& findings, ColumnTap* tap = nullptr);

} // namespace OrvComtradeIntake
