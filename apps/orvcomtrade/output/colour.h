#pragma once

#include <string>

enum class Colour { Red, Yellow, Blue };

/// The text in colour where standard output is a terminal that has colours and the user has not set NO_COLOR; else as
/// it is.
std::string inColour(const std::string& text, Colour colour);
