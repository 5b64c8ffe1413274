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

/// Decodes lines of ASCII data into blocks that have room for them. If times come from the stamps, lines must come in
/// order from the first one.
class LineDecoder {
public:
    /// `facts` and `range` must outlive it.
    LineDecoder(const Header& header, const DataFacts& facts, const BlockRange& range);

    /// Decodes `count` fast lines of a run, from its line `from` on, into rows from `row` on. Only for data whose raw
    /// values need no power of ten (DataFacts::exponents).
    void decode(const LineRun& run, std::size_t from, std::size_t count, std::size_t row, Block& block);

    /// Decodes any line, as the parser understood it. It is sample `sample`.
    void decode(const AsciiSample& line, std::uint64_t sample, std::size_t row, Block& block);

    /// Skips a line, but takes its stamp into account.
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
