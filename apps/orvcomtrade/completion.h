#pragma once

#include "commands/Command.h"

#include <memory>
#include <string>
#include <vector>

/// Completes the last of these words, which are those of a command line after the name of the program. The last may be
/// empty or incomplete. The first line of the answer says which files are candidates too: "none", "recordings" or
/// "all". Each further line is a candidate, and after a tab, its meaning. The completions of all shells call this
/// (--complete WORD...).
std::string completionsOf(std::vector<std::string> words, const std::vector<std::unique_ptr<Command>>& commands);
