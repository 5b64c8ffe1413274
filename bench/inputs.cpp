#include "inputs.h"

#include <fmt/format.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>

namespace orvbench {

namespace {

constexpr unsigned long kRateCount = 1000;
constexpr std::size_t kBlockLength = 1U << 20U;
constexpr int kManyBits = 65537;      // times a value of 16 bits; a single holds 24
constexpr std::size_t kPeriod = 1024; // samples of the stored wave

/// Numbers that are the same everywhere: the upper halves of a linear congruential generator modulo 2^64, with the
/// factors of D. Knuth's MMIX.
class Draw {
public:
    std::uint32_t next() {
        _state = _state * 6364136223846793005U + 1442695040888963407U;
        return static_cast<std::uint32_t>(_state >> 32U);
    }

private:
    std::uint64_t _state = 1;
};

/// What the channels show.
class Signal {
public:
    explicit Signal(const Shape& shape) : _shape(shape), _wave(kPeriod) {
        for (std::size_t i = 0; i < kPeriod; ++i) {
            _wave[i] = std::sin(6.283185307179586 * static_cast<double>(i) / static_cast<double>(kPeriod));
        }
    }

    /// A wave of 30 to 30000 digital steps with a little noise.
    int analog(unsigned long sample, unsigned long channel) {
        const double amplitude = 30.0 * static_cast<double>(1U << (channel * 7 % 11));
        const std::size_t phase = (sample * (channel % 5 + 3) + channel * 97) % kPeriod;
        return static_cast<int>(amplitude * _wave[phase]) + static_cast<int>(_draw.next() % 5U) - 2;
    }

    bool status(unsigned long sample, unsigned long channel) {
        if (_shape.statusBits == StatusBits::Random) {
            return (_draw.next() >> 15U & 1U) != 0;
        }
        return ((sample + 131 * channel) / (20000 + 611 * channel) & 1U) != 0;
    }

private:
    const Shape& _shape;
    std::vector<double> _wave;
    Draw _draw;
};

/// A file that is written in large pieces.
class Output {
public:
    explicit Output(const std::string& path) : _out(path, std::ios_base::binary) { _block.reserve(kBlockLength); }

    std::string& room() {
        if (_block.size() > kBlockLength - kBlockLength / 4) {
            _flush();
        }
        return _block;
    }

    unsigned long finish() {
        _flush();
        _out.close();
        if (!_out) {
            throw std::runtime_error("cannot write the input files");
        }
        return _length;
    }

private:
    void _flush() {
        _out.write(_block.data(), static_cast<std::streamsize>(_block.size()));
        _length += _block.size();
        _block.clear();
    }

    std::ofstream _out;
    std::string _block;
    unsigned long _length = 0;
};

void append16(std::string& bytes, std::uint32_t value) {
    bytes += static_cast<char>(value & 0xFFU);
    bytes += static_cast<char>(value >> 8U & 0xFFU);
}

void append32(std::string& bytes, std::uint32_t value) {
    append16(bytes, value);
    append16(bytes, value >> 16U);
}

std::uint32_t bitsOf(float value) {
    std::uint32_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

double samplesPerSecond(const Shape& shape) {
    return shape.statuses == 0 ? 1000000.0 : 4800.0; // without status channels: a travelling-wave recorder
}

std::uint32_t microseconds(const Shape& shape, unsigned long sample) {
    return static_cast<std::uint32_t>(std::lround(static_cast<double>(sample) * 1e6 / samplesPerSecond(shape)));
}

void appendLine(std::string& text, const Shape& shape, Signal& signal, unsigned long sample) {
    fmt::format_to(std::back_inserter(text), "{},{}", sample + 1, microseconds(shape, sample));
    for (unsigned long channel = 0; channel < shape.analogs; ++channel) {
        const int value = signal.analog(sample, channel);
        if (shape.encoding == Encoding::Decimals) {
            fmt::format_to(std::back_inserter(text), ",{:.3f}", value / 100.0);
        } else {
            fmt::format_to(std::back_inserter(text), ",{}", value);
        }
    }
    for (unsigned long channel = 0; channel < shape.statuses; ++channel) {
        text += signal.status(sample, channel) ? ",1" : ",0";
    }
    text += '\n';
}

void appendRecord(std::string& bytes, const Shape& shape, Signal& signal, unsigned long sample) {
    append32(bytes, static_cast<std::uint32_t>(sample + 1));
    append32(bytes, microseconds(shape, sample));
    for (unsigned long channel = 0; channel < shape.analogs; ++channel) {
        const int value = signal.analog(sample, channel);
        if (shape.encoding == Encoding::Float32) {
            append32(bytes, bitsOf(static_cast<float>(value) * 0.37F));
        } else if (shape.encoding == Encoding::Binary32) {
            append32(bytes, static_cast<std::uint32_t>(value * kManyBits));
        } else {
            append16(bytes, static_cast<std::uint32_t>(value));
        }
    }
    for (unsigned long first = 0; first < shape.statuses; first += 16) {
        std::uint32_t word = 0;
        for (unsigned int bit = 0; bit < 16 && first + bit < shape.statuses; ++bit) {
            word |= signal.status(sample, first + bit) ? 1U << bit : 0U;
        }
        append16(bytes, word);
    }
}

void appendRates(std::string& text, const Shape& shape) {
    const auto line = [&text](double rate, unsigned long endSample) {
        fmt::format_to(std::back_inserter(text), "{},{}\n", rate, endSample);
    };
    const double rate = samplesPerSecond(shape);
    if (shape.rates == Rates::Zero) {
        text += "0\n";
        line(0.0, shape.samples);
    } else if (shape.rates == Rates::One) {
        text += "1\n";
        line(rate, shape.samples);
    } else {
        // Each number counts as the length of its own segment, and the last as the number of samples.
        const unsigned long length = (shape.samples + kRateCount - 1) / kRateCount;
        fmt::format_to(std::back_inserter(text), "{}\n", kRateCount);
        for (unsigned long i = 0; i < kRateCount; ++i) {
            line(rate * (1.0 + static_cast<double>(i % 7) / 8.0), i + 1 < kRateCount ? length : shape.samples);
        }
    }
}

std::string typeWord(Encoding encoding) {
    switch (encoding) {
    case Encoding::Ascii:
    case Encoding::Decimals:
        return "ASCII";
    case Encoding::Binary32:
        return "BINARY32";
    case Encoding::Binary:
        return "BINARY";
    default:
        return "FLOAT32";
    }
}

} // namespace

TemporaryFolder::TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "orvcomtrade-bench-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error("cannot make a temporary folder");
    }
    _path = name;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(_path, ignored);
}

Recording writeConfiguration(const Shape& shape, const std::string& folder) {
    Recording recording{folder + "/input.cfg", folder + "/input.dat"};
    Output out(recording.cfg);
    fmt::format_to(std::back_inserter(out.room()), "Station 7,Recorder,1999\n{},{}A,{}D\n",
                   shape.analogs + shape.statuses, shape.analogs, shape.statuses);
    for (unsigned long i = 0; i < shape.analogs; ++i) {
        fmt::format_to(std::back_inserter(out.room()),
                       "{},Bay {} U{},{},Line {},kV,{:.9f},{:.5f},{},-32767,32767,{},{},S\n", i + 1, i / 4 + 1,
                       "ABCN"[i % 4], "ABCN"[i % 4], i / 8 + 1, 0.0031 + 0.00017 * static_cast<double>(i % 13),
                       0.25 * static_cast<double>(i % 3), 8 * (i % 5), 110000 + i, 100);
    }
    for (unsigned long i = 0; i < shape.statuses; ++i) {
        fmt::format_to(std::back_inserter(out.room()), "{},Protection {} trip,,Line {},{}\n", i + 1, i + 1, i / 8 + 1,
                       i % 2);
    }
    std::string& tail = out.room();
    tail += "50\n";
    appendRates(tail, shape);
    tail += "01/02/2020,03:04:05.000000\n01/02/2020,03:04:05.100000\n" + typeWord(shape.encoding) + "\n1\n";
    recording.cfgBytes = out.finish();
    return recording;
}

Recording writeRecording(const Shape& shape, const std::string& folder) {
    Recording recording = writeConfiguration(shape, folder);
    Output out(recording.dat);
    Signal signal(shape);
    for (unsigned long sample = 0; sample < shape.samples; ++sample) {
        if (shape.encoding == Encoding::Ascii || shape.encoding == Encoding::Decimals) {
            appendLine(out.room(), shape, signal, sample);
        } else {
            appendRecord(out.room(), shape, signal, sample);
        }
    }
    recording.datBytes = out.finish();
    return recording;
}

} // namespace orvbench
