#pragma once

#include "Packer.h"
#include "ValueColumn.h"

#include <cstddef>
#include <deque>
#include <future>
#include <vector>

namespace OrvComtradePage {

/// Packs columns one after another. If there are many numbers, threads pack the next columns ahead. The columns must
/// outlive it.
class PackedColumns {
public:
    /// Uses up to `threads` threads of its own, or fewer if the system refuses more.
    PackedColumns(const std::vector<ValueColumn>& columns, std::size_t threads);

    /// The next column, packed. Throws std::bad_alloc if memory runs out.
    Packed next();

private:
    void _packAhead();

    const std::vector<ValueColumn>& _columns;
    const std::size_t _threads; ///< 0: none
    std::size_t _begun = 0;     ///< columns that are packed, or being packed
    Packer _packer;             ///< of the caller's thread
    std::deque<std::future<Packed>> _ahead;
};

} // namespace OrvComtradePage
