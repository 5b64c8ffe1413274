#pragma once

#include "commands/Command.h"

#include <memory>

/// Writes a recording as a clean pair of files into a folder, and its header and information files next to them.
std::unique_ptr<Command> makeNormalize();
