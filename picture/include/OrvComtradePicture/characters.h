#pragma once

#include <cstddef>
#include <optional>
#include <string>
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

/// `text` fit to be shown: characters that are not seen and bytes that are not UTF-8 become "\xHH" for each byte;
/// everything else stays.
std::string visible(std::string_view text);

/// Cells of a terminal that text takes: two for a wide character (Unicode Standard Annex 11), none for one that
/// combines with the one before it.
std::size_t cellCount(std::string_view text);

/// What of `text` fits into so many cells, with an ellipsis for the rest. Looks at no more of it than that.
std::string shortened(std::string_view text, std::size_t cells);

} // namespace OrvComtradePicture
