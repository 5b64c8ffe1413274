#include "latinWords.h"

#include "utf8.h"

#include <algorithm>
#include <array>

namespace OrvComtradeIntake {

namespace {

enum class Kind { None, Lower, Upper, Sign, Odd };

bool isBetween(char32_t code, char32_t low, char32_t high) {
    return code >= low && code <= high;
}

// In Latin Extended-A capitals and small letters alternate; in two stretches the capitals have the odd codes.
bool isExtendedCapital(char32_t code) {
    const bool isOddStretch = isBetween(code, 0x139, 0x148) || isBetween(code, 0x179, 0x17E);
    return code == 0x178 || (code % 2 != 0) == isOddStretch;
}

// Degree, micro, powers, quotation marks, dashes and the like stand in names as well.
bool isUsualSign(char32_t code) {
    constexpr std::array<char32_t, 18> signs = {0xA0, 0xA7,   0xAB,   0xB0,   0xB1,   0xB2,   0xB3,   0xB5,   0xB7,
                                                0xBB, 0x2013, 0x2014, 0x2018, 0x2019, 0x201C, 0x201D, 0x201E, 0x2026};
    return std::find(signs.begin(), signs.end(), code) != signs.end();
}

Kind kindOf(char32_t code) {
    if (code < 0x80) {
        return isBetween(code, 'a', 'z') ? Kind::Lower : isBetween(code, 'A', 'Z') ? Kind::Upper : Kind::None;
    }
    if (code == 0xD7 || code == 0xF7) { // the signs of multiplication and division
        return Kind::Odd;
    }
    if (isBetween(code, 0xC0, 0xFF)) {
        return code < 0xDF ? Kind::Upper : Kind::Lower;
    }
    if (isBetween(code, 0x100, 0x17F)) {
        return isExtendedCapital(code) ? Kind::Upper : Kind::Lower;
    }
    const bool isRumanian = isBetween(code, 0x218, 0x21B);
    if (isRumanian) {
        return code % 2 == 0 ? Kind::Upper : Kind::Lower;
    }
    return isUsualSign(code) ? Kind::Sign : Kind::Odd;
}

char32_t codeOf(std::string_view character) {
    const auto lead = static_cast<unsigned char>(character.front());
    char32_t code = lead;
    if (character.size() > 1) {
        code = lead & (0x7FU >> character.size());
        for (const char byte : character.substr(1)) {
            code = code << 6U | (static_cast<unsigned char>(byte) & 0x3FU);
        }
    }
    return code;
}

// A capital behind a small letter, and the other way round; but a sharp s has no capital.
bool isOfWrongCase(Kind before, char32_t code, Kind after) {
    const Kind kind = kindOf(code);
    return (kind == Kind::Upper && before == Kind::Lower) ||
           (kind == Kind::Lower && after == Kind::Upper && code != 0xDF);
}

std::size_t lengthAt(std::string_view text) {
    return std::max<std::size_t>(utf8Length(text), 1);
}

} // namespace

std::size_t oddLatinCharacters(std::string_view text) {
    std::size_t odd = 0;
    Kind before = Kind::None;
    while (!text.empty()) {
        const std::string_view character = text.substr(0, lengthAt(text));
        text.remove_prefix(character.size());
        const char32_t code = codeOf(character);
        const Kind kind = kindOf(code);
        if (code >= 0x80) {
            const Kind after = text.empty() ? Kind::None : kindOf(codeOf(text.substr(0, lengthAt(text))));
            odd += kind == Kind::Odd || isOfWrongCase(before, code, after) ? 1U : 0U;
        }
        before = kind;
    }
    return odd;
}

} // namespace OrvComtradeIntake
