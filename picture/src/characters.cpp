#include <OrvComtradePicture/characters.h>

#include <algorithm>
#include <array>
#include <cstddef>

namespace OrvComtradePicture {

namespace {

struct CodeRange {
    char32_t first;
    char32_t last;
};

bool isIn(const CodeRange& range, char32_t code) {
    return code >= range.first && code <= range.last;
}

/// The code points of a sequence of so many bytes, at this index; surrogates are none.
constexpr std::array<CodeRange, 5> kCodesByLength = {
    {{}, {0, 0x7F}, {0x80, 0x7FF}, {0x800, 0xFFFF}, {0x10000, 0x10FFFF}}};
constexpr CodeRange kSurrogates = {0xD800, 0xDFFF};

constexpr std::array<CodeRange, 15> kUnseen = {{{0, 0x1F},
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

constexpr std::array<CodeRange, 16> kWide = {{{0x1100, 0x115F},
                                              {0x2E80, 0x303E},
                                              {0x3041, 0x33FF},
                                              {0x3400, 0x4DBF},
                                              {0x4E00, 0x9FFF},
                                              {0xA000, 0xA4CF},
                                              {0xA960, 0xA97F},
                                              {0xAC00, 0xD7A3},
                                              {0xF900, 0xFAFF},
                                              {0xFE30, 0xFE6F},
                                              {0xFF01, 0xFF60},
                                              {0xFFE0, 0xFFE6},
                                              {0x1F300, 0x1F64F},
                                              {0x1F680, 0x1F6FF},
                                              {0x1F900, 0x1F9FF},
                                              {0x20000, 0x3FFFD}}};

constexpr std::array<CodeRange, 9> kCombining = {{{0x300, 0x36F},
                                                  {0x483, 0x489},
                                                  {0x591, 0x5BD},
                                                  {0x610, 0x61A},
                                                  {0x64B, 0x65F},
                                                  {0x1AB0, 0x1AFF},
                                                  {0x1DC0, 0x1DFF},
                                                  {0x20D0, 0x20FF},
                                                  {0xFE20, 0xFE2F}}};

constexpr std::string_view kEllipsis = "\xE2\x80\xA6";

template <std::size_t Size> bool isInOneOf(const std::array<CodeRange, Size>& ranges, char32_t code) {
    return std::any_of(ranges.begin(), ranges.end(), [code](const CodeRange& range) { return isIn(range, code); });
}

std::size_t cellsOf(const Character& character) {
    if (!character.code) {
        return 1;
    }
    return isInOneOf(kWide, *character.code) ? 2 : isInOneOf(kCombining, *character.code) ? 0 : 1;
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
    return isInOneOf(kUnseen, code);
}

std::string visible(std::string_view text) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string result;
    while (!text.empty()) {
        const Character character = firstCharacter(text);
        text.remove_prefix(character.bytes.size());
        if (character.code && !isUnseen(*character.code)) {
            result += character.bytes;
            continue;
        }
        for (const char byte : character.bytes) {
            const auto value = static_cast<unsigned char>(byte);
            result += {'\\', 'x', digits[value / 16U], digits[value % 16U]};
        }
    }
    return result;
}

std::size_t cellCount(std::string_view text) {
    std::size_t cells = 0;
    while (!text.empty()) {
        const Character character = firstCharacter(text);
        text.remove_prefix(character.bytes.size());
        cells += cellsOf(character);
    }
    return cells;
}

std::string shortened(std::string_view text, std::size_t cells) {
    std::size_t used = 0;
    std::size_t kept = 0; // bytes that leave room for an ellipsis
    std::size_t combined = 0;
    for (std::size_t end = 0; end < text.size();) {
        const Character character = firstCharacter(text.substr(end));
        const std::size_t width = cellsOf(character);
        combined = width == 0 ? combined + 1 : 0;
        used += width;
        if (used > cells || combined > 4) { // nobody reads more marks on one letter
            return std::string(text.substr(0, kept)).append(cells > 0 ? kEllipsis : "");
        }
        end += character.bytes.size();
        kept = used < cells ? end : kept;
    }
    return std::string(text);
}

} // namespace OrvComtradePicture
