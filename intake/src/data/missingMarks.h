#pragma once

#include "src/data/littleEndian.h"

#include <cstddef>
#include <cstdint>

namespace OrvComtradeIntake {

// Bits that stand for a missing value (IEEE C37.111-2013, 8.6). Of singles those above infinity are NaN, and the
// largest negative one stands for a missing value too.
constexpr std::uint16_t kMissing16 = 0x8000;
constexpr std::uint32_t kMissing32 = 0x80000000;
constexpr std::uint32_t kMissingSingle = 0x7FC00000; // NaN
constexpr std::uint32_t kInfinity = 0x7F800000;
constexpr std::uint32_t kLargestNegative = 0xFF7FFFFF;

/// Which bits of an analog value say that there is none.
struct Mark16 {
    using Bits = std::uint16_t;
    static Bits bits(const char* value) { return OrvComtradeLib::readLittleEndian<Bits>(value); }
    static bool isMark(Bits bits) { return bits == kMissing16; }
};

struct Mark32 {
    using Bits = std::uint32_t;
    static Bits bits(const char* value) { return OrvComtradeLib::readLittleEndian<Bits>(value); }
    static bool isMark(Bits bits) { return bits == kMissing32; }
};

struct MarkFloat {
    using Bits = std::uint32_t;
    static Bits bits(const char* value) { return OrvComtradeLib::readLittleEndian<Bits>(value); }
    /// Without a branch, for the sake of vector units.
    static bool isMark(Bits bits) { return ((bits & 0x7FFFFFFFU) > kInfinity) | (bits == kLargestNegative); }
};

/// The analog values of consecutive records.
struct AnalogBlock {
    const char* values = nullptr; ///< of the first record
    std::size_t stride = 0;       ///< bytes from those of one record to those of the next
    std::size_t length = 0;       ///< bytes, of one record
    std::size_t records = 0;
};

/// The first record from `from` on that has a mark for a missing value, or the number of records.
template <class Mark> std::size_t findMark(const AnalogBlock& block, std::size_t from);

} // namespace OrvComtradeIntake
