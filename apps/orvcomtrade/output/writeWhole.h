#pragma once

#include <string_view>

/// Writes all bytes to the file descriptor. Returns false, with errno set, if it cannot.
bool writeWhole(int file, std::string_view bytes);
