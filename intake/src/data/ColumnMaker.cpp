#include "data/ColumnMaker.h"

#include "data/missingValues.h"
#include "src/data/hugePages.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <stdexcept>
#include <string>

namespace OrvComtradeIntake {

namespace {

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

/// In place: most recordings have one or two words, for which a call of the C library costs more than to compare them.
bool areSame(const std::uint64_t* one, const std::uint64_t* other, std::size_t words) {
    std::uint64_t difference = 0;
    for (std::size_t word = 0; word < words; ++word) {
        difference |= one[word] ^ other[word];
    }
    return difference == 0;
}

} // namespace

ColumnMaker::ColumnMaker(const ColumnSource& source, const Selection& selection)
    : _cfg(source.cfg), _selection(selection), _times(source.cfg),
      _analog(channelsOf(selection.allAnalog, selection.analog, source.header.analog.size())),
      _status(channelsOf(selection.allStatus, selection.status, source.header.status.size())),
      _columnsOf(source.header.status.size()) {
    for (std::size_t column = 0; column < _status.size(); ++column) {
        _columnsOf[_status[column]].push_back(column);
    }
}

BlockRange ColumnMaker::range(std::size_t mostRows) const {
    BlockRange range{_analog, _selection.first, _selection.count, mostRows, {}, false};
    for (std::size_t column = 0; column < _analog.size() && !_selection.raw; ++column) {
        const OrvComtradeLib::AnalogChannelConfig& config = _cfg.analogChannelConfigs.at(_analog[column]);
        range.scaling.push_back({config.a, config.b, config.unitMultiplier});
    }
    return range;
}

void ColumnMaker::prepare(std::uint64_t first, std::size_t samples, Columns& columns) const {
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
        const OrvComtradeLib::AnalogChannelConfig& config = _cfg.analogChannelConfigs.at(channel);
        columns.a.push_back(config.a * config.unitMultiplier);
        columns.b.push_back(config.b * config.unitMultiplier);
    }
}

void ColumnMaker::aim(Block& block, std::size_t done, Columns& columns) {
    block.into = columns.analog.empty() ? nullptr : columns.analog.data() + done;
    block.distance = columns.samples;
}

void ColumnMaker::add(const Block& block, Columns& columns) {
    const auto at = static_cast<std::size_t>(block.first - columns.first);
    _times.put(block, columns.time.data() + at);
    if (block.stateWords != 0 && block.rows != 0) {
        _addStates(block, at == 0, columns);
    }
}

void ColumnMaker::finish(const std::vector<MissingRun>& missing, Columns& columns) const {
    const std::uint64_t end = columns.first + columns.samples;
    for (std::size_t column = 0; column < _analog.size(); ++column) {
        for (const MissingRun& run : runsOf(missing, _analog[column], columns.first, end)) {
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

void ColumnMaker::_addStates(const Block& block, bool isFirst, Columns& columns) {
    const std::size_t words = block.stateWords;
    const std::uint64_t* states = block.states.data();
    if (isFirst) {
        for (std::size_t column = 0; column < _status.size(); ++column) {
            columns.states[column].push_back({block.first, block.state(0, _status[column])});
        }
        _before.assign(states, states + words);
    }
    const std::uint64_t* before = _before.data();
    for (std::size_t row = 0; row < block.rows; ++row, before = states, states += words) {
        if (!areSame(states, before, words)) {
            _addChanges(block, row, before, columns);
        }
    }
    _before.assign(before, before + words);
}

void ColumnMaker::_addChanges(const Block& block, std::size_t row, const std::uint64_t* before,
                              Columns& columns) const {
    const std::uint64_t* const states = block.states.data() + row * block.stateWords;
    for (std::size_t word = 0; word < block.stateWords; ++word) {
        std::uint64_t changed = states[word] ^ before[word];
        for (; changed != 0; changed &= changed - 1) {
            const auto channel = word * 64 + static_cast<std::size_t>(__builtin_ctzll(changed));
            for (const std::size_t column : _columnsOf[channel]) {
                columns.states[column].push_back({block.first + row, block.state(row, channel)});
            }
        }
    }
}

} // namespace OrvComtradeIntake
