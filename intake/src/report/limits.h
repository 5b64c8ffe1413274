#pragma once

#include "report/Findings.h"

#include <cstdint>

namespace OrvComtradeIntake {

/// Whether `found` exceeds the limit `most`. If so, adds a finding of severity Error. `name` is the limit's name for
/// users, `things` is what it counts.
bool isAbove(std::uint64_t found, std::uint64_t most, const char* name, const char* things, Place place,
             Findings& findings);

} // namespace OrvComtradeIntake
