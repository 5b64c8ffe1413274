#include "base/utf16.h"

#include <algorithm>

namespace OrvComtradeIntake {

namespace {

constexpr std::size_t kSampleBytes = 1000; // the first lines

} // namespace

std::string_view utf16Name(std::string_view bytes) {
    const std::string_view mark = bytes.substr(0, 2);
    if (mark == "\xFF\xFE" || mark == "\xFE\xFF") {
        return mark == "\xFF\xFE" ? kUtf16Little : kUtf16Big;
    }
    const std::size_t pairs = std::min(bytes.size(), kSampleBytes) / 2;
    std::size_t firstZeros = 0;
    std::size_t secondZeros = 0;
    for (std::size_t pair = 0; pair < pairs; ++pair) {
        firstZeros += bytes[2 * pair] == '\0' ? 1U : 0U;
        secondZeros += bytes[2 * pair + 1] == '\0' ? 1U : 0U;
    }
    // Numbers and commas make half of a configuration whatever the script of its names is; a file that is filled up
    // with zero bytes has them in both places.
    const std::size_t most = std::max(firstZeros, secondZeros);
    const std::size_t least = std::min(firstZeros, secondZeros);
    if (3 * most <= pairs || 8 * least > most) {
        return {};
    }
    return most == secondZeros ? kUtf16Little : kUtf16Big;
}

std::size_t utf16Length(std::string_view utf8) {
    std::size_t bytes = 0;
    for (const char byte : utf8) {
        const auto value = static_cast<unsigned char>(byte);
        const bool isContinuation = value >= 0x80 && value < 0xC0;
        bytes += value >= 0xF0 ? 4U : isContinuation ? 0U : 2U;
    }
    return bytes;
}

} // namespace OrvComtradeIntake
