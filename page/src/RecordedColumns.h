#pragma once

#include "ValueColumn.h"

#include <OrvComtradeIntake/Columns.h>
#include <OrvComtradeIntake/Opened.h>

#include <cstdint>
#include <vector>

namespace OrvComtradePage {

/// Consecutive samples that a page keeps, from `first` on. If `step` is 1, they are those of the recording. Otherwise
/// each pair has the least and the greatest value of 2 x `step` samples of the recording.
struct Piece {
    std::uint64_t first = 0; ///< 0-based sample of the recording
    std::uint64_t count = 0; ///< samples that are kept
    std::uint64_t step = 1;
};

/// All that a page holds of the data. Runs of missing values count samples as the page keeps them; changes of states
/// count them as recorded.
struct RecordedColumns {
    std::vector<Piece> pieces;                                       ///< in order
    std::vector<double> time;                                        ///< seconds, of the samples that are kept
    std::vector<ValueColumn> analog;                                 ///< raw values, by channel
    std::vector<std::vector<OrvComtradeIntake::MissingRun>> missing; ///< by channel, then sample
    std::vector<std::vector<OrvComtradeIntake::StateChange>> states; ///< by channel; the first entry is its first state

    bool isReduced() const { return pieces.size() > 1 || (!pieces.empty() && pieces.front().step > 1); }
};

/// Reads all columns, reduced if the recorded values take more than `fullBytes` (see PageOptions). A missing value
/// repeats the value before it, since that packs best.
RecordedColumns readColumns(const OrvComtradeIntake::Opened& opened, std::uint64_t fullBytes);

} // namespace OrvComtradePage
