#pragma once

#include "DataLayout.h"
#include "RecordReader.h"

#include <cstddef>
#include <cstdint>

namespace OrvComtradeIntake {

// Bits of a single. Those above infinity are NaN; the largest negative one stands for a missing value too
// (IEEE C37.111-2013, 8.6).
constexpr std::uint32_t kInfinity = 0x7F800000;
constexpr std::uint32_t kLargestNegative = 0xFF7FFFFF;

/// Which bits of an analog value say that there is none.
struct Mark16 {
    using Bits = std::uint16_t;
    static Bits bits(const char* value) { return littleEndian16(value); }
    static bool isMark(Bits bits) { return bits == kMissing16; }
};

struct Mark32 {
    using Bits = std::uint32_t;
    static Bits bits(const char* value) { return littleEndian32(value); }
    static bool isMark(Bits bits) { return bits == kMissing32; }
};

struct MarkFloat {
    using Bits = std::uint32_t;
    static Bits bits(const char* value) { return littleEndian32(value); }
    static bool isMark(Bits bits) { return (bits & 0x7FFFFFFFU) > kInfinity || bits == kLargestNegative; }
};

/// The analog values of consecutive records.
struct AnalogBlock {
    const char* values = nullptr; ///< of the first record
    std::size_t stride = 0;       ///< bytes from those of one record to those of the next
    std::size_t length = 0;       ///< bytes, of one record
    std::size_t records = 0;
};

/// The first record from `from` on that may have a mark for a missing value; those passed over surely have none.
template <class Mark> std::size_t findMark(const AnalogBlock& block, std::size_t from);

} // namespace OrvComtradeIntake
