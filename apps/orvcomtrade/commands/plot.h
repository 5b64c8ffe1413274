#pragma once

#include "commands/Command.h"

#include <memory>

/// Draws each recording.
std::unique_ptr<Command> makePlot();
