#pragma once

#include "commands/Command.h"

#include <memory>

/// Prints what the values of each channel are like over a window.
std::unique_ptr<Command> makeStats();
