#pragma once

#include "commands/Command.h"

#include <memory>

/// Prints what the intake found in a recording and whether it can be read; of a recording as it is, the library's
/// verdict.
std::unique_ptr<Command> makeCheck();
