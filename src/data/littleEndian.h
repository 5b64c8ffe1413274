#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace OrvComtradeLib {

/// The little-endian field of type `Value` at `bytes`, on any host.
template <class Value> Value readLittleEndian(const char* bytes) {
    Value value;
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
    std::memcpy(&value, bytes, sizeof value); // assembling the bytes by arithmetic would keep loops off vector units
#else
    unsigned char reversed[sizeof value];
    for (std::size_t i = 0; i < sizeof value; ++i) {
        reversed[i] = static_cast<unsigned char>(bytes[sizeof value - 1 - i]);
    }
    std::memcpy(&value, reversed, sizeof value);
#endif
    return value;
}

} // namespace OrvComtradeLib
