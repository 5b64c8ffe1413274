#include "Part.h"

#include "cfg/settleRates.h"
#include "data/missingValues.h"
#include "src/data/SampleClock.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <stdexcept>
#include <string>
#include <utility>

namespace OrvComtradeIntake {

namespace {

bool isEverything(const Selection& selection, std::uint64_t samples) {
    return selection.allAnalog && selection.allStatus && selection.first == 0 && selection.count >= samples;
}

template <class Item> std::vector<Item> selected(const std::vector<Item>& all, const std::vector<std::size_t>& some) {
    std::vector<Item> items;
    items.reserve(some.size());
    for (const std::size_t one : some) {
        items.push_back(all.at(one));
    }
    return items;
}

/// By column, then sample from the first on.
std::vector<MissingRun> missingIn(const std::vector<MissingRun>& all, const std::vector<std::size_t>& channels,
                                  std::uint64_t first, std::uint64_t count) {
    std::vector<MissingRun> cut;
    for (std::size_t column = 0; column < channels.size(); ++column) {
        for (const MissingRun& run : runsOf(all, channels[column], first, first + count)) {
            const std::uint64_t begin = std::max(run.sample, first);
            const std::uint64_t end = std::min(run.sample + run.count, first + count);
            if (begin < end) {
                cut.push_back({column, begin - first, end - begin});
            }
        }
    }
    return cut;
}

/// Makes the blocks of a recording those of a part, which have its analog channels already.
class PartReader : public BlockReader {
public:
    PartReader(std::unique_ptr<BlockReader> whole, const std::vector<std::size_t>& status, std::uint64_t first,
               std::int64_t origin)
        : _whole(std::move(whole)), _status(status), _first(first), _origin(origin) {}

    bool next(Block& block) override {
        if (!_whole->next(block)) {
            return false;
        }
        block.first -= _first;
        if (_origin != 0) {
            for (std::int64_t& stamp : block.stamps) {
                stamp -= _origin;
            }
        }
        _selectStates(block);
        return true;
    }

private:
    void _selectStates(Block& block) {
        const std::size_t words = (_status.size() + 63) / 64;
        _states.assign(block.rows * words, 0);
        for (std::size_t row = 0; row < block.rows; ++row) {
            for (std::size_t i = 0; i < _status.size(); ++i) {
                _states[row * words + i / 64] |= std::uint64_t{block.state(row, _status[i])} << i % 64;
            }
        }
        block.states.swap(_states);
        block.stateWords = words;
    }

    std::unique_ptr<BlockReader> _whole;
    const std::vector<std::size_t>& _status;
    std::uint64_t _first;
    std::int64_t _origin;
    std::vector<std::uint64_t> _states;
};

} // namespace

Part::Part(const Recording& recording, const Selection& selection) : _recording(recording) {
    if (isEverything(selection, recording.facts.samples)) {
        return;
    }
    _cfg = recording.cfg;
    _facts.type = recording.facts.type;
    _facts.libraryType = recording.facts.libraryType; // what the raw values of blocks are depends on it
    _facts.stamps = recording.facts.stamps;
    _facts.areStampsSound = recording.facts.areStampsSound;
    _facts.doStampsFitRecords = recording.facts.doStampsFitRecords;
    _selectChannels(selection);
    _selectSamples(selection);
    _facts.missing = missingIn(recording.facts.missing, _analog, _first, _facts.samples);
}

void Part::_selectChannels(const Selection& selection) {
    const auto channelsOf = [](bool all, const std::vector<std::size_t>& some, std::size_t count) {
        std::vector<std::size_t> channels(some);
        if (all) {
            channels.resize(count);
            std::iota(channels.begin(), channels.end(), std::size_t{0});
        }
        return channels;
    };
    const ReadCfg& whole = _recording.cfg;
    _analog = channelsOf(selection.allAnalog, selection.analog, whole.header.analog.size());
    _status = channelsOf(selection.allStatus, selection.status, whole.header.status.size());
    if (_analog.empty() && _status.empty()) {
        throw std::invalid_argument("no channel is selected");
    }
    _cfg->header.analog = selected(whole.header.analog, _analog);
    _cfg->header.status = selected(whole.header.status, _status);
    _cfg->analog = selected(whole.analog, _analog);
    if (!_recording.facts.exponents.empty()) {
        _facts.exponents = selected(_recording.facts.exponents, _analog);
    }
}

void Part::_selectSamples(const Selection& selection) {
    const std::uint64_t samples = _recording.facts.samples;
    _first = std::min(selection.first, samples);
    _facts.samples = std::min(selection.count, samples - _first);
    Header& header = _cfg->header;
    if (_facts.samples == samples) {
        return;
    }
    if (_facts.samples == 0) {
        throw std::invalid_argument("no sample is selected");
    }
    header.samples = _facts.samples;
    header.samplesDeclared = _facts.samples;
    _cfg->areRatesSettled = true;
    _cfg->wereLengths = false;
    if (header.timesAreStamped()) {
        header.rates = {{0.0, _facts.samples}};
        _moveStart(_findOrigin());
        return;
    }
    header.rates = ratesFrom(header.rates, _first, _facts.samples);
    if (_first != 0) {
        _facts.areStampsSound = false; // they count from another sample; the rates give the times
        _moveStart(OrvComtradeLib::SampleClock(_recording.libraryCfg()).timeOf(static_cast<unsigned long>(_first)));
    }
}

/// Times count from the least stamp, which is that of the first sample unless they step back. Gives its time.
double Part::_findOrigin() {
    Block block;
    std::int64_t least = INT64_MAX;
    const auto reader = readBlocks(*_recording.data, _recording.cfg.header, _recording.facts, _range({}));
    while (reader->next(block)) {
        least = std::min(least, *std::min_element(block.stamps.begin(), block.stamps.end()));
    }
    _origin = least == INT64_MAX ? 0 : least;
    return OrvComtradeLib::stampTime(static_cast<std::uint32_t>(_origin), _recording.libraryCfg().timeMultiplier);
}

/// To the last digit that the dates of the recording have.
void Part::_moveStart(double seconds) {
    constexpr double nanosecondsPerSecond = 1e9;
    constexpr double microsecond = 1e3;
    constexpr double most = 0x1p62;
    std::optional<Instant>& start = _cfg->header.start;
    if (!start) {
        return;
    }
    const double unit = _cfg->header.hasNanosecondDates ? 1.0 : microsecond;
    const double offset = std::round(seconds * nanosecondsPerSecond / unit) * unit;
    const bool isInRange = std::abs(offset + static_cast<double>(start->nanoseconds)) < most * 2.0 && offset < most;
    start = isInRange ? std::optional(Instant{start->nanoseconds + static_cast<std::int64_t>(offset)}) : std::nullopt;
}

BlockRange Part::_range(std::vector<std::size_t> analog) const {
    const std::size_t rows = rowsOfBlock(analog.size());
    return {std::move(analog), _first, _facts.samples, rows};
}

std::unique_ptr<BlockReader> Part::read() const {
    const Header& header = _recording.cfg.header;
    if (isWhole()) {
        return readBlocks(*_recording.data, header, _recording.facts, wholeRange(header, _recording.facts));
    }
    return std::make_unique<PartReader>(readBlocks(*_recording.data, header, _recording.facts, _range(_analog)),
                                        _status, _first, _origin);
}

} // namespace OrvComtradeIntake
