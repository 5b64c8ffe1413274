// A configuration file, a line "#DAT", a data file; then, where a line "#NEXT" follows, another recording of the same
// form. The first is loaded, every view is queried, the files are loaded into a second object, and the other recording
// (where there is none: the same one with a byte changed) is loaded over the first and queried again.

#include "Comtrade.h"
#include "support/Input.h"
#include "support/ScratchFolder.h"
#include "support/check.h"
#include "support/reference.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace {

using OrvComtradeLib::AnalogChannel;
using OrvComtradeLib::BinaryChannel;
using OrvComtradeLib::Comtrade;
using OrvComtradeLib::Sample;
namespace Enums = OrvComtradeLib::Enums;
using Points = std::vector<Orv::PointF>;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// More points than this are legitimate and only cost memory; beyond the second number no vector can hold them, so that
// the answer is the empty list again.
constexpr double kMostPoints = 1100.0;
constexpr double kBeyondAnyVector = 1152921504606846976.0; // 2^60
constexpr std::size_t kMostViews = 3;

struct Range {
    double start;
    double end;
    double rate;
};

/// A few ordinary, a few random and a few extreme ranges.
std::vector<Range> ranges(const Comtrade& recording, std::uint64_t seed) {
    const double last = recording.dat.lastSampleTime;
    const auto fraction = [&seed] {
        seed = seed * 6364136223846793005U + 1442695040888963407U; // the generator of D. Knuth's MMIX
        return static_cast<double>(seed >> 32U) / 4294967296.0;    // 2^32
    };
    const double start = last * fraction();
    const double end = last * fraction() * 1.5;
    const double rate = 2000.0 / last * fraction();
    const double first = recording.dat.samples.empty() ? 0.0 : recording.dat.samples.front().time;
    return {{0.0, -1.0, -1.0},
            {start, end, rate},
            {start, -1.0, rate},
            {-start, last, -1.0},
            {first, last, rate},
            {last, last + 1.0, 100.0},
            {0.0, 1e18, 1e-16},
            {0.0, 1e300, 1e300},
            {-1e300, 1e300, 1.0},
            {1e300, -1.0, -1.0},
            {0.0, 0.0, 1e9},
            {0.0, 1e-300, 1e302},
            {kNaN, 1.0, 1.0},
            {0.0, kNaN, -1.0},
            {0.0, 1.0, kNaN},
            {-kInfinity, kInfinity, 0.0},
            {0.0, kInfinity, 1.0},
            {0.0, 1.0, kInfinity},
            {0.0, 1.0, 18446744073709549568.0},
            {0.0, std::numeric_limits<double>::denorm_min(), -1.0}};
}

double slowRate(double duration) {
    const double rate = 1000.0 / duration;
    return std::fabs(std::remainder(rate, 0.02)) < 0.006 ? rate + 0.006 : rate;
}

double slowInstant(const AnalogChannel& view, double time, std::size_t& hint) {
    const std::vector<Sample>& samples = view.samples;
    const auto channel = static_cast<std::size_t>(view.config.index);
    const double instant = time - view.skew;
    if (instant < 0.0 || instant > samples.back().time) {
        return 0.0;
    }
    while (hint < samples.size() && instant > samples[hint].time) {
        ++hint;
    }
    hint = std::min(hint, samples.size() - 1);
    if (hint == 0) {
        return samples[0].analogValues.at(channel);
    }
    const Sample& left = samples[hint - 1];
    const Sample& right = samples[hint];
    const double y1 = left.analogValues.at(channel);
    const double y2 = right.analogValues.at(channel);
    const double slope = (y2 - y1) / (right.time - left.time);
    const double value = (y1 - left.time * slope) + instant * slope;
    FUZZ_CHECK(fuzz::same(view.getInterpolationValue(left.time, y1, right.time, y2, instant), value));
    return value;
}

void checkAnalogPoints(const AnalogChannel& view, const Range& range) {
    const double end = range.end < 0.0 && !view.samples.empty() ? view.samples.back().time : range.end;
    const double rate = range.rate < 0.0 ? slowRate(end - range.start) : range.rate;
    const double total = (end - range.start) * rate;
    if (total > kMostPoints && total < kBeyondAnyVector) {
        return;
    }
    const Points points = view.getPoints(range.start, range.end, range.rate);
    if (view.samples.empty() || !(total > 0.0) || total >= kBeyondAnyVector) {
        FUZZ_CHECK(points.empty());
        return;
    }
    FUZZ_CHECK(points.size() == static_cast<std::size_t>(std::ceil(total)));
    std::size_t hint = 0;
    unsigned int viewHint = 0;
    for (std::size_t k = 0; k < points.size(); ++k) {
        const double time = static_cast<double>(k) / rate + range.start;
        FUZZ_CHECK(fuzz::same(points[k].x, static_cast<float>(time)));
        const double value = slowInstant(view, time, hint);
        FUZZ_CHECK(fuzz::same(view.getValue(time, viewHint), value) && viewHint == hint);
        FUZZ_CHECK(fuzz::same(points[k].y, static_cast<float>(value)));
    }
}

/// Status channel 0, whatever the view.
Points slowSteps(const std::vector<Sample>& samples, double start, double end) {
    Points points;
    if (samples.empty()) {
        return points;
    }
    end = end < 0.0 ? samples.back().time : end;
    bool previous = samples[0].binaryValues.at(0);
    bool current = previous;
    const auto append = [&](double x) { points.push_back({static_cast<float>(x), current ? 1.0F : 0.0F}); };
    for (const Sample& sample : samples) {
        current = sample.binaryValues.at(0);
        if (!(sample.time < start)) {
            if (points.empty()) {
                append(start);
            }
            if (sample.time > end) {
                append(end);
                current = previous;
                break;
            }
            if (current != previous) {
                append(sample.time - start);
            }
        }
        previous = current;
    }
    if (!points.empty() && std::fabs(end - static_cast<double>(points.back().x)) > 1e-6) {
        append(end);
    }
    return points;
}

void checkStatusPoints(const BinaryChannel& view, const Range& range) {
    const Points points = view.getPoints(range.start, range.end, range.rate);
    const Points expected = slowSteps(view.samples, range.start, range.end);
    FUZZ_CHECK(points.size() == expected.size() && points.size() <= view.samples.size() + 3);
    for (std::size_t i = 0; i < points.size(); ++i) {
        FUZZ_CHECK(fuzz::same(points[i].x, expected[i].x) && fuzz::same(points[i].y, expected[i].y));
    }
}

void checkLoaded(const Comtrade& recording, const std::string& data) {
    const auto& cfg = recording.cfg;
    const std::vector<Sample>& samples = recording.dat.samples;
    FUZZ_CHECK(recording.analogChannels.size() == static_cast<std::size_t>(cfg.analogChannelCount));
    FUZZ_CHECK(recording.binaryChannels.size() == static_cast<std::size_t>(cfg.binaryChannelCount));
    for (std::size_t i = 0; i < recording.analogChannels.size(); ++i) {
        FUZZ_CHECK(&recording.analogChannels[i].config == &cfg.analogChannelConfigs[i]);
        FUZZ_CHECK(&recording.analogChannels[i].samples == &samples);
    }
    for (std::size_t i = 0; i < recording.binaryChannels.size(); ++i) {
        FUZZ_CHECK(&recording.binaryChannels[i].config == &cfg.binaryChannelConfigs[i]);
        FUZZ_CHECK(recording.binaryChannels[i].name() == cfg.binaryChannelConfigs[i].name());
    }
    for (std::size_t i = 0; i < samples.size(); ++i) {
        FUZZ_CHECK(samples[i].index == i && &samples[i].cfg == &cfg);
        FUZZ_CHECK(samples[i].analogValues.size() == recording.analogChannels.size());
        FUZZ_CHECK(samples[i].binaryValues.size() == recording.binaryChannels.size());
        FUZZ_CHECK(!cfg.samplingRateKnown ||
                   fuzz::same(samples[i].time, fuzz::slowTime(cfg.samplingRates, cfg.timeMultiplier, i)));
    }
    if (cfg.dataFileType == Enums::Ascii) {
        const std::vector<std::string> lines = fuzz::cut(data, '\n');
        const auto filled =
            std::count_if(lines.begin(), lines.end(), [](const std::string& line) { return !line.empty(); });
        FUZZ_CHECK(samples.size() == std::min(cfg.lastSampleNumber, static_cast<std::uint64_t>(filled)));
    } else {
        FUZZ_CHECK(samples.size() == cfg.lastSampleNumber && data.size() / cfg.recordLength == samples.size());
    }
    FUZZ_CHECK(fuzz::same(recording.dat.lastSampleTime, samples.empty() ? -1.0 : samples.back().time));
    FUZZ_CHECK(fuzz::same(recording.duration, cfg.samplingRateKnown ? cfg.duration : recording.dat.lastSampleTime));
}

void queryViews(const Comtrade& recording, std::uint64_t seed) {
    for (const Range& range : ranges(recording, seed)) {
        for (std::size_t i = 0; i < std::min(recording.analogChannels.size(), kMostViews); ++i) {
            checkAnalogPoints(recording.analogChannels[i], range);
        }
        for (std::size_t i = 0; i < std::min(recording.binaryChannels.size(), kMostViews); ++i) {
            checkStatusPoints(recording.binaryChannels[i], range);
        }
    }
    for (const AnalogChannel& view : recording.analogChannels) {
        const auto beyond = static_cast<unsigned int>(recording.dat.samples.size());
        const std::string texts = view.name() + view.unit() + view.phase() + (view.isCurrent() ? "A" : "");
        FUZZ_CHECK(texts.size() >= 3);
        for (unsigned int hint : {0U, beyond, std::numeric_limits<unsigned int>::max()}) {
            view.getValue(recording.dat.lastSampleTime, hint);
            FUZZ_CHECK(beyond == 0 || hint < beyond || recording.dat.lastSampleTime - view.skew < 0.0 ||
                       view.skew < 0.0);
        }
        FUZZ_CHECK(fuzz::same(view.getInterpolationValue(std::numeric_limits<unsigned int>::max(), 0.0), 0.0));
    }
}

void checkSame(const Comtrade& left, const Comtrade& right) {
    FUZZ_CHECK(left.loaded == right.loaded && fuzz::same(left.duration, right.duration));
    FUZZ_CHECK(left.dat.samples.size() == right.dat.samples.size());
    for (std::size_t i = 0; i < left.dat.samples.size(); ++i) {
        FUZZ_CHECK(fuzz::same(left.dat.samples[i].time, right.dat.samples[i].time));
        FUZZ_CHECK(fuzz::same(left.dat.samples[i].analogValues, right.dat.samples[i].analogValues));
        FUZZ_CHECK(left.dat.samples[i].binaryValues == right.dat.samples[i].binaryValues);
    }
}

int load(Comtrade& recording, const std::string& cfg, const std::string& data) {
    static const fuzz::ScratchFolder folder;
    folder.write("a.dat", data);
    const std::string path = folder.write("a.cfg", cfg);
    const int result = recording.load(path);
    FUZZ_CHECK(result == Enums::Ok || result == Enums::CfgLoadError || result == Enums::DatLoadError);
    FUZZ_CHECK(recording.loaded == (result == Enums::Ok));
    if (recording.loaded) {
        FUZZ_CHECK(recording.filePath == path && recording.cfgFileName == path);
        checkLoaded(recording, data);
    }
    return result;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const std::string cfg = input.upTo("#DAT\n");
    const std::string bytes = input.upTo("#NEXT\n");
    const std::uint64_t seed = fuzz::hashOf(cfg) ^ fuzz::hashOf(bytes);

    Comtrade recording;
    const int result = load(recording, cfg, bytes);
    if (recording.loaded) {
        queryViews(recording, seed);
    }
    Comtrade again;
    FUZZ_CHECK(load(again, cfg, bytes) == result);
    checkSame(recording, again);

    std::string nextCfg = cfg;
    std::string nextBytes = bytes;
    if (!input.isOver()) {
        nextCfg = input.upTo("#DAT\n");
        nextBytes = input.rest();
    } else if (!nextBytes.empty()) {
        nextBytes[seed % nextBytes.size()] = static_cast<char>(seed >> 32U);
    }
    load(recording, nextCfg, nextBytes);
    if (recording.loaded) {
        queryViews(recording, ~seed);
    }
    Comtrade fresh;
    load(fresh, nextCfg, nextBytes);
    load(recording, cfg, bytes);
    return 0;
}
