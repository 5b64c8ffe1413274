#include "Packer.h"

#include "WordPacker.h"
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

constexpr int kLevel = 1; // of noise, as currents have it, 6 takes 1.6 times as long for 4 % less
constexpr unsigned kByte = 8;
constexpr std::size_t kProbe = 4UL * 1024; // bytes of each part on which deflating is tried
constexpr std::size_t kProbeParts = 3;     // of longer bytes: their begin, middle and end
constexpr std::size_t kLeastGain = 4; // it must save one of so many bytes: it takes several times as long as packing

template <class Value> const char* typeName() {
    if constexpr (std::is_same_v<Value, std::int16_t>) {
        return "i16";
    } else if constexpr (std::is_same_v<Value, std::int32_t>) {
        return "i32";
    } else {
        return std::is_same_v<Value, float> ? "f32" : "f64";
    }
}

std::uint32_t lowerWord(std::int32_t value) {
    return static_cast<std::uint32_t>(value);
}

std::uint32_t lowerWord(float value) {
    std::uint32_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

std::uint64_t bitsOf(double value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

std::uint32_t lowerWord(double value) {
    return static_cast<std::uint32_t>(bitsOf(value));
}

std::uint32_t upperWord(double value) {
    return static_cast<std::uint32_t>(bitsOf(value) >> 32U);
}

/// In blocks: the last one of the words that `wordAt` gives may be shorter.
template <class WordAt> void addWords(std::size_t count, WordAt wordAt, WordPacker& packer) {
    std::array<std::uint32_t, WordPacker::kBlock> words{};
    for (std::size_t begin = 0; begin < count; begin += words.size()) {
        const std::size_t length = std::min(words.size(), count - begin);
        for (std::size_t i = 0; i < length; ++i) {
            words[i] = wordAt(begin + i);
        }
        packer.add(words.data(), length);
    }
}

template <class Value> std::string packedBytes(const std::vector<Value>& values) {
    WordPacker packer(std::is_floating_point_v<Value> ? kByte : 1);
    const Value* const value = values.data();
    const std::size_t count = values.size();
    if constexpr (sizeof(Value) <= sizeof(std::uint32_t)) {
        addWords(
            count, [value](std::size_t i) { return lowerWord(value[i]); }, packer);
    } else {
        const auto wordAt = [value, count](std::size_t i) {
            return i < count ? lowerWord(value[i]) : upperWord(value[i - count]);
        };
        addWords(2 * count, wordAt, packer);
    }
    return packer.take();
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

std::string Packer::_deflated(const char* bytes, std::size_t size) const {
    std::string deflated(libdeflate_zlib_compress_bound(_compressor.get(), size), '\0');
    deflated.resize(libdeflate_zlib_compress(_compressor.get(), bytes, size, deflated.data(), deflated.size()));
    return deflated;
}

bool Packer::_isWorthDeflating(const std::string& bytes) const {
    const bool isLong = bytes.size() > kProbe * kProbeParts;
    const std::size_t parts = isLong ? kProbeParts : 1;
    const std::size_t length = isLong ? kProbe : bytes.size();
    std::size_t deflated = 0;
    for (std::size_t part = 0; part < parts; ++part) {
        const std::size_t begin = isLong ? (bytes.size() - kProbe) / (kProbeParts - 1) * part : 0;
        deflated += _deflated(bytes.data() + begin, length).size();
    }
    return deflated * kLeastGain <= parts * length * (kLeastGain - 1);
}

Packed Packer::pack(const ValueColumn& column) {
    return std::visit(
        [this](const auto& values) {
            using Value = typename std::decay_t<decltype(values)>::value_type;
            const std::string bytes = packedBytes(values);
            if (std::is_floating_point_v<Value> || _isWorthDeflating(bytes)) {
                const std::string deflated = _deflated(bytes.data(), bytes.size());
                if (deflated.size() < bytes.size()) {
                    return Packed{typeName<Value>(), values.size(), bytes.size(), base64(deflated)};
                }
            }
            return Packed{typeName<Value>(), values.size(), 0, base64(bytes)};
        },
        column.values());
}

} // namespace OrvComtradePage
