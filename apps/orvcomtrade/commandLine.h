#pragma once

#include <functional>
#include <string>

/// Understands the arguments. Gives what they ask for, to be called, which gives the exit status. Throws a Failure for
/// wrong usage.
std::function<int()> readCommandLine(int argc, char** argv);
