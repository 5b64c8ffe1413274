#pragma once

#include <string>
#include <string_view>

/// A text with Latin, Greek and Cyrillic letters in lower case (Unicode, simple folding). Bytes that are not UTF-8
/// stay.
std::u32string foldedCase(std::string_view text);

/// Whether a text fits the pattern, in upper or lower case. `*` stands for any characters, `?` for one. The time grows
/// with the product of both lengths.
bool isLike(std::string_view text, std::string_view pattern);
