#pragma once

#include "commands/Command.h"

#include <memory>

/// Prints a line for each recording.
std::unique_ptr<Command> makeList();
