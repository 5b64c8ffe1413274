#pragma once

#include "commands/Command.h"

#include <memory>

/// Prints what a recording is and which channels it has.
std::unique_ptr<Command> makeInfo();
