#pragma once

#include "ValueColumn.h"

#include <OrvComtradeIntake/Columns.h>
#include <OrvComtradeIntake/Opened.h>

#include <cstdint>
#include <vector>

namespace OrvComtradePage {

/// Consecutive samples that a page keeps: every `step`-th of the recording, from `first` on. Where `step` is more than
/// 1 they stand in pairs for 2 x `step` samples of the recording, with the least and the greatest value of them.
struct Piece {
    std::uint64_t first = 0; ///< 0-based sample of the recording
    std::uint64_t count = 0; ///< samples that are kept
    std::uint64_t step = 1;
};

/// All that a page holds of the data. Samples of runs are numbered as they are kept, changes of states as recorded.
struct RecordedColumns {
    std::vector<Piece> pieces;                                       ///< in order
    std::vector<double> time;                                        ///< seconds, of the samples that are kept
    std::vector<ValueColumn> analog;                                 ///< raw values, by channel
    std::vector<std::vector<OrvComtradeIntake::MissingRun>> missing; ///< by channel, then sample
    std::vector<std::vector<OrvComtradeIntake::StateChange>> states; ///< by channel; the first is the first state

    bool isReduced() const { return pieces.size() > 1 || (!pieces.empty() && pieces.front().step > 1); }
};

/// Reads all columns, whole where the recorded values take no more than `fullBytes`. What is missing has the value
/// before it, so that it takes no room.
RecordedColumns readColumns(const OrvComtradeIntake::Opened& opened, std::uint64_t fullBytes);

} // namespace OrvComtradePage
