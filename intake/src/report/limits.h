#pragma once

#include "report/Findings.h"

#include <cstdint>

namespace OrvComtradeIntake {

/// Whether there are more than a limit allows; then a finding of severity Error says so. `name` is what the user calls
/// the limit, `things` what it counts.
bool isAbove(std::uint64_t found, std::uint64_t most, const char* name, const char* things, Place place,
             Findings& findings);

} // namespace OrvComtradeIntake
