#include "data/valueCheck.h"

#include "base/numbers.h"
#include "data/Blocks.h"
#include "data/ChannelRange.h"
#include "data/missingValues.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace OrvComtradeIntake {

namespace {

constexpr std::uint64_t kFewestSamples = 3; // of which it means something that a channel does not change

/// The values of a channel.
class ChannelValues {
public:
    ChannelValues(const AnalogInfo& channel, bool hasRange, int exponent)
        : _channel(channel), _divisor(std::pow(10.0, exponent)), _range(channel, hasRange) {}

    /// Values of consecutive samples, none of them missing.
    void add(const double* raw, std::size_t count, std::uint64_t sample) {
        double least = _least;
        double greatest = _greatest;
        for (std::size_t i = 0; i < count; ++i) { // for vector units: nothing else in this loop
            least = raw[i] < least ? raw[i] : least;
            greatest = raw[i] > greatest ? raw[i] : greatest;
        }
        _least = least;
        _greatest = greatest;
        _count += count;
        if (_range.isLeftBy(least / _divisor) || _range.isLeftBy(greatest / _divisor)) {
            _countOutside(raw, count, sample);
        }
        if (_isInfinite(least) || _isInfinite(greatest)) {
            _countInfinite(raw, count, sample);
        }
    }

    std::uint64_t infinite() const { return _infinite; }
    std::uint64_t firstInfinite() const { return _firstInfinite; }

    bool isConstant() const { return _count >= kFewestSamples && _least == _greatest; }
    bool isZero() const { return _count != 0 && _least == 0.0 && _greatest == 0.0; }

    /// None where the range is of something else.
    std::uint64_t outside() const {
        const SeenValues seen = {_least / _divisor, _greatest / _divisor, _count, _outside};
        return _range.of(seen) == RangeOf::Recorded ? _outside : 0;
    }
    std::uint64_t firstOutside() const { return _firstOutside; }

    std::string text() const { return numberText(_firstValue); }

private:
    /// In the file, or with its factor: for who reads it there is no difference.
    bool _isInfinite(double raw) const { return std::isinf(raw / _divisor * _channel.a + _channel.b); }

    void _countInfinite(const double* raw, std::size_t count, std::uint64_t sample) {
        for (std::size_t i = 0; i < count; ++i) {
            if (_isInfinite(raw[i]) && _infinite++ == 0) {
                _firstInfinite = sample + i;
            }
        }
    }

    void _countOutside(const double* raw, std::size_t count, std::uint64_t sample) {
        for (std::size_t i = 0; i < count; ++i) {
            const double value = raw[i] / _divisor;
            if (_range.isLeftBy(value) && _outside++ == 0) {
                _firstOutside = sample + i;
                _firstValue = value;
            }
        }
    }

    const AnalogInfo& _channel;
    double _divisor; ///< of raw values that are taken times a power of ten
    ChannelRange _range;
    double _least = std::numeric_limits<double>::infinity(); ///< raw value
    double _greatest = -std::numeric_limits<double>::infinity();
    std::uint64_t _count = 0;
    std::uint64_t _outside = 0;
    std::uint64_t _firstOutside = 0;
    double _firstValue = 0.0;
    std::uint64_t _infinite = 0;
    std::uint64_t _firstInfinite = 0;
};

/// Looks at all values of a recording.
class ValueCheck {
public:
    ValueCheck(const ByteSource& data, const ReadCfg& cfg, const DataFacts& facts)
        : _data(data), _cfg(cfg), _facts(facts) {
        for (std::size_t i = 0; i < cfg.header.analog.size(); ++i) {
            _channels.emplace_back(cfg.header.analog[i], cfg.analog[i].hasRange,
                                   facts.exponents.empty() ? 0 : facts.exponents[i]);
            _missing.emplace_back(facts.missing, i);
        }
    }

    void run() {
        const auto reader = readBlocks(_data, _cfg.header, _facts, wholeRange(_cfg.header, _facts));
        Block block;
        while (reader->next(block)) {
            for (std::size_t channel = 0; channel < _channels.size(); ++channel) {
                _add(block, channel);
            }
        }
    }

    void report(Findings& findings) const {
        _reportOutside(findings);
        _reportInfinite(findings);
        const bool areAllZero = std::all_of(_channels.begin(), _channels.end(),
                                            [](const ChannelValues& values) { return values.isZero(); });
        if (areAllZero) {
            findings.add(Kind::AllZero, _placeOf(0, ""), {"0 in every analog sample"});
        } else {
            _reportConstant(findings);
        }
    }

private:
    void _add(const Block& block, std::size_t channel) {
        const double* const raw = block.raw.data() + channel * block.rows;
        ChannelValues& values = _channels[channel];
        if (_missing[channel].isEmpty()) {
            values.add(raw, block.rows, block.first);
            return;
        }
        for (std::size_t row = 0; row < block.rows; ++row) {
            if (!_missing[channel].isMissing(block.first + row)) {
                values.add(raw + row, 1, block.first + row);
            }
        }
    }

    void _reportOutside(Findings& findings) const {
        for (std::size_t i = 0; i < _channels.size(); ++i) {
            const ChannelValues& values = _channels[i];
            if (values.outside() == 0) {
                continue;
            }
            const AnalogInfo& channel = _cfg.header.analog[i];
            findings.add(Kind::ValueOutOfRange, _placeOf(values.firstOutside(), "A" + std::to_string(i + 1)),
                         {values.text() + " in sample " + std::to_string(values.firstOutside() + 1), "",
                          numberText(channel.min) + " to " + numberText(channel.max), values.outside()});
        }
    }

    void _reportInfinite(Findings& findings) const {
        for (std::size_t i = 0; i < _channels.size(); ++i) {
            const ChannelValues& values = _channels[i];
            if (values.infinite() != 0) {
                findings.add(
                    Kind::InfiniteValues, _placeOf(values.firstInfinite(), "A" + std::to_string(i + 1)),
                    {"infinity in sample " + std::to_string(values.firstInfinite() + 1), "", "", values.infinite()});
            }
        }
    }

    /// One finding for all of them: spare channels are usual.
    void _reportConstant(Findings& findings) const {
        std::uint64_t count = 0;
        std::size_t first = 0;
        for (std::size_t i = _channels.size(); i-- > 0;) {
            if (_channels[i].isConstant()) {
                ++count;
                first = i;
            }
        }
        if (count != 0 && count < _channels.size()) {
            findings.add(Kind::ConstantChannel, _placeOf(0, "A" + std::to_string(first + 1)),
                         {"the same value in every sample", "", "", count});
        }
    }

    Place _placeOf(std::uint64_t sample, const std::string& field) const {
        const std::uint64_t position = _facts.type == DataType::Ascii ? 0 : sample * _facts.recordStride;
        return {_data.name(), 0, field, _data.offsetInFile(position)};
    }

    const ByteSource& _data;
    const ReadCfg& _cfg;
    const DataFacts& _facts;
    std::vector<ChannelValues> _channels;
    std::vector<MissingCursor> _missing;
};

} // namespace

void checkValues(const ByteSource& data, const ReadCfg& cfg, const DataFacts& facts, Findings& findings) {
    if (cfg.header.analog.empty()) {
        return;
    }
    ValueCheck check(data, cfg, facts);
    check.run();
    check.report(findings);
}

} // namespace OrvComtradeIntake
