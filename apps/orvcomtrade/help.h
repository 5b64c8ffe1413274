#pragma once

#include "commands/Command.h"

#include <memory>
#include <string>
#include <vector>

/// What --help prints: of the program, and of a command.
std::string helpOn(const std::vector<std::unique_ptr<Command>>& commands);
std::string helpOn(const Command& command);

/// Everything about the commands, as a JSON object from which manual page and documents are made.
std::string descriptionOf(const std::vector<std::unique_ptr<Command>>& commands);
