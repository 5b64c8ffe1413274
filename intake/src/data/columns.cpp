#include "data/columns.h"

#include "data/Blocks.h"
#include "data/RowTimes.h"
#include "src/config/scaling.h"
#include "src/data/StatusBits.h"

#include <algorithm>
#include <stdexcept>
#include <utility>
#include <vector>

namespace OrvComtradeIntake {

namespace {

constexpr std::size_t kRowsAtOnce = 64; // of samples: their values are put together from all channels

/// Makes samples of the rows of blocks that hold all channels, in the arithmetic of the library.
class SampleMaker {
public:
    explicit SampleMaker(OrvComtradeLib::Dat& dat) : _dat(dat), _times(dat.cfg) {}

    void add(const Block& block) {
        for (std::size_t row = 0; row < block.rows; ++row) {
            OrvComtradeLib::Sample& sample = _dat.samples.emplace_back(_dat.cfg);
            sample.index = static_cast<unsigned long>(block.first + row);
            sample.time = _times.of(block, row);
            _putValues(block, row, sample.analogValues);
            _putStates(block, row, sample.binaryValues);
        }
    }

private:
    void _putValues(const Block& block, std::size_t row, std::vector<double>& values) const {
        const std::vector<OrvComtradeLib::AnalogChannelConfig>& channels = _dat.cfg.analogChannelConfigs;
        values.resize(channels.size());
        for (std::size_t i = 0; i < channels.size(); ++i) {
            values[i] = OrvComtradeLib::scaled(block.raw[i * block.rows + row], channels[i].a, channels[i].b,
                                               channels[i].unitMultiplier);
        }
    }

    void _putStates(const Block& block, std::size_t row, std::vector<bool>& states) {
        constexpr std::size_t most = 16; // bits at a time
        const std::uint64_t* const words = block.states.data() + row * block.stateWords;
        const std::size_t count = _dat.cfg.binaryChannelConfigs.size();
        _bits.reset(count);
        for (std::size_t i = 0; i < count; i += most) {
            _bits.append(words[i / 64] >> i % 64 & 0xFFFFU, static_cast<std::uint32_t>(std::min(count - i, most)));
        }
        _bits.copyTo(states);
    }

    OrvComtradeLib::Dat& _dat;
    RowTimes _times;
    OrvComtradeLib::StatusBits _bits;
};

} // namespace

void readColumns(const ColumnSource& source, const Selection& selection, Columns& into) {
    ColumnMaker maker(source, selection);
    const std::uint64_t first = std::min(selection.first, source.facts.samples);
    const auto samples = static_cast<std::size_t>(std::min(selection.count, source.facts.samples - first));
    maker.prepare(first, samples, into);
    if (source.data == nullptr || samples == 0) {
        return;
    }
    Block block;
    std::size_t done = 0;
    const auto reader =
        readBlocks(*source.data, source.header, source.facts, maker.range(rowsOfBlock(maker.columnCount())));
    for (ColumnMaker::aim(block, 0, into); reader->next(block); ColumnMaker::aim(block, done, into)) {
        maker.add(block, into);
        done += block.rows;
    }
    if (done != samples) {
        throw std::runtime_error(source.data->name() + ": the data have become shorter");
    }
    maker.finish(source.facts.missing, into);
}

void readColumns(const ColumnSource& source, const Selection& selection, std::size_t most,
                 const std::function<bool(const Columns&)>& onBlock) {
    ColumnMaker maker(source, selection);
    if (source.data == nullptr) {
        return;
    }
    Block block;
    Columns columns;
    const std::size_t rows = std::min(std::max<std::size_t>(most, 1), rowsOfBlock(maker.columnCount()));
    const auto reader = readBlocks(*source.data, source.header, source.facts, maker.range(rows));
    for (;;) {
        maker.prepare(0, rows, columns); // as many as there may be
        block.into = columns.analog.data();
        if (!reader->next(block)) {
            return;
        }
        maker.prepare(block.first, block.rows, columns);
        maker.add(block, columns);
        maker.finish(source.facts.missing, columns);
        if (!onBlock(columns)) {
            return;
        }
    }
}

bool fillSamples(const ByteSource& data, const Header& header, const DataFacts& facts, OrvComtradeLib::Dat& dat) {
    SampleMaker maker(dat);
    dat.samples.reserve(facts.samples);
    Block block;
    BlockRange range = wholeRange(header, facts);
    range.mostRows = kRowsAtOnce;
    const auto reader = readBlocks(data, header, facts, std::move(range));
    while (reader->next(block)) {
        maker.add(block);
    }
    return dat.samples.size() == facts.samples;
}

} // namespace OrvComtradeIntake
