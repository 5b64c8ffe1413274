#pragma once

#include <string_view>

/// Writes every byte to the file descriptor; false, with errno set, if that can't be done.
bool writeWhole(int file, std::string_view bytes);
