#pragma once

#include <optional>
#include <string_view>

namespace OrvComtradePicture {

/// The first character of a text that is not empty, or a byte that belongs to none.
struct Character {
    std::string_view bytes;
    std::optional<char32_t> code; ///< none: no well-formed UTF-8
};

Character firstCharacter(std::string_view text);

bool isUtf8(std::string_view text);

/// Whether a character is not seen itself, but may change how what is around it is seen: controls (ISO 6429), marks of
/// direction, characters without width, tags.
bool isUnseen(char32_t code);

} // namespace OrvComtradePicture
