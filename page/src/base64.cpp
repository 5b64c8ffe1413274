#include "base64.h"

#include <cstddef>
#include <cstdint>

namespace OrvComtradePage {

namespace {

constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

std::uint32_t byteOf(char byte) {
    return static_cast<unsigned char>(byte);
}

void putDigits(std::uint32_t three, std::size_t digits, char* text) {
    for (std::size_t digit = 0; digit < digits; ++digit) {
        text[digit] = kDigits[three >> (18U - 6U * digit) & 63U];
    }
}

} // namespace

std::string base64(std::string_view bytes) {
    std::string text((bytes.size() + 2) / 3 * 4, '=');
    const char* byte = bytes.data();
    char* digit = text.data();
    for (std::size_t threes = bytes.size() / 3; threes > 0; --threes) {
        putDigits(byteOf(byte[0]) << 16U | byteOf(byte[1]) << 8U | byteOf(byte[2]), 4, digit);
        byte += 3;
        digit += 4;
    }
    const std::size_t rest = bytes.size() % 3;
    if (rest > 0) {
        putDigits(byteOf(byte[0]) << 16U | (rest > 1 ? byteOf(byte[1]) << 8U : 0U), rest + 1, digit);
    }
    return text;
}

} // namespace OrvComtradePage
