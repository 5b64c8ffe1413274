#pragma once

#include <cstddef>
#include <string>

/// `text` fit for a terminal: control characters, invisible direction marks and bytes that are not UTF-8 become
/// "\xHH" for each byte; everything else stays.
std::string printable(const std::string& text);

/// Number of characters of printable text.
std::size_t characterCount(const std::string& text);
