#include "WordPacker.h"

#include <algorithm>
#include <utility>

namespace OrvComtradePage {

namespace {

constexpr unsigned kWordBits = 32;
constexpr unsigned kOrderShift = 6; // of the order in the byte of a block

/// The sign goes to the lowest bit, so that small differences of either sign have few bits.
std::uint32_t folded(std::uint32_t difference) {
    return difference << 1U ^ (0U - (difference >> (kWordBits - 1)));
}

/// The difference of an order at a word, before which as many words stand.
template <unsigned Order> std::uint32_t differenceAt(const std::uint32_t* word) {
    if constexpr (Order == 0) {
        return *word;
    } else {
        return differenceAt<Order - 1>(word) - differenceAt<Order - 1>(word - 1);
    }
}

/// All bits that some difference of an order has, by order.
std::array<std::uint32_t, 4> bitsByOrder(const std::uint32_t* words, std::size_t count) {
    std::uint32_t none = 0;
    std::uint32_t first = 0;
    std::uint32_t second = 0;
    std::uint32_t third = 0;
    for (std::size_t i = 0; i < count; ++i) {
        none |= folded(differenceAt<0>(words + i));
        first |= folded(differenceAt<1>(words + i));
        second |= folded(differenceAt<2>(words + i));
        third |= folded(differenceAt<3>(words + i));
    }
    return {none, first, second, third};
}

using Block = std::array<std::uint32_t, WordPacker::kBlock>;

template <unsigned Order> void fold(const std::uint32_t* words, std::size_t count, Block& differences) {
    for (std::size_t i = 0; i < count; ++i) {
        differences[i] = folded(differenceAt<Order>(words + i));
    }
}

Block foldedOf(const std::uint32_t* words, std::size_t count, std::size_t order) {
    constexpr std::array folds = {fold<0>, fold<1>, fold<2>, fold<3>};
    Block differences{};
    folds.at(order)(words, count, differences);
    return differences;
}

unsigned widthOf(std::uint32_t bits) {
    unsigned width = 0;
    while (width < kWordBits && bits >> width != 0) {
        ++width;
    }
    return width;
}

void putWord(std::uint32_t word, char* at) {
    for (unsigned byte = 0; byte < sizeof word; ++byte) {
        at[byte] = static_cast<char>(static_cast<unsigned char>(word >> 8U * byte));
    }
}

} // namespace

void WordPacker::add(const std::uint32_t* words, std::size_t count) {
    std::copy_n(words, count, _series.begin() + kBefore);
    const auto bits = bitsByOrder(_series.data() + kBefore, count);
    const unsigned width = (widthOf(*std::min_element(bits.begin(), bits.end())) + _step - 1) / _step * _step;
    const auto isWithin = [width](std::uint32_t one) { return width == kWordBits || one >> width == 0; };
    const auto order = static_cast<std::size_t>(std::find_if(bits.begin(), bits.end(), isWithin) - bits.begin());
    _put(foldedOf(_series.data() + kBefore, count, order).data(), count, width);
    _heads += static_cast<char>(static_cast<unsigned char>(order << kOrderShift | width));
    std::copy_n(_series.begin() + static_cast<std::ptrdiff_t>(count), kBefore, _series.begin());
}

void WordPacker::_put(const std::uint32_t* differences, std::size_t count, unsigned width) {
    const std::size_t begin = _bytes.size();
    _bytes.resize(begin + (count * width + kWordBits - 1) / kWordBits * sizeof(std::uint32_t));
    char* at = _bytes.data() + begin;
    std::uint64_t bits = 0;
    unsigned used = 0;
    for (std::size_t i = 0; i < count; ++i) {
        bits |= static_cast<std::uint64_t>(differences[i]) << used;
        used += width;
        if (used >= kWordBits) {
            putWord(static_cast<std::uint32_t>(bits), at);
            at += sizeof(std::uint32_t);
            bits >>= kWordBits;
            used -= kWordBits;
        }
    }
    if (used > 0) {
        putWord(static_cast<std::uint32_t>(bits), at);
    }
}

std::string WordPacker::take() {
    std::string packed = std::move(_bytes);
    packed += _heads;
    *this = WordPacker(_step);
    return packed;
}

} // namespace OrvComtradePage
