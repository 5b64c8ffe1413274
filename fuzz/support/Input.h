#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace fuzz {

/// The bytes of one input, taken from the front. After its end come zeros.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : _bytes(reinterpret_cast<const char*>(data), size) {}
    explicit Input(std::string_view bytes) : _bytes(bytes) {}

    std::uint8_t u8() {
        if (_bytes.empty()) {
            return 0;
        }
        const auto byte = static_cast<std::uint8_t>(_bytes.front());
        _bytes.remove_prefix(1);
        return byte;
    }

    std::uint32_t u32() {
        std::uint32_t value = 0;
        for (unsigned int shift = 0; shift < 32; shift += 8) {
            value |= static_cast<std::uint32_t>(u8()) << shift;
        }
        return value;
    }

    /// The text up to a separator, which is taken as well; everything where there is none.
    std::string upTo(std::string_view separator) {
        const std::size_t end = std::min(_bytes.find(separator), _bytes.size());
        const std::string text(_bytes.substr(0, end));
        _bytes.remove_prefix(std::min(end + separator.size(), _bytes.size()));
        return text;
    }

    std::string rest() {
        const std::string text(_bytes);
        _bytes = {};
        return text;
    }

    bool isOver() const { return _bytes.empty(); }

private:
    std::string_view _bytes;
};

/// FNV-1a, 64 bits (G. Fowler, L. Noll, K. Vo), with its offset basis and prime.
inline std::uint64_t hashOf(std::string_view text) {
    constexpr std::uint64_t prime = (std::uint64_t{1} << 40U) + (1U << 8U) + 0xB3U;
    std::uint64_t hash = 0xCBF29CE484222325U;
    for (const char byte : text) {
        hash = (hash ^ static_cast<std::uint8_t>(byte)) * prime;
    }
    return hash;
}

} // namespace fuzz
