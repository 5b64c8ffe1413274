#include "Dat.h"
#include "Enums.h"
#include "cases.h"
#include "floors.h"
#include "inputs.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <malloc.h>
#include <stdexcept>

namespace orvbench {

namespace {

using OrvComtradeLib::Cfg;
using OrvComtradeLib::Dat;

void loadCfg(Cfg& cfg, const Recording& recording) {
    if (cfg.load(recording.cfg) != OrvComtradeLib::Enums::CfgLoaded) {
        throw std::runtime_error("the configuration did not load");
    }
}

double loadDat(Dat& dat, const Recording& recording) {
    const double begin = now();
    const int result = dat.load(recording.dat);
    const double seconds = now() - begin;
    if (result != OrvComtradeLib::Enums::Ok) {
        throw std::runtime_error("the data file did not load");
    }
    return seconds;
}

std::uint64_t bitsOf(double value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

bool sameBits(double left, double right) {
    return bitsOf(left) == bitsOf(right);
}

bool same(const OrvComtradeLib::Sample& left, const floors::Sample& right) {
    return left.index == right.index && sameBits(left.time, right.time) &&
           std::equal(left.analogValues.begin(), left.analogValues.end(), right.analogValues.begin(),
                      right.analogValues.end(), sameBits) &&
           left.binaryValues == right.binaryValues;
}

/// Bytes that a block of the heap occupies, with what the allocator adds to it.
double heapBytes(const void* block) {
    return block == nullptr ? 0.0
                            : static_cast<double>(malloc_usable_size(const_cast<void*>(block)) + sizeof(std::size_t));
}

/// Bytes that the samples occupy, with vectors of exact size.
double structureBytes(const Shape& shape) {
    const std::vector<double> analogs(shape.analogs);
    const std::vector<unsigned long> statusWords((shape.statuses + 63) / 64);
    return static_cast<double>(shape.samples) *
           (sizeof(OrvComtradeLib::Sample) + heapBytes(analogs.data()) + heapBytes(statusWords.data()));
}

template <floors::Pages pages> class LoadWork : public Work {
public:
    explicit LoadWork(const Shape& shape) : _recording(writeRecording(shape, _folder.path())) {
        loadCfg(_cfg, _recording);
        bytes = static_cast<double>(_recording.datBytes);
        values = static_cast<double>((shape.analogs + shape.statuses) * shape.samples);
        structures = structureBytes(shape);
        fileCopy = shape.encoding == Encoding::Ascii ? bytes : 0.0;
    }

    double runLibrary() override {
        Dat dat(_cfg);
        return loadDat(dat, _recording);
    }

    double runFloor() override {
        const double begin = now();
        const std::vector<floors::Sample> samples = floors::loadSamples(_cfg, _recording.dat, pages);
        return now() - begin;
    }

    bool agree() override {
        Dat dat(_cfg);
        loadDat(dat, _recording);
        const std::vector<floors::Sample> expected = floors::loadSamples(_cfg, _recording.dat, pages);
        return std::equal(dat.samples.begin(), dat.samples.end(), expected.begin(), expected.end(), same);
    }

private:
    TemporaryFolder _folder;
    Recording _recording;
    Cfg _cfg;
};

/// A thousand sampling rates, measured against the library itself with one.
class RatesWork : public Work {
public:
    explicit RatesWork(const Shape& shape)
        : _shape(shape), _many(writeRecording(_with(shape, Rates::Thousand), _manyFolder.path())),
          _one(writeRecording(_with(shape, Rates::One), _oneFolder.path())) {
        loadCfg(_manyCfg, _many);
        loadCfg(_oneCfg, _one);
        bytes = static_cast<double>(_many.datBytes);
        values = static_cast<double>((shape.analogs + shape.statuses) * shape.samples);
    }

    double runLibrary() override { return _run(_manyCfg, _many); }
    double runFloor() override { return _run(_oneCfg, _one); }

    /// The values agree; the times cannot.
    bool agree() override {
        Dat many(_manyCfg);
        Dat one(_oneCfg);
        loadDat(many, _many);
        loadDat(one, _one);
        return std::equal(many.samples.begin(), many.samples.end(), one.samples.begin(), one.samples.end(),
                          [](const auto& left, const auto& right) { return left.analogValues == right.analogValues; });
    }

private:
    static Shape _with(Shape shape, Rates rates) {
        shape.rates = rates;
        return shape;
    }

    static double _run(const Cfg& cfg, const Recording& recording) {
        Dat dat(cfg);
        return loadDat(dat, recording);
    }

    Shape _shape;
    TemporaryFolder _manyFolder;
    TemporaryFolder _oneFolder;
    Recording _many;
    Recording _one;
    Cfg _manyCfg;
    Cfg _oneCfg;
};

/// Shapes keep at least a few samples, however much they are divided.
Shape resized(Shape shape, unsigned long multiple, unsigned long divisor) {
    shape.samples = std::max(shape.samples * multiple / divisor, 20UL);
    return shape;
}

template <class SomeWork> Case makeCase(const std::string& name, double target, const Shape& shape) {
    return {name, target, [shape](unsigned long multiple, unsigned long divisor) {
                return std::make_unique<SomeWork>(resized(shape, multiple, divisor));
            }};
}

} // namespace

std::vector<Case> loadCases() {
    // Against the floor as it is without advice: what the advice gains.
    using Usual = LoadWork<floors::Pages::Usual>;
    using Huge = LoadWork<floors::Pages::Huge>;
    constexpr double kTarget = 1.10;
    constexpr double kRandomBitsTarget = 1.15;
    const auto ascii = Encoding::Ascii;
    const auto binary = Encoding::Binary;
    const auto float32 = Encoding::Float32;
    const auto seldom = StatusBits::Seldom;
    return {
        makeCase<Usual>("load/binary/3+0x1000000", 0.75, {3, 0, 1000000, binary, seldom, Rates::One}),
        makeCase<Usual>("load/binary/8+16x400000", 0.85, {8, 16, 400000, binary, seldom, Rates::One}),
        makeCase<Usual>("load/binary/32+64x200000", 0.95, {32, 64, 200000, binary, seldom, Rates::One}),
        makeCase<Usual>("load/binary/200+400x20000", 1.02, {200, 400, 20000, binary, seldom, Rates::One}),
        makeCase<Huge>("load-advised/binary/3+0x1000000", kTarget, {3, 0, 1000000, binary, seldom, Rates::One}),
        makeCase<Huge>("load-advised/binary/8+16x400000", kTarget, {8, 16, 400000, binary, seldom, Rates::One}),
        makeCase<Huge>("load-advised/binary/32+64x200000", kTarget, {32, 64, 200000, binary, seldom, Rates::One}),
        makeCase<Huge>("load-advised/float32/32+64x200000", kTarget, {32, 64, 200000, float32, seldom, Rates::One}),
        makeCase<Huge>("load-advised/ascii/32+64x100000", kTarget, {32, 64, 100000, ascii, seldom, Rates::One}),
        makeCase<Huge>("load-advised/ascii/8+16x200000", kTarget, {8, 16, 200000, ascii, seldom, Rates::One}),
        makeCase<Huge>("load-advised/random-bits/32+64x200000", kRandomBitsTarget,
                       {32, 64, 200000, binary, StatusBits::Random, Rates::One}),
        makeCase<Huge>("load-advised/rate-0/32+64x200000", kTarget, {32, 64, 200000, binary, seldom, Rates::Zero}),
        makeCase<Huge>("load-advised/1000-rates/3+0x1000000", kTarget,
                       {3, 0, 1000000, binary, seldom, Rates::Thousand}),
        makeCase<RatesWork>("load/1000-rates-to-one/3+0x1000000", kTarget, {3, 0, 1000000, binary, seldom, Rates::One}),
    };
}

} // namespace orvbench
