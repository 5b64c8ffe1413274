#pragma once

#include "commands/Command.h"

#include <memory>
#include <vector>

/// The commands of the program, in the order in which help shows them.
std::vector<std::unique_ptr<Command>> allCommands();
