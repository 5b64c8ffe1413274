#include "base64.h"

#include <cstddef>
#include <cstdint>

namespace OrvComtradePage {

namespace {

constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

std::uint32_t byteAt(std::string_view bytes, std::size_t index) {
    return index < bytes.size() ? static_cast<unsigned char>(bytes[index]) : 0U;
}

} // namespace

std::string base64(std::string_view bytes) {
    std::string text((bytes.size() + 2) / 3 * 4, '=');
    std::size_t at = 0;
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::uint32_t three = byteAt(bytes, i) << 16U | byteAt(bytes, i + 1) << 8U | byteAt(bytes, i + 2);
        const std::size_t digits = bytes.size() - i < 3 ? bytes.size() - i + 1 : 4;
        for (std::size_t digit = 0; digit < digits; ++digit) {
            text[at + digit] = kDigits[three >> (18U - 6U * digit) & 63U];
        }
        at += 4;
    }
    return text;
}

} // namespace OrvComtradePage
