#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace OrvComtradePicture {

/// A character of a text, or a byte that belongs to none.
struct Character {
    std::string_view bytes;
    std::optional<char32_t> code; ///< Unicode code point; nothing if the byte is not part of well-formed UTF-8
};

/// The first character of a text, which must not be empty.
Character firstCharacter(std::string_view text);

/// Whether the whole text is well-formed UTF-8.
bool isUtf8(std::string_view text);

/// Whether a character is invisible but may change how its neighbours are displayed: controls (ISO 6429), marks of
/// direction, characters without width, tags.
bool isUnseen(char32_t code);

/// `text` in characters that can be shown. Each byte of an invisible character, and each byte that is not UTF-8,
/// becomes "\xHH". Everything else stays.
std::string visible(std::string_view text);

/// Number of terminal cells that a text takes: two for a wide character (Unicode Standard Annex 11), none for one that
/// combines with the character before it, one for any other.
std::size_t cellCount(std::string_view text);

/// The beginning of `text` that fits into `cells` cells; it ends in an ellipsis if something is left out. Its cost does
/// not depend on the length of what is left out.
std::string shortened(std::string_view text, std::size_t cells);

} // namespace OrvComtradePicture
