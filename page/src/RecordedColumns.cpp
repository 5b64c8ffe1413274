#include "RecordedColumns.h"

#include <OrvComtradeIntake/Header.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

namespace OrvComtradePage {

using OrvComtradeIntake::Columns;
using OrvComtradeIntake::Header;
using OrvComtradeIntake::MissingRun;
using OrvComtradeIntake::Opened;
using OrvComtradeIntake::Selection;
using OrvComtradeIntake::StateChange;

namespace {

constexpr std::uint64_t kReducedSamples = 16;   // of which the least and the greatest are kept
constexpr std::uint64_t kFullSamples = 1000000; // around the trigger
constexpr std::size_t kBlock = 16UL * 1024;     // samples, a multiple of kReducedSamples
constexpr std::uint64_t kBytesOfValue = 4;
constexpr std::uint64_t kBytesOfShortValue = 2;

std::uint64_t recordedBytes(const Header& header) {
    const bool isShort = header.dataType == OrvComtradeIntake::DataType::Binary;
    return header.samples * header.analog.size() * (isShort ? kBytesOfShortValue : kBytesOfValue);
}

/// Where the trigger is, as a part of the whole recording.
std::uint64_t triggerSample(const Opened& opened) {
    const Header& header = opened.header();
    if (!header.start || !header.trigger || header.samples == 0) {
        return 0;
    }
    const double wanted =
        static_cast<double>(header.trigger->nanoseconds) / 1e9 - static_cast<double>(header.start->nanoseconds) / 1e9;
    Selection times;
    times.allAnalog = false;
    times.allStatus = false;
    std::uint64_t sample = 0;
    opened.columns(times, kBlock, [&](const Columns& block) {
        const auto at = std::lower_bound(block.time.begin(), block.time.end(), wanted);
        sample = block.first + static_cast<std::uint64_t>(at - block.time.begin());
        return at == block.time.end();
    });
    return std::min(sample, header.samples - 1);
}

std::vector<Piece> piecesOf(const Opened& opened, std::uint64_t fullBytes) {
    const Header& header = opened.header();
    const std::uint64_t samples = header.samples;
    if (recordedBytes(header) <= fullBytes || samples < 2 * kReducedSamples) {
        return {{0, samples, 1}};
    }
    const std::uint64_t channels = std::max<std::uint64_t>(header.analog.size(), 1);
    const std::uint64_t full = std::min(kFullSamples, fullBytes / kBytesOfValue / channels);
    const std::uint64_t trigger = triggerSample(opened);
    const std::uint64_t begin = (trigger - std::min(trigger, full / 2)) / kReducedSamples * kReducedSamples;
    const std::uint64_t end =
        std::min(samples, (begin + full + kReducedSamples - 1) / kReducedSamples * kReducedSamples);
    const auto kept = [](std::uint64_t count) { return (count + kReducedSamples - 1) / kReducedSamples * 2; };
    std::vector<Piece> pieces;
    if (begin > 0) {
        pieces.push_back({0, kept(begin), kReducedSamples / 2});
    }
    if (end > begin) {
        pieces.push_back({begin, end - begin, 1});
    }
    if (end < samples) {
        pieces.push_back({end, kept(samples - end), kReducedSamples / 2});
    }
    return pieces;
}

/// Two values for every group of them, the least and the greatest in the order in which they come, at the begin of the
/// vector. Gives how many that are.
std::size_t reduceValues(std::vector<double>& values, std::size_t count) {
    std::size_t kept = 0;
    for (std::size_t begin = 0; begin < count; begin += kReducedSamples) {
        const std::size_t end = std::min<std::size_t>(begin + kReducedSamples, count);
        std::size_t least = begin;
        std::size_t greatest = begin;
        for (std::size_t i = begin; i < end; ++i) {
            least = std::isnan(values[least]) || values[i] < values[least] ? i : least;
            greatest = std::isnan(values[greatest]) || values[i] > values[greatest] ? i : greatest;
        }
        const double first = values[std::min(least, greatest)];
        const double second = values[std::max(least, greatest)];
        values[kept++] = first;
        values[kept++] = second;
    }
    return kept;
}

/// Whether no value of it is missing.
bool isWhole(const Columns& block) {
    return block.missing.empty() &&
           std::none_of(block.analog.begin(), block.analog.end(), [](double value) { return std::isnan(value); });
}

/// Keeps of blocks what a page wants of them: samples numbered as kept, and values for missing ones that cost nothing.
class ColumnCollector {
public:
    ColumnCollector(const Header& header, std::vector<Piece> pieces) : _pending(header.analog.size()) {
        _columns.pieces = std::move(pieces);
        _columns.analog.resize(header.analog.size());
        _columns.missing.resize(header.analog.size());
        _columns.states.resize(header.status.size());
    }

    /// The next samples of a piece.
    void add(const Columns& block, const Piece& piece) {
        if (piece.step == 1 && isWhole(block)) {
            _addWhole(block);
            return;
        }
        _pendingTime.insert(_pendingTime.end(), block.time.begin(), block.time.end());
        for (std::size_t channel = 0; channel < _pending.size(); ++channel) {
            _pending[channel].insert(_pending[channel].end(), block.column(channel),
                                     block.column(channel) + block.samples);
        }
        const std::uint64_t offset = _pendingTime.size() - block.samples;
        for (const MissingRun& run : block.missing) {
            const auto first = static_cast<std::ptrdiff_t>(offset + run.sample - block.first);
            std::fill_n(_pending[run.channel].begin() + first, run.count, std::numeric_limits<double>::quiet_NaN());
        }
        _addStates(block);
        if (piece.step == 1) {
            _keep(_pendingTime.size());
        } else {
            _reduce(_pendingTime.size() / kReducedSamples * kReducedSamples);
        }
    }

    void endPiece() { _reduce(_pendingTime.size()); }

    RecordedColumns take() { return std::move(_columns); }

private:
    /// Samples that stay as they are need not be pending.
    void _addWhole(const Columns& block) {
        _columns.time.insert(_columns.time.end(), block.time.begin(), block.time.end());
        for (std::size_t channel = 0; channel < _columns.analog.size(); ++channel) {
            _columns.analog[channel].append(block.column(channel), block.samples);
        }
        _addStates(block);
    }

    void _keep(std::size_t count) {
        const std::size_t before = _columns.time.size();
        _columns.time.insert(_columns.time.end(), _pendingTime.begin(),
                             _pendingTime.begin() + static_cast<std::ptrdiff_t>(count));
        for (std::size_t channel = 0; channel < _pending.size(); ++channel) {
            _addValues(channel, before, _pending[channel].data(), count);
        }
        _forget(count);
    }

    void _reduce(std::size_t count) {
        const std::size_t before = _columns.time.size();
        for (std::size_t row = 0; row < count; row += kReducedSamples) {
            _columns.time.push_back(_pendingTime[row]);
            _columns.time.push_back(_pendingTime[std::min(row + kReducedSamples / 2, count - 1)]);
        }
        for (std::size_t channel = 0; channel < _pending.size(); ++channel) {
            const std::size_t kept = reduceValues(_pending[channel], count);
            _addValues(channel, before, _pending[channel].data(), kept);
        }
        _forget(count);
    }

    void _forget(std::size_t count) {
        const auto end = static_cast<std::ptrdiff_t>(count);
        _pendingTime.erase(_pendingTime.begin(), _pendingTime.begin() + end);
        for (std::vector<double>& values : _pending) {
            values.erase(values.begin(), values.begin() + end);
        }
    }

    void _addValues(std::size_t channel, std::size_t before, double* values, std::size_t count) {
        ValueColumn& column = _columns.analog[channel];
        std::vector<MissingRun>& missing = _columns.missing[channel];
        double last = column.size() > 0 ? column.at(column.size() - 1) : 0.0;
        for (std::size_t i = 0; i < count; ++i) {
            if (!std::isnan(values[i])) {
                last = values[i];
                continue;
            }
            const std::uint64_t sample = before + i;
            if (!missing.empty() && missing.back().sample + missing.back().count == sample) {
                ++missing.back().count;
            } else {
                missing.push_back({channel, sample, 1});
            }
            values[i] = last;
        }
        column.append(values, count);
    }

    void _addStates(const Columns& block) {
        for (std::size_t channel = 0; channel < _columns.states.size(); ++channel) {
            std::vector<StateChange>& all = _columns.states[channel];
            for (const StateChange& change : block.states[channel]) {
                if (all.empty() || all.back().state != change.state) {
                    all.push_back(change);
                }
            }
        }
    }

    RecordedColumns _columns;
    std::vector<double> _pendingTime;          ///< of samples that are not kept yet
    std::vector<std::vector<double>> _pending; ///< their values, by channel; NaN where one is missing
};

void readPiece(const Opened& opened, const Piece& piece, ColumnCollector& collector) {
    Selection selection;
    selection.raw = true;
    selection.first = piece.first;
    selection.count = piece.count * piece.step;
    opened.columns(selection, kBlock, [&](const Columns& block) {
        collector.add(block, piece);
        return true;
    });
    collector.endPiece();
}

} // namespace

RecordedColumns readColumns(const Opened& opened, std::uint64_t fullBytes) {
    const std::vector<Piece> pieces = piecesOf(opened, fullBytes);
    ColumnCollector collector(opened.header(), pieces);
    for (const Piece& piece : pieces) {
        if (piece.count > 0) {
            readPiece(opened, piece, collector);
        }
    }
    return collector.take();
}

} // namespace OrvComtradePage
