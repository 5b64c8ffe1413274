#pragma once

#include "commands/Command.h"

#include <memory>

/// Prints the values of one channel as CSV, or as a JSON line.
std::unique_ptr<Command> makePoints();
