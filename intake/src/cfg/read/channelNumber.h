#pragma once

#include "cfg/read/fields.h"

#include <cstdint>
#include <string>
#include <vector>

namespace OrvComtradeIntake {

/// The number of a channel, of which `before` are those of its kind before it. One that is not greater than the number
/// before it is a finding. Any other is none: channels are exported in part, and status channels counted on behind the
/// analog ones.
template <typename Info>
std::uint64_t channelNumber(CfgCursor& cursor, const CfgLine& line, const char* name, const std::vector<Info>& before) {
    const std::uint64_t due = before.empty() ? 1 : before.back().number + 1;
    const std::optional<std::uint64_t> number = countOf(cursor, line, 0, name, "numbered behind the channel before it");
    if (number && *number < due) {
        report(cursor.findings, Kind::ChannelNumbers, line, 0, name, {{}, {}, std::to_string(due)});
    }
    return number.value_or(due);
}

} // namespace OrvComtradeIntake
