#pragma once

#include <string>
#include <string_view>

namespace OrvComtradeIntake {

/// Converts a text to an encoding, which is named as in iconv. Characters that the encoding does not have become "?".
/// Throws `std::invalid_argument` for a name that iconv does not know.
std::string fromUtf8(std::string_view text, const std::string& encoding);

} // namespace OrvComtradeIntake
