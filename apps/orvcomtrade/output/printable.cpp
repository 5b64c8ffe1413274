#include "output/printable.h"

#include "output/characters.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <string_view>

std::string printable(const std::string& text) {
    std::string result;
    for (std::string_view left = text; !left.empty();) {
        const Character character = firstCharacter(left);
        left.remove_prefix(character.bytes.size());
        if (character.code && !isUnseen(*character.code)) {
            result += character.bytes;
            continue;
        }
        for (const char byte : character.bytes) {
            fmt::format_to(std::back_inserter(result), "\\x{:02X}", static_cast<unsigned char>(byte));
        }
    }
    return result;
}

std::size_t characterCount(const std::string& text) {
    return static_cast<std::size_t>(std::count_if(
        text.begin(), text.end(), [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; }));
}
