#include <OrvComtradePicture/characters.h>
#include <algorithm>
#include <array>
#include <cstddef>

namespace OrvComtradePicture {

namespace {

struct Range {
    char32_t first;
    char32_t last;
};

bool isIn(const Range& range, char32_t code) {
    return code >= range.first && code <= range.last;
}

/// The code points of a sequence of so many bytes, at this index; surrogates are none.
constexpr std::array<Range, 5> kCodesByLength = {{{}, {0, 0x7F}, {0x80, 0x7FF}, {0x800, 0xFFFF}, {0x10000, 0x10FFFF}}};
constexpr Range kSurrogates = {0xD800, 0xDFFF};

constexpr std::array<Range, 15> kUnseen = {{{0, 0x1F},
                                            {0x7F, 0x9F},
                                            {0xAD, 0xAD},
                                            {0x61C, 0x61C},
                                            {0x180B, 0x180F},
                                            {0x200B, 0x200F},
                                            {0x2028, 0x202E},
                                            {0x2060, 0x206F},
                                            {0xFE00, 0xFE0F},
                                            {0xFEFF, 0xFEFF},
                                            {0xFFF9, 0xFFFB},
                                            {0x13430, 0x1343F},
                                            {0x1BCA0, 0x1BCA3},
                                            {0x1D173, 0x1D17A},
                                            {0xE0000, 0xE0FFF}}};

std::size_t lengthByLead(unsigned char lead) {
    if (lead < 0x80) {
        return 1;
    }
    if (lead < 0xE0) {
        return 2;
    }
    return lead < 0xF0 ? 3 : 4;
}

} // namespace

Character firstCharacter(std::string_view text) {
    const Character none = {text.substr(0, 1), std::nullopt};
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t length = lengthByLead(lead);
    if (text.size() < length || (lead >= 0x80 && lead < 0xC0) || lead >= 0xF8) {
        return none;
    }
    char32_t code = length == 1 ? lead : lead & (0x7FU >> length);
    for (const char next : text.substr(1, length - 1)) {
        const auto byte = static_cast<unsigned char>(next);
        if ((byte & 0xC0U) != 0x80U) {
            return none;
        }
        code = code << 6U | (byte & 0x3FU);
    }
    const bool isCode = isIn(kCodesByLength.at(length), code) && !isIn(kSurrogates, code);
    return isCode ? Character{text.substr(0, length), code} : none;
}

bool isUtf8(std::string_view text) {
    while (!text.empty()) {
        const Character character = firstCharacter(text);
        if (!character.code) {
            return false;
        }
        text.remove_prefix(character.bytes.size());
    }
    return true;
}

bool isUnseen(char32_t code) {
    return std::any_of(kUnseen.begin(), kUnseen.end(), [code](const Range& range) { return isIn(range, code); });
}

} // namespace OrvComtradePicture
