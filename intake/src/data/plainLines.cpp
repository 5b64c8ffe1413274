#include "plainLines.h"

#include <array>
#include <cstdint>
#include <cstring>

namespace OrvComtradeIntake {

namespace {

constexpr std::size_t kWidth = 32;
constexpr std::size_t kStepsPerSum = 31; // sums of four bytes of as many steps stay below 128
constexpr std::size_t kMostDigits = 18;  // of an integer that is surely within 64 bits

// Vectors of the compiler, one instruction per operation and two where vector units are half as wide.
using Bytes = signed char __attribute__((vector_size(kWidth)));
using Words = std::uint64_t __attribute__((vector_size(kWidth)));

#define ORV_INLINE inline __attribute__((always_inline))

ORV_INLINE void load(Bytes& bytes, const void* from) {
    std::memcpy(&bytes, from, kWidth);
}

ORV_INLINE bool isAny(const Bytes& bytes) {
    Words words;
    std::memcpy(&words, &bytes, kWidth);
    return (words[0] | words[1] | words[2] | words[3]) != 0;
}

/// Sum of bytes, none of which is above `kStepsPerSum`.
ORV_INLINE std::size_t sumOf(const Bytes& bytes) {
    Words words;
    std::memcpy(&words, &bytes, kWidth);
    const std::uint64_t sums = words[0] + words[1] + words[2] + words[3];
    const std::uint64_t pairs = (sums & 0x00FF00FF00FF00FFU) + (sums >> 8U & 0x00FF00FF00FF00FFU);
    return static_cast<std::size_t>(pairs * 0x0001000100010001U >> 48U);
}

/// 32 bytes of ones, then as many zeros: loaded at 32 - n it keeps the first n bytes.
struct Masks {
    alignas(kWidth) std::array<signed char, 2 * kWidth> bytes;
};

constexpr Masks makeMasks() {
    Masks masks{};
    for (std::size_t i = 0; i < kWidth; ++i) {
        masks.bytes[i] = -1;
    }
    return masks;
}

constexpr Masks kMasks = makeMasks();

/// What is gathered of the numeric columns.
struct Numbers {
    Bytes odd{};    ///< not 0: a byte stands where it may not
    Bytes commas{}; ///< counted by place in the step
    Bytes nines{};  ///< not 0: five nines in a row
    Words long8{};  ///< not 0: eight digits in a row, at places divisible by eight
};

/// Looks at up to 32 bytes, those that `mask` keeps.
ORV_INLINE void gather(Numbers& numbers, const char* at, const Bytes& mask) {
    Bytes byte;
    Bytes before;
    load(byte, at);
    load(before, at - 1);
    Bytes nines = byte;
    for (int i = 1; i < 5; ++i) {
        Bytes next;
        load(next, at + i);
        nines &= next;
    }
    numbers.nines |= (nines == '9') & mask; // no other byte of a number has all the bits of a nine

    Words words;
    const Bytes kept = byte & mask;
    std::memcpy(&words, &kept, kWidth);
    constexpr std::uint64_t digitBits = 0x1010101010101010U; // set in digits, clear in commas and minus signs
    const auto whole = (words & digitBits) == digitBits;
    Words isLong;
    std::memcpy(&isLong, &whole, kWidth);
    numbers.long8 |= isLong;

    byte = kept | (~mask & '0');
    const Bytes isOther = byte < '0'; // bytes from 128 on are negative
    const Bytes isMinus = byte == '-';
    const Bytes isComma = byte == ',';
    const Bytes beforeIsOther = before < '0';
    const Bytes beforeIsMinus = before == '-';
    // A minus sign stands behind a comma or a line end, a comma behind a digit.
    numbers.odd |= (isOther & (beforeIsOther ^ isMinus)) | (isMinus & beforeIsMinus) | (byte > '9') |
                   (isOther ^ (isMinus | isComma));
    numbers.commas -= isComma; // a true comparison is -1
}

bool hasLongNumber(const char* line, std::size_t length) {
    std::size_t digits = 0;
    for (std::size_t i = 0; i < length; ++i) {
        digits = line[i] >= '0' ? digits + 1 : 0;
        if (digits > kMostDigits) {
            return true;
        }
    }
    return false;
}

/// The columns in front: `length` bytes with `commas` commas, beginning and ending with a column.
ORV_INLINE bool areNumbers(const char* line, std::size_t length, std::size_t commas) {
    Numbers numbers;
    Bytes all;
    std::memset(&all, 0xFF, kWidth);
    std::size_t found = 0;
    std::size_t done = 0;
    while (length - done > kWidth) {
        for (std::size_t step = 0; step < kStepsPerSum - 1 && length - done > kWidth; ++step, done += kWidth) {
            gather(numbers, line + done, all);
        }
        if (length - done > kWidth) {
            found += sumOf(numbers.commas);
            numbers.commas = Bytes{};
        }
    }
    Bytes mask;
    load(mask, kMasks.bytes.data() + kWidth - (length - done));
    gather(numbers, line + done, mask);
    found += sumOf(numbers.commas);
    const char last = line[length - 1];
    if (isAny(numbers.odd | numbers.nines) || found != commas || last < '0' || last > '9') {
        return false;
    }
    const bool mayBeLong = (numbers.long8[0] | numbers.long8[1] | numbers.long8[2] | numbers.long8[3]) != 0;
    return !mayBeLong || !hasLongNumber(line, length);
}

/// The status columns: `length` bytes, a comma and "0" or "1" again and again.
ORV_INLINE bool areStates(const char* columns, std::size_t length) {
    const std::uint64_t expected = 0x302C302C302C302CU;
    const std::uint64_t fixed = 0xFEFFFEFFFEFFFEFFU;
    const char* const end = columns + length;
    Words odd{};
    Words bits;
    for (; length > kWidth; length -= kWidth, columns += kWidth) {
        std::memcpy(&bits, columns, kWidth);
        odd |= (bits & fixed) ^ expected;
    }
    std::memcpy(&bits, end - kWidth, kWidth); // with bytes in front of the columns, which are masked out
    Words mask;
    std::memcpy(&mask, kMasks.bytes.data() + length, kWidth);
    odd |= ((bits & fixed) ^ expected) & ~mask;
    return (odd[0] | odd[1] | odd[2] | odd[3]) == 0;
}

ORV_INLINE bool isPlainLine(const char* line, std::size_t length, std::size_t statusLength, std::size_t commas) {
    const std::size_t front = length - statusLength;
    return (statusLength == 0 || areStates(line + front, statusLength)) && areNumbers(line, front, commas);
}

bool isPlainAnywhere(const char* line, std::size_t length, std::size_t statusLength, std::size_t commas) {
    return isPlainLine(line, length, statusLength, commas);
}

#if defined(__x86_64__)
__attribute__((target("avx2"))) bool isPlainAvx2(const char* line, std::size_t length, std::size_t statusLength,
                                                 std::size_t commas) {
    return isPlainLine(line, length, statusLength, commas);
}

bool hasAvx2() {
    return __builtin_cpu_supports("avx2") != 0;
}
#else
constexpr auto isPlainAvx2 = isPlainAnywhere;

bool hasAvx2() {
    return false;
}
#endif

} // namespace

PlainLines::PlainLines(const DataLayout& layout)
    : _statusLength(2 * layout.statuses), _commas(layout.analogs + 1),
      _isPlain(hasAvx2() ? isPlainAvx2 : isPlainAnywhere) {}

} // namespace OrvComtradeIntake
