#include "data/ColumnTap.h"

#include "cfg/libraryCfg.h"
#include "cfg/settleRates.h"

#include <algorithm>
#include <utility>

namespace OrvComtradeIntake {

namespace {

/// How many lines there may be: at the least a digit and a separator for each column.
std::uint64_t mostLines(const Header& header, std::uint64_t length) {
    const DataLayout layout(header, DataType::Ascii);
    return length / (2 * layout.fields()) + 1;
}

} // namespace

ColumnTap::Work::Work(const ReadCfg& settled, const DataFacts& facts, Side side, const Selection& selection)
    : cfg(settled), expected(facts), libraryCfg(libraryCfgOf(cfg, expected, side)),
      maker({nullptr, cfg.header, expected, libraryCfg}, selection), range(maker.range(0)),
      records(cfg.header, expected, range), lines(cfg.header, expected, range) {}

void ColumnTap::begin(const ReadCfg& cfg, DataType type, std::size_t stride, std::uint64_t length) {
    const Header& header = cfg.header;
    // Stamps need a plan, which takes all of them; integers of 32 bits go to the library in a form that all decide.
    const bool isHopeless = header.timesAreStamped() || type == DataType::Binary32;
    DataFacts expected;
    expected.type = type;
    expected.libraryType = type;
    expected.recordStride = stride;
    expected.samples = type == DataType::Ascii ? header.samplesDeclared : length / stride;
    const bool isImpossible = type == DataType::Ascii && expected.samples > mostLines(header, length);
    if (isHopeless || isImpossible || expected.samples == 0) {
        return;
    }
    ReadCfg settled = cfg;
    Findings unused;
    settleRates(settled, expected.samples, unused);
    _work = std::make_unique<Work>(settled, expected, _side, _selection);
    const std::uint64_t first = std::min(_selection.first, expected.samples);
    const std::uint64_t count = std::min(_selection.count, expected.samples - first);
    _work->maker.prepare(first, static_cast<std::size_t>(count), _into);
}

ColumnTap::Part ColumnTap::_wantedOf(std::uint64_t sample, std::uint64_t count) {
    const std::uint64_t end = _into.first + _into.samples;
    const std::uint64_t from = std::clamp(_into.first, sample, sample + count);
    const std::uint64_t to = std::clamp(end, from, sample + count);
    return {static_cast<std::size_t>(from - sample), static_cast<std::size_t>(to - sample)};
}

void ColumnTap::_aim(std::uint64_t sample) {
    ColumnMaker::aim(_work->block, static_cast<std::size_t>(sample - _into.first), _into);
}

void ColumnTap::add(const Records& records, std::uint64_t sample) {
    const Part part = _wantedOf(sample, records.count);
    if (part.begin == part.end) {
        return;
    }
    _aim(sample + part.begin);
    _work->records.decode({records.first + part.begin * records.stride, records.stride, part.end - part.begin},
                          sample + part.begin, _work->block);
    _work->maker.add(_work->block, _into);
}

void ColumnTap::add(const LineRun& run, std::uint64_t sample) {
    const Part part = _wantedOf(sample, run.count);
    if (part.begin == part.end) {
        return;
    }
    const std::size_t rows = part.end - part.begin;
    _aim(sample + part.begin);
    makeRoom(_work->block, _work->range, _work->cfg.header.status.size(), sample + part.begin, rows);
    _work->lines.decode(run, part.begin, rows, 0, _work->block);
    _work->maker.add(_work->block, _into);
}

void ColumnTap::add(const AsciiSample& line, std::uint64_t sample) {
    const Part part = _wantedOf(sample, 1);
    if (part.begin == part.end) {
        return;
    }
    _aim(sample);
    makeRoom(_work->block, _work->range, _work->cfg.header.status.size(), sample, 1);
    _work->lines.decode(line, sample, 0, _work->block);
    _work->maker.add(_work->block, _into);
}

bool ColumnTap::finish(const DataFacts& found) {
    if (!isOpen()) {
        return false;
    }
    const DataFacts& expected = _work->expected;
    const bool isAsExpected = found.type == expected.type && found.samples == expected.samples &&
                              found.recordStride == expected.recordStride &&
                              found.libraryType == expected.libraryType && found.exponents.empty();
    if (isAsExpected) {
        _work->maker.finish(found.missing, _into);
    }
    return isAsExpected;
}

} // namespace OrvComtradeIntake
