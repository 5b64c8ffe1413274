#pragma once

#include "commands/Command.h"

#include <memory>

/// Writes some channels and samples of each recording as a recording of its own.
std::unique_ptr<Command> makeCut();
