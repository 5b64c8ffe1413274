#include "plainLines.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace OrvComtradeIntake {

namespace {

using Form = PlainLines::Form;

constexpr std::size_t kStepsPerSum = 30; // sums of four bytes of as many steps stay below 128
constexpr std::size_t kMostDigits = 18;  // of an integer that is surely within 64 bits
constexpr std::size_t kLinesAtOnce = 16; // looked at before a verdict

/// Ones, then as many zeros: loaded n bytes before the zeros it keeps the first n bytes.
struct Masks {
    std::array<signed char, 2 * WideVectors::kWidth> bytes;
};

constexpr Masks makeMasks() {
    Masks masks{};
    for (std::size_t i = 0; i < WideVectors::kWidth; ++i) {
        masks.bytes[i] = -1;
    }
    return masks;
}

constexpr Masks kMasks = makeMasks();

/// Gathers what is odd in lines, for one verdict on all of them.
template <class Units> class Gatherer {
public:
    /// Adds the numeric columns: `length` bytes. Gives the number of commas.
    ORV_INLINE std::size_t addNumbers(const char* columns, std::size_t length) {
        std::size_t commas = 0;
        std::size_t steps = 0;
        Bytes counted{};
        for (; length > Units::kWidth; length -= Units::kWidth, columns += Units::kWidth) {
            _add(columns, ~Bytes{}, counted);
            if (++steps == kStepsPerSum) {
                commas += _sumOf(counted);
                counted = Bytes{};
                steps = 0;
            }
        }
        Bytes mask;
        loadVector(mask, kMasks.bytes.data() + WideVectors::kWidth - length);
        _add(columns, mask, counted);
        return commas + _sumOf(counted);
    }

    /// Adds the status columns: `length` bytes, a comma and "0" or "1" again and again.
    ORV_INLINE void addStates(const char* columns, std::size_t length) {
        const std::uint64_t expected = 0x302C302C302C302CU;
        const std::uint64_t fixed = 0xFEFFFEFFFEFFFEFFU;
        const char* const end = columns + length;
        Longs bits;
        for (; length > Units::kWidth; length -= Units::kWidth, columns += Units::kWidth) {
            loadVector(bits, columns);
            _oddStates |= (bits & fixed) ^ expected;
        }
        loadVector(bits, end - Units::kWidth); // with bytes in front of the columns, which are masked out
        Longs mask;
        loadVector(mask, kMasks.bytes.data() + WideVectors::kWidth - Units::kWidth + length);
        _oddStates |= ((bits & fixed) ^ expected) & ~mask;
    }

    ORV_INLINE bool isClean() const {
        return !isAnySet<Units>(_odd | ~_known | (_greatest > '9')) && !isAnySet<Units>(_oddStates);
    }

    /// Whether no integer can be 99999, or too long for 64 bits.
    ORV_INLINE bool areUsualNumbers() const { return !isAnySet<Units>(_nines) && !isAnySet<Units>(_digits); }

private:
    using Bytes = typename Units::Bytes;
    using Words = typename Units::Words;
    using Longs = typename Units::Longs;

    /// Sum of bytes, none of which is above `kStepsPerSum` + 1.
    ORV_INLINE static std::size_t _sumOf(const Bytes& bytes) {
        Longs longs;
        std::memcpy(&longs, &bytes, Units::kWidth);
        std::uint64_t sums = 0;
        for (std::size_t i = 0; i < Units::kWidth / sizeof sums; ++i) {
            sums += longs[i];
        }
        const std::uint64_t pairs = (sums & 0x00FF00FF00FF00FFU) + (sums >> 8U & 0x00FF00FF00FF00FFU);
        return static_cast<std::size_t>(pairs * 0x0001000100010001U >> 48U);
    }

    /// Adds the bytes that `mask` keeps, and to the commas, counted by place. Comparisons give 0 or -1 for each byte.
    ORV_INLINE void _add(const char* at, const Bytes& mask, Bytes& commas) {
        constexpr signed char belowDigits = '0' - 1;
        Bytes bytes;
        Bytes before;
        loadVector(bytes, at);
        loadVector(before, at - 1);
        bytes = (bytes & mask) | ('0' & ~mask);
        const Bytes isDigit = bytes > belowDigits; // or above; bytes from 128 on are negative
        const Bytes isComma = bytes == ',';
        const Bytes isMinus = bytes == '-';
        commas -= isComma;
        _known &= isDigit + isComma + isMinus;
        _greatest = bytes > _greatest ? bytes : _greatest;
        _odd |= isComma & ~(before > belowDigits); // a comma stands behind a digit
        _odd |= isMinus & ~(before == ',');        // a minus sign behind a comma

        constexpr std::int32_t fourNines = 0x39393939;
        Words words;
        Words between;
        loadVector(words, at);
        loadVector(between, at + 2);
        _nines |= (words == fourNines) | (between == fourNines);

        const Bytes kept = isDigit & mask;
        Longs longs;
        std::memcpy(&longs, &kept, Units::kWidth);
        _digits |= longs == ~std::uint64_t{0};
    }

    Bytes _known = ~Bytes{}; ///< -1: each byte was a comma, a minus sign or no less than a digit
    Bytes _greatest{};       ///< byte
    Bytes _odd{};            ///< not 0: a byte stands where it may not
    Longs _oddStates{};      ///< not 0: the same among the status columns
    Words _nines{};          ///< not 0: four nines in a row, at even places
    Longs _digits{};         ///< not 0: eight digits in a row, at places divisible by eight
};

/// Whether the integers of a line are within 64 bits, and none of them is 99999, or has such digits.
bool areUsualNumbers(std::string_view numbers) {
    std::size_t digits = 0;
    std::size_t nines = 0;
    for (const char byte : numbers) {
        digits = byte >= '0' ? digits + 1 : 0;
        nines = byte == '9' ? nines + 1 : 0;
        if (digits > kMostDigits || nines == 5) {
            return false;
        }
    }
    return true;
}

/// Lines at hand: each ends before the next begin.
struct Lines {
    std::array<const char*, kLinesAtOnce + 1> begins;
    std::size_t count = 0;

    std::string_view operator[](std::size_t i) const {
        const char* const feed = begins[i + 1] - 1;
        return {begins[i], static_cast<std::size_t>(feed - begins[i]) - (feed[-1] == '\r' ? 1 : 0)};
    }
};

/// Line ends are searched for behind the least length: an earlier one is a byte that may not stand where it is.
void findLines(Lines& lines, const Form& form, const char* at, const char* end, std::uint64_t most) {
    lines.begins[0] = at;
    lines.count = 0;
    while (lines.count<most&& static_cast<std::size_t>(end - at)> form.leastLength) {
        const char* const from = at + form.leastLength;
        const void* const feed = std::memchr(from, '\n', static_cast<std::size_t>(end - from));
        if (feed == nullptr) {
            return;
        }
        at = static_cast<const char*>(feed) + 1;
        lines.begins[++lines.count] = at;
    }
}

/// False if the number of columns is wrong, or the last numeric one does not end with a digit.
template <class Units> ORV_INLINE bool gather(Gatherer<Units>& gatherer, const Form& form, std::string_view line) {
    const std::size_t front = line.size() - form.statusLength;
    if (form.statusLength != 0) {
        gatherer.addStates(line.data() + front, form.statusLength);
    }
    const char last = line[front - 1];
    return gatherer.addNumbers(line.data(), front) == form.commas && last >= '0' && last <= '9';
}

template <class Units> ORV_INLINE bool areAllPlain(const Form& form, const Lines& lines) {
    Gatherer<Units> gatherer;
    for (std::size_t i = 0; i < lines.count; ++i) {
        if (!gather(gatherer, form, lines[i])) {
            return false;
        }
    }
    return gatherer.isClean() && gatherer.areUsualNumbers();
}

template <class Units> ORV_INLINE bool isPlain(const Form& form, std::string_view line) {
    Gatherer<Units> gatherer;
    return gather(gatherer, form, line) && gatherer.isClean() &&
           (gatherer.areUsualNumbers() || areUsualNumbers(line.substr(0, line.size() - form.statusLength)));
}

/// What one verdict does not settle is looked at line by line.
template <class Units> ORV_INLINE std::size_t countPlain(const Form& form, const Lines& lines) {
    if (areAllPlain<Units>(form, lines)) {
        return lines.count;
    }
    std::size_t count = 0;
    while (count < lines.count && isPlain<Units>(form, lines[count])) {
        ++count;
    }
    return count;
}

template <class Units>
ORV_INLINE LineRun takeLines(const Form& form, const char* begin, const char* end, std::uint64_t most) {
    LineRun run{begin, nullptr, begin, 0};
    Lines lines;
    std::size_t count = 0;
    do {
        findLines(lines, form, run.end, end, std::min<std::uint64_t>(most - run.count, kLinesAtOnce));
        count = countPlain<Units>(form, lines);
        run.last = count != 0 ? lines.begins[count - 1] : run.last;
        run.end = lines.begins[count];
        run.count += count;
    } while (count == kLinesAtOnce);
    return run;
}

LineRun takeUsual(const Form& form, const char* begin, const char* end, std::uint64_t most) {
    return takeLines<UsualVectors>(form, begin, end, most);
}

ORV_WIDE LineRun takeWide(const Form& form, const char* begin, const char* end, std::uint64_t most) {
    return takeLines<WideVectors>(form, begin, end, most);
}

} // namespace

PlainLines::PlainLines(const DataLayout& layout, bool wide)
    : _form{2 * layout.statuses, layout.analogs + 1, 2 * layout.fields() - 1}, _take(wide ? takeWide : takeUsual) {}

} // namespace OrvComtradeIntake
