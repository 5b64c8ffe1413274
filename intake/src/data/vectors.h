#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace OrvComtradeIntake {

// Vectors of the compiler. Processors with narrower units take two steps for each.

constexpr std::size_t kVectorWidth = 32;

#define ORV_INLINE inline __attribute__((always_inline))

using ByteVector = signed char __attribute__((vector_size(kVectorWidth)));
using WordVector = std::int32_t __attribute__((vector_size(kVectorWidth)));
using LongVector = std::uint64_t __attribute__((vector_size(kVectorWidth)));

template <class Vector> ORV_INLINE void loadVector(Vector& vector, const void* from) {
    std::memcpy(&vector, from, sizeof vector);
}

template <class Vector> ORV_INLINE bool isAnySet(const Vector& vector) {
    LongVector longs;
    std::memcpy(&longs, &vector, sizeof longs);
    return (longs[0] | longs[1] | longs[2] | longs[3]) != 0;
}

} // namespace OrvComtradeIntake
