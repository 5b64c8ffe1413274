#pragma once

#include <string>
#include <string_view>

/// A text without difference of case: Latin, Greek and Cyrillic letters become small ones (Unicode, simple folding).
/// Bytes that are no UTF-8 stay.
std::u32string foldedCase(std::string_view text);

/// Whether a text is as the pattern says, whatever the case: `*` stands for any characters, `?` for one. Takes time in
/// proportion to the product of both lengths.
bool isLike(std::string_view text, std::string_view pattern);
