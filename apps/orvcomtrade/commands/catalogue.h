#pragma once

#include "commands/Command.h"

#include <memory>

/// Makes a database of what `index` wrote down.
std::unique_ptr<Command> makeCatalogue();
