#pragma once

#include "commands/Command.h"

#include <memory>

/// The command report: a page for each recording, and one that lists them.
std::unique_ptr<Command> makeReport();
