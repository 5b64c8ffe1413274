#pragma once

#include "commands/Command.h"

#include <memory>

/// Writes what is known of each recording of an archive to a file, which `catalogue` merges with others.
std::unique_ptr<Command> makeIndex();
