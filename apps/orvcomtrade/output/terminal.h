#pragma once

#include <cstddef>

/// Whether standard output goes to a terminal.
bool isTerminal();

/// Whether texts for it are UTF-8, by the locale of the environment.
bool isUtf8Terminal();

/// Whether it takes colours: not where NO_COLOR is set, nor where it is a "dumb" one.
bool isColourTerminal();

/// Its width in cells; 0 where it is not known.
std::size_t terminalWidth();
