#pragma once

#include "cfg/CfgLine.h"

#include <cstddef>
#include <optional>

namespace OrvComtradeIntake {

/// Number of channel lines of each kind.
struct ChannelCounts {
    std::size_t analog = 0;
    std::size_t status = 0;
};

/// Whether a line looks like "2,1A,1D".
bool isCountsLine(const CfgLine& line);

/// Reads the counts line. If it contradicts itself or the lines that follow, those lines are counted instead. Returns
/// nothing, with a finding of severity Error, if that makes no sense either. With `isConfiguration`, the line before
/// leaves no doubt that this is the file of a recording.
std::optional<ChannelCounts> readCounts(CfgCursor& cursor, bool isConfiguration);

} // namespace OrvComtradeIntake
