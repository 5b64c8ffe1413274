#include "data/UnusedBits.h"

#include <array>
#include <charconv>
#include <string>

namespace OrvComtradeIntake {

namespace {

std::uint16_t wordAt(const char* bytes) {
    return OrvComtradeLib::readLittleEndian<std::uint16_t>(bytes);
}

/// The bits that are set in any of these words, two at a time: each step of a loop costs as much as its look.
unsigned int unionOf(const char* first, std::size_t stride, std::size_t count) {
    unsigned int bits = count % 2 == 0 ? 0 : wordAt(first + (count - 1) * stride);
    const char* const end = first + (count - count % 2) * stride;
    for (const char* word = first; word != end; word += 2 * stride) {
        bits |= static_cast<unsigned int>(wordAt(word) | wordAt(word + stride));
    }
    return bits;
}

std::string hexadecimal(std::uint16_t bits) {
    std::array<char, 4> text{};
    char* const end = std::to_chars(text.data(), text.data() + text.size(), bits, 16).ptr;
    return "0x" + std::string(text.data(), end);
}

} // namespace

UnusedBits::UnusedBits(const DataLayout& layout)
    : _statuses(layout.statuses), _offset(layout.recordLength() - OrvComtradeLib::kStatusWordLength) {
    const std::size_t used = layout.statuses % DataLayout::kStatesPerWord;
    _mask = used == 0 ? 0 : static_cast<std::uint16_t>(0xFFFFU << used);
}

void UnusedBits::add(const char* records, std::size_t stride, std::size_t count, std::uint64_t sample) {
    if (_mask == 0 || (unionOf(records + _offset, stride, count) & _mask) == 0) {
        return;
    }
    for (std::size_t i = 0; i < count; ++i) {
        const auto bits = static_cast<std::uint16_t>(wordAt(records + i * stride + _offset) & _mask);
        if (bits != 0 && _records++ == 0) {
            _firstSample = sample + i;
            _firstBits = bits;
        }
    }
}

void UnusedBits::report(const ByteSource& data, std::size_t stride, Findings& findings) const {
    if (!areSet()) {
        return;
    }
    findings.add(Kind::UnusedBits, {data.name(), 0, "", data.offsetInFile(_firstSample * stride + _offset)},
                 {hexadecimal(_firstBits) + " after D" + std::to_string(_statuses), "ignored", "", _records});
}

} // namespace OrvComtradeIntake
