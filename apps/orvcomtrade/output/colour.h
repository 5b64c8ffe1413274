#pragma once

#include <string>

enum class Colour { Red, Yellow, Blue };

/// The text in colour, if standard output is a terminal with colours and NO_COLOR is not set; otherwise unchanged.
std::string inColour(const std::string& text, Colour colour);
