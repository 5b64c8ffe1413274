#pragma once

#include "commands/Command.h"

#include <memory>

/// Prints every change of a status channel.
std::unique_ptr<Command> makeEvents();
