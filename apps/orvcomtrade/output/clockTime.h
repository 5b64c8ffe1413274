#pragma once

#include <OrvComtradeIntake/Instant.h>

#include <optional>
#include <string>

constexpr double kNanosecondsPerSecond = 1e9;

/// The instant `seconds` after `start`, to the nearest nanosecond; nothing if an Instant cannot hold it.
std::optional<OrvComtradeIntake::Instant> instantAfter(OrvComtradeIntake::Instant start, double seconds);

/// "2026-11-21T12:34:56.123456"; with nine digits if the last three are not zero.
std::string clockText(OrvComtradeIntake::Instant instant);
