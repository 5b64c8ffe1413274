#pragma once

#include <cstddef>
#include <string_view>

namespace OrvComtradeIntake {

/// "UTF-16LE" or "UTF-16BE" for a text in it, by its byte-order mark or by the zero bytes of its ASCII characters;
/// empty for other texts.
std::string_view utf16Name(std::string_view bytes);

/// Number of bytes that characters take in UTF-16.
std::size_t utf16Length(std::string_view utf8);

} // namespace OrvComtradeIntake
