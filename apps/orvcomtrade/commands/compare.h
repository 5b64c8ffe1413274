#pragma once

#include "commands/Command.h"

#include <memory>

/// Prints where two recordings differ.
std::unique_ptr<Command> makeCompare();
