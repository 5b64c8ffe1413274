#pragma once

#include <string>
#include <string_view>

namespace orvtest {

/// The bytes of a text in UTF-16, little or big endian.
inline std::string utf16(std::u16string_view text, bool isLittle) {
    std::string bytes;
    for (const char16_t unit : text) {
        const char low = static_cast<char>(unit & 0xFFU);
        const char high = static_cast<char>(unit >> 8U);
        bytes.append({isLittle ? low : high, isLittle ? high : low});
    }
    return bytes;
}

/// The same for ASCII.
inline std::string utf16(std::string_view ascii, bool isLittle) {
    return utf16(std::u16string(ascii.begin(), ascii.end()), isLittle);
}

} // namespace orvtest
