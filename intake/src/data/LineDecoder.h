#pragma once

#include "cfg/DataFacts.h"
#include "data/Block.h"
#include "data/DataLayout.h"
#include "data/FastLines.h"
#include "data/LineParser.h"
#include "data/Stamps.h"

#include <OrvComtradeIntake/Header.h>

#include <cstdint>
#include <string>
#include <vector>

namespace OrvComtradeIntake {

/// Decodes lines of ASCII data into blocks that have room for them. Lines must come in order from the first one where
/// times come from the stamps.
class LineDecoder {
public:
    /// `facts` and `range` must outlive it.
    LineDecoder(const Header& header, const DataFacts& facts, const BlockRange& range);

    /// Fast lines, `count` of a run from its line `from` on, into rows from `row` on. Only where no raw value is taken
    /// times a power of ten.
    void decode(const LineRun& run, std::size_t from, std::size_t count, std::size_t row, Block& block);

    /// Any line, of that sample, as the parser understands it.
    void decode(const AsciiSample& line, std::uint64_t sample, std::size_t row, Block& block);

    /// Follows the stamp of a line that is not wanted.
    void pass(const AsciiSample& line) { _stampOf(line); }

private:
    void _decodeHead(const char* line, std::size_t row, Block& block);
    void _decodeStates(const char* columns, std::uint64_t* states);
    double _rawOf(const AsciiSample& line, std::size_t channel) const;
    std::int64_t _stampOf(const AsciiSample& line);
    void _scaleRows(std::size_t rows, std::size_t row, Block& block) const;

    DataLayout _layout;
    const DataFacts& _facts;
    const BlockRange& _range;
    bool _stamped;
    PlannedStamps _stamps;
    std::vector<std::uint32_t> _ends;   ///< of the numeric columns of a line, as offsets in it
    std::vector<double> _rows;          ///< raw values of some lines, line after line, in the order of the range
    std::string _stateText;             ///< status columns decoded last
    std::vector<std::uint64_t> _states; ///< and their states
};

} // namespace OrvComtradeIntake
