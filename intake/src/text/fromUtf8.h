#pragma once

#include <string>
#include <string_view>

namespace OrvComtradeIntake {

/// The text in the encoding of that name, as iconv knows it; "?" for characters that the encoding does not have. Throws
/// `std::invalid_argument` for a name iconv doesn't know.
std::string fromUtf8(std::string_view text, const std::string& encoding);

} // namespace OrvComtradeIntake
