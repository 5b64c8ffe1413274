#include "Comtrade.h"
#include "Enums.h"
#include "Intake.h"
#include "cases.h"
#include "inputs.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace orvbench {

namespace {

using OrvComtradeIntake::PreparedRecording;
using OrvComtradeLib::Comtrade;

std::unique_ptr<Comtrade> load(const std::string& path) {
    auto comtrade = std::make_unique<Comtrade>();
    if (comtrade->load(path) != OrvComtradeLib::Enums::Ok) {
        throw std::runtime_error("the recording did not load");
    }
    return comtrade;
}

/// Units with a prefix would be mended.
void writeBaseUnits(const std::string& cfg) {
    std::ifstream in(cfg, std::ios_base::binary);
    std::string text(std::istreambuf_iterator<char>(in), {});
    in.close();
    const std::string unit = ",kV,";
    for (std::size_t at = 0; (at = text.find(unit, at)) != std::string::npos;) {
        text.replace(at, unit.size(), ",V,");
    }
    std::ofstream(cfg, std::ios_base::binary) << text;
}

/// Intake and load of a recording that needs no mending, measured against its load.
class CleanWork : public Work {
public:
    explicit CleanWork(const Shape& shape) : _recording(writeRecording(shape, _folder.path())) {
        writeBaseUnits(_recording.cfg);
        bytes = static_cast<double>(_recording.datBytes);
        values = static_cast<double>((shape.analogs + shape.statuses) * shape.samples);
    }

    double runLibrary() override {
        const double begin = now();
        const PreparedRecording prepared = OrvComtradeIntake::prepare(_recording.cfg);
        const std::unique_ptr<Comtrade> comtrade = load(prepared.path);
        return now() - begin;
    }

    double runFloor() override {
        const double begin = now();
        const std::unique_ptr<Comtrade> comtrade = load(_recording.cfg);
        return now() - begin;
    }

    /// The original files are used as they are.
    bool agree() override { return OrvComtradeIntake::prepare(_recording.cfg).path == _recording.cfg; }

private:
    TemporaryFolder _folder;
    Recording _recording;
};

/// Intake of data that must be written anew, measured against a copy of them.
class TranscodeWork : public Work {
public:
    explicit TranscodeWork(const Shape& shape) : _shape(shape), _recording(writeRecording(shape, _folder.path())) {
        bytes = static_cast<double>(_recording.datBytes);
        values = static_cast<double>((shape.analogs + shape.statuses) * shape.samples);
    }

    double runLibrary() override {
        const double begin = now();
        const PreparedRecording prepared = OrvComtradeIntake::prepare(_recording.cfg);
        return now() - begin;
    }

    double runFloor() override {
        const std::string target = _folder.path() + "/copy";
        const double begin = now();
        std::filesystem::copy_file(_recording.dat, target, std::filesystem::copy_options::overwrite_existing);
        return now() - begin;
    }

    /// What was written loads with every sample.
    bool agree() override {
        const PreparedRecording prepared = OrvComtradeIntake::prepare(_recording.cfg);
        return prepared.path != _recording.cfg && load(prepared.path)->dat.samples.size() == _shape.samples;
    }

private:
    Shape _shape;
    TemporaryFolder _folder;
    Recording _recording;
};

template <class SomeWork> Case makeCase(const std::string& name, double target, const Shape& shape) {
    return {name, target, [shape](unsigned long multiple, unsigned long divisor) {
                Shape resized = shape;
                resized.samples = std::max(shape.samples * multiple / divisor, 20UL);
                return std::make_unique<SomeWork>(resized);
            }};
}

} // namespace

std::vector<Case> intakeCases() {
    constexpr double kCleanTarget = 1.05;
    constexpr double kNoTarget = 0.0;
    const auto seldom = StatusBits::Seldom;
    const auto one = Rates::One;
    return {
        makeCase<CleanWork>("intake/clean-binary/32+64x200000", kCleanTarget,
                            {32, 64, 200000, Encoding::Binary, seldom, one}),
        makeCase<CleanWork>("intake/clean-float32/32+64x200000", kCleanTarget,
                            {32, 64, 200000, Encoding::Float32, seldom, one}),
        makeCase<CleanWork>("intake/clean-ascii/32+64x100000", kCleanTarget,
                            {32, 64, 100000, Encoding::Ascii, seldom, one}),
        makeCase<TranscodeWork>("intake/transcode-binary32/32+64x100000", kNoTarget,
                                {32, 64, 100000, Encoding::Binary32, seldom, one}),
        makeCase<TranscodeWork>("intake/transcode-decimals/32+64x50000", kNoTarget,
                                {32, 64, 50000, Encoding::Decimals, seldom, one}),
    };
}

} // namespace orvbench
