#pragma once

#include <cstdint>
#include <cstring>

namespace OrvComtradeLib {

/// Little-endian fields of a binary record, assembled by arithmetic and so the same on any host; compilers make single
/// loads of them.
inline std::uint16_t readUint16(const char* bytes) {
    const auto byte = [bytes](int i) { return static_cast<unsigned int>(static_cast<unsigned char>(bytes[i])); };
    return static_cast<std::uint16_t>(byte(0) | byte(1) << 8U);
}

inline std::uint32_t readUint32(const char* bytes) {
    const auto byte = [bytes](int i) { return static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i])); };
    return byte(0) | byte(1) << 8U | byte(2) << 16U | byte(3) << 24U;
}

inline std::int16_t readInt16(const char* bytes) {
    return static_cast<std::int16_t>(readUint16(bytes));
}

inline std::int32_t readInt32(const char* bytes) {
    return static_cast<std::int32_t>(readUint32(bytes));
}

inline float readFloat32(const char* bytes) {
    const std::uint32_t bits = readUint32(bytes);
    float value = 0.0F;
    static_assert(sizeof value == sizeof bits, "a float is IEEE 754 single precision");
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

} // namespace OrvComtradeLib
