#pragma once

#include "cfg/DataFacts.h"
#include "cfg/ReadCfg.h"
#include "data/Block.h"
#include "files/ByteSource.h"

#include <cstddef>
#include <memory>

namespace OrvComtradeIntake {

/// Reads a recording block by block.
class BlockReader {
public:
    virtual ~BlockReader() = default;

    /// Reads the next block. Returns false at the end, or if the data have become shorter meanwhile.
    virtual bool next(Block& block) = 0;
};

/// Number of rows with which a block of `columns` columns stays in the second-level cache.
std::size_t rowsOfBlock(std::size_t columns);

/// All samples and channels, in blocks of that size.
BlockRange wholeRange(const Header& header, const DataFacts& facts);

std::unique_ptr<BlockReader> readBlocks(const ByteSource& data, const Header& header, const DataFacts& facts,
                                        BlockRange range);

} // namespace OrvComtradeIntake
