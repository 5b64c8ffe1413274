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

/// Makes columns while a survey walks over the data, so that data which need no repair are read once instead of twice.
/// The columns are valid only if the survey then finds what was expected.
class ColumnTap {
public:
    /// The selection and the columns must outlive it.
    ColumnTap(const Selection& selection, Side side, Columns& into) : _selection(selection), _side(side), _into(into) {}

    /// To be called before the first sample. Expects that all records are samples, or that there are as many lines as
    /// declared.
    void begin(const ReadCfg& cfg, DataType type, std::size_t stride, std::uint64_t length);

    bool isOpen() const { return _work != nullptr; }

    /// Adds samples, in order from the first of the data. The first of them is sample `sample`.
    void add(const Records& records, std::uint64_t sample);
    void add(const LineRun& run, std::uint64_t sample);
    void add(const AsciiSample& line, std::uint64_t sample);

    /// Gives up: the data are not what was expected.
    void close() { _work.reset(); }

    /// Whether the columns are valid: those of the data that the survey found.
    bool finish(const DataFacts& found);

private:
    /// What is expected of the data, and what makes columns from them.
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

    /// Of some samples those that are wanted: the index of the first, and the index after the last.
    struct Part {
        std::size_t begin = 0;
        std::size_t end = 0;
    };

    Part _wantedOf(std::uint64_t sample, std::uint64_t count);
    void _aim(std::uint64_t sample);

    const Selection& _selection;
    Side _side;
    Columns& _into;
    std::unique_ptr<Work> _work; ///< null before `begin` and after giving up
};

} // namespace OrvComtradeIntake
