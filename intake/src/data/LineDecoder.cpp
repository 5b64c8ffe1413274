#include "data/LineDecoder.h"

#include "data/missingValues.h"
#include "src/data/digits.h"
#include "src/data/littleEndian.h"

#include <algorithm>
#include <cstring>

namespace OrvComtradeIntake {

namespace {

#define ORV_INLINE inline __attribute__((always_inline))

constexpr std::size_t kLinesOfTile = 64;  // lines whose values are put into columns together
constexpr std::size_t kVectorLength = 32; // bytes looked at together

/// Puts down where the bytes are that `bits` has ones for, `count` of them. Most vectors hold no more than eight, which
/// take no branch: how many there are can't be foreseen.
ORV_INLINE std::uint32_t* putEnds(std::uint64_t bits, std::size_t count, std::uint32_t offset, std::uint32_t* ends) {
    constexpr std::size_t fewMost = 8; // hardly ever are there more
    constexpr std::uint64_t behind = std::uint64_t{1} << kVectorLength;
    bits |= behind;
    const auto put = [&](std::size_t i) {
        ends[i] = offset + static_cast<std::uint32_t>(__builtin_ctzll(bits));
        bits = (bits & (bits - 1)) | behind;
    };
    for (std::size_t i = 0; i < fewMost; ++i) {
        put(i);
    }
    for (std::size_t i = fewMost; i < count; ++i) {
        put(i);
    }
    return ends + count;
}

/// Moves the lowest bits of eight bytes into the uppermost byte, that of byte i from bit 8 i to bit 56 + i: the sum of
/// two to the powers of 56 - 7 i.
constexpr std::uint64_t gatheringFactor() {
    std::uint64_t factor = 0;
    for (unsigned int i = 0; i < 8; ++i) {
        factor |= std::uint64_t{1} << (56 - 7 * i);
    }
    return factor;
}

constexpr std::uint64_t kGather = gatheringFactor();

/// Puts down the ends of the first columns of a fast line, and of some behind them: every byte that is neither a digit
/// nor a minus sign is one.
ORV_INLINE void separateNarrow(const char* line, std::size_t fields, std::uint32_t* ends) {
    using ByteVector = signed char __attribute__((vector_size(16))); // larger ones are compared byte by byte here
    constexpr std::uint64_t ones = OrvComtradeLib::eightOf(1);
    const std::uint32_t* const last = ends + fields;
    for (std::uint32_t offset = 0; ends < last; offset += kVectorLength) {
        std::uint64_t bits = 0;
        std::uint64_t sums = 0;
        for (std::size_t at = 0; at < kVectorLength; at += sizeof(ByteVector)) {
            ByteVector text;
            std::memcpy(&text, line + offset + at, sizeof text);
            const ByteVector isSeparator = text < '-'; // each byte 0 or -1
            char flags[sizeof text];
            std::memcpy(flags, &isSeparator, sizeof flags);
            for (std::size_t i = 0; i < sizeof flags; i += 8) {
                const std::uint64_t each = OrvComtradeLib::readLittleEndian<std::uint64_t>(flags + i) & ones;
                bits |= (each * kGather >> 56U) << (at + i);
                sums += each;
            }
        }
        ends = putEnds(bits, static_cast<std::size_t>(sums * ones >> 56U), offset, ends);
    }
}

/// The integer of up to eight digits that ends before `end`; the bytes before it are masked out.
ORV_INLINE std::uint64_t digitsBefore(const char* end, std::size_t count) {
    const std::uint64_t text = OrvComtradeLib::readLittleEndian<std::uint64_t>(end - 8) ^ OrvComtradeLib::eightOf('0');
    return OrvComtradeLib::valueOfDigits(text & ~std::uint64_t{0} << (64 - 8 * count));
}

/// The integer of a column that begins behind the end of the one before.
ORV_INLINE double integerBetween(const char* line, std::uint32_t before, std::uint32_t behind) {
    const char* begin = line + before + 1;
    const std::int64_t sign = *begin == '-' ? 1 : 0; // no branch: waves change it all the time
    const auto count = static_cast<std::size_t>(behind - before - 1) - static_cast<std::size_t>(sign);
    if (count > OrvComtradeLib::kDigitsAtOnce) {
        return static_cast<double>(takeInteger(begin));
    }
    return static_cast<double>((static_cast<std::int64_t>(digitsBefore(line + behind, count)) ^ -sign) + sign);
}

/// The numbers of some channels.
ORV_INLINE void readIntegers(const char* line, const std::vector<std::size_t>& channels, const std::uint32_t* ends,
                             double* raw) {
    const std::size_t* const first = channels.data(); // no vector in the loop: it may check each access
    const std::size_t count = channels.size();
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t* const before = ends + first[i] + 1;
        raw[i] = integerBetween(line, before[0], before[1]);
    }
}

void readNumbersNarrow(const char* line, std::size_t fields, const std::vector<std::size_t>& channels,
                       std::uint32_t* ends, double* raw) {
    separateNarrow(line, fields, ends);
    readIntegers(line, channels, ends, raw);
}

#if defined(__x86_64__) && !defined(ORV_NARROW_UNITS)
/// The same for processors that gather the bits by themselves: it takes half the time.
__attribute__((target("avx2,bmi,bmi2,popcnt"))) void readNumbersWide(const char* line, std::size_t fields,
                                                                     const std::vector<std::size_t>& channels,
                                                                     std::uint32_t* ends, double* raw) {
    using ByteVector = char __attribute__((vector_size(kVectorLength)));
    const std::uint32_t* const last = ends + fields;
    std::uint32_t* end = ends;
    for (std::uint32_t offset = 0; end < last; offset += kVectorLength) {
        ByteVector text;
        std::memcpy(&text, line + offset, sizeof text);
        const auto isSeparator = reinterpret_cast<ByteVector>(text < '-');
        const auto bits = static_cast<std::uint32_t>(__builtin_ia32_pmovmskb256(isSeparator));
        end = putEnds(bits, static_cast<std::size_t>(__builtin_popcount(bits)), offset, end);
    }
    readIntegers(line, channels, ends, raw);
}

const bool hasWideCpu = __builtin_cpu_supports("avx2") != 0 && __builtin_cpu_supports("bmi") != 0 &&
                        __builtin_cpu_supports("bmi2") != 0 && __builtin_cpu_supports("popcnt") != 0;
const auto readNumbersBest = hasWideCpu ? readNumbersWide : readNumbersNarrow;
#else
constexpr auto readNumbersBest = readNumbersNarrow;
#endif

/// States of four columns ",0,1,0,1", the first in the lowest bit.
std::uint64_t fourStates(const char* columns) {
    const std::uint64_t text = OrvComtradeLib::readLittleEndian<std::uint64_t>(columns);
    const std::uint64_t one = text >> 8U & OrvComtradeLib::fourOf(1, 0);
    return (one | one >> 15U | one >> 30U | one >> 45U) & 0xFU;
}

} // namespace

LineDecoder::LineDecoder(const Header& header, const DataFacts& facts, const BlockRange& range)
    : _layout(header, DataType::Ascii), _facts(facts), _range(range), _stamped(header.timesAreStamped()),
      _stamps(facts.stamps), _ends(_layout.analogs + 2 + kVectorLength), _rows(kLinesOfTile * range.analog.size()),
      _states((_layout.statuses + 63) / 64) {}

void LineDecoder::decode(const LineRun& run, std::size_t from, std::size_t count, std::size_t row, Block& block) {
    const std::size_t columns = _range.analog.size();
    for (std::size_t done = 0; done < count;) {
        const std::size_t rows = std::min(kLinesOfTile, count - done);
        double* raw = _rows.data();
        for (std::size_t i = 0; i < rows; ++i, raw += columns) {
            const char* const line = run.begins[from + done + i];
            readNumbersBest(line, _layout.analogs + 2, _range.analog, _ends.data(), raw);
            if (_range.hasNumbers || _stamped) {
                _decodeHead(line, row + done + i, block);
            }
            if (block.stateWords != 0) {
                _decodeStates(line + _ends[_layout.analogs + 1],
                              block.states.data() + (row + done + i) * block.stateWords);
            }
        }
        _scaleRows(rows, row + done, block);
        done += rows;
    }
}

void LineDecoder::_decodeHead(const char* line, std::size_t row, Block& block) {
    const std::int64_t number = takeInteger(line);
    const std::int64_t stamp = takeInteger(line);
    if (_range.hasNumbers) {
        block.numbers[row] = number;
    }
    block.stamps[row] = _stamped ? std::int64_t{_stamps.next(scaledStamp(stamp, _facts.stamps.exponent))} : stamp;
}

/// Status columns seldom change from one line to the next.
void LineDecoder::_decodeStates(const char* columns, std::uint64_t* states) {
    const std::size_t length = 2 * _layout.statuses;
    if (_stateText.size() != length || std::memcmp(_stateText.data(), columns, length) != 0) {
        _stateText.assign(columns, length);
        _stateText.append(8, '0'); // read with the last ones
        std::fill(_states.begin(), _states.end(), 0);
        for (std::size_t i = 0; i < _layout.statuses; i += 4) {
            _states[i / 64] |= fourStates(_stateText.data() + 2 * i) << i % 64;
        }
        _stateText.resize(length);
    }
    std::copy(_states.begin(), _states.end(), states);
}

/// From lines to columns.
void LineDecoder::_scaleRows(std::size_t rows, std::size_t row, Block& block) const {
    const std::size_t columns = _range.analog.size();
    for (std::size_t column = 0; column < columns; ++column) {
        const double* raw = _rows.data() + column;
        double* const values = block.values() + column * block.valueDistance() + row;
        if (_range.scaling.empty()) {
            for (std::size_t i = 0; i < rows; ++i, raw += columns) {
                values[i] = *raw;
            }
            continue;
        }
        const Scaling scaling = _range.scaling[column];
        for (std::size_t i = 0; i < rows; ++i, raw += columns) {
            values[i] = scaledBy(*raw, scaling);
        }
    }
}

void LineDecoder::decode(const AsciiSample& line, std::uint64_t sample, std::size_t row, Block& block) {
    if (_range.hasNumbers) {
        block.numbers[row] = line.number.value_or(static_cast<std::int64_t>(sample + 1));
    }
    block.stamps[row] = _stampOf(line);
    for (std::size_t column = 0; column < _range.analog.size(); ++column) {
        const double raw = _rawOf(line, _range.analog[column]);
        block.values()[column * block.valueDistance() + row] =
            _range.scaling.empty() ? raw : scaledBy(raw, _range.scaling[column]);
    }
    std::uint64_t* const states = block.states.data() + row * block.stateWords;
    std::fill_n(states, block.stateWords, 0);
    for (std::size_t i = 0; i < line.status.size(); ++i) {
        states[i / 64] |= static_cast<std::uint64_t>(line.status[i] & 1) << i % 64;
    }
}

double LineDecoder::_rawOf(const AsciiSample& line, std::size_t channel) const {
    const AnalogField& field = line.analog[channel];
    const int exponent = field.missing || _facts.exponents.empty() ? 0 : _facts.exponents[channel];
    if (field.value.isBeyondIntegers(exponent)) {
        return field.value.times(exponent);
    }
    const std::int64_t value = field.value.scaled(exponent);
    // Only where the channel's other values are so large that this one is rounded anyway.
    const bool looksMissing = value == MissingCode::kUsual || value == MissingCode::kOld;
    return static_cast<double>(looksMissing && exponent != 0 ? value - 1 : value);
}

std::int64_t LineDecoder::_stampOf(const AsciiSample& line) {
    if (_stamped) {
        return _stamps.next(scaledStamp(line, _facts.stamps.exponent));
    }
    return line.stamp.value_or(kNoStamp);
}

} // namespace OrvComtradeIntake
