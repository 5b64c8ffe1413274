#include "floors.h"

#include "../src/data/hugePages.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <memory>
#include <stdexcept>

namespace orvbench {
namespace floors {

namespace {

using OrvComtradeLib::Cfg;

constexpr std::size_t kBlockLength = 256UL * 1024;
constexpr std::size_t kHeaderLength = 8;
constexpr std::size_t kBitsPerWord = 16;

// Fields are taken as they stand, which lets the compiler convert several at a time.
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ != __ORDER_LITTLE_ENDIAN__
#error "the floors are written for little-endian machines"
#endif

template <class Field> Field readField(const char* bytes) {
    Field value;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

/// Factors of all channels, one array per factor, so that several channels are scaled at a time.
struct Scalings {
    explicit Scalings(const Cfg& cfg) {
        for (const OrvComtradeLib::AnalogChannelConfig& record : cfg.analogChannelConfigs) {
            a.push_back(record.a);
            b.push_back(record.b);
            unit.push_back(record.unitMultiplier);
        }
    }

    std::size_t size() const { return a.size(); }

    void apply(std::vector<double>& values) const {
        for (std::size_t channel = 0; channel < values.size(); ++channel) {
            values[channel] = (values[channel] * a[channel] + b[channel]) * unit[channel];
        }
    }

    std::vector<double> a;
    std::vector<double> b;
    std::vector<double> unit;
};

/// Time from the position, with the segment at hand instead of a search.
class Clock {
public:
    explicit Clock(const Cfg& configuration) : _cfg(configuration) { _enter(0); }

    double timeOf(std::size_t index, std::uint32_t stamp) {
        if (!_cfg.samplingRateKnown) {
            return static_cast<double>(stamp) * _cfg.timeMultiplier * 0.000001;
        }
        if (index == _end && _segment + 1 < _cfg.samplingRates.size()) {
            _accumulated += static_cast<double>(_end - _begin) / _rate;
            _enter(_segment + 1);
        }
        return (static_cast<double>(index - _begin) / _rate + _accumulated) * _cfg.timeMultiplier;
    }

private:
    void _enter(std::size_t segment) {
        _segment = segment;
        _begin = _end;
        _end = _begin + _cfg.samplingRates[segment].endSample;
        _rate = _cfg.samplingRates[segment].rate;
    }

    const Cfg& _cfg;
    std::size_t _segment = 0;
    std::size_t _begin = 0;
    std::size_t _end = 0;
    double _rate = 0.0;
    double _accumulated = 0.0;
};

/// States from the 16-bit words of a record.
void decodeStatusWords(const char* bytes, std::size_t count, std::vector<bool>& states) {
    states = std::vector<bool>(count);
#if defined(__GLIBCXX__) && !defined(_GLIBCXX_DEBUG)
    // The words of this library's vector hold the states in the order of the record.
    std::memcpy(states.begin()._M_p, bytes, (count + kBitsPerWord - 1) / kBitsPerWord * 2);
#else
    for (std::size_t i = 0; i < count; ++i) {
        states[i] = (static_cast<unsigned int>(bytes[i / 8]) >> i % 8 & 1U) != 0;
    }
#endif
}

/// States from ",0,1,0". Most lines repeat the text before them, and a copy costs one allocation and no bit at all.
class StatusText {
public:
    explicit StatusText(std::size_t count) : _states(count), _text(2 * count) {}

    const std::vector<bool>& fromText(const char* text) {
        if (!_text.empty() && std::memcmp(text, _text.data(), _text.size()) != 0) {
            for (std::size_t i = 0; i < _states.size(); ++i) {
                _states[i] = text[2 * i + 1] != '0';
            }
            std::memcpy(_text.data(), text, _text.size());
        }
        return _states;
    }

    std::size_t length() const { return _text.size(); }

private:
    std::vector<bool> _states;
    std::vector<char> _text;
};

template <class Raw>
void decodeRecord(const char* record, const Scalings& scalings, std::vector<double>& scratch, Sample& sample) {
    const char* const raw = record + kHeaderLength;
    const double* const a = scalings.a.data();
    const double* const b = scalings.b.data();
    const double* const unit = scalings.unit.data();
    double* const values = scratch.data();
    const std::size_t count = scratch.size();
    for (std::size_t channel = 0; channel < count; ++channel) {
        values[channel] = (static_cast<double>(readField<Raw>(raw + sizeof(Raw) * channel)) * a[channel] + b[channel]) *
                          unit[channel];
    }
    sample.analogValues.assign(scratch.begin(), scratch.end());
}

std::vector<Sample> roomFor(const Cfg& cfg, Pages pages) {
    std::vector<Sample> samples;
    samples.reserve(cfg.lastSampleNumber);
    if (pages == Pages::Huge) {
        OrvComtradeLib::adviseHugePages(samples.data(), samples.capacity() * sizeof(Sample));
    }
    return samples;
}

template <class Raw> std::vector<Sample> loadRecords(const Cfg& cfg, std::ifstream& in, Pages pages) {
    const Scalings scalings(cfg);
    Clock clock(cfg);
    const auto statuses = static_cast<std::size_t>(cfg.binaryChannelCount);
    std::vector<Sample> samples = roomFor(cfg, pages);
    const std::size_t recordLength = cfg.recordLength;
    const std::size_t recordsPerBlock = std::max<std::size_t>(1, kBlockLength / recordLength);
    const std::unique_ptr<char[]> block(new char[recordsPerBlock * recordLength]);
    std::vector<double> scratch(scalings.size());
    for (std::size_t left = cfg.lastSampleNumber; left > 0;) {
        const std::size_t records = std::min(left, recordsPerBlock);
        in.read(block.get(), static_cast<std::streamsize>(records * recordLength));
        const char* record = block.get();
        for (std::size_t i = 0; i < records; ++i, record += recordLength) {
            const std::size_t index = samples.size();
            Sample& sample = samples.emplace_back(cfg);
            sample.index = index;
            sample.time = clock.timeOf(index, readField<std::uint32_t>(record + 4));
            decodeRecord<Raw>(record, scalings, scratch, sample);
            if (statuses != 0) {
                decodeStatusWords(record + kHeaderLength + cfg.analogValuesLength, statuses, sample.binaryValues);
            }
        }
        left -= records;
    }
    return samples;
}

/// The word of eight times the same byte.
constexpr std::uint64_t eightTimes(unsigned char byte) {
    return UINT64_MAX / 0xFFU * byte;
}

/// Reads an optional sign and digits up to the first other character. Takes eight characters at a time: finds the end
/// of the digits in them, moves the digits to the upper end and adds them up in pairs, fours and eights (L. Lamport,
/// "Multiple byte processing with full-word instructions", 1975).
inline std::int64_t readInteger(const char*& cursor) {
    constexpr unsigned char highBit = 0x80;
    constexpr std::uint64_t everyOther = 0xFFU | std::uint64_t{0xFFU} << 32U;
    constexpr std::uint64_t firstAndThird = std::uint64_t{1000000} << 32U | 100U; // what these pairs are worth
    constexpr std::uint64_t secondAndFourth = std::uint64_t{10000} << 32U | 1U;
    const bool negative = *cursor == '-';
    cursor += negative ? 1 : 0;
    const std::uint64_t digits = readField<std::uint64_t>(cursor) ^ eightTimes('0'); // a digit becomes its value
    const std::uint64_t others = ((digits + eightTimes(highBit - 10)) | digits) & eightTimes(highBit); // above 9
    std::int64_t value = 0;
    if (others != 0) {
        const auto bits = static_cast<unsigned int>(__builtin_ctzll(others)) & ~7U; // 8 for each digit
        std::uint64_t sum = digits << (63U - bits) << 1U;
        sum = sum * 10 + (sum >> 8U);
        sum = (sum & everyOther) * firstAndThird + (sum >> 16U & everyOther) * secondAndFourth;
        value = static_cast<std::int64_t>(sum >> 32U);
        cursor += bits / 8;
    } else {
        for (unsigned int digit = 0; (digit = static_cast<unsigned int>(*cursor) - unsigned{'0'}) < 10U; ++cursor) {
            value = value * 10 + static_cast<std::int64_t>(digit);
        }
    }
    const auto mask = -static_cast<std::int64_t>(negative);
    return (value ^ mask) - mask;
}

/// A text file in blocks of whole lines. Reading it in one piece costs more: memory that is touched only once.
class LineBlocks {
public:
    explicit LineBlocks(std::ifstream& in) : _in(in), _block(new char[kBlockLength + kSpare]) {}

    /// The next whole lines; false at the end of the file.
    bool next() {
        const auto rest = static_cast<std::size_t>(_filled - _end);
        std::memmove(_block.get(), _block.get() + _end, rest);
        _in.read(_block.get() + rest, static_cast<std::streamsize>(kBlockLength - rest));
        _filled = rest + static_cast<std::size_t>(_in.gcount());
        _end = _filled;
        while (_end > 0 && _block[_end - 1] != '\n') {
            --_end;
        }
        return _end > 0;
    }

    const char* begin() const { return _block.get(); }
    const char* end() const { return _block.get() + _end; }

private:
    static constexpr std::size_t kSpare = 8; // readInteger looks as far ahead

    std::ifstream& _in;
    std::unique_ptr<char[]> _block;
    std::size_t _filled = 0;
    std::size_t _end = 0;
};

std::vector<Sample> loadLines(const Cfg& cfg, std::ifstream& in, Pages pages) {
    const Scalings scalings(cfg);
    Clock clock(cfg);
    StatusText states(static_cast<std::size_t>(cfg.binaryChannelCount));
    std::vector<Sample> samples = roomFor(cfg, pages);
    std::vector<double> raw(scalings.size());
    LineBlocks blocks(in);
    while (blocks.next()) {
        for (const char* cursor = blocks.begin(); cursor != blocks.end();) {
            const std::size_t index = samples.size();
            Sample& sample = samples.emplace_back(cfg);
            sample.index = index;
            readInteger(cursor);
            ++cursor;
            sample.time = clock.timeOf(index, static_cast<std::uint32_t>(readInteger(cursor)));
            for (double& value : raw) {
                ++cursor;
                value = static_cast<double>(readInteger(cursor));
            }
            scalings.apply(raw);
            sample.analogValues.assign(raw.begin(), raw.end());
            sample.binaryValues = states.fromText(cursor);
            cursor += states.length() + 1;
        }
    }
    return samples;
}

double numberAt(const char* text, std::string& field) {
    field.assign(text, static_cast<std::size_t>(std::strchr(text, ',') - text));
    return std::stod(field);
}

const char* skipFields(const char* text, int count) {
    for (int i = 0; i < count; ++i) {
        text = std::strchr(text, ',') + 1;
    }
    return text;
}

} // namespace

std::vector<Sample> loadSamples(const Cfg& cfg, const std::string& path, Pages pages) {
    std::ifstream in(path, std::ios_base::binary);
    switch (cfg.dataFileType) {
    case OrvComtradeLib::Enums::Ascii:
        return loadLines(cfg, in, pages);
    case OrvComtradeLib::Enums::Binary:
        return loadRecords<std::int16_t>(cfg, in, pages);
    case OrvComtradeLib::Enums::Float32:
        return loadRecords<float>(cfg, in, pages);
    default:
        throw std::invalid_argument("no floor for this encoding");
    }
}

std::vector<double> readNumbers(const std::string& path, std::size_t analogs, std::size_t statuses) {
    constexpr int kFactors = 5; // of the analog fields that are numbers: the first, and how many
    constexpr int kFactorCount = 7;
    constexpr int kNormalState = 4;
    std::ifstream in(path);
    std::string line;
    std::string field;
    std::vector<double> numbers;
    numbers.reserve(kFactorCount * analogs + statuses);
    std::getline(in, line);
    std::getline(in, line);
    for (std::size_t i = 0; i < analogs; ++i) {
        std::getline(in, line);
        const char* text = skipFields(line.c_str(), kFactors);
        for (int factor = 0; factor < kFactorCount; ++factor) {
            numbers.push_back(numberAt(text, field));
            text += field.size() + 1;
        }
    }
    for (std::size_t i = 0; i < statuses; ++i) {
        std::getline(in, line);
        field.assign(skipFields(line.c_str(), kNormalState));
        numbers.push_back(std::stod(field));
    }
    while (std::getline(in, line)) {
    }
    return numbers;
}

std::vector<Orv::PointF> analogPoints(const std::vector<OrvComtradeLib::Sample>& samples, std::size_t channel,
                                      double skew, double start, double end, double rate) {
    const double total = (end - start) * rate;
    std::vector<Orv::PointF> points;
    points.reserve(static_cast<std::size_t>(total) + 1);
    const OrvComtradeLib::Sample* right = samples.data();
    const double last = samples.back().time;
    for (std::size_t k = 0; static_cast<double>(k) < total; ++k) {
        const double time = static_cast<double>(k) / rate + start;
        const double instant = time - skew;
        double value = 0.0;
        if (instant >= 0.0 && instant <= last) {
            while (right->time < instant) { // ends at the last sample
                ++right;
            }
            value = right->analogValues[channel];
            if (right != samples.data()) {
                const OrvComtradeLib::Sample* const left = right - 1;
                const double y1 = left->analogValues[channel];
                const double slope = (value - y1) / (right->time - left->time);
                value = (y1 - left->time * slope) + instant * slope;
            }
        }
        points.push_back({static_cast<float>(time), static_cast<float>(value)});
    }
    return points;
}

std::vector<Orv::PointF> statusPoints(const std::vector<OrvComtradeLib::Sample>& samples, std::size_t bit, double start,
                                      double end) {
    std::vector<Orv::PointF> points;
    const auto append = [&points](double x, bool state) {
        points.push_back({static_cast<float>(x), state ? 1.0F : 0.0F});
    };
    const OrvComtradeLib::Sample* sample = samples.data();
    const OrvComtradeLib::Sample* const beyond = sample + samples.size();
    bool state = sample->binaryValues[bit];
    append(start, state);
    for (; sample != beyond && sample->time <= end; ++sample) {
        if (sample->binaryValues[bit] != state) {
            state = !state;
            append(sample->time - start, state);
        }
    }
    if (std::fabs(end - static_cast<double>(points.back().x)) > 1e-6) {
        append(end, state);
    }
    return points;
}

} // namespace floors
} // namespace orvbench
