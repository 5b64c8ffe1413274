#pragma once

#include "commands/Command.h"

#include <memory>

/// Writes every sample of a recording.
std::unique_ptr<Command> makeExport();
