#pragma once

#include "commands/Command.h"

#include <memory>
#include <string>
#include <vector>

/// What --help prints: of the program, and of a command.
std::string helpOn(const std::vector<std::unique_ptr<Command>>& commands);
std::string helpOn(const Command& command);

/// All that is known of the commands, as a JSON object: manual page and documents are made of it.
std::string descriptionOf(const std::vector<std::unique_ptr<Command>>& commands);
