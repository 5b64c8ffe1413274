#include "missingMarks.h"

#include "vectorUnits.h"

namespace OrvComtradeIntake {

namespace {

using Units = UsualVectors; // wider ones gain nothing: reading the file takes longer

// They add to `found` which values may be a mark: fewer instructions than which are one.

struct Maybe16 {
    using Vector = Units::Halves;
    ORV_INLINE static void add(Vector& found, const Vector& values) { found |= values == INT16_MIN; }
};

struct Maybe32 {
    using Vector = Units::Words;
    ORV_INLINE static void add(Vector& found, const Vector& values) { found |= values == INT32_MIN; }
};

/// Infinity and the largest positive single as well.
struct MaybeFloat {
    using Vector = Units::Words;
    ORV_INLINE static void add(Vector& found, const Vector& values) {
        found |= (values & INT32_MAX) > static_cast<std::int32_t>((kLargestNegative & INT32_MAX) - 1);
    }
};

template <class Maybe> bool mayHaveMark(const char* values, std::size_t length) {
    const char* const last = values + length - Units::kWidth;
    typename Maybe::Vector vector;
    typename Maybe::Vector found{};
    loadVector(vector, last);
    Maybe::add(found, vector);
    for (; values < last; values += Units::kWidth) {
        loadVector(vector, values);
        Maybe::add(found, vector);
    }
    return isAnySet<Units>(found);
}

/// Records narrower than a vector, and hosts with the other byte order, are looked at value by value.
template <class Maybe> std::size_t find(const AnalogBlock& block, std::size_t from) {
    if (block.length < Units::kWidth || __BYTE_ORDER__ != __ORDER_LITTLE_ENDIAN__) {
        return from;
    }
    while (from < block.records && !mayHaveMark<Maybe>(block.values + from * block.stride, block.length)) {
        ++from;
    }
    return from;
}

} // namespace

template <> std::size_t findMark<Mark16>(const AnalogBlock& block, std::size_t from) {
    return find<Maybe16>(block, from);
}

template <> std::size_t findMark<Mark32>(const AnalogBlock& block, std::size_t from) {
    return find<Maybe32>(block, from);
}

template <> std::size_t findMark<MarkFloat>(const AnalogBlock& block, std::size_t from) {
    return find<MaybeFloat>(block, from);
}

} // namespace OrvComtradeIntake
