#include "data/Block.h"

namespace OrvComtradeIntake {

void makeRoom(Block& block, const BlockRange& range, std::size_t statuses, std::uint64_t first, std::size_t rows) {
    block.first = first;
    block.rows = rows;
    block.stateWords = (statuses + 63) / 64;
    block.numbers.resize(range.hasNumbers ? rows : 0);
    block.stamps.resize(rows);
    block.raw.resize(block.into == nullptr ? rows * range.analog.size() : 0);
    block.states.resize(rows * block.stateWords);
}

} // namespace OrvComtradeIntake
