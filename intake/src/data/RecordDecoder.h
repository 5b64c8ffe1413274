#pragma once

#include "cfg/DataFacts.h"
#include "data/Block.h"
#include "data/DataLayout.h"
#include "data/Stamps.h"

#include <OrvComtradeIntake/Header.h>

#include <cstdint>

namespace OrvComtradeIntake {

/// Decodes binary records into blocks. If times come from the stamps, records must come in order from the first one.
class RecordDecoder {
public:
    /// Bytes after the last record that may be read with it; they may hold anything.
    static constexpr std::size_t kSlack = 8;

    /// `facts` and `range` must outlive it.
    RecordDecoder(const Header& header, const DataFacts& facts, const BlockRange& range)
        : _layout(header), _facts(facts), _range(range), _stamped(header.timesAreStamped()), _stamps(facts.stamps) {}

    /// Decodes records in memory. The first of them is sample `first`.
    void decode(const Records& records, std::uint64_t first, Block& block);

    /// Skips records, but takes their stamps into account.
    void pass(const Records& records);

private:
    std::int64_t _stampOf(const char* record);
    void _decodeHeads(const Records& records, Block& block);
    void _decodeStates(const Records& records, Block& block) const;

    DataLayout _layout;
    const DataFacts& _facts;
    const BlockRange& _range;
    bool _stamped;
    PlannedStamps _stamps;
};

} // namespace OrvComtradeIntake
