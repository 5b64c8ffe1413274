#pragma once

#include "Output.h"

#include <string>

/// Prints what a recording is and which channels it has.
void printInfo(const std::string& path, Output& out);
