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

/// Finds out how the data are to be read. Walks over them in blocks, once, or again for some faults; no samples are
/// kept. Every fault is a finding. `cfg.header.dataType` becomes that of the data. `tap`, if not null, gets the samples
/// on the way.
///
/// Returns nothing, with a finding of severity Error, if no sample can be read. Throws `std::system_error` if the data
/// cannot be read.
std::optional<DataFacts> surveyData(const ByteSource& data, ReadCfg& cfg, const Options& options, Findings& findings,
                                    ColumnTap* tap = nullptr);

/// The stretches of `samples` samples that have one sampling rate each; none if times come from the stamps. The rates
/// need not be settled.
std::vector<Segment> segmentsOf(const ReadCfg& cfg, std::uint64_t samples);

} // namespace OrvComtradeIntake
