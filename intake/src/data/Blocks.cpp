#include "data/Blocks.h"

#include "data/AsciiSamples.h"
#include "data/DataLayout.h"
#include "data/PlainLines.h"
#include "data/RecordReader.h"
#include "data/Stamps.h"
#include "data/missingValues.h"
#include "src/data/littleEndian.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <optional>
#include <utility>

namespace OrvComtradeIntake {

namespace {

constexpr std::size_t kValuesOfBlock = 32UL * 1024; // 256 KiB of doubles
constexpr std::size_t kMostRows = 4096;

void makeRoom(Block& block, const BlockRange& range, std::size_t statuses, std::uint64_t first, std::size_t rows) {
    block.first = first;
    block.rows = rows;
    block.stateWords = (statuses + 63) / 64;
    block.numbers.resize(rows);
    block.stamps.resize(rows);
    block.raw.resize(rows * range.analog.size());
    block.states.assign(rows * block.stateWords, 0);
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
          _reader(data, facts.recordStride), _stamps(facts.stamps) {
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
        for (std::size_t row = 0; row < rows; ++row) {
            const char* const record = _at + row * _facts.recordStride;
            block.numbers[row] = _field(record);
            block.stamps[row] = _stampOf(record);
            _decodeStates(record + _layout.statusOffset(), block.states.data() + row * block.stateWords);
        }
        for (std::size_t column = 0; column < _range.analog.size(); ++column) {
            _decodeChannel(_range.analog[column], rows, block.raw.data() + column * rows);
        }
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

    void _decodeStates(const char* words, std::uint64_t* states) const {
        for (std::size_t i = 0; i < _layout.statusWords(); ++i) {
            std::uint64_t word = OrvComtradeLib::readLittleEndian<std::uint16_t>(words + 2 * i);
            const std::size_t rest = _layout.statuses - i * DataLayout::kStatesPerWord;
            if (rest < DataLayout::kStatesPerWord) {
                word &= (1U << rest) - 1U;
            }
            states[i / 4] |= word << i % 4 * DataLayout::kStatesPerWord;
        }
    }

    void _decodeChannel(std::size_t channel, std::size_t rows, double* values) const {
        const char* const first = _at + DataLayout::kAnalogOffset + channel * _layout.valueLength();
        switch (_layout.type) {
        case DataType::Binary:
            _decode(first, rows, values, [](const char* bytes) {
                return static_cast<double>(OrvComtradeLib::readLittleEndian<std::int16_t>(bytes));
            });
            break;
        case DataType::Binary32:
            _decodeIntegers(first, channel, rows, values);
            break;
        default:
            _decode(first, rows, values, [](const char* bytes) {
                return static_cast<double>(OrvComtradeLib::readLittleEndian<float>(bytes));
            });
        }
    }

    void _decodeIntegers(const char* first, std::size_t channel, std::size_t rows, double* values) const {
        const double missing = _facts.libraryType == DataType::Float32 ? std::numeric_limits<double>::quiet_NaN()
                                                                       : static_cast<double>(MissingCode::kUsual);
        const double factor = !_facts.exponents.empty() && _facts.exponents[channel] != 0 ? 10.0 : 1.0;
        _decode(first, rows, values, [=](const char* bytes) {
            const auto value = OrvComtradeLib::readLittleEndian<std::int32_t>(bytes);
            return Mark32::isMark(static_cast<std::uint32_t>(value)) ? missing : static_cast<double>(value) * factor;
        });
    }

    template <class Decode> void _decode(const char* first, std::size_t rows, double* values, Decode decode) const {
        const std::size_t stride = _facts.recordStride;
        for (std::size_t row = 0; row < rows; ++row) {
            values[row] = decode(first + row * stride);
        }
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
        for (; _sample < _range.first; ++_sample) {
            const PlacedSample* const read = _samples.next();
            if (read == nullptr) {
                return false;
            }
            _stampOf(read->sample);
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
        block.numbers[row] = takeInteger(at);
        const std::int64_t stamp = takeInteger(at);
        block.stamps[row] = _stamped ? std::int64_t{_stamps.next(scaledStamp(stamp, _facts.stamps.exponent))} : stamp;
        for (std::size_t channel = 0; channel < _layout.analogs; ++channel) {
            _plainRow[channel] = static_cast<double>(takeInteger(at));
        }
        for (std::size_t column = 0; column < _range.analog.size(); ++column) {
            block.raw[column * block.rows + row] = _plainRow[_range.analog[column]];
        }
        std::uint64_t* const states = block.states.data() + row * block.stateWords;
        for (std::size_t i = 0; i < _layout.statuses; ++i, at += 2) {
            states[i / 64] |= static_cast<std::uint64_t>(*at & 1) << i % 64;
        }
    }

    void _put(const AsciiSample& sample, std::size_t row, Block& block) {
        block.numbers[row] = sample.number.value_or(static_cast<std::int64_t>(_sample + 1));
        block.stamps[row] = _stampOf(sample);
        for (std::size_t column = 0; column < _range.analog.size(); ++column) {
            block.raw[column * block.rows + row] = _rawOf(sample, _range.analog[column]);
        }
        std::uint64_t* const states = block.states.data() + row * block.stateWords;
        for (std::size_t i = 0; i < sample.status.size(); ++i) {
            states[i / 64] |= static_cast<std::uint64_t>(sample.status[i] & 1) << i % 64;
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
        for (std::size_t column = 1; column < _range.analog.size(); ++column) {
            const auto from = block.raw.begin() + static_cast<std::ptrdiff_t>(column * block.rows);
            std::copy(from, from + static_cast<std::ptrdiff_t>(rows),
                      block.raw.begin() + static_cast<std::ptrdiff_t>(column * rows));
        }
        block.rows = rows;
        block.raw.resize(rows * _range.analog.size());
        block.numbers.resize(rows);
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
    BlockRange range{std::vector<std::size_t>(header.analog.size()), 0, facts.samples, 0};
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
