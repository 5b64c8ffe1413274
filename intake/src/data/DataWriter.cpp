#include "data/DataWriter.h"

#include "data/DataLayout.h"
#include "data/LineText.h"
#include "data/Stamps.h"
#include "data/missingValues.h"
#include "data/singleText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

namespace OrvComtradeIntake {

namespace {

constexpr std::size_t kLarge = 128UL * 1024; // bytes handed to the sink at a time
constexpr auto kGreatestSingle = static_cast<double>(std::numeric_limits<float>::max());
constexpr double kLeastSingle = -0x1.fffffcp127; // the next lower one stands for a missing value

template <class Value> void putLittleEndian(char* bytes, Value value) {
    for (std::size_t i = 0; i < sizeof value; ++i) {
        bytes[i] = static_cast<char>(static_cast<unsigned char>(value >> 8 * i));
    }
}

/// The nearest integer from `least` to `greatest`; 0 for what is no number.
std::int64_t nearestInteger(double value, double least, double greatest) {
    return std::isnan(value) ? 0 : std::llround(std::clamp(value, least, greatest));
}

std::uint32_t bitsOf(float value) {
    std::uint32_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

float finiteSingleOf(double value, double least) {
    return std::isnan(value) ? 0.0F : static_cast<float>(std::clamp(value, least, kGreatestSingle));
}

constexpr double kBeyondIntegers = 0x1p63; // of 64 bits

bool isBeyondIntegers(double value) {
    return std::abs(value) > kBeyondIntegers && std::isfinite(value);
}

/// Apart by more than the division by a power of ten may have made of it.
bool isAnother(double exact, double written) {
    return std::abs(exact - written) > 0x1p-48 * std::abs(written);
}

/// Whether the decimal that is written for the single is another number.
bool isRoundedAsText(float value) {
    std::array<char, 32> text{};
    const char* const end = writeSingle(text.data(), text.data() + text.size(), value);
    double read = 0.0;
    std::from_chars(text.data(), end, read);
    return read != static_cast<double>(value);
}

} // namespace

DataWriter::DataWriter(const DataOutput& output, const std::vector<MissingRun>& missing, const Sink& sink)
    : _output(output), _sink(sink), _isRounded(output.channels.size()) {
    for (std::size_t channel = 0; channel < output.channels.size() && !output.keepsMarkers; ++channel) {
        _missing.emplace_back(missing, channel);
    }
    for (const ChannelForm& form : output.channels) {
        _mostDecimals = std::max(_mostDecimals, std::abs(form.decimals));
    }
}

void DataWriter::write(const Block& block) {
    for (std::size_t row = 0; row < block.rows; ++row) {
        if (_output.type == DataType::Ascii) {
            _writeLine(block, row);
        } else {
            _writeRecord(block, row);
        }
        if (_bytes.size() >= kLarge) {
            _sink(_bytes);
            _bytes.clear();
        }
    }
    if (!_bytes.empty()) {
        _sink(_bytes);
        _bytes.clear();
    }
}

std::vector<std::size_t> DataWriter::rounded() const {
    std::vector<std::size_t> channels;
    for (std::size_t channel = 0; channel < _isRounded.size(); ++channel) {
        if (_isRounded[channel]) {
            channels.push_back(channel);
        }
    }
    return channels;
}

void DataWriter::_writeLine(const Block& block, std::size_t row) {
    LineText line(_bytes, 2 + _output.channels.size(), _output.statuses, _mostDecimals);
    line.addNumber(_numberOf(block, row));
    const std::int64_t stamp = _stampOf(block, row);
    if (stamp == kNoStamp) {
        line.addNothing();
    } else {
        line.addNumber(stamp);
    }
    for (std::size_t channel = 0; channel < _output.channels.size(); ++channel) {
        const ChannelForm& form = _output.channels[channel];
        const double raw = block.raw[channel * block.rows + row];
        if (_isMissing(channel, block.first + row)) {
            line.addNumber(_output.missingCode);
        } else if (form.isReal) {
            const float value = finiteSingleOf(raw, kLeastSingle); // a text has no word for infinity
            _isRounded[channel] = _isRounded[channel] || !std::isfinite(raw) || isRoundedAsText(value);
            line.addReal(value);
        } else if (_output.mayHaveLongNumbers && isBeyondIntegers(raw / form.divisor)) {
            line.addLong(raw / form.divisor / std::pow(10.0, form.decimals));
        } else {
            line.addDecimal(_integerOf(channel, raw), form.decimals);
        }
    }
    for (std::size_t word = 0; word < block.stateWords; ++word) {
        line.addStates(block.states[row * block.stateWords + word],
                       std::min<std::size_t>(_output.statuses - word * 64, 64));
    }
    line.finish(_output.lineEnd);
}

void DataWriter::_writeRecord(const Block& block, std::size_t row) {
    const std::size_t valueLength = _output.type == DataType::Binary ? 2 : 4;
    const std::size_t words = (_output.statuses + DataLayout::kStatesPerWord - 1) / DataLayout::kStatesPerWord;
    const std::size_t begin = _bytes.size();
    _bytes.resize(begin + DataLayout::kAnalogOffset + valueLength * _output.channels.size() + 2 * words);
    char* at = _bytes.data() + begin;
    putLittleEndian(at, static_cast<std::uint32_t>(_numberOf(block, row)));
    const std::int64_t stamp = _stampOf(block, row);
    putLittleEndian(at + DataLayout::kStampOffset,
                    stamp == kNoStamp ? kMissingStamp : static_cast<std::uint32_t>(stamp));
    at += DataLayout::kAnalogOffset;
    for (std::size_t channel = 0; channel < _output.channels.size(); ++channel, at += valueLength) {
        _putValue(channel, block.raw[channel * block.rows + row], _isMissing(channel, block.first + row), at);
    }
    for (std::size_t i = 0; i < words; ++i, at += 2) {
        const std::uint64_t word = block.states[row * block.stateWords + i / 4] >> i % 4 * DataLayout::kStatesPerWord;
        putLittleEndian(at, static_cast<std::uint16_t>(word));
    }
}

std::int64_t DataWriter::_numberOf(const Block& block, std::size_t row) const {
    return _output.renumbers ? static_cast<std::int64_t>(block.first + row + 1) : block.numbers[row];
}

std::int64_t DataWriter::_stampOf(const Block& block, std::size_t row) {
    const std::int64_t recorded = block.stamps[row];
    const bool isComputed = _output.computesStamps || (recorded == kNoStamp && !_output.mayLeaveStampsOut);
    return isComputed ? _computedStamp(block.first + row) : recorded;
}

/// Counts modulo 2^32, as stamps do, and passes over the number that stands for a missing one.
std::int64_t DataWriter::_computedStamp(std::uint64_t sample) {
    constexpr double range = 0x1p32;
    const auto& steps = _output.stampSteps;
    if (steps.empty()) {
        return 0;
    }
    const auto stampOf = [&](std::uint64_t at) {
        return _stepBegin + static_cast<double>(at - steps[_step].first) * steps[_step].second;
    };
    while (_step + 1 < steps.size() && steps[_step + 1].first <= sample) {
        _stepBegin = stampOf(steps[_step + 1].first);
        ++_step;
    }
    const std::int64_t stamp = nearestInteger(std::fmod(stampOf(sample), range), 0.0, range);
    return std::min<std::int64_t>(stamp % (std::int64_t{1} << 32U), kMissingStamp - 1);
}

/// Where values are rounded anyway, none becomes the number that stands for a missing one.
std::int64_t DataWriter::_integerOf(std::size_t channel, double raw) {
    const ChannelForm& form = _output.channels[channel];
    const double exact = raw / form.divisor;
    if (std::abs(exact) >= kBeyondIntegers) { // reads back as 2^63
        _isRounded[channel] = _isRounded[channel] || std::abs(exact) > kBeyondIntegers;
        return exact < 0.0 ? -INT64_MAX : INT64_MAX;
    }
    const std::int64_t value = _integerWithin(channel, exact, -kBeyondIntegers, kBeyondIntegers);
    const bool looksMissing = value == _output.missingCode && !_output.keepsMarkers && form.divisor != 1.0;
    return looksMissing ? value - 1 : value;
}

std::int64_t DataWriter::_integerWithin(std::size_t channel, double value, double least, double greatest) {
    const std::int64_t integer = nearestInteger(value, least, greatest);
    _isRounded[channel] = _isRounded[channel] || isAnother(value, static_cast<double>(integer));
    return integer;
}

bool DataWriter::_isMissing(std::size_t channel, std::uint64_t sample) {
    return !_output.keepsMarkers && _missing[channel].isMissing(sample);
}

float DataWriter::_singleOf(std::size_t channel, double value) {
    if (!std::isfinite(value)) {
        return static_cast<float>(value);
    }
    const float single = finiteSingleOf(value, _output.keepsMarkers ? -kGreatestSingle : kLeastSingle);
    _isRounded[channel] = _isRounded[channel] || static_cast<double>(single) != value;
    return single;
}

void DataWriter::_putValue(std::size_t channel, double raw, bool isMissing, char* bytes) {
    const double value = raw / _output.channels[channel].divisor;
    const double marker = _output.keepsMarkers ? 1.0 : 0.0; // the least number of a type stands for a missing value
    switch (_output.type) {
    case DataType::Binary:
        putLittleEndian(
            bytes, isMissing ? kMissing16
                             : static_cast<std::uint16_t>(_integerWithin(channel, value, -32767.0 - marker, 32767.0)));
        break;
    case DataType::Binary32:
        putLittleEndian(bytes, isMissing ? kMissing32
                                         : static_cast<std::uint32_t>(
                                               _integerWithin(channel, value, -2147483647.0 - marker, 2147483647.0)));
        break;
    default:
        putLittleEndian(bytes, isMissing ? kMissingSingle : bitsOf(_singleOf(channel, value)));
    }
}

} // namespace OrvComtradeIntake
