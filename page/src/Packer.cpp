#include "Packer.h"

#include "base64.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <libdeflate.h>
#include <new>
#include <type_traits>
#include <vector>

namespace OrvComtradePage {

namespace {

constexpr int kLevel = 1;                  // of noise, as currents have it, 6 takes 1.6 times as long for 4 % less
constexpr std::size_t kProbe = 2UL * 1024; // numbers of each part on which the ways are tried
constexpr std::size_t kProbeParts = 3;     // of a longer column: its begin, middle and end

template <class Value>
using Bits = std::conditional_t<sizeof(Value) == 2, std::uint16_t,
                                std::conditional_t<sizeof(Value) == 4, std::uint32_t, std::uint64_t>>;

template <class Value> const char* typeName() {
    if constexpr (std::is_same_v<Value, std::int16_t>) {
        return "i16";
    } else if constexpr (std::is_same_v<Value, std::int32_t>) {
        return "i32";
    } else {
        return std::is_same_v<Value, float> ? "f32" : "f64";
    }
}

template <class Value> std::vector<Bits<Value>> bitsOf(const Value* values, std::size_t count) {
    std::vector<Bits<Value>> bits(count);
    if (count > 0) {
        std::memcpy(bits.data(), values, count * sizeof(Value));
    }
    return bits;
}

/// The sign goes to the lowest bit, so that small differences of either sign have high bytes of 0.
template <class Word> Word folded(Word difference) {
    constexpr unsigned top = sizeof(Word) * 8 - 1;
    const auto sign = static_cast<Word>(0U - (difference >> top));
    return static_cast<Word>(static_cast<Word>(difference << 1U) ^ sign);
}

template <class Word> void makeDelta(std::vector<Word>& words) {
    Word before = 0;
    for (Word& word : words) {
        const Word now = word;
        word = folded(static_cast<Word>(now - before));
        before = now;
    }
}

template <class Word> std::string bytesOf(const std::vector<Word>& words, bool arePlanes) {
    constexpr std::size_t size = sizeof(Word);
    std::string bytes(words.size() * size, '\0');
    const std::size_t step = arePlanes ? words.size() : 1; // from a byte of a word to its next
    const std::size_t stride = arePlanes ? 1 : size;       // from a word to the next
    for (std::size_t plane = 0; plane < size; ++plane) {
        char* at = bytes.data() + plane * step;
        for (const Word word : words) {
            *at = static_cast<char>(static_cast<unsigned char>(word >> plane * 8));
            at += stride;
        }
    }
    return bytes;
}

struct Way {
    bool isDelta;
    bool isPlanes;
};

constexpr std::array<Way, 3> kWays = {{{true, true}, {true, false}, {false, false}}};
constexpr std::array<Way, 2> kWaysOfDoubles = {{{false, true}, {false, false}}}; // a script has no 64-bit integers

template <class Value> std::string arranged(const Value* values, std::size_t count, Way way) {
    std::vector<Bits<Value>> words = bitsOf(values, count);
    if (way.isDelta) {
        makeDelta(words);
    }
    return bytesOf(words, way.isPlanes);
}

template <class Value> constexpr const auto& waysOf() {
    if constexpr (sizeof(Value) == sizeof(double)) {
        return kWaysOfDoubles;
    } else {
        return kWays;
    }
}

} // namespace

void Packer::Free::operator()(libdeflate_compressor* compressor) const {
    libdeflate_free_compressor(compressor);
}

Packer::Packer() : _compressor(libdeflate_alloc_compressor(kLevel)) {
    if (!_compressor) {
        throw std::bad_alloc();
    }
}

std::string Packer::_deflated(const std::string& bytes) const {
    std::string deflated(libdeflate_zlib_compress_bound(_compressor.get(), bytes.size()), '\0');
    deflated.resize(
        libdeflate_zlib_compress(_compressor.get(), bytes.data(), bytes.size(), deflated.data(), deflated.size()));
    return deflated;
}

Packed Packer::pack(const ValueColumn& column) {
    return std::visit(
        [this](const auto& values) {
            using Value = typename std::decay_t<decltype(values)>::value_type;
            const auto& ways = waysOf<Value>();
            const std::size_t count = values.size();
            const bool isLong = count > kProbe * kProbeParts;
            const auto sizeOf = [&](Way way) {
                std::size_t size = 0;
                for (std::size_t part = 0; part < (isLong ? kProbeParts : 1); ++part) {
                    const std::size_t begin = isLong ? (count - kProbe) / (kProbeParts - 1) * part : 0;
                    size += _deflated(arranged(values.data() + begin, isLong ? kProbe : count, way)).size();
                }
                return size;
            };
            Way best = ways.front();
            std::size_t least = sizeOf(best);
            for (std::size_t i = 1; i < ways.size(); ++i) {
                const std::size_t size = sizeOf(ways[i]);
                if (size < least) {
                    best = ways[i];
                    least = size;
                }
            }
            const std::string deflated = _deflated(arranged(values.data(), count, best));
            return Packed{typeName<Value>(), count, best.isDelta, best.isPlanes, base64(deflated)};
        },
        column.values());
}

} // namespace OrvComtradePage
