// Properties over random recordings, texts and numbers.

#include "Comtrade.h"
#include "StringHelper.h"
#include "support/LittleEndianBytes.h"
#include "support/RandomNumbers.h"
#include "support/RecordingBuilder.h"
#include "support/TempDir.h"
#include "support/fixedSeed.h"
#include "toUtf8.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

using namespace OrvComtradeLib;
using orvtest::Decimal;
using orvtest::LittleEndianBytes;
using orvtest::randomCount;
using orvtest::randomDecimal;
using orvtest::RecordingBuilder;
using orvtest::TempDir;

namespace {

constexpr long double kFewRoundings = 0x1p-50L; // eight half units in the last place of a double

std::string randomText(const std::string& alphabet, std::size_t most) {
    return *rc::gen::container<std::string>(randomCount(0, most), rc::gen::elementOf(alphabet));
}

bool sameBits(double left, double right) {
    return std::memcmp(&left, &right, sizeof left) == 0;
}

long double wide(double value) {
    return static_cast<long double>(value);
}

bool isNear(double value, long double expected, long double tolerance) {
    return std::fabs(wide(value) - expected) <= tolerance;
}

struct Unit {
    const char* text;
    long double factor;
};

std::ostream& operator<<(std::ostream& out, const Unit& unit) {
    return out << unit.text;
}

/// A recording with what must be read from it.
struct RandomRecording {
    RecordingBuilder builder;
    std::string type;
    std::vector<std::string> analogNames;
    std::vector<std::string> statusNames;
    std::vector<std::vector<long double>> values;
    std::vector<std::vector<long double>> tolerances;
    std::vector<std::vector<bool>> bits;
    std::vector<long double> times;
    bool ratesKnown = true;
};

/// Factors of one analog channel, from raw to secondary base units.
struct Scale {
    long double a;
    long double b;
    long double factor;
};

Scale addAnalogChannel(RandomRecording& recording, std::size_t number, int revisionYear) {
    const auto unit = *rc::gen::element<Unit>(Unit{"V", 1}, Unit{"kV", 1000}, Unit{"KA", 1000}, Unit{"mA", 0.001L},
                                              Unit{"MW", 1000000}, Unit{"m", 1}, Unit{"", 1}, Unit{"Hz", 1});
    const Decimal a = randomDecimal(-100000, 100000, 6);
    const Decimal b = randomDecimal(-1000000, 1000000, 4);
    const std::string name = randomText("ABCabc019 _-", 8);
    recording.analogNames.push_back(name);
    std::string line = std::to_string(number) + "," + name + ",A,Bus," + unit.text + "," + a.text() + "," + b.text() +
                       "," + randomDecimal(-500, 500, 1).text() + ",-32768,32767";
    Scale scale{a.value(), b.value(), unit.factor};
    if (revisionYear >= 1999) {
        const auto primary = *rc::gen::inRange<int>(1, 2000);
        const auto secondary = *rc::gen::inRange<int>(1, 2000);
        const auto side = *rc::gen::element<std::string>("S", "s", "P", "p");
        line += "," + std::to_string(primary) + "," + std::to_string(secondary) + "," + side;
        if (side == "P" || side == "p") {
            scale.a = scale.a * secondary / primary;
        }
    }
    recording.builder.analog(line);
    return scale;
}

void addStatusChannel(RandomRecording& recording, std::size_t number, int revisionYear) {
    const std::string name = randomText("DEFdef019 _-", 8);
    recording.statusNames.push_back(name);
    recording.builder.status(std::to_string(number) + "," + name + (revisionYear >= 1999 ? ",,,0" : ",0"));
}

/// Seconds from the first sample to sample `index`, step by step: each rate lasts for as many steps as its number says.
long double sumOfSteps(const std::vector<Decimal>& rates, const std::vector<unsigned long>& lengths,
                       unsigned long index) {
    long double sum = 0;
    std::size_t segment = 0;
    unsigned long stepsLeft = lengths[0];
    unsigned long stepsBeyond = lengths.back();
    for (unsigned long step = 0; step < index; ++step) {
        while (stepsLeft == 0 && segment + 1 < rates.size()) {
            stepsLeft = lengths[++segment];
        }
        if (stepsLeft == 0) {
            if (stepsBeyond == 0) {
                break;
            }
            --stepsBeyond;
        } else {
            --stepsLeft;
        }
        sum += 1 / rates[segment].value();
    }
    return sum;
}

struct RandomRates {
    std::vector<Decimal> rates;
    std::vector<unsigned long> lengths;
};

RandomRates randomRates() {
    RandomRates random;
    const std::size_t count = randomCount(1, 3);
    for (std::size_t i = 0; i < count; ++i) {
        random.rates.push_back(randomDecimal(1, 100000, 2));
        random.lengths.push_back(*rc::gen::inRange<unsigned long>(i + 1 == count ? 1 : 0, 25));
    }
    return random;
}

Decimal randomMultiplier() {
    const auto choice = *rc::gen::inRange<std::size_t>(0, 4);
    const Decimal multipliers[] = {{1, 0}, {1, 3}, {1000, 0}, {25, 1}};
    return multipliers[choice];
}

RandomRecording randomRecording() {
    RandomRecording recording;
    recording.type = *rc::gen::element<std::string>("ASCII", "ascii", "BINARY", "Binary", "FLOAT32", "float32");
    const bool text = recording.type == "ASCII" || recording.type == "ascii";
    const bool integers = recording.type == "BINARY" || recording.type == "Binary";
    recording.builder.type(recording.type);
    recording.builder.lineEnd(text && *rc::gen::arbitrary<bool>() ? "\r\n" : "\n");
    const auto revisionYear = *rc::gen::element<int>(1991, 1999, 2013);
    recording.builder.station("Station,Recorder," + std::to_string(revisionYear));

    const std::size_t analogCount = randomCount(0, 5);
    const std::size_t statusCount = randomCount(analogCount == 0 ? 1 : 0, 36);
    std::vector<Scale> scales;
    for (std::size_t i = 0; i < analogCount; ++i) {
        scales.push_back(addAnalogChannel(recording, i + 1, revisionYear));
    }
    for (std::size_t i = 0; i < statusCount; ++i) {
        addStatusChannel(recording, i + 1, revisionYear);
    }

    const Decimal multiplier = randomMultiplier();
    recording.builder.multiplier(multiplier.text());
    const RandomRates random = randomRates();
    const unsigned long sampleCount = random.lengths.back();
    recording.ratesKnown = *rc::gen::inRange(0, 4) != 0;
    if (recording.ratesKnown) {
        for (std::size_t i = 0; i < random.rates.size(); ++i) {
            recording.builder.rate(random.rates[i].text() + "," + std::to_string(random.lengths[i]));
        }
    } else {
        recording.builder.rateCount(*rc::gen::element<std::string>("0", "1")).rate("0," + std::to_string(sampleCount));
    }

    const auto separator = *rc::gen::element<std::string>(",", ", ", " ", ",\t");
    for (unsigned long i = 0; i < sampleCount; ++i) {
        const auto timestamp = *rc::gen::arbitrary<std::uint32_t>();
        recording.times.push_back(recording.ratesKnown
                                      ? sumOfSteps(random.rates, random.lengths, i) * multiplier.value()
                                      : timestamp * multiplier.value() / 1000000);
        std::string line = std::to_string(i + 1) + separator + std::to_string(timestamp);
        LittleEndianBytes record;
        record.u32(static_cast<std::uint32_t>(i + 1)).u32(timestamp);
        recording.values.emplace_back();
        recording.tolerances.emplace_back();
        for (const Scale& scale : scales) {
            long double raw = 0;
            if (text) {
                const auto integer = *rc::gen::arbitrary<std::int64_t>();
                line += separator + std::to_string(integer);
                raw = static_cast<long double>(integer);
            } else if (integers) {
                const auto integer = *rc::gen::arbitrary<std::int16_t>();
                record.i16(integer);
                raw = integer;
            } else {
                auto pattern = *rc::gen::resize(100, rc::gen::arbitrary<std::uint32_t>());
                if ((pattern & 0x7F800000U) == 0x7F800000U) {
                    pattern ^= 0x00800000U; // finite
                }
                float single = 0;
                std::memcpy(&single, &pattern, sizeof single);
                record.f32(single);
                raw = static_cast<long double>(single);
            }
            recording.values.back().push_back((raw * scale.a + scale.b) * scale.factor);
            recording.tolerances.back().push_back((std::fabs(raw * scale.a) + std::fabs(scale.b)) * scale.factor *
                                                  kFewRoundings);
        }
        const auto bits = *rc::gen::container<std::vector<bool>>(statusCount, rc::gen::arbitrary<bool>());
        recording.bits.push_back(bits);
        for (std::size_t first = 0; first < statusCount; first += 16) {
            unsigned int word = 0;
            for (std::size_t bit = 0; bit < 16; ++bit) {
                const bool set = first + bit < statusCount ? bits[first + bit] : *rc::gen::arbitrary<bool>();
                word += set ? 1U << bit : 0U;
            }
            record.u16(static_cast<std::uint16_t>(word));
        }
        for (const bool bit : bits) {
            line += separator + (bit ? "1" : "0");
        }
        if (text) {
            recording.builder.asciiLine(line);
        } else {
            recording.builder.rawBytes(record.bytes());
        }
    }
    return recording;
}

void assertSameSamples(const std::vector<Sample>& left, const std::vector<Sample>& right) {
    RC_ASSERT(left.size() == right.size());
    for (std::size_t i = 0; i < left.size(); ++i) {
        RC_ASSERT(left[i].index == right[i].index);
        RC_ASSERT(sameBits(left[i].time, right[i].time));
        RC_ASSERT(left[i].binaryValues == right[i].binaryValues);
        RC_ASSERT(left[i].analogValues.size() == right[i].analogValues.size());
        for (std::size_t channel = 0; channel < left[i].analogValues.size(); ++channel) {
            RC_ASSERT(sameBits(left[i].analogValues[channel], right[i].analogValues[channel]));
        }
    }
}

void assertSamePoints(const BaseChannel& left, const BaseChannel& right, double start, double end, double rate) {
    const std::vector<Orv::PointF> leftPoints = left.getPoints(start, end, rate);
    const std::vector<Orv::PointF> rightPoints = right.getPoints(start, end, rate);
    RC_ASSERT(leftPoints.size() == rightPoints.size());
    for (std::size_t i = 0; i < leftPoints.size(); ++i) {
        RC_ASSERT(std::memcmp(&leftPoints[i], &rightPoints[i], sizeof leftPoints[i]) == 0);
    }
}

/// A configuration set by hand, with `analogCount` and `statusCount` channels.
void setChannels(Cfg& cfg, std::size_t analogCount, std::size_t statusCount) {
    cfg.analogChannelCount = static_cast<int>(analogCount);
    cfg.binaryChannelCount = static_cast<int>(statusCount);
    cfg.totalChannelCount = static_cast<int>(analogCount + statusCount);
    for (std::size_t i = 0; i < analogCount; ++i) {
        cfg.analogChannelConfigs.emplace_back(static_cast<int>(i), "1,Ua,A,,kV,0.37,1.5,0,-9,9,110,3,P", 1999);
    }
    cfg.binaryChannelConfigs.resize(statusCount);
}

void setRates(Cfg& cfg) {
    cfg.timeMultiplier = static_cast<double>(randomMultiplier().value());
    cfg.samplingRateKnown = *rc::gen::arbitrary<bool>();
    const RandomRates random = randomRates();
    for (std::size_t i = 0; i < random.rates.size(); ++i) {
        cfg.samplingRates.emplace_back(random.rates[i].text() + "," + std::to_string(random.lengths[i]));
    }
}

std::string randomLine(std::size_t numberCount, const std::vector<std::string>& states) {
    if (*rc::gen::inRange(0, 12) == 0) {
        return randomText("0123456789-,, \t\r\v.x+", 30);
    }
    std::string line = randomText(" ", 1);
    for (std::size_t i = 0; i < numberCount; ++i) {
        line += std::to_string(*rc::gen::arbitrary<std::int64_t>());
        line += *rc::gen::element<std::string>(",", ",", ",", ", ", " ", "\t");
    }
    return line + *rc::gen::elementOf(states) + randomText("\r ,0", 2);
}

/// The samples between which the interpolation properties look, at growing times that singles hold exactly.
void addSamples(std::vector<Sample>& samples, const Cfg& cfg, std::size_t count, bool fromZero) {
    double time = fromZero ? 0.0 : *rc::gen::inRange(0, 64) / 1024.0;
    for (std::size_t i = 0; i < count; ++i) {
        Sample& sample = samples.emplace_back(cfg);
        sample.index = i;
        sample.time = time;
        sample.analogValues.push_back(*rc::gen::inRange(-1000000, 1000000) / 128.0);
        sample.binaryValues.push_back(*rc::gen::arbitrary<bool>());
        time += *rc::gen::inRange(1, 64) / 1024.0;
    }
}

/// What rounding can do to the line through (x1, y1) and (x2, y2) at x.
double roundingOfLine(double x1, double y1, double x2, double y2, double x) {
    const double slope = std::fabs((y2 - y1) / (x2 - x1));
    return 0x1p-50 * (std::fabs(y1) + std::fabs(y2) + (std::fabs(x1) + std::fabs(x2) + std::fabs(x)) * slope);
}

} // namespace

RC_GTEST_PROP(RecordingProperty, WhatWasWrittenIsRead, ()) {
    const RandomRecording written = randomRecording();
    RC_LOG() << written.builder.cfgText();
    const TempDir dir;
    Comtrade read;
    RC_ASSERT(read.load(written.builder.write(dir.path(), "rec")) == Enums::Ok);

    RC_ASSERT(read.cfg.samplingRateKnown == written.ratesKnown);
    RC_ASSERT(read.analogChannels.size() == written.analogNames.size());
    for (std::size_t channel = 0; channel < written.analogNames.size(); ++channel) {
        RC_ASSERT(read.cfg.analogChannelConfigs[channel].channelId == written.analogNames[channel]);
    }
    RC_ASSERT(read.binaryChannels.size() == written.statusNames.size());
    for (std::size_t channel = 0; channel < written.statusNames.size(); ++channel) {
        RC_ASSERT(read.cfg.binaryChannelConfigs[channel].channelId == written.statusNames[channel]);
    }
    RC_ASSERT(read.dat.samples.size() == written.times.size());
    for (std::size_t i = 0; i < written.times.size(); ++i) {
        const Sample& sample = read.dat.samples[i];
        RC_ASSERT(sample.index == i);
        RC_ASSERT(isNear(sample.time, written.times[i], written.times[i] * kFewRoundings));
        RC_ASSERT(sample.binaryValues == written.bits[i]);
        RC_ASSERT(sample.analogValues.size() == written.values[i].size());
        for (std::size_t channel = 0; channel < sample.analogValues.size(); ++channel) {
            RC_ASSERT(isNear(sample.analogValues[channel], written.values[i][channel], written.tolerances[i][channel]));
        }
    }
    RC_ASSERT(isNear(read.duration, written.times.back(), written.times.back() * kFewRoundings));
}

RC_GTEST_PROP(RecordingProperty, TwoFreshObjectsReadTheSame, ()) {
    const RandomRecording written = randomRecording();
    const TempDir dir;
    const std::string path = written.builder.write(dir.path(), "rec");
    Comtrade first;
    Comtrade second;
    RC_ASSERT(first.load(path) == Enums::Ok);
    RC_ASSERT(second.load(dir.file(*rc::gen::element<std::string>("rec.cfg", "rec.dat", "rec.cff"))) == Enums::Ok);

    RC_ASSERT(sameBits(first.duration, second.duration));
    RC_ASSERT(sameBits(first.dat.lastSampleTime, second.dat.lastSampleTime));
    RC_ASSERT(first.cfg.stationName == second.cfg.stationName);
    RC_ASSERT(first.cfg.recorderId == second.cfg.recorderId);
    RC_ASSERT(first.cfg.revisionYear == second.cfg.revisionYear);
    RC_ASSERT(sameBits(first.cfg.lineFrequency, second.cfg.lineFrequency));
    RC_ASSERT(sameBits(first.cfg.timeMultiplier, second.cfg.timeMultiplier));
    RC_ASSERT(first.cfg.dataFileType == second.cfg.dataFileType);
    RC_ASSERT(first.cfg.recordLength == second.cfg.recordLength);
    RC_ASSERT(first.cfg.lastSampleNumber == second.cfg.lastSampleNumber);
    RC_ASSERT(first.cfg.samplingRates.size() == second.cfg.samplingRates.size());
    assertSameSamples(first.dat.samples, second.dat.samples);
    RC_ASSERT(first.analogChannels.size() == second.analogChannels.size());
    for (std::size_t i = 0; i < first.analogChannels.size(); ++i) {
        RC_ASSERT(first.analogChannels[i].config.channelInfo() == second.analogChannels[i].config.channelInfo());
        assertSamePoints(first.analogChannels[i], second.analogChannels[i], 0.0, -1.0, -1.0);
    }
    RC_ASSERT(first.binaryChannels.size() == second.binaryChannels.size());
    for (std::size_t i = 0; i < first.binaryChannels.size(); ++i) {
        RC_ASSERT(first.binaryChannels[i].config.channelInfo() == second.binaryChannels[i].config.channelInfo());
        assertSamePoints(first.binaryChannels[i], second.binaryChannels[i], 0.0, -1.0, 0.0);
    }
}

RC_GTEST_PROP(TimeProperty, TimeOfAnyIndexIsTheSumOfItsSteps, ()) {
    const RandomRates random = randomRates();
    const Decimal multiplier = randomMultiplier();
    Cfg cfg;
    cfg.timeMultiplier = static_cast<double>(multiplier.value());
    for (std::size_t i = 0; i < random.rates.size(); ++i) {
        cfg.samplingRates.emplace_back(random.rates[i].text() + "," + std::to_string(random.lengths[i]));
    }
    const auto index = *rc::gen::inRange<unsigned long>(0, 120);
    const long double expected = sumOfSteps(random.rates, random.lengths, index) * multiplier.value();
    RC_ASSERT(isNear(cfg.timeFromSampleIndex(index), expected, expected * kFewRoundings));
}

RC_GTEST_PROP(DatProperty, AsciiFileIsReadAsItsLinesAre, ()) {
    Cfg cfg;
    const std::size_t analogCount = randomCount(0, 3);
    const std::size_t statusCount = randomCount(0, 150);
    setChannels(cfg, analogCount, statusCount);
    setRates(cfg);
    cfg.lastSampleNumber = *rc::gen::inRange<unsigned long>(0, 10);
    std::vector<std::string> states; // of which lines repeat one, as the lines of real files do
    for (int i = 0; i < 3; ++i) {
        std::string columns;
        const std::string comma = *rc::gen::element<std::string>(",", ",", "", " ");
        for (std::size_t column = 0; column < statusCount; ++column) {
            const bool odd = *rc::gen::inRange(0, 20) == 0; // then the columns that follow no longer lie in fours
            columns += (column == 0 ? "" : odd ? " " : comma) + *rc::gen::element<std::string>("0", "1");
        }
        states.push_back(columns);
    }
    std::vector<std::string> lines;
    std::string bytes;
    for (std::size_t i = randomCount(0, 12); i != 0; --i) {
        lines.push_back(randomLine(analogCount + 2, states));
        bytes += lines.back() + "\n";
    }
    if (!bytes.empty() && *rc::gen::arbitrary<bool>()) {
        bytes.pop_back();
    }
    RC_LOG() << bytes;

    std::vector<Sample> expected;
    int expectedResult = Enums::Ok;
    for (const std::string& line : lines) {
        if (expected.size() == cfg.lastSampleNumber) {
            break;
        }
        if (line.empty()) {
            continue;
        }
        Sample sample(cfg);
        if (!sample.load(line, expected.size())) {
            expectedResult = Enums::DatLoadError;
            expected.clear();
            break;
        }
        expected.push_back(sample);
    }
    RC_CLASSIFY(expectedResult == Enums::Ok, "loads");
    RC_CLASSIFY(expected.size() > 2, "three samples or more");

    const TempDir dir;
    Dat dat(cfg);
    RC_ASSERT(dat.load(dir.write("rec.dat", bytes)) == expectedResult);
    assertSameSamples(dat.samples, expected);
    RC_ASSERT(sameBits(dat.lastSampleTime, expected.empty() ? -1.0 : expected.back().time));
}

RC_GTEST_PROP(DatProperty, BinaryFileIsReadAsItsRecordsAre, ()) {
    Cfg cfg;
    const std::size_t analogCount = randomCount(0, 5);
    const std::size_t statusCount = randomCount(0, 150);
    setChannels(cfg, analogCount, statusCount);
    setRates(cfg);
    cfg.dataFileType = *rc::gen::element(Enums::Binary, Enums::Binary32, Enums::Float32);
    cfg.analogValueLength = cfg.dataFileType == Enums::Binary ? 2 : 4;
    cfg.analogValuesLength = cfg.analogValueLength * static_cast<unsigned int>(analogCount);
    cfg.statusWordCount = static_cast<unsigned int>((statusCount + 15) / 16);
    cfg.statusWordsLength = 2 * cfg.statusWordCount;
    cfg.recordLength = 8 + cfg.analogValuesLength + cfg.statusWordsLength;
    cfg.lastSampleNumber = *rc::gen::inRange<unsigned long>(1, 12);

    const std::size_t surplus = randomCount(0, cfg.recordLength - 1);
    std::string bytes =
        *rc::gen::container<std::string>(cfg.lastSampleNumber * cfg.recordLength + surplus, rc::gen::arbitrary<char>());
    std::vector<Sample> expected;
    for (unsigned long i = 0; i < cfg.lastSampleNumber; ++i) {
        Sample& sample = expected.emplace_back(cfg);
        RC_ASSERT(sample.load(bytes.data() + i * cfg.recordLength, i));
        RC_ASSERT(sample.analogValues.size() == analogCount);
        RC_ASSERT(sample.binaryValues.size() == statusCount);
    }
    const TempDir dir;
    Dat dat(cfg);
    RC_ASSERT(dat.load(dir.write("rec.dat", bytes)) == Enums::Ok);
    assertSameSamples(dat.samples, expected);
}

RC_GTEST_PROP(InterpolationProperty, LineStaysBetweenItsEndsAndMeetsThem, ()) {
    Cfg cfg;
    AnalogChannelConfig config(0, false, 1999);
    const std::vector<Sample> none;
    const AnalogChannel view(config, none);
    const double x1 = *rc::gen::inRange(-1000000, 1000000) / 997.0;
    const double x2 = x1 + *rc::gen::inRange(1, 1000000) / 991.0;
    const double y1 = *rc::gen::inRange(-1000000, 1000000) / 13.0;
    const double y2 = *rc::gen::inRange(-1000000, 1000000) / 17.0;
    const double x = std::min(x1 + (x2 - x1) * (*rc::gen::inRange(0, 1001) / 1000.0), x2);

    const double tolerance = roundingOfLine(x1, y1, x2, y2, x);
    const double value = view.getInterpolationValue(x1, y1, x2, y2, x);
    RC_ASSERT(value >= std::min(y1, y2) - tolerance);
    RC_ASSERT(value <= std::max(y1, y2) + tolerance);
    RC_ASSERT(std::fabs(view.getInterpolationValue(x1, y1, x2, y2, x1) - y1) <= tolerance);
    RC_ASSERT(std::fabs(view.getInterpolationValue(x1, y1, x2, y2, x2) - y2) <= tolerance);
    const long double share = (wide(x) - wide(x1)) / (wide(x2) - wide(x1));
    RC_ASSERT(isNear(value, wide(y1) + share * (wide(y2) - wide(y1)), wide(tolerance)));
}

RC_GTEST_PROP(InterpolationProperty, ValueLiesBetweenTheNeighboursAndMeetsTheSamples, ()) {
    Cfg cfg;
    AnalogChannelConfig config(0, false, 1999);
    std::vector<Sample> samples;
    addSamples(samples, cfg, randomCount(2, 12), false);
    const AnalogChannel view(config, samples);
    for (const Sample& sample : samples) {
        unsigned int hint = 0;
        const Sample& left = sample.index == 0 ? sample : samples[sample.index - 1];
        const double tolerance = sample.index == 0 ? 0.0
                                                   : roundingOfLine(left.time, left.analogValues[0], sample.time,
                                                                    sample.analogValues[0], sample.time);
        RC_ASSERT(std::fabs(view.getValue(sample.time, hint) - sample.analogValues[0]) <= tolerance);
        RC_ASSERT(hint == sample.index);
    }
    unsigned int walking = 0;
    for (std::size_t right = 1; right < samples.size(); ++right) {
        const Sample& left = samples[right - 1];
        const double y1 = left.analogValues[0];
        const double y2 = samples[right].analogValues[0];
        const double width = samples[right].time - left.time;
        const double time = left.time + width * (*rc::gen::inRange(1, 100) / 100.0);
        unsigned int fresh = 0;
        const double value = view.getValue(time, fresh);
        const double tolerance = roundingOfLine(left.time, y1, samples[right].time, y2, time);
        RC_ASSERT(value >= std::min(y1, y2) - tolerance);
        RC_ASSERT(value <= std::max(y1, y2) + tolerance);
        RC_ASSERT(fresh == right);
        RC_ASSERT(sameBits(view.getValue(time, walking), value));
        RC_ASSERT(walking == right);
    }
    unsigned int hint = 0;
    RC_ASSERT(view.getValue(std::nextafter(samples.back().time, 1e9), hint) == 0.0);
}

RC_GTEST_PROP(InterpolationProperty, SkewMovesTheInstant, ()) {
    Cfg cfg;
    std::vector<Sample> samples;
    addSamples(samples, cfg, randomCount(1, 8), true);
    const Decimal skew = randomDecimal(-20000, 20000, 2); // microseconds
    AnalogChannelConfig straightConfig(0, "1,Ua,A,,V,1,0,0,-9,9,1,1,S", 1999);
    AnalogChannelConfig skewedConfig(0, "1,Ua,A,,V,1,0," + skew.text() + ",-9,9,1,1,S", 1999);
    const AnalogChannel straight(straightConfig, samples);
    const AnalogChannel skewed(skewedConfig, samples);
    RC_ASSERT(isNear(skewed.skew, skew.value() / 1000000, std::fabs(skew.value()) / 1000000 * kFewRoundings));
    const double time = *rc::gen::inRange(-100, 1000) / 1000.0;
    unsigned int straightHint = 0;
    unsigned int skewedHint = 0;
    RC_ASSERT(sameBits(skewed.getValue(time, skewedHint), straight.getValue(time - skewed.skew, straightHint)));
    RC_ASSERT(skewedHint == straightHint);
}

RC_GTEST_PROP(PointsProperty, CountIsDurationTimesRateRoundedUp, ()) {
    Cfg cfg;
    AnalogChannelConfig config(0, false, 1999);
    std::vector<Sample> samples;
    addSamples(samples, cfg, randomCount(1, 8), true);
    const AnalogChannel view(config, samples);
    // In 1024ths of a second and 8ths of a point per second, so that the product is exact.
    const auto start = *rc::gen::inRange<std::int64_t>(-512, 2048);
    const auto end = *rc::gen::inRange<std::int64_t>(0, 2048);
    const auto rate = *rc::gen::inRange<std::int64_t>(0, 4000);
    const std::int64_t total = (end - start) * rate;
    const auto expected = static_cast<std::size_t>(total <= 0 ? 0 : (total + 8191) / 8192);

    const double from = static_cast<double>(start) / 1024.0;
    const double to = static_cast<double>(end) / 1024.0;
    const std::vector<Orv::PointF> points = view.getPoints(from, to, static_cast<double>(rate) / 8.0);
    RC_ASSERT(points.size() == expected);
    for (std::size_t k = 0; k < points.size(); ++k) {
        const long double time = wide(from) + static_cast<long double>(8 * k) / static_cast<long double>(rate);
        RC_ASSERT(isNear(static_cast<double>(points[k].x), time, (std::fabs(time) + wide(std::fabs(from))) * 0x1p-24L));
        RC_ASSERT(static_cast<double>(points[k].x) <= to);
        if (time < 0 || time > wide(samples.back().time)) {
            RC_ASSERT(points[k].y == 0.0F);
        }
    }
    if (!points.empty()) {
        RC_ASSERT(points.front().x == static_cast<float>(from));
    }
}

RC_GTEST_PROP(PointsProperty, WholeRecordingGivesAboutAThousandPoints, ()) {
    Cfg cfg;
    AnalogChannelConfig config(0, false, 1999);
    std::vector<Sample> samples;
    addSamples(samples, cfg, randomCount(2, 30), true);
    const AnalogChannel view(config, samples);
    const std::size_t count = view.getPoints(0.0, -1.0, -1.0).size();
    RC_ASSERT(count >= 1000U);
    RC_ASSERT(count <= 1002U); // 0.006 points more per second, for less than two seconds
}

RC_GTEST_PROP(PointsProperty, StatusPointsAreTheStepsBetweenOpeningAndClosing, ()) {
    Cfg cfg;
    BinaryChannelConfig config;
    std::vector<Sample> samples;
    addSamples(samples, cfg, randomCount(1, 20), true);
    const BinaryChannel view(config, samples);
    std::vector<std::vector<float>> expected{{0.0F, samples.front().binaryValues[0] ? 1.0F : 0.0F}};
    for (std::size_t i = 1; i < samples.size(); ++i) {
        if (samples[i].binaryValues[0] != samples[i - 1].binaryValues[0]) {
            expected.push_back({static_cast<float>(samples[i].time), samples[i].binaryValues[0] ? 1.0F : 0.0F});
        }
    }
    if (expected.back()[0] != static_cast<float>(samples.back().time)) {
        expected.push_back({static_cast<float>(samples.back().time), expected.back()[1]});
    }
    const std::vector<Orv::PointF> points = view.getPoints(0.0, -1.0, *rc::gen::inRange(-2, 3));
    RC_ASSERT(points.size() == expected.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        RC_ASSERT(points[i].x == expected[i][0]);
        RC_ASSERT(points[i].y == expected[i][1]);
    }
}

RC_GTEST_PROP(StringHelperProperty, SplitUndoesJoin, ()) {
    const auto separator = *rc::gen::arbitrary<char>();
    auto fields = *rc::gen::arbitrary<std::vector<std::string>>();
    for (std::string& field : fields) {
        field.erase(std::remove(field.begin(), field.end(), separator), field.end());
    }
    while (!fields.empty() && fields.back().empty()) {
        fields.pop_back(); // an empty last field counts as no field
    }
    RC_ASSERT(StringHelper::split(StringHelper::join(separator, fields), separator) == fields);
}

RC_GTEST_PROP(StringHelperProperty, JoinUndoesSplitButForALastSeparator, ()) {
    const std::string text = randomText("ab,", 20);
    std::string expected = text;
    if (!expected.empty() && expected.back() == ',') {
        expected.pop_back();
    }
    const std::vector<std::string> fields = StringHelper::split(text, ',');
    RC_ASSERT(StringHelper::join(',', fields) == expected);
    const auto separators = static_cast<std::size_t>(std::count(expected.begin(), expected.end(), ','));
    RC_ASSERT(fields.size() == (text.empty() ? 0 : separators + 1));
}

RC_GTEST_PROP(StringHelperProperty, IntegerIsReadBetweenBlanksAndAnyTail, ()) {
    const auto number = *rc::gen::arbitrary<int>();
    const std::string tail = randomText("AD,. -+x", 1) + randomText("0123456789AD", 3);
    RC_PRE((tail.empty() || tail.front() < '0' || tail.front() > '9'));
    RC_ASSERT(StringHelper::toInt(randomText(" \t\r\n\v\f", 4) + std::to_string(number) + tail) == number);
}

RC_GTEST_PROP(StringHelperProperty, IntegerBeyond32BitsIsARangeError, ()) {
    const auto distance = *rc::gen::inRange<std::int64_t>(1, std::int64_t{1} << 40U);
    const bool negative = *rc::gen::arbitrary<bool>();
    const std::int64_t number = negative ? std::int64_t{-2147483648} - distance : std::int64_t{2147483647} + distance;
    RC_ASSERT_THROWS_AS(StringHelper::toInt(std::to_string(number)), std::out_of_range);
}

namespace {

enum class CodePage { Utf8, Cp866, Cp1251 };

constexpr int kAscii = 66;

/// Letters by their place in the alphabet of 66: 32 capitals and 32 small letters from U+0410 on, then U+0401 (capital
/// io) and U+0451 (small io). From kAscii on, the codes of ASCII characters.
std::string encode(const std::vector<int>& letters, CodePage page) {
    std::string text;
    for (const int letter : letters) {
        if (letter >= kAscii) {
            text += static_cast<char>(letter - kAscii);
            continue;
        }
        const int codePoint = letter < 64 ? 0x410 + letter : letter == 64 ? 0x401 : 0x451;
        switch (page) {
        case CodePage::Utf8:
            text += static_cast<char>(0xC0 + codePoint / 64);
            text += static_cast<char>(0x80 + codePoint % 64);
            break;
        case CodePage::Cp866:
            text += static_cast<char>(letter < 48 ? 0x80 + letter : 0xE0 + (letter - 48));
            break;
        case CodePage::Cp1251:
            text += static_cast<char>(letter < 64 ? 0xC0 + letter : letter == 64 ? 0xA8 : 0xB8);
            break;
        }
    }
    return text;
}

/// Length of the UTF-8 sequence of two to four bytes at `position`, or 0: decodes it first and judges the code point.
std::size_t sequenceAt(const std::string& text, std::size_t position) {
    const auto byteAt = [&text](std::size_t i) {
        return i < text.size() ? static_cast<unsigned int>(static_cast<unsigned char>(text[i])) : 0U;
    };
    const unsigned int lead = byteAt(position);
    const std::size_t length = lead / 32 == 6 ? 2 : lead / 16 == 14 ? 3 : lead / 8 == 30 ? 4 : 0;
    if (length == 0) {
        return 0;
    }
    unsigned int codePoint = lead % (length == 2 ? 32U : length == 3 ? 16U : 8U);
    for (std::size_t i = 1; i < length; ++i) {
        if (byteAt(position + i) / 64 != 2) {
            return 0;
        }
        codePoint = codePoint * 64 + byteAt(position + i) % 64;
    }
    const unsigned int least = length == 2 ? 0x80 : length == 3 ? 0x800 : 0x10000;
    const bool surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
    return codePoint >= least && codePoint <= 0x10FFFF && !surrogate ? length : 0;
}

/// The code page that most of the text's bytes speak for: whole sequences for UTF-8; other bytes for CP866 where its
/// letters lie (0x80 to 0xB0, 0xE0 to 0xF2) and for CP1251 where its letters lie (from 0xC0 on). UTF-8 wins every tie,
/// and CP866 those with CP1251.
CodePage decision(const std::string& text) {
    int utf8 = 0;
    int cp866 = 0;
    int cp1251 = 0;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t length = sequenceAt(text, i);
        if (length != 0) {
            ++utf8;
            i += length;
            continue;
        }
        const int byte = static_cast<unsigned char>(text[i]);
        cp866 += (byte >= 0x80 && byte <= 0xB0) || (byte >= 0xE0 && byte <= 0xF2) ? 1 : 0;
        cp1251 += byte >= 0xC0 ? 1 : 0;
        ++i;
    }
    if (utf8 >= std::max(cp866, cp1251)) {
        return CodePage::Utf8;
    }
    return cp866 >= cp1251 ? CodePage::Cp866 : CodePage::Cp1251;
}

/// At least `least` letters from `low` to below `high`, with ASCII characters among them.
std::vector<int> randomWords(std::size_t least, int low, int high) {
    const std::size_t count = randomCount(least, least + 20);
    auto letters = *rc::gen::container<std::vector<int>>(count, rc::gen::inRange(low, high));
    for (const char character : randomText("1, -Uk", 6)) {
        const auto position = static_cast<std::ptrdiff_t>(randomCount(0, letters.size()));
        letters.insert(letters.begin() + position, kAscii + character);
    }
    return letters;
}

/// Words of one half of the alphabet or of all of it, or small letters in threes that read as UTF-8 in CP866.
std::vector<int> randomWords() {
    switch (*rc::gen::inRange(0, 4)) {
    case 0:
        return randomWords(4, 0, 66);
    case 1:
        return randomWords(1, 32, 66);
    case 2:
        return randomWords(1, 48, 66);
    default:
        std::vector<int> letters;
        for (std::size_t i = randomCount(1, 5); i != 0; --i) {
            letters.push_back(*rc::gen::inRange(49, 61));
            letters.push_back(*rc::gen::inRange(32, 48));
            letters.push_back(*rc::gen::inRange(32, 48));
        }
        const std::vector<int> others = randomWords(0, 0, 66);
        letters.insert(letters.end(), others.begin(), others.begin() + static_cast<std::ptrdiff_t>(others.size() / 3));
        return letters;
    }
}

} // namespace

RC_GTEST_PROP(DetectionProperty, Utf8WordsAreLeftAsTheyAre, ()) {
    const std::string text = encode(randomWords(), CodePage::Utf8);
    RC_ASSERT(decision(text) == CodePage::Utf8);
    RC_ASSERT(toUtf8::detectAndConvert(text) == text);
}

RC_GTEST_PROP(DetectionProperty, CapitalsComeBackFromEitherCodePage, ()) {
    const std::vector<int> letters = randomWords(1, 0, 32);
    const std::string expected = encode(letters, CodePage::Utf8);
    RC_ASSERT(toUtf8::detectAndConvert(encode(letters, CodePage::Cp866)) == expected);
    RC_ASSERT(toUtf8::detectAndConvert(encode(letters, CodePage::Cp1251)) == expected);
}

RC_GTEST_PROP(DetectionProperty, Cp866WordsComeBackWhereTheStatisticsSpeakForThem, ()) {
    const std::vector<int> letters = randomWords();
    const std::string text = encode(letters, CodePage::Cp866);
    const bool decided = decision(text) == CodePage::Cp866;
    RC_CLASSIFY(decided, "decided for CP866");
    RC_ASSERT((toUtf8::detectAndConvert(text) == encode(letters, CodePage::Utf8)) == decided);
}

RC_GTEST_PROP(DetectionProperty, Cp1251WordsComeBackWhereTheStatisticsSpeakForThem, ()) {
    const std::vector<int> letters = randomWords();
    const std::string text = encode(letters, CodePage::Cp1251);
    const bool decided = decision(text) == CodePage::Cp1251;
    RC_CLASSIFY(decided, "decided for CP1251");
    RC_ASSERT((toUtf8::detectAndConvert(text) == encode(letters, CodePage::Utf8)) == decided);
}

RC_GTEST_PROP(DetectionProperty, AnyBytesAreConvertedAsTheRuleSays, ()) {
    const auto text = *rc::gen::container<std::string>(
        rc::gen::map(rc::gen::inRange(0, 256), [](int byte) { return static_cast<char>(byte); }));
    const std::string bytes = text + std::string(1, '\0') + "x"; // a zero inside ends no more than a sequence
    std::string expected;
    switch (decision(bytes)) {
    case CodePage::Utf8:
        expected = bytes;
        break;
    case CodePage::Cp866:
        expected = toUtf8::from866(bytes.data(), bytes.size());
        break;
    case CodePage::Cp1251:
        expected = toUtf8::from1251(bytes.data(), bytes.size());
        break;
    }
    RC_ASSERT(toUtf8::detectAndConvert(bytes) == expected);
}
