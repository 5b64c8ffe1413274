#pragma once

#include <cstddef>
#include <string_view>

namespace OrvComtradeIntake {

/// How many characters of a text in UTF-8 are none that names in a Latin script have: signs other than the usual ones,
/// and letters of the wrong case amid their word. A text that was taken for one in another code page has many.
std::size_t oddLatinCharacters(std::string_view text);

} // namespace OrvComtradeIntake
