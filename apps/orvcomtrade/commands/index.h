#pragma once

#include "commands/Command.h"

#include <memory>

/// Writes what is known of each recording of an archive into a file, to be merged by `catalogue`.
std::unique_ptr<Command> makeIndex();
