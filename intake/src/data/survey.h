#pragma once

#include "cfg/DataFacts.h"
#include "cfg/ReadCfg.h"
#include "data/ColumnTap.h"
#include "data/watches.h"
#include "files/ByteSource.h"
#include "report/Findings.h"

#include <OrvComtradeIntake/Options.h>

#include <cstdint>
#include <optional>
#include <vector>

namespace OrvComtradeIntake {

/// Reads the data (once, or again for some faults) in blocks, without keeping them, and finds out how they are to be
/// read. Every fault is a finding. Nothing, with a finding of severity Error, where there is no sample to be had.
/// `cfg.header.dataType` becomes that of the data. Throws `std::system_error` if they can't be read.
/// `tap`, if any, gets the samples on the way.
std::optional<DataFacts> surveyData(const ByteSource& data, ReadCfg& cfg, const Options& options, Findings& findings,
                                    ColumnTap* tap = nullptr);

/// The stretches of one sampling rate each, if there are so many samples; none where times come from the stamps. The
/// rates need not be settled.
std::vector<Segment> segmentsOf(const ReadCfg& cfg, std::uint64_t samples);

} // namespace OrvComtradeIntake
