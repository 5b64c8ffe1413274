#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

/// Vectors of the compiler, in the width that the processor has: a function marked `ORV_WIDE` may be called only where
/// `hasWideVectors()`, and inlines what it calls with `WideVectors`.

#define ORV_INLINE inline __attribute__((always_inline))

#if defined(__x86_64__)
#define ORV_WIDE __attribute__((target("avx2")))
#else
#define ORV_WIDE
#endif

namespace OrvComtradeIntake {

struct UsualVectors {
    static constexpr std::size_t kWidth = 16;

    using Bytes = signed char __attribute__((vector_size(kWidth)));
    using Halves = std::int16_t __attribute__((vector_size(kWidth)));
    using Words = std::int32_t __attribute__((vector_size(kWidth)));
    using Longs = std::uint64_t __attribute__((vector_size(kWidth)));
};

struct WideVectors {
    static constexpr std::size_t kWidth = 32;

    using Bytes = signed char __attribute__((vector_size(kWidth)));
    using Words = std::int32_t __attribute__((vector_size(kWidth)));
    using Longs = std::uint64_t __attribute__((vector_size(kWidth)));
};

template <class Vector> ORV_INLINE void loadVector(Vector& vector, const void* from) {
    std::memcpy(&vector, from, sizeof vector);
}

template <class Units, class Vector> ORV_INLINE bool isAnySet(const Vector& vector) {
    typename Units::Longs longs;
    std::memcpy(&longs, &vector, Units::kWidth);
    std::uint64_t set = 0;
    for (std::size_t i = 0; i < Units::kWidth / sizeof set; ++i) {
        set |= longs[i];
    }
    return set != 0;
}

inline bool hasWideVectors() {
#if defined(__x86_64__)
    return __builtin_cpu_supports("avx2") != 0;
#else
    return false;
#endif
}

} // namespace OrvComtradeIntake
