#pragma once

#include <cstddef>

/// Whether standard output goes to a terminal.
bool isTerminal();

/// Whether the terminal shows UTF-8, by the locale of the environment.
bool isUtf8Terminal();

/// Whether the terminal shows colours: not if NO_COLOR is set, and not if it is "dumb".
bool isColourTerminal();

/// Width of the terminal in cells; 0 if it is not known.
std::size_t terminalWidth();
