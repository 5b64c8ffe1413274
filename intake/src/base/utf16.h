#pragma once

#include <cstddef>
#include <string_view>

namespace OrvComtradeIntake {

constexpr std::string_view kUtf16Little = "UTF-16LE";
constexpr std::string_view kUtf16Big = "UTF-16BE";

/// Which of these two a text is in, by its byte-order mark or by the zero bytes of its ASCII characters; empty for
/// other texts.
std::string_view utf16Name(std::string_view bytes);

/// Number of bytes that characters take in UTF-16.
std::size_t utf16Length(std::string_view utf8);

} // namespace OrvComtradeIntake
