#pragma once

#include "Cfg.h"
#include "cfg/DataFacts.h"
#include "data/Block.h"
#include "data/RowTimes.h"
#include "files/ByteSource.h"

#include <OrvComtradeIntake/Columns.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace OrvComtradeIntake {

/// What columns are made of.
struct ColumnSource {
    const ByteSource* data = nullptr; ///< null for a recording without data
    const Header& header;
    const DataFacts& facts;
    const OrvComtradeLib::Cfg& cfg; ///< see libraryCfgOf; times and scaling come from it
};

/// Makes columns from consecutive blocks, in the arithmetic of the library.
class ColumnMaker {
public:
    /// Throws `std::out_of_range` for a channel that does not exist.
    ColumnMaker(const ColumnSource& source, const Selection& selection);

    BlockRange range(std::size_t mostRows) const;

    std::size_t columnCount() const { return _analog.size(); }

    /// Makes room for `samples` samples. Reuses the storage of `columns` if it is large enough.
    void prepare(std::uint64_t first, std::size_t samples, Columns& columns) const;

    /// Lets the next block put its values into `columns`, after the `done` samples that are there.
    static void aim(Block& block, std::size_t done, Columns& columns);

    /// Adds times and states of a block whose values are in place.
    void add(const Block& block, Columns& columns);

    /// Adds the runs of missing values, after all blocks.
    void finish(const std::vector<MissingRun>& missing, Columns& columns) const;

private:
    void _addStates(const Block& block, bool isFirst, Columns& columns);
    void _addChanges(const Block& block, std::size_t row, const std::uint64_t* before, Columns& columns) const;

    const OrvComtradeLib::Cfg& _cfg;
    const Selection& _selection;
    RowTimes _times;
    std::vector<std::size_t> _analog;
    std::vector<std::size_t> _status;
    std::vector<std::vector<std::size_t>> _columnsOf; ///< by status channel
    std::vector<std::uint64_t> _before;               ///< states of the row before
};

} // namespace OrvComtradeIntake
