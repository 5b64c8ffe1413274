#include "output/printable.h"

#include "toUtf8.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

namespace {

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// The code point of one well-formed multibyte sequence.
char32_t codePoint(const std::string& text, std::size_t begin, std::size_t end) {
    const auto lead = static_cast<unsigned char>(text[begin]);
    const auto length = static_cast<unsigned int>(end - begin);
    char32_t value = lead & (0x7FU >> length);
    for (std::size_t i = begin + 1; i < end; ++i) {
        value = value << 6U | (static_cast<unsigned char>(text[i]) & 0x3FU);
    }
    return value;
}

/// Controls of ISO 6429, and what moves text about without showing itself.
bool disturbs(char32_t character) {
    return character < 0x20 || (character >= 0x7F && character <= 0x9F) ||
           (character >= 0x200B && character <= 0x200F) || (character >= 0x2028 && character <= 0x202E) ||
           (character >= 0x2060 && character <= 0x206F) || character == 0xFEFF;
}

} // namespace

std::string printable(const std::string& text) {
    std::string result;
    std::size_t validEnd = 0; // end of the run of multibyte sequences around `begin`
    for (std::size_t begin = 0; begin < text.size();) {
        const auto byte = static_cast<unsigned char>(text[begin]);
        std::size_t end = begin + 1;
        bool keep = byte < 0x80 && !disturbs(byte);
        if (byte >= 0x80) {
            if (begin >= validEnd) {
                const char* cursor = text.c_str() + begin;
                toUtf8::isUtf8Seq(cursor);
                validEnd = static_cast<std::size_t>(cursor - text.c_str());
            }
            if (begin < validEnd) {
                while (end < validEnd && isContinuation(text[end])) {
                    ++end;
                }
                keep = !disturbs(codePoint(text, begin, end));
            }
        }
        for (; begin < end; ++begin) {
            if (keep) {
                result += text[begin];
            } else {
                fmt::format_to(std::back_inserter(result), "\\x{:02X}", static_cast<unsigned char>(text[begin]));
            }
        }
    }
    return result;
}

std::size_t characterCount(const std::string& text) {
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char byte) { return !isContinuation(byte); }));
}
