#pragma once

#include "cfg/CfgLine.h"

#include <OrvComtradeIntake/Header.h>

#include <cstdint>
#include <optional>
#include <string>

namespace OrvComtradeIntake {

/// The revision year as the station line has it.
struct RevisionYear {
    std::optional<std::uint64_t> year; ///< nothing if it is missing or not a year
    std::string written;               ///< as written
    Place place;
    bool isLineMissing = false; ///< the whole line
};

/// Reads the names of station and recorder.
RevisionYear readStation(CfgCursor& cursor, Header& header);

} // namespace OrvComtradeIntake
