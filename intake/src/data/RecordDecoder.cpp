#include "data/RecordDecoder.h"

#include "src/data/littleEndian.h"

#include <optional>

namespace OrvComtradeIntake {

void RecordDecoder::decode(const Records& records, std::uint64_t first, Block& block) {
    makeRoom(block, _range, _layout.statuses, first, records.count);
    if (_range.hasNumbers || _stamped) {
        _decodeHeads(records, block);
    }
    if (block.stateWords != 0) {
        _decodeStates(records, block);
    }
    decodeColumns(records, _layout, _facts, _range.analog, _range.scaling, block.values(), block.valueDistance());
}

void RecordDecoder::pass(const Records& records) {
    for (std::size_t row = 0; row < records.count && _stamped; ++row) {
        _stampOf(records.first + row * records.stride);
    }
}

std::int64_t RecordDecoder::_stampOf(const char* record) {
    const std::uint32_t stamp = fieldAt(record + DataLayout::kStampOffset);
    const auto known = stamp == kMissingStamp ? std::nullopt : std::optional<std::int64_t>(stamp);
    return _stamped ? std::int64_t{_stamps.next(known)} : known.value_or(kNoStamp);
}

void RecordDecoder::_decodeHeads(const Records& records, Block& block) {
    for (std::size_t row = 0; row < records.count; ++row) {
        const char* const record = records.first + row * records.stride;
        if (_range.hasNumbers) {
            block.numbers[row] = fieldAt(record);
        }
        block.stamps[row] = _stampOf(record);
    }
}

/// Four status words are one word of states. What stands behind the last channel is none, be it of other records.
void RecordDecoder::_decodeStates(const Records& records, Block& block) const {
    static_assert(kSlack >= sizeof(std::uint64_t));
    const std::size_t last = block.stateWords - 1;
    const std::uint64_t mask = ~std::uint64_t{0} >> (64 * block.stateWords - _layout.statuses);
    const char* words = records.first + _layout.statusOffset();
    std::uint64_t* states = block.states.data();
    for (std::size_t row = 0; row < records.count; ++row, words += records.stride, states += block.stateWords) {
        for (std::size_t word = 0; word <= last; ++word) {
            states[word] = OrvComtradeLib::readLittleEndian<std::uint64_t>(words + word * sizeof(std::uint64_t));
        }
        states[last] &= mask;
    }
}

} // namespace OrvComtradeIntake
