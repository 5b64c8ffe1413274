#include "data/columns.h"

#include "data/Blocks.h"
#include "data/missingValues.h"
#include "src/config/scaling.h"
#include "src/data/SampleClock.h"
#include "src/data/StatusBits.h"
#include "src/data/hugePages.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace OrvComtradeIntake {

namespace {

constexpr std::size_t kRowsAtOnce = 64; // of samples: their values are put together from all channels

/// Times of the rows of blocks that follow one another.
class RowTimes {
public:
    explicit RowTimes(const OrvComtradeLib::Cfg& cfg) : _cfg(cfg), _clock(cfg) {}

    void put(const Block& block, double* times) {
        if (_cfg.samplingRateKnown) {
            _clock.timesOf(static_cast<unsigned long>(block.first), block.rows, times);
            return;
        }
        for (std::size_t row = 0; row < block.rows; ++row) {
            times[row] = of(block, row);
        }
    }

    double of(const Block& block, std::size_t row) {
        return _cfg.samplingRateKnown
                   ? _clock.timeOf(static_cast<unsigned long>(block.first + row))
                   : OrvComtradeLib::stampTime(static_cast<std::uint32_t>(block.stamps[row]), _cfg.timeMultiplier);
    }

private:
    const OrvComtradeLib::Cfg& _cfg;
    OrvComtradeLib::SampleClock _clock;
};

std::vector<std::size_t> channelsOf(bool all, const std::vector<std::size_t>& some, std::size_t count) {
    std::vector<std::size_t> channels(some);
    if (all) {
        channels.resize(count);
        std::iota(channels.begin(), channels.end(), std::size_t{0});
    }
    for (const std::size_t channel : channels) {
        if (channel >= count) {
            throw std::out_of_range("no channel " + std::to_string(channel));
        }
    }
    return channels;
}

/// Room for so many elements, whatever their values. What there was is let go before more is taken.
template <class Vector> void makeRoom(Vector& vector, std::size_t size) {
    if (vector.capacity() < size) {
        Vector().swap(vector);
        vector.reserve(size);
        OrvComtradeLib::adviseHugePages(vector.data(), size * sizeof(typename Vector::value_type));
    }
    vector.resize(size);
}

/// Makes columns of blocks, in the arithmetic of the library.
class ColumnMaker {
public:
    ColumnMaker(const ColumnSource& source, const Selection& selection)
        : _source(source), _selection(selection), _times(source.cfg),
          _analog(channelsOf(selection.allAnalog, selection.analog, source.header.analog.size())),
          _status(channelsOf(selection.allStatus, selection.status, source.header.status.size())),
          _columnsOf(source.header.status.size()) {
        for (std::size_t column = 0; column < _status.size(); ++column) {
            _columnsOf[_status[column]].push_back(column);
        }
    }

    BlockRange range(std::size_t mostRows) const {
        BlockRange range{_analog, _selection.first, _selection.count, mostRows, {}, false};
        for (std::size_t column = 0; column < _analog.size() && !_selection.raw; ++column) {
            const OrvComtradeLib::AnalogChannelConfig& config = _source.cfg.analogChannelConfigs.at(_analog[column]);
            range.scaling.push_back({config.a, config.b, config.unitMultiplier});
        }
        return range;
    }

    std::size_t columnCount() const { return _analog.size(); }

    /// Makes room for so many samples, of what there is where it suffices.
    void prepare(std::uint64_t first, std::size_t samples, Columns& columns) const {
        columns.first = first;
        columns.samples = samples;
        makeRoom(columns.time, samples);
        makeRoom(columns.analog, samples * _analog.size());
        columns.missing.clear();
        columns.states.resize(_status.size());
        for (std::vector<StateChange>& changes : columns.states) {
            changes.clear();
        }
        columns.a.clear();
        columns.b.clear();
        for (const std::size_t channel : _analog) {
            const OrvComtradeLib::AnalogChannelConfig& config = _source.cfg.analogChannelConfigs.at(channel);
            columns.a.push_back(config.a * config.unitMultiplier);
            columns.b.push_back(config.b * config.unitMultiplier);
        }
    }

    /// Has the values of the next block put where they belong, behind so many samples.
    static void aim(Block& block, std::size_t done, Columns& columns) {
        block.into = columns.analog.data() + done;
        block.distance = columns.samples;
    }

    /// Puts in the rest of a block whose values are in place.
    void add(const Block& block, Columns& columns) {
        const auto at = static_cast<std::size_t>(block.first - columns.first);
        _times.put(block, columns.time.data() + at);
        for (std::size_t row = 0; row < block.rows && block.stateWords != 0; ++row) {
            _addStates(block, row, at + row == 0, columns);
        }
    }

    /// Puts in what is missing, once all blocks are there.
    void finish(Columns& columns) const {
        const std::uint64_t end = columns.first + columns.samples;
        for (std::size_t column = 0; column < _analog.size(); ++column) {
            for (const MissingRun& run : runsOf(_source.facts.missing, _analog[column], columns.first, end)) {
                const std::uint64_t from = std::max(run.sample, columns.first);
                const std::uint64_t to = std::min(run.sample + run.count, end);
                if (from < to) {
                    columns.missing.push_back({column, from, to - from});
                }
            }
        }
        if (!_selection.missingAsNan) {
            return;
        }
        for (const MissingRun& run : columns.missing) {
            double* const values = columns.analog.data() + run.channel * columns.samples;
            std::fill_n(values + (run.sample - columns.first), run.count, std::numeric_limits<double>::quiet_NaN());
        }
    }

private:
    void _addStates(const Block& block, std::size_t row, bool isFirst, Columns& columns) {
        const std::uint64_t* const states = block.states.data() + row * block.stateWords;
        const std::uint64_t sample = block.first + row;
        if (isFirst) {
            for (std::size_t column = 0; column < _status.size(); ++column) {
                columns.states[column].push_back({sample, block.state(row, _status[column])});
            }
            _before.assign(states, states + block.stateWords);
            return;
        }
        for (std::size_t word = 0; word < block.stateWords; ++word) {
            std::uint64_t changed = states[word] ^ _before[word];
            for (; changed != 0; changed &= changed - 1) {
                const auto channel = word * 64 + static_cast<std::size_t>(__builtin_ctzll(changed));
                for (const std::size_t column : _columnsOf[channel]) {
                    columns.states[column].push_back({sample, block.state(row, channel)});
                }
            }
            _before[word] = states[word];
        }
    }

    const ColumnSource& _source;
    const Selection& _selection;
    RowTimes _times;
    std::vector<std::size_t> _analog;
    std::vector<std::size_t> _status;
    std::vector<std::vector<std::size_t>> _columnsOf; ///< by status channel
    std::vector<std::uint64_t> _before;               ///< states of the row before
};

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
    maker.finish(into);
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
        maker.finish(columns);
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
