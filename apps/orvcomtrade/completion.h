#pragma once

#include "commands/Command.h"

#include <memory>
#include <string>
#include <vector>

/// What may stand in the place of the last of these words, which are those of a line behind the name of the program;
/// the last may be empty or a beginning. The first line of the answer says which files may stand there too: "none",
/// "recordings" or "all". Each further line is a candidate, and behind a tab, what it means. The completions of all
/// shells ask for this (--complete WORD...).
std::string completionsOf(std::vector<std::string> words, const std::vector<std::unique_ptr<Command>>& commands);
