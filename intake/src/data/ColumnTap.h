#pragma once

#include "Cfg.h"
#include "cfg/DataFacts.h"
#include "cfg/ReadCfg.h"
#include "data/ColumnMaker.h"
#include "data/LineDecoder.h"
#include "data/RecordDecoder.h"

#include <OrvComtradeIntake/Columns.h>
#include <OrvComtradeIntake/Options.h>

#include <cstdint>
#include <memory>

namespace OrvComtradeIntake {

/// Makes columns while a survey walks over the data, in the hope that nothing in them needs repair: one reading instead
/// of two. What it has made counts only if the survey finds what was expected; what it asks for is then all there.
class ColumnTap {
public:
    /// The selection and the columns must outlive it.
    ColumnTap(const Selection& selection, Side side, Columns& into) : _selection(selection), _side(side), _into(into) {}

    /// Records begin that are expected to be samples, all of them; or lines, as many as are declared.
    void begin(const ReadCfg& cfg, DataType type, std::size_t stride, std::uint64_t length);

    bool isOpen() const { return _work != nullptr; }

    /// Samples in order from the first one on; the first of these is sample `sample`.
    void add(const Records& records, std::uint64_t sample);
    void add(const LineRun& run, std::uint64_t sample);
    void add(const AsciiSample& line, std::uint64_t sample);

    /// It was in vain.
    void close() { _work.reset(); }

    /// Whether the columns are those of the data.
    bool finish(const DataFacts& found);

private:
    /// What is expected of the data, and what makes columns of them if it comes true.
    struct Work {
        Work(const ReadCfg& settled, const DataFacts& facts, Side side, const Selection& selection);

        ReadCfg cfg;
        DataFacts expected;
        OrvComtradeLib::Cfg libraryCfg;
        ColumnMaker maker;
        BlockRange range;
        RecordDecoder records;
        LineDecoder lines;
        Block block;
    };

    /// The part of samples that is wanted, as numbers of the first one and the one behind the last.
    struct Part {
        std::size_t begin = 0;
        std::size_t end = 0;
    };

    Part _wantedOf(std::uint64_t sample, std::uint64_t count);
    void _aim(std::uint64_t sample);

    const Selection& _selection;
    Side _side;
    Columns& _into;
    std::unique_ptr<Work> _work; ///< none: in vain
};

} // namespace OrvComtradeIntake
