#include "Comtrade.h"
#include "Enums.h"
#include "cases.h"
#include "inputs.h"

#include <OrvComtradeIntake/Intake.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace orvbench {

namespace {

using OrvComtradeIntake::Opened;
using OrvComtradeLib::Comtrade;

std::unique_ptr<Comtrade> checked(std::unique_ptr<Comtrade> comtrade, int result) {
    if (result != OrvComtradeLib::Enums::Ok) {
        throw std::runtime_error("the recording did not load");
    }
    return comtrade;
}

std::unique_ptr<Comtrade> load(const std::string& path) {
    auto comtrade = std::make_unique<Comtrade>();
    const int result = comtrade->load(path);
    return checked(std::move(comtrade), result);
}

std::unique_ptr<Comtrade> load(const Opened& opened) {
    auto comtrade = std::make_unique<Comtrade>();
    const int result = opened.load(*comtrade);
    return checked(std::move(comtrade), result);
}

/// To the last bit.
bool same(const std::vector<double>& left, const std::vector<double>& right) {
    const std::size_t size = left.size() * sizeof(double);
    return left.size() == right.size() && (size == 0 || std::memcmp(left.data(), right.data(), size) == 0);
}

bool same(const Comtrade& left, const Comtrade& right) {
    const std::vector<OrvComtradeLib::Sample>& one = left.dat.samples;
    const std::vector<OrvComtradeLib::Sample>& other = right.dat.samples;
    return std::equal(one.begin(), one.end(), other.begin(), other.end(), [](const auto& found, const auto& expected) {
        return same({found.time}, {expected.time}) && same(found.analogValues, expected.analogValues) &&
               found.binaryValues == expected.binaryValues;
    });
}

/// A recording on a disk, and one that the library reads by itself: the same, or what the intake writes for it.
class IntakeWork : public Work {
private:
    TemporaryFolder _folder; // before what is written into it

public:
    explicit IntakeWork(const Shape& shape) : recording(writeRecording(shape, _folder.path())), plain(recording.cfg) {
        bytes = static_cast<double>(recording.datBytes);
        values = static_cast<double>((shape.analogs + shape.statuses) * shape.samples);
        const Opened opened = OrvComtradeIntake::open(recording.cfg);
        if (!opened.librarySuffices()) {
            plain = _folder.path() + "/plain.cfg";
            _write(opened, _folder.path() + "/plain.dat");
        }
    }

    double runFloor() override {
        const double begin = now();
        const std::unique_ptr<Comtrade> comtrade = load(plain);
        return now() - begin;
    }

protected:
    Recording recording;
    std::string plain; ///< path of what the library reads by itself

private:
    void _write(const Opened& opened, const std::string& dat) const {
        std::ofstream cfgFile(plain, std::ios_base::binary);
        std::ofstream datFile(dat, std::ios_base::binary);
        OrvComtradeIntake::Form form;
        form.reader = OrvComtradeIntake::Reader::Library;
        opened.write([&cfgFile](std::string_view text) { cfgFile << text; },
                     [&datFile](std::string_view data) { datFile << data; }, form);
    }
};

/// A look at a recording, measured against its load by the library.
class OpenWork : public IntakeWork {
public:
    using IntakeWork::IntakeWork;

    double runLibrary() override {
        const double begin = now();
        const Opened opened = OrvComtradeIntake::open(recording.cfg);
        return now() - begin;
    }

    bool agree() override {
        const Opened opened = OrvComtradeIntake::open(recording.cfg);
        return opened.readable() && opened.header().samples == load(plain)->dat.samples.size();
    }
};

/// The look and the load, measured against the load alone.
class OpenAndLoadWork : public IntakeWork {
public:
    using IntakeWork::IntakeWork;

    double runLibrary() override {
        const double begin = now();
        const Opened opened = OrvComtradeIntake::open(recording.cfg);
        const std::unique_ptr<Comtrade> comtrade = load(opened);
        return now() - begin;
    }

    bool agree() override { return same(*load(OrvComtradeIntake::open(recording.cfg)), *load(plain)); }
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
    constexpr double kLoadTarget = 1.10;
    constexpr double kNoTarget = 0.0;
    const auto seldom = StatusBits::Seldom;
    const auto one = Rates::One;
    const Shape binary{32, 64, 200000, Encoding::Binary, seldom, one};
    const Shape float32{32, 64, 200000, Encoding::Float32, seldom, one};
    const Shape ascii{32, 64, 100000, Encoding::Ascii, seldom, one};
    const Shape binary32{32, 64, 100000, Encoding::Binary32, seldom, one};
    const Shape decimals{32, 64, 50000, Encoding::Decimals, seldom, one};
    return {
        makeCase<OpenWork>("intake/open-binary/32+64x200000", kNoTarget, binary),
        makeCase<OpenWork>("intake/open-ascii/32+64x100000", kNoTarget, ascii),
        makeCase<OpenAndLoadWork>("intake/load-binary/32+64x200000", kLoadTarget, binary),
        makeCase<OpenAndLoadWork>("intake/load-float32/32+64x200000", kLoadTarget, float32),
        makeCase<OpenAndLoadWork>("intake/load-ascii/32+64x100000", kLoadTarget, ascii),
        makeCase<OpenAndLoadWork>("intake/load-binary32/32+64x100000", kNoTarget, binary32),
        makeCase<OpenAndLoadWork>("intake/load-decimals/32+64x50000", kNoTarget, decimals),
    };
}

} // namespace orvbench
