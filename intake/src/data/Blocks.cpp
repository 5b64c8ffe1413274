#include "data/Blocks.h"

#include "data/AsciiSamples.h"
#include "data/DataLayout.h"
#include "data/PlainLines.h"
#include "data/RecordReader.h"
#include "data/Stamps.h"
#include "data/missingValues.h"
#include "src/data/littleEndian.h"

#include <algorithm>
#include <numeric>
#include <optional>
#include <utility>

namespace OrvComtradeIntake {

namespace {

constexpr std::size_t kValuesOfBlock = 32UL * 1024; // 256 KiB of doubles
constexpr std::size_t kMostRows = 4096;
constexpr std::size_t kLengthOfRecords = 256UL * 1024; // bytes read at a time: longer pieces of columns

/// Where the values of a block go: its first one, and how far each channel is behind the one before.
struct ValuePlace {
    double* first = nullptr;
    std::size_t distance = 0;
};

ValuePlace placeOf(Block& block) {
    const std::size_t distance = block.into == nullptr || block.distance == 0 ? block.rows : block.distance;
    return {block.into == nullptr ? block.raw.data() : block.into, distance};
}

void makeRoom(Block& block, const BlockRange& range, std::size_t statuses, std::uint64_t first, std::size_t rows) {
    block.first = first;
    block.rows = rows;
    block.stateWords = (statuses + 63) / 64;
    block.numbers.resize(range.hasNumbers ? rows : 0);
    block.stamps.resize(rows);
    block.raw.resize(block.into == nullptr ? rows * range.analog.size() : 0);
    block.states.resize(rows * block.stateWords);
}

/// The next rows of the range, given that so many samples are behind.
std::size_t rowsWanted(const BlockRange& range, std::uint64_t sample) {
    const std::uint64_t left = range.first + range.count - sample;
    return static_cast<std::size_t>(std::min<std::uint64_t>(left, range.mostRows));
}

class RecordBlocks : public BlockReader {
public:
    RecordBlocks(const ByteSource& data, const Header& header, const DataFacts& facts, BlockRange range)
        : _layout(header), _facts(facts), _range(std::move(range)), _stamped(header.timesAreStamped()),
          _reader(data, facts.recordStride, kLengthOfRecords), _stamps(facts.stamps) {
        if (!_stamped) { // stamps must be followed from the first one on
            _reader.seek(_range.first);
            _sample = _range.first;
        }
    }

    bool next(Block& block) override {
        if (!_skip()) {
            return false;
        }
        const std::size_t rows = std::min(rowsWanted(_range, _sample), _left);
        if (rows == 0) {
            return false;
        }
        makeRoom(block, _range, _layout.statuses, _sample, rows);
        if (_range.hasNumbers || _stamped) {
            _decodeHeads(block);
        }
        if (block.stateWords != 0) {
            for (std::size_t row = 0; row < rows; ++row) {
                const char* const record = _at + row * _facts.recordStride;
                _decodeStates(record + _layout.statusOffset(), block.states.data() + row * block.stateWords);
            }
        }
        const ValuePlace place = placeOf(block);
        decodeColumns({_at, _facts.recordStride, rows}, _layout, _facts, _range.analog, _range.scaling, place.first,
                      place.distance);
        _pass(rows);
        return true;
    }

private:
    static std::uint32_t _field(const char* bytes) { return OrvComtradeLib::readLittleEndian<std::uint32_t>(bytes); }

    /// Goes on to the first sample wanted, and to records in memory.
    bool _skip() {
        for (;;) {
            if (_left == 0) {
                _left = _reader.next();
                _at = _reader.records();
            }
            if (_left == 0 || _sample >= _range.first) {
                return _left != 0;
            }
            const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(_range.first - _sample, _left));
            for (std::size_t row = 0; row < count; ++row) {
                _stampOf(_at + row * _facts.recordStride);
            }
            _pass(count);
        }
    }

    void _pass(std::size_t rows) {
        _at += rows * _facts.recordStride;
        _left -= rows;
        _sample += rows;
    }

    std::int64_t _stampOf(const char* record) {
        const std::uint32_t stamp = _field(record + DataLayout::kStampOffset);
        const auto known = stamp == kMissingStamp ? std::nullopt : std::optional<std::int64_t>(stamp);
        return _stamped ? std::int64_t{_stamps.next(known)} : known.value_or(kNoStamp);
    }

    void _decodeHeads(Block& block) {
        for (std::size_t row = 0; row < block.rows; ++row) {
            const char* const record = _at + row * _facts.recordStride;
            if (_range.hasNumbers) {
                block.numbers[row] = _field(record);
            }
            block.stamps[row] = _stampOf(record);
        }
    }

    /// Four status words are one word of states, wherever there are four.
    void _decodeStates(const char* words, std::uint64_t* states) const {
        constexpr std::size_t bits = 64;
        const std::size_t whole = _layout.statuses / bits;
        for (std::size_t i = 0; i < whole; ++i) {
            states[i] = OrvComtradeLib::readLittleEndian<std::uint64_t>(words + i * sizeof(std::uint64_t));
        }
        const std::size_t rest = _layout.statuses % bits;
        if (rest == 0) {
            return;
        }
        std::uint64_t last = 0;
        for (std::size_t i = 4 * whole; i < _layout.statusWords(); ++i) {
            const std::uint64_t word = OrvComtradeLib::readLittleEndian<std::uint16_t>(words + 2 * i);
            last |= word << i % 4 * DataLayout::kStatesPerWord;
        }
        states[whole] = last & ((std::uint64_t{1} << rest) - 1);
    }

    DataLayout _layout;
    const DataFacts& _facts;
    BlockRange _range;
    bool _stamped;
    RecordReader _reader;
    PlannedStamps _stamps;
    const char* _at = nullptr; ///< records in memory
    std::size_t _left = 0;     ///< their number
    std::uint64_t _sample = 0;
};

class LineBlocks : public BlockReader {
public:
    LineBlocks(const ByteSource& data, const Header& header, const DataFacts& facts, BlockRange range)
        : _layout(header), _facts(facts), _range(std::move(range)), _stamped(header.timesAreStamped()),
          _samples(data, header, false), _stamps(facts.stamps), _plainRow(header.analog.size()) {}

    bool next(Block& block) override {
        if (!_skip()) {
            return false;
        }
        const std::size_t rows = rowsWanted(_range, _sample);
        makeRoom(block, _range, _layout.statuses, _sample, rows);
        std::size_t row = 0;
        while (row < rows) {
            row += _putPlain(rows - row, row, block);
            const PlacedSample* const read = row < rows ? _samples.next() : nullptr;
            if (read == nullptr) {
                break;
            }
            _put(read->sample, row, block);
            ++row;
            ++_sample;
        }
        _shorten(block, row);
        return row != 0;
    }

private:
    /// Goes on to the first sample wanted. Stamps must be followed from the first one on.
    bool _skip() {
        while (_sample < _range.first) {
            if (!_stamped) {
                _sample += _samples.takePlain(_range.first - _sample, [](const LineRun&) {});
            }
            if (_sample == _range.first) {
                break;
            }
            const PlacedSample* const read = _samples.next();
            if (read == nullptr) {
                return false;
            }
            _stampOf(read->sample);
            ++_sample;
        }
        return true;
    }

    /// Lines in which nothing is wrong need no parser. Gives their number.
    std::size_t _putPlain(std::size_t most, std::size_t row, Block& block) {
        if (!_facts.exponents.empty()) {
            return 0;
        }
        std::size_t put = 0;
        _samples.takePlain(most, [&](const LineRun& run) {
            for (; put < run.count; ++put, ++_sample) {
                _putPlainLine(run.begins[put], row + put, block);
            }
        });
        return put;
    }

    void _putPlainLine(const char* at, std::size_t row, Block& block) {
        const std::int64_t number = takeInteger(at);
        const std::int64_t stamp = takeInteger(at);
        if (_range.hasNumbers) {
            block.numbers[row] = number;
        }
        block.stamps[row] = _stamped ? std::int64_t{_stamps.next(scaledStamp(stamp, _facts.stamps.exponent))} : stamp;
        for (std::size_t channel = 0; channel < _layout.analogs; ++channel) {
            _plainRow[channel] = static_cast<double>(takeInteger(at));
        }
        _putValues(row, block, [this](std::size_t channel) { return _plainRow[channel]; });
        std::uint64_t* const states = block.states.data() + row * block.stateWords;
        std::fill_n(states, block.stateWords, 0);
        for (std::size_t i = 0; i < _layout.statuses; ++i, at += 2) {
            states[i / 64] |= static_cast<std::uint64_t>(*at & 1) << i % 64;
        }
    }

    void _put(const AsciiSample& sample, std::size_t row, Block& block) {
        if (_range.hasNumbers) {
            block.numbers[row] = sample.number.value_or(static_cast<std::int64_t>(_sample + 1));
        }
        block.stamps[row] = _stampOf(sample);
        _putValues(row, block, [&](std::size_t channel) { return _rawOf(sample, channel); });
        std::uint64_t* const states = block.states.data() + row * block.stateWords;
        std::fill_n(states, block.stateWords, 0);
        for (std::size_t i = 0; i < sample.status.size(); ++i) {
            states[i / 64] |= static_cast<std::uint64_t>(sample.status[i] & 1) << i % 64;
        }
    }

    template <class RawOf> void _putValues(std::size_t row, Block& block, RawOf rawOf) const {
        const ValuePlace place = placeOf(block);
        double* value = place.first + row;
        for (std::size_t column = 0; column < _range.analog.size(); ++column, value += place.distance) {
            const double raw = rawOf(_range.analog[column]);
            *value = _range.scaling.empty() ? raw : scaledBy(raw, _range.scaling[column]);
        }
    }

    double _rawOf(const AsciiSample& sample, std::size_t channel) const {
        const AnalogField& field = sample.analog[channel];
        if (field.missing || _facts.exponents.empty()) {
            return static_cast<double>(field.value.scaled(0));
        }
        const int exponent = _facts.exponents[channel];
        const std::int64_t value = field.value.scaled(exponent);
        // Only where the channel's other values are so large that this one is rounded anyway.
        const bool looksMissing = value == MissingCode::kUsual || value == MissingCode::kOld;
        return static_cast<double>(looksMissing && exponent != 0 ? value - 1 : value);
    }

    std::int64_t _stampOf(const AsciiSample& sample) {
        if (_stamped) {
            return _stamps.next(scaledStamp(sample, _facts.stamps.exponent));
        }
        return sample.stamp.value_or(kNoStamp);
    }

    /// To the rows that there are.
    void _shorten(Block& block, std::size_t rows) const {
        if (rows == block.rows) {
            return;
        }
        const ValuePlace place = placeOf(block);
        const bool areMoved = place.distance == block.rows;
        for (std::size_t column = 1; areMoved && column < _range.analog.size(); ++column) {
            std::copy_n(place.first + column * block.rows, rows, place.first + column * rows);
        }
        block.rows = rows;
        block.raw.resize(block.into == nullptr ? rows * _range.analog.size() : 0);
        block.numbers.resize(_range.hasNumbers ? rows : 0);
        block.stamps.resize(rows);
        block.states.resize(rows * block.stateWords);
    }

    DataLayout _layout;
    const DataFacts& _facts;
    BlockRange _range;
    bool _stamped;
    AsciiSamples _samples;
    PlannedStamps _stamps;
    std::vector<double> _plainRow; ///< raw values of all channels of a line
    std::uint64_t _sample = 0;
};

} // namespace

std::size_t rowsOfBlock(std::size_t columns) {
    return std::clamp<std::size_t>(kValuesOfBlock / (columns + 1), 16, kMostRows);
}

BlockRange wholeRange(const Header& header, const DataFacts& facts) {
    BlockRange range;
    range.analog.resize(header.analog.size());
    range.count = facts.samples;
    std::iota(range.analog.begin(), range.analog.end(), std::size_t{0});
    range.mostRows = rowsOfBlock(range.analog.size());
    return range;
}

std::unique_ptr<BlockReader> readBlocks(const ByteSource& data, const Header& header, const DataFacts& facts,
                                        BlockRange range) {
    range.first = std::min(range.first, facts.samples);
    range.count = std::min(range.count, facts.samples - range.first);
    if (facts.type == DataType::Ascii) {
        return std::make_unique<LineBlocks>(data, header, facts, std::move(range));
    }
    return std::make_unique<RecordBlocks>(data, header, facts, std::move(range));
}

} // namespace OrvComtradeIntake
