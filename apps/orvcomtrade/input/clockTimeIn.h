#pragma once

#include <OrvComtradeIntake/Instant.h>

#include <optional>
#include <string>

/// "2021-11-02", "2021-11-02T19:05", "2021-11-02 19:05:44.61": the first instant that is called so; nothing for any
/// other text.
std::optional<OrvComtradeIntake::Instant> clockTimeIn(const std::string& text);
