#pragma once

#include "commands/Command.h"

#include <memory>

/// The command view: interactive pages.
std::unique_ptr<Command> makeView();
