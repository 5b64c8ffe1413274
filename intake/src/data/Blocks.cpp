#include "data/Blocks.h"

#include "data/AsciiSamples.h"
#include "data/LineDecoder.h"
#include "data/RecordDecoder.h"
#include "data/RecordReader.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace OrvComtradeIntake {

namespace {

constexpr std::size_t kValuesOfBlock = 32UL * 1024; // 256 KiB of doubles
constexpr std::size_t kMostRows = 4096;
constexpr std::size_t kLengthOfRecords = 256UL * 1024; // bytes read at a time: longer pieces of columns

/// The next rows of the range, given that so many samples are behind.
std::size_t rowsWanted(const BlockRange& range, std::uint64_t sample) {
    const std::uint64_t left = range.first + range.count - sample;
    return static_cast<std::size_t>(std::min<std::uint64_t>(left, range.mostRows));
}

class RecordBlocks : public BlockReader {
public:
    RecordBlocks(const ByteSource& data, const Header& header, const DataFacts& facts, BlockRange range)
        : _range(std::move(range)), _stride(facts.recordStride), _reader(data, facts.recordStride, kLengthOfRecords),
          _decoder(header, facts, _range) {
        if (!header.timesAreStamped()) { // stamps must be followed from the first one on
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
        _decoder.decode({_at, _stride, rows}, _sample, block);
        _pass(rows);
        return true;
    }

private:
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
            _decoder.pass({_at, _stride, count});
            _pass(count);
        }
    }

    void _pass(std::size_t rows) {
        _at += rows * _stride;
        _left -= rows;
        _sample += rows;
    }

    const BlockRange _range;
    std::size_t _stride;
    RecordReader _reader;
    RecordDecoder _decoder;
    const char* _at = nullptr; ///< records in memory
    std::size_t _left = 0;     ///< their number
    std::uint64_t _sample = 0;
};

class LineBlocks : public BlockReader {
public:
    LineBlocks(const ByteSource& data, const Header& header, const DataFacts& facts, BlockRange range)
        : _statuses(header.status.size()), _range(std::move(range)), _stamped(header.timesAreStamped()),
          _hasExponents(!facts.exponents.empty()), _samples(data, header, false), _decoder(header, facts, _range) {}

    bool next(Block& block) override {
        if (!_skip()) {
            return false;
        }
        const std::size_t rows = rowsWanted(_range, _sample);
        makeRoom(block, _range, _statuses, _sample, rows);
        std::size_t row = 0;
        while (row < rows) {
            row += _putFast(rows - row, row, block);
            const PlacedSample* const read = row < rows ? _samples.next() : nullptr;
            if (read == nullptr) {
                break;
            }
            _decoder.decode(read->sample, _sample, row, block);
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
                _sample += _samples.takeFast(_range.first - _sample, [](const LineRun&) {});
            }
            if (_sample == _range.first) {
                break;
            }
            const PlacedSample* const read = _samples.next();
            if (read == nullptr) {
                return false;
            }
            _decoder.pass(read->sample);
            ++_sample;
        }
        return true;
    }

    /// Lines in which nothing is wrong need no parser. Gives their number.
    std::size_t _putFast(std::size_t most, std::size_t row, Block& block) {
        if (_hasExponents) {
            return 0;
        }
        std::size_t put = 0;
        _samples.takeFast(most, [&](const LineRun& run) {
            put = static_cast<std::size_t>(run.count);
            _decoder.decode(run, 0, put, row, block);
        });
        _sample += put;
        return put;
    }

    /// To the rows that there are.
    void _shorten(Block& block, std::size_t rows) const {
        if (rows == block.rows) {
            return;
        }
        for (std::size_t column = 1; column < _range.analog.size() && block.valueDistance() == block.rows; ++column) {
            std::copy_n(block.values() + column * block.rows, rows, block.values() + column * rows);
        }
        makeRoom(block, _range, _statuses, block.first, rows);
    }

    std::size_t _statuses;
    const BlockRange _range;
    bool _stamped;
    bool _hasExponents; ///< some raw values are taken times a power of ten
    AsciiSamples _samples;
    LineDecoder _decoder;
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
