#pragma once

#include "commands/Command.h"

#include <memory>

/// Prints what the intake found in a recording, and whether it can be read. With --as-is, prints the library's verdict.
std::unique_ptr<Command> makeCheck();
