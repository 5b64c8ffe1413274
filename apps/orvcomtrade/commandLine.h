#pragma once

#include <functional>
#include <string>

/// Understands the arguments. Returns the work that they ask for; calling it gives the exit status. Throws a Failure
/// for wrong usage.
std::function<int()> readCommandLine(int argc, char** argv);
