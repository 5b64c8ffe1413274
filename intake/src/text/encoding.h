#pragma once

#include <string>
#include <string_view>

namespace OrvComtradeIntake {

/// Name of the encoding that a text is in, judged as a whole: ASCII, UTF-8, CP866, CP1251, or uchardet's name. A text
/// in which nearly all that is not ASCII is well-formed UTF-8 is UTF-8 (names that a device cut in the middle of a
/// character).
std::string detectEncoding(std::string_view text);

/// Bytes converted to UTF-8 from the encoding of that name; what it doesn't define becomes U+FFFD and sets `isDamaged`.
/// Throws `std::invalid_argument` for a name iconv doesn't know.
std::string convertToUtf8(std::string_view bytes, const std::string& encoding, bool& isDamaged);

/// Throws `std::invalid_argument` for a name iconv doesn't know.
void requireEncoding(const std::string& encoding);

} // namespace OrvComtradeIntake
