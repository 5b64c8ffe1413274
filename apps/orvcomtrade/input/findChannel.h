#pragma once

#include "input/Recording.h"

#include <cstddef>
#include <string>

/// Position of the analog channel that `wanted` means: a number from 1, else the display name (with the recorded unit,
/// else with that of the values), else the identifier. A Failure that lists the channels when there is none or more
/// than one.
std::size_t findAnalogChannel(const Recording& recording, const std::string& wanted);

/// The same for a status channel.
std::size_t findStatusChannel(const Recording& recording, const std::string& wanted);
