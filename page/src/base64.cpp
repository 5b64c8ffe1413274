#include "base64.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace OrvComtradePage {

namespace {

constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::size_t kPairs = 64UL * 64;

constexpr std::array<char, 2 * kPairs> pairsOfDigits() {
    std::array<char, 2 * kPairs> pairs{};
    for (std::size_t pair = 0; pair < kPairs; ++pair) {
        pairs[2 * pair] = kDigits[pair / 64];
        pairs[2 * pair + 1] = kDigits[pair % 64];
    }
    return pairs;
}

constexpr std::array<char, 2 * kPairs> kTwoDigits = pairsOfDigits();

std::uint32_t byteOf(char byte) {
    return static_cast<unsigned char>(byte);
}

void putFour(std::uint32_t three, char* text) {
    std::memcpy(text, &kTwoDigits[std::size_t{2} * (three >> 12U)], 2);
    std::memcpy(text + 2, &kTwoDigits[2 * (three & (kPairs - 1))], 2);
}

} // namespace

std::string base64(std::string_view bytes) {
    std::string text((bytes.size() + 2) / 3 * 4, '=');
    const char* byte = bytes.data();
    char* digit = text.data();
    for (std::size_t threes = bytes.size() / 3; threes > 0; --threes) {
        putFour(byteOf(byte[0]) << 16U | byteOf(byte[1]) << 8U | byteOf(byte[2]), digit);
        byte += 3;
        digit += 4;
    }
    const std::size_t rest = bytes.size() % 3;
    if (rest > 0) {
        std::array<char, 4> last{};
        putFour(byteOf(byte[0]) << 16U | (rest > 1 ? byteOf(byte[1]) << 8U : 0U), last.data());
        std::memcpy(digit, last.data(), rest + 1);
    }
    return text;
}

} // namespace OrvComtradePage
