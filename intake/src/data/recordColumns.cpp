#include "data/recordColumns.h"

#include "data/missingValues.h"
#include "src/data/littleEndian.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>

namespace OrvComtradeIntake {

namespace {

#define ORV_INLINE inline __attribute__((always_inline))

constexpr std::size_t kTileLength = 128UL * 1024; // bytes of records: part of a second-level cache
constexpr std::size_t kMostTileRows = 512;        // of a tile; with fewer, columns are written in pieces too short

using Doubles = double __attribute__((vector_size(32)));
constexpr std::size_t kDoubles = 4;

ORV_INLINE void putScaled(const Doubles& raw, const Scaling* scaling, double* into) {
    Doubles values = raw;
    if (scaling != nullptr) {
        values = (raw * scaling->a + scaling->b) * scaling->unit;
    }
    std::memcpy(into, &values, sizeof values);
}

#if defined(__has_builtin) && __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
#if __has_builtin(__builtin_shufflevector) && __has_builtin(__builtin_convertvector)
#define ORV_HAS_TURNS
#endif
#endif

#ifdef ORV_HAS_TURNS

using Shorts = std::int16_t __attribute__((vector_size(16)));
using Ints = std::int32_t __attribute__((vector_size(16)));
using Singles = float __attribute__((vector_size(16)));

/// Squares of values, turned over: as many channels of as many records.
template <class Raw> struct Square;

template <> struct Square<std::int16_t> {
    static constexpr std::size_t kSide = 8;
    Shorts sides[kSide];

    /// Each round deals two rows like two halves of a pack of cards; after three all are turned over.
    ORV_INLINE void turn() {
        for (int round = 0; round < 3; ++round) {
            Shorts dealt[kSide];
            for (std::size_t i = 0; i < kSide / 2; ++i) {
                const Shorts one = sides[i];
                const Shorts other = sides[i + kSide / 2];
                dealt[2 * i] = __builtin_shufflevector(one, other, 0, 8, 1, 9, 2, 10, 3, 11);
                dealt[2 * i + 1] = __builtin_shufflevector(one, other, 4, 12, 5, 13, 6, 14, 7, 15);
            }
            std::memcpy(sides, dealt, sizeof sides);
        }
    }

    ORV_INLINE void put(std::size_t side, const Scaling* scaling, double* into) const {
        const Shorts raw = sides[side];
        Ints low;
        Ints high; // each number twice, of which a shift leaves the upper one with its sign
        const Shorts lowPairs = __builtin_shufflevector(raw, raw, 0, 0, 1, 1, 2, 2, 3, 3);
        const Shorts highPairs = __builtin_shufflevector(raw, raw, 4, 4, 5, 5, 6, 6, 7, 7);
        std::memcpy(&low, &lowPairs, sizeof low);
        std::memcpy(&high, &highPairs, sizeof high);
        putScaled(__builtin_convertvector(low >> 16, Doubles), scaling, into);
        putScaled(__builtin_convertvector(high >> 16, Doubles), scaling, into + kDoubles);
    }
};

template <> struct Square<float> {
    static constexpr std::size_t kSide = 4;
    Singles sides[kSide];

    ORV_INLINE void turn() {
        for (int round = 0; round < 2; ++round) {
            Singles dealt[kSide];
            for (std::size_t i = 0; i < kSide / 2; ++i) {
                dealt[2 * i] = __builtin_shufflevector(sides[i], sides[i + kSide / 2], 0, 4, 1, 5);
                dealt[2 * i + 1] = __builtin_shufflevector(sides[i], sides[i + kSide / 2], 2, 6, 3, 7);
            }
            std::memcpy(sides, dealt, sizeof sides);
        }
    }

    ORV_INLINE void put(std::size_t side, const Scaling* scaling, double* into) const {
        putScaled(__builtin_convertvector(sides[side], Doubles), scaling, into);
    }
};

/// The columns of as many consecutive channels as a square has sides, for a multiple of as many records. `first` is the
/// value of the first channel in the first record.
template <class Raw>
ORV_INLINE void turnColumns(const char* first, const Records& tile, const Scaling* scaling, double* into,
                            std::size_t distance) {
    constexpr std::size_t side = Square<Raw>::kSide;
    for (std::size_t row = 0; row < tile.count; row += side) {
        Square<Raw> square;
        for (std::size_t i = 0; i < side; ++i) {
            std::memcpy(&square.sides[i], first + (row + i) * tile.stride, sizeof square.sides[i]);
        }
        square.turn();
        for (std::size_t i = 0; i < side; ++i) {
            square.put(i, scaling == nullptr ? nullptr : scaling + i, into + i * distance + row);
        }
    }
}

void turnShorts(const char* first, const Records& tile, const Scaling* scaling, double* into, std::size_t distance) {
    turnColumns<std::int16_t>(first, tile, scaling, into, distance);
}

void turnSingles(const char* first, const Records& tile, const Scaling* scaling, double* into, std::size_t distance) {
    turnColumns<float>(first, tile, scaling, into, distance);
}

#if defined(__x86_64__) && !defined(ORV_NARROW_UNITS)
__attribute__((target("avx2"))) void turnShortsWide(const char* first, const Records& tile, const Scaling* scaling,
                                                    double* into, std::size_t distance) {
    turnColumns<std::int16_t>(first, tile, scaling, into, distance);
}

__attribute__((target("avx2"))) void turnSinglesWide(const char* first, const Records& tile, const Scaling* scaling,
                                                     double* into, std::size_t distance) {
    turnColumns<float>(first, tile, scaling, into, distance);
}

const bool hasAvx2 = __builtin_cpu_supports("avx2") != 0;
const auto turnBest16 = hasAvx2 ? turnShortsWide : turnShorts;
const auto turnBestSingle = hasAvx2 ? turnSinglesWide : turnSingles;
#else
constexpr auto turnBest16 = turnShorts;
constexpr auto turnBestSingle = turnSingles;
#endif

#endif

/// Values of 16 bits as they are recorded.
struct Recorded16 {
    using Raw = std::int16_t;
#ifdef ORV_HAS_TURNS
    static constexpr std::size_t kSide = Square<Raw>::kSide;
    static void turn(const char* first, const Records& tile, const Scaling* scaling, double* into,
                     std::size_t distance) {
        turnBest16(first, tile, scaling, into, distance);
    }
#endif
    ORV_INLINE double of(const char* bytes) const {
        return static_cast<double>(OrvComtradeLib::readLittleEndian<Raw>(bytes));
    }
};

/// Singles as they are recorded.
struct RecordedSingle {
    using Raw = float;
#ifdef ORV_HAS_TURNS
    static constexpr std::size_t kSide = Square<Raw>::kSide;
    static void turn(const char* first, const Records& tile, const Scaling* scaling, double* into,
                     std::size_t distance) {
        turnBestSingle(first, tile, scaling, into, distance);
    }
#endif
    ORV_INLINE double of(const char* bytes) const {
        return static_cast<double>(OrvComtradeLib::readLittleEndian<Raw>(bytes));
    }
};

/// Integers of 32 bits as the library gets them, which does not read them: as singles or as text.
struct Recorded32 {
    using Raw = std::int32_t;
    double missing;
    double factor; ///< power of ten

    ORV_INLINE double of(const char* bytes) const {
        const auto value = OrvComtradeLib::readLittleEndian<Raw>(bytes);
        return Mark32::isMark(static_cast<std::uint32_t>(value)) ? missing : static_cast<double>(value) * factor;
    }
};

/// One column, one value at a time.
template <class Recorded>
void putColumn(const Recorded& recorded, const char* first, const Records& tile, const Scaling* scaling, double* into) {
    const std::size_t stride = tile.stride;
    if (scaling == nullptr) {
        for (std::size_t row = 0; row < tile.count; ++row) {
            into[row] = recorded.of(first + row * stride);
        }
        return;
    }
    const Scaling factors = *scaling; // not reloaded for each value
    for (std::size_t row = 0; row < tile.count; ++row) {
        into[row] = scaledBy(recorded.of(first + row * stride), factors);
    }
}

/// Goes through the records tile by tile, all but the last one of whole squares.
template <class PutTile> void forEachTile(const Records& records, PutTile putTile) {
    constexpr std::size_t side = 8;
    const std::size_t rows = std::clamp(kTileLength / records.stride / side * side, side, kMostTileRows);
    for (std::size_t row = 0; row < records.count; row += rows) {
        putTile(Records{records.first + row * records.stride, records.stride, std::min(rows, records.count - row)},
                row);
    }
}

const char* valueAt(const Records& tile, std::size_t channel, std::size_t length) {
    return tile.first + DataLayout::kAnalogOffset + channel * length;
}

/// Whether the next columns are of as many channels that stand side by side.
bool areConsecutive(const std::vector<std::size_t>& channels, std::size_t column, std::size_t count) {
    if (column + count > channels.size()) {
        return false;
    }
    for (std::size_t i = 1; i < count; ++i) {
        if (channels[column + i] != channels[column] + i) {
            return false;
        }
    }
    return true;
}

template <class Recorded>
void putTile(const Records& tile, const std::vector<std::size_t>& channels, const Scaling* scaling, double* into,
             std::size_t distance) {
    constexpr std::size_t length = sizeof(typename Recorded::Raw);
    const Recorded recorded;
    for (std::size_t column = 0; column < channels.size();) {
        const char* const first = valueAt(tile, channels[column], length);
        const Scaling* const factors = scaling == nullptr ? nullptr : scaling + column;
        double* const values = into + column * distance;
#ifdef ORV_HAS_TURNS
        constexpr std::size_t side = Recorded::kSide;
        if (tile.count >= side && areConsecutive(channels, column, side)) {
            const std::size_t whole = tile.count / side * side;
            Recorded::turn(first, {tile.first, tile.stride, whole}, factors, values, distance);
            const Records rest{tile.first, tile.stride, tile.count - whole};
            for (std::size_t i = 0; i < side; ++i) {
                putColumn(recorded, first + whole * tile.stride + i * length, rest,
                          factors == nullptr ? nullptr : factors + i, values + i * distance + whole);
            }
            column += side;
            continue;
        }
#endif
        putColumn(recorded, first, tile, factors, values);
        ++column;
    }
}

void putTile32(const Records& tile, const DataFacts& facts, const std::vector<std::size_t>& channels,
               const Scaling* scaling, double* into, std::size_t distance) {
    const double missing = facts.libraryType == DataType::Float32 ? std::numeric_limits<double>::quiet_NaN()
                                                                  : static_cast<double>(MissingCode::kUsual);
    for (std::size_t column = 0; column < channels.size(); ++column) {
        const double factor = !facts.exponents.empty() && facts.exponents[channels[column]] != 0 ? 10.0 : 1.0;
        putColumn(Recorded32{missing, factor}, valueAt(tile, channels[column], sizeof(Recorded32::Raw)), tile,
                  scaling == nullptr ? nullptr : scaling + column, into + column * distance);
    }
}

} // namespace

void decodeColumns(const Records& records, const DataLayout& layout, const DataFacts& facts,
                   const std::vector<std::size_t>& channels, const std::vector<Scaling>& scaling, double* into,
                   std::size_t distance) {
    if (channels.empty()) {
        return; // and there is no place to write to
    }
    const Scaling* const factors = scaling.empty() ? nullptr : scaling.data();
    forEachTile(records, [&](const Records& tile, std::size_t row) {
        switch (layout.type) {
        case DataType::Binary:
            return putTile<Recorded16>(tile, channels, factors, into + row, distance);
        case DataType::Binary32:
            return putTile32(tile, facts, channels, factors, into + row, distance);
        default:
            return putTile<RecordedSingle>(tile, channels, factors, into + row, distance);
        }
    });
}

} // namespace OrvComtradeIntake
