#pragma once

#include <string_view>

namespace OrvComtradeIntake {

/// First field of the line by which a `.cfg` tells that the intake wrote it: form of the mark, and what it marks,
/// follow.
constexpr std::string_view kIntakeMark = "OrvComtradeIntake";

/// What it marks: end samples that are lengths, stamps of microseconds beside dates of nanoseconds.
constexpr std::string_view kMarkOfLengths = "rates-as-lengths";
constexpr std::string_view kMarkOfMicroseconds = "microsecond-stamps";

} // namespace OrvComtradeIntake
