#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace toUtf8 {

/// Whether no byte has its highest bit set; such a text is UTF-8 as it stands, as nearly all channel lines are.
inline bool isAscii(std::string_view text) {
    constexpr std::uint64_t kHighBits = UINT64_MAX / 0xFFU * 0x80U; // of each byte
    std::uint64_t seen = 0;
    std::size_t i = 0;
    for (; i + sizeof seen <= text.size(); i += sizeof seen) {
        std::uint64_t bytes = 0;
        std::memcpy(&bytes, text.data() + i, sizeof bytes);
        seen |= bytes;
    }
    for (; i < text.size(); ++i) {
        seen |= static_cast<std::uint64_t>(static_cast<unsigned char>(text[i]));
    }
    return (seen & kHighBits) == 0;
}

} // namespace toUtf8
