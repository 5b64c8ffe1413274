#include "input/namePattern.h"

#include <OrvComtradePicture/characters.h>

#include <array>
#include <cstddef>

using OrvComtradePicture::Character;
using OrvComtradePicture::firstCharacter;

namespace {

/// Capitals whose small letters are so much further on; of some alphabets each capital is followed by its small letter.
struct Capitals {
    char32_t first;
    char32_t last;
    char32_t distance;
    bool alternate;
};

constexpr std::array<Capitals, 9> kCapitals = {{{'A', 'Z', 32, false},
                                                {0xC0, 0xD6, 32, false},
                                                {0xD8, 0xDE, 32, false},
                                                {0x100, 0x137, 1, true},
                                                {0x14A, 0x177, 1, true},
                                                {0x391, 0x3AB, 32, false},
                                                {0x400, 0x40F, 80, false},
                                                {0x410, 0x42F, 32, false},
                                                {0x460, 0x481, 1, true}}};

char32_t folded(char32_t code) {
    for (const Capitals& capitals : kCapitals) {
        if (code >= capitals.first && code <= capitals.last) {
            const bool isSmall = capitals.alternate && (code - capitals.first) % 2 == 1;
            return isSmall ? code : code + capitals.distance;
        }
    }
    return code;
}

} // namespace

std::u32string foldedCase(std::string_view text) {
    constexpr char32_t noCharacter = 0x110000; // and the byte: no character has such a code
    std::u32string codes;
    while (!text.empty()) {
        const Character character = firstCharacter(text);
        codes += character.code ? folded(*character.code) : noCharacter + static_cast<unsigned char>(text.front());
        text.remove_prefix(character.bytes.size());
    }
    return codes;
}

bool isLike(std::string_view text, std::string_view pattern) {
    const std::u32string wanted = foldedCase(pattern);
    const std::u32string codes = foldedCase(text);
    std::size_t at = 0;
    std::size_t next = 0;
    std::size_t star = std::u32string::npos; // the last one met
    std::size_t retry = 0;                   // where what it stands for ended the last time
    while (at < codes.size()) {
        if (next < wanted.size() && wanted[next] == U'*') {
            star = next++;
            retry = at;
        } else if (next < wanted.size() && (wanted[next] == U'?' || wanted[next] == codes[at])) {
            ++next;
            ++at;
        } else if (star != std::u32string::npos) {
            next = star + 1;
            at = ++retry;
        } else {
            return false;
        }
    }
    return wanted.find_first_not_of(U'*', next) == std::u32string::npos;
}
