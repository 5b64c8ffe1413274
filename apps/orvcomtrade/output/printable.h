#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// What sentences call the path "-".
constexpr std::string_view kStandardInput = "standard input";

/// `text` in the form for a terminal. Each byte of an invisible character (see `isUnseen`), and each byte that is not
/// UTF-8, becomes "\xHH". Everything else stays.
std::string printable(const std::string& text);

/// What sentences call a recording: its path, fit for a terminal, or `kStandardInput`.
std::string shownPath(const std::string& path);

/// Of a text longer than 120 characters the beginning, and "..." for the rest. No real channel has as long a name.
std::string clipped(const std::string& text);
