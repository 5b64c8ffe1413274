#pragma once

#include "Packer.h"
#include "ValueColumn.h"

#include <cstddef>
#include <deque>
#include <future>
#include <vector>

namespace OrvComtradePage {

/// Columns packed one after another; of many numbers, some are packed ahead at the same time. The columns must outlive
/// it.
class PackedColumns {
public:
    /// Uses up to so many threads of its own, or as many as the system gives.
    PackedColumns(const std::vector<ValueColumn>& columns, std::size_t threads);

    /// The next one. Throws std::bad_alloc if memory runs out.
    Packed next();

private:
    void _packAhead();

    const std::vector<ValueColumn>& _columns;
    const std::size_t _threads; ///< 0: none
    std::size_t _begun = 0;     ///< columns
    Packer _packer;             ///< of the caller's thread
    std::deque<std::future<Packed>> _ahead;
};

} // namespace OrvComtradePage
