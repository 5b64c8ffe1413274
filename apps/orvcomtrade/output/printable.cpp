#include "output/printable.h"

#include <OrvComtradePicture/characters.h>

#include <string_view>

namespace {

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

} // namespace

std::string printable(const std::string& text) {
    return OrvComtradePicture::visible(text);
}

std::string shownPath(const std::string& path) {
    return path == "-" ? std::string(kStandardInput) : printable(path);
}

std::string clipped(const std::string& text) {
    constexpr std::size_t most = 120;
    constexpr std::string_view rest = "...";
    constexpr std::size_t longest = 4; // bytes of a character
    std::size_t characters = 0;
    std::size_t kept = 0; // bytes
    for (std::size_t end = 0; end < text.size(); ++end) {
        characters += isContinuation(text[end]) ? 0U : 1U;
        kept = characters > most - rest.size() && kept == 0 ? end : kept;
        if (characters > most || end == most * longest) {
            return text.substr(0, kept == 0 ? end : kept).append(rest);
        }
    }
    return text;
}
