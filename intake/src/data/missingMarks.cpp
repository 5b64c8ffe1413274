#include "data/missingMarks.h"

namespace OrvComtradeIntake {

namespace {

/// Without a branch in the loop, for the sake of vector units.
template <class Mark> bool mayHaveMark(const char* values, std::size_t length) {
    using Bits = typename Mark::Bits;
    Bits found = 0;
    for (std::size_t at = 0; at < length; at += sizeof(Bits)) {
        found = static_cast<Bits>(found | (Mark::isMark(Mark::bits(values + at)) ? 1 : 0));
    }
    return found != 0;
}

template <class Mark> std::size_t find(const AnalogBlock& block, std::size_t from) {
    while (from < block.records && !mayHaveMark<Mark>(block.values + from * block.stride, block.length)) {
        ++from;
    }
    return from;
}

} // namespace

template <> std::size_t findMark<Mark16>(const AnalogBlock& block, std::size_t from) {
    return find<Mark16>(block, from);
}

template <> std::size_t findMark<Mark32>(const AnalogBlock& block, std::size_t from) {
    return find<Mark32>(block, from);
}

template <> std::size_t findMark<MarkFloat>(const AnalogBlock& block, std::size_t from) {
    return find<MarkFloat>(block, from);
}

} // namespace OrvComtradeIntake
