#include "data/FastLines.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

namespace OrvComtradeIntake {

namespace {

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

constexpr std::size_t kStepsPerSum = 30;    // sums of eight bytes of as many steps stay below 256
constexpr std::size_t kMostFastDigits = 18; // of an integer that is surely within 64 bits

/// Ones, then as many zeros: loaded n bytes before the zeros it keeps the first n bytes.
using Masks = std::array<signed char, 2 * kVectorWidth>;

constexpr Masks makeMasks() {
    Masks masks{};
    for (std::size_t i = 0; i < kVectorWidth; ++i) {
        masks[i] = -1;
    }
    return masks;
}

constexpr Masks kMasks = makeMasks();

/// Gathers what keeps lines from the fast way, for one verdict on all of them.
class Gatherer {
public:
    /// Adds the numeric columns: `length` bytes. Gives the number of commas.
    ORV_INLINE std::size_t addNumbers(const char* columns, std::size_t length) {
        std::size_t commas = 0;
        std::size_t steps = 0;
        ByteVector counted{};
        for (; length > kVectorWidth; length -= kVectorWidth, columns += kVectorWidth) {
            _add(columns, ~ByteVector{}, counted);
            if (++steps == kStepsPerSum) {
                commas += _sumOf(counted);
                counted = ByteVector{};
                steps = 0;
            }
        }
        ByteVector mask;
        loadVector(mask, kMasks.data() + kVectorWidth - length);
        _add(columns, mask, counted);
        return commas + _sumOf(counted);
    }

    /// Adds the status columns: `length` bytes, a comma and "0" or "1" again and again.
    ORV_INLINE void addStates(const char* columns, std::size_t length) {
        constexpr std::uint64_t expected = OrvComtradeLib::fourOf(',', '0');
        constexpr std::uint64_t fixed = ~OrvComtradeLib::fourOf(0, 1); // all bits but that by which "1" differs
        const char* const end = columns + length;
        LongVector bits;
        for (; length > kVectorWidth; length -= kVectorWidth, columns += kVectorWidth) {
            loadVector(bits, columns);
            _otherStates |= (bits & fixed) ^ expected;
        }
        loadVector(bits, end - kVectorWidth); // with bytes in front of the columns, which are masked out
        LongVector mask;
        loadVector(mask, kMasks.data() + length);
        _otherStates |= ((bits & fixed) ^ expected) & ~mask;
    }

    ORV_INLINE bool isClean() const {
        return !isAnySet(_misplaced | ~_known | (_greatest > '9')) && !isAnySet(_otherStates);
    }

    /// Whether no integer can be 99999 or 999999, or too long for 64 bits.
    ORV_INLINE bool areFastNumbers() const { return !isAnySet(_nines) && !isAnySet(_digits); }

private:
    /// Sum of bytes, none of which is above `kStepsPerSum` + 1.
    ORV_INLINE static std::size_t _sumOf(const ByteVector& bytes) {
        LongVector longs;
        std::memcpy(&longs, &bytes, sizeof longs);
        const std::uint64_t sums = longs[0] + longs[1] + longs[2] + longs[3];
        constexpr std::uint64_t everyOther = OrvComtradeLib::fourOf(0xFF, 0);
        const std::uint64_t pairs = (sums & everyOther) + (sums >> 8U & everyOther);
        return static_cast<std::size_t>(pairs * OrvComtradeLib::fourOf(1, 0) >> 48U); // the sum of the four pairs
    }

    /// Adds the bytes that `mask` keeps, and to the commas, counted by place. Comparisons give 0 or -1 for each byte.
    ORV_INLINE void _add(const char* at, const ByteVector& mask, ByteVector& commas) {
        constexpr signed char belowDigits = '0' - 1;
        ByteVector bytes;
        ByteVector before;
        loadVector(bytes, at);
        loadVector(before, at - 1);
        bytes = (bytes & mask) | ('0' & ~mask);
        const ByteVector isDigit = bytes > belowDigits; // or above; bytes from 128 on are negative
        const ByteVector isComma = bytes == ',';
        const ByteVector isMinus = bytes == '-';
        commas -= isComma;
        _known &= isDigit + isComma + isMinus;
        _greatest = bytes > _greatest ? bytes : _greatest;
        _misplaced |= isComma & ~(before > belowDigits); // a comma stands behind a digit
        _misplaced |= isMinus & ~(before == ',');        // a minus sign behind a comma

        constexpr auto fourNines = static_cast<std::int32_t>(UINT32_MAX / 0xFFU * '9'); // "9999"
        WordVector words;
        WordVector between;
        loadVector(words, at);
        loadVector(between, at + 2);
        _nines |= (words == fourNines) | (between == fourNines);

        const ByteVector kept = isDigit & mask;
        LongVector longs;
        std::memcpy(&longs, &kept, sizeof longs);
        _digits |= longs == ~std::uint64_t{0};
    }

    ByteVector _known = ~ByteVector{}; ///< -1: each byte was a comma, a minus sign or no less than a digit
    ByteVector _greatest{};            ///< byte
    ByteVector _misplaced{};           ///< not 0: a byte stands where it may not
    LongVector _otherStates{};         ///< not 0: the same among the status columns
    WordVector _nines{};               ///< not 0: four nines in a row, at even places
    LongVector _digits{};              ///< not 0: eight digits in a row, at places divisible by eight
};

/// Whether the integers of a line are within 64 bits, and none of them has the digits of a missing value.
bool areFastNumbers(std::string_view numbers) {
    std::size_t digits = 0;
    std::size_t nines = 0;
    for (const char byte : numbers) {
        digits = byte >= '0' ? digits + 1 : 0;
        nines = byte == '9' ? nines + 1 : 0;
        if (digits > kMostFastDigits || nines == 5) {
            return false;
        }
    }
    return true;
}

using Shape = FastLines::Shape;
constexpr std::size_t kLinesAtOnce = FastLines::kLinesAtOnce;

/// Lines at hand: each ends before the next begins.
struct Lines {
    std::array<const char*, kLinesAtOnce + 1> begins;
    std::size_t count = 0;

    std::size_t length(std::size_t i) const {
        const char* const feed = begins[i + 1] - 1;
        return static_cast<std::size_t>(feed - begins[i]) - (feed[-1] == '\r' ? 1 : 0);
    }
};

/// Line ends are searched for behind the least length: an earlier one is a byte that may not stand where it is.
void findLines(Lines& lines, const Shape& shape, const char* at, const char* end, std::uint64_t most) {
    lines.begins[0] = at;
    lines.count = 0;
    while (lines.count<most&& static_cast<std::size_t>(end - at)> shape.leastLength) {
        const char* const from = at + shape.leastLength;
        const void* const feed = std::memchr(from, '\n', static_cast<std::size_t>(end - from));
        if (feed == nullptr) {
            return;
        }
        at = static_cast<const char*>(feed) + 1;
        lines.begins[++lines.count] = at;
    }
}

/// False if the number of columns is wrong, or the last numeric one does not end with a digit.
ORV_INLINE bool gather(Gatherer& gatherer, const Shape& shape, const char* line, std::size_t length) {
    const std::size_t front = length - shape.statusLength;
    if (shape.statusLength != 0) {
        gatherer.addStates(line + front, shape.statusLength);
    }
    const char last = line[front - 1];
    return gatherer.addNumbers(line, front) == shape.commas && last >= '0' && last <= '9';
}

/// One verdict on all lines; what it does not settle is looked at line by line.
ORV_INLINE std::size_t countFast(const Shape& shape, const Lines& lines) {
    Gatherer all;
    std::size_t gathered = 0;
    while (gathered < lines.count && gather(all, shape, lines.begins[gathered], lines.length(gathered))) {
        ++gathered;
    }
    if (gathered == lines.count && all.isClean() && all.areFastNumbers()) {
        return lines.count;
    }
    for (std::size_t count = 0; count < lines.count; ++count) {
        Gatherer one;
        const char* const line = lines.begins[count];
        const std::size_t length = lines.length(count);
        const bool isFast = gather(one, shape, line, length) && one.isClean() &&
                            (one.areFastNumbers() || areFastNumbers({line, length - shape.statusLength}));
        if (!isFast) {
            return count;
        }
    }
    return lines.count;
}

std::size_t countNarrow(const Shape& shape, const Lines& lines) {
    return countFast(shape, lines);
}

#if defined(__x86_64__) && !defined(ORV_NARROW_UNITS)
/// The same for processors with units of the whole width: it takes half the time.
__attribute__((target("avx2"))) std::size_t countWide(const Shape& shape, const Lines& lines) {
    return countFast(shape, lines);
}

const auto countAtOnce = __builtin_cpu_supports("avx2") != 0 ? countWide : countNarrow;
#else
constexpr auto countAtOnce = countNarrow;
#endif

} // namespace

LineRun FastLines::take(const char* begin, const char* end, std::uint64_t most) {
    LineRun run;
    run.begin = begin;
    run.end = begin;
    _begins.clear();
    Lines lines;
    for (bool goesOn = true; goesOn;) {
        const std::uint64_t wanted = std::min<std::uint64_t>(most - run.count, _linesAtOnce);
        findLines(lines, _shape, run.end, end, wanted);
        const std::size_t taken = countAtOnce(_shape, lines);
        const bool isSlow = taken < lines.count; // then the next one is often slow too: no more are looked at with it
        _linesAtOnce = isSlow ? 1 : std::min(2 * _linesAtOnce, kLinesAtOnce);
        goesOn = taken != 0 && taken == wanted;
        _begins.insert(_begins.end(), lines.begins.begin(), lines.begins.begin() + taken);
        run.end = lines.begins[taken];
        run.count += taken;
    }
    run.begins = _begins.data();
    return run;
}

} // namespace OrvComtradeIntake
