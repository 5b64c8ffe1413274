#pragma once

#include <string_view>

namespace OrvComtradeIntake {

/// First field of the line by which a `.cfg` tells that the intake wrote it: form of the mark, and what it marks,
/// follow.
constexpr std::string_view kIntakeMark = "OrvComtradeIntake";

} // namespace OrvComtradeIntake
