#pragma once

#include <OrvComtradeIntake/Instant.h>

#include <optional>
#include <string>

/// Reads "2021-11-02", "2021-11-02T19:05" or "2021-11-02 19:05:44.61" as the first instant of that day, minute or
/// fraction. Returns nothing for any other text.
std::optional<OrvComtradeIntake::Instant> clockTimeIn(const std::string& text);
