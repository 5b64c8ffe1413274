#pragma once

#include <cstdint>
#include <cstring>
#include <string>

namespace orvtest {

/// A row of little-endian fields, the same on any host.
class LittleEndianBytes {
public:
    LittleEndianBytes& u8(std::uint8_t value) {
        row.push_back(static_cast<char>(value));
        return *this;
    }

    LittleEndianBytes& u16(std::uint16_t value) {
        return u8(static_cast<std::uint8_t>(value & 0xFFU)).u8(static_cast<std::uint8_t>(value >> 8U));
    }

    LittleEndianBytes& i16(std::int16_t value) { return u16(static_cast<std::uint16_t>(value)); }

    LittleEndianBytes& u32(std::uint32_t value) {
        return u16(static_cast<std::uint16_t>(value & 0xFFFFU)).u16(static_cast<std::uint16_t>(value >> 16U));
    }

    LittleEndianBytes& i32(std::int32_t value) { return u32(static_cast<std::uint32_t>(value)); }

    LittleEndianBytes& f32(float value) {
        std::uint32_t bits = 0;
        static_assert(sizeof bits == sizeof value, "a float is IEEE 754 single precision");
        std::memcpy(&bits, &value, sizeof bits);
        return u32(bits);
    }

    LittleEndianBytes& raw(const std::string& bytes) {
        row += bytes;
        return *this;
    }

    const std::string& bytes() const { return row; }

private:
    std::string row;
};

} // namespace orvtest
