#pragma once

#include "data/recordColumns.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace OrvComtradeIntake {

constexpr std::int64_t kNoStamp = INT64_MIN; ///< no stamp is recorded

/// Consecutive samples of a recording, decoded: what the library would read from data written for it.
struct Block {
    std::uint64_t first = 0;           ///< 0-based first sample
    std::size_t rows = 0;              ///< samples
    std::vector<std::int64_t> numbers; ///< one per row
    std::vector<std::int64_t> stamps;  ///< one per row: by the StampPlan if times come from them, else as recorded
    std::vector<double> raw;           ///< channel after channel, `rows` values each; a missing value has its marker
    double* into = nullptr;            ///< if not null, values go here instead of `raw`, channel after channel
    std::size_t distance = 0;          ///< values from one channel to the next in `into`; 0: `rows`
    std::vector<std::uint64_t> states; ///< row after row, `stateWords` each, the first channel in the lowest bit
    std::size_t stateWords = 0;        ///< 64-bit words of the states of a row

    /// Where the values go.
    double* values() { return into == nullptr ? raw.data() : into; }
    std::size_t valueDistance() const { return into == nullptr || distance == 0 ? rows : distance; }

    bool state(std::size_t row, std::size_t channel) const {
        return (states[row * stateWords + channel / 64] >> channel % 64 & 1U) != 0;
    }
};

/// The samples and analog channels that blocks hold. They always hold all status channels.
struct BlockRange {
    std::vector<std::size_t> analog; ///< 0-based channels, in any order
    std::uint64_t first = 0;         ///< 0-based first sample
    std::uint64_t count = 0;         ///< samples
    std::size_t mostRows = 0;        ///< of a block
    std::vector<Scaling> scaling{};  ///< one per channel of `analog`; empty for raw values
    bool hasNumbers = true;          ///< whether sample numbers, and stamps as recorded, are wanted
};

/// Makes room in a block for `rows` rows from sample `first` on. The contents are then unspecified.
void makeRoom(Block& block, const BlockRange& range, std::size_t statuses, std::uint64_t first, std::size_t rows);

} // namespace OrvComtradeIntake
