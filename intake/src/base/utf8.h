#pragma once

#include <cstddef>
#include <string_view>

namespace OrvComtradeIntake {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// Whether a text begins with it.
bool hasByteOrderMark(std::string_view text);

/// Length of the well-formed UTF-8 character that `bytes` begin with (1 to 4), or 0: none.
std::size_t utf8Length(std::string_view bytes);

/// Whether all of the bytes are well-formed UTF-8; ASCII is.
bool isUtf8(std::string_view bytes);

bool isAscii(std::string_view bytes);

} // namespace OrvComtradeIntake
