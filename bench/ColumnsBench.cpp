#include "Comtrade.h"
#include "Enums.h"
#include "cases.h"
#include "childProcess.h"
#include "inputs.h"

#include <OrvComtradeIntake/Intake.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <numeric>
#include <stdexcept>
#include <string>
#include <unistd.h>
#include <vector>

namespace orvbench {

namespace {

using OrvComtradeIntake::Columns;

constexpr const char* kPython = "/usr/bin/python3"; // Debian's, which has NumPy as a package

/// Reads a file to its end in pieces that stay in the cache: what no reader of it can do without.
void readFile(const std::string& path) {
    std::vector<char> piece(256UL * 1024);
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    while (file >= 0 && read(file, piece.data(), piece.size()) > 0) {
    }
    close(file);
}

bool same(const Columns& columns, const OrvComtradeLib::Comtrade& comtrade) {
    const std::vector<OrvComtradeLib::Sample>& samples = comtrade.dat.samples;
    bool isSame = columns.samples == samples.size();
    for (std::size_t i = 0; isSame && i < samples.size(); ++i) {
        isSame = std::memcmp(&columns.time[i], &samples[i].time, sizeof(double)) == 0;
        for (std::size_t column = 0; isSame && column < columns.a.size(); ++column) {
            isSame = std::memcmp(columns.column(column) + i, &samples[i].analogValues.at(column), sizeof(double)) == 0;
        }
    }
    return isSame;
}

/// `open` with columns into those of an earlier call, as in a row of recordings.
class ColumnsWork : public Work {
private:
    TemporaryFolder _folder; // before what is written into it

public:
    explicit ColumnsWork(const Shape& shape) : recording(writeRecording(shape, _folder.path())) {
        bytes = static_cast<double>(recording.datBytes);
        values = static_cast<double>(shape.analogs * shape.samples);
    }

    double runLibrary() override {
        Columns columns;
        OrvComtradeIntake::open(recording.cfg, columns);
        const double begin = now();
        OrvComtradeIntake::open(recording.cfg, columns);
        return now() - begin;
    }

    /// Reading the file, and a nanosecond for each analog value.
    double runFloor() override {
        constexpr double secondsPerValue = 1e-9;
        readFile(recording.dat);
        const double begin = now();
        readFile(recording.dat);
        return now() - begin + secondsPerValue * values;
    }

    bool agree() override {
        Columns columns;
        const OrvComtradeIntake::Opened opened = OrvComtradeIntake::open(recording.cfg, columns);
        OrvComtradeLib::Comtrade comtrade;
        return opened.load(comtrade) == OrvComtradeLib::Enums::Ok && same(columns, comtrade);
    }

protected:
    Recording recording;
};

/// The same against a load of the library.
class ColumnsToLoadWork : public ColumnsWork {
public:
    using ColumnsWork::ColumnsWork;

    double runFloor() override {
        OrvComtradeLib::Comtrade comtrade;
        const double begin = now();
        comtrade.load(recording.cfg);
        return now() - begin;
    }
};

/// The same against a reader of these files that was written by hand, with NumPy.
class ColumnsToNumpyWork : public ColumnsWork {
public:
    using ColumnsWork::ColumnsWork;

    double runFloor() override { return _run().seconds; }

    bool agree() override {
        Columns columns;
        OrvComtradeIntake::open(recording.cfg, columns);
        const double total = _sumOf(columns.time) + _sumOf(columns.analog);
        return ColumnsWork::agree() && std::abs(_run().total - total) <= 1e-9 * total;
    }

private:
    struct Result {
        double seconds = 0.0;
        double total = 0.0;
    };

    Result _run() const {
        const std::string text = outputOf({kPython, ORV_NUMPY_READER, recording.cfg, "3"});
        return {std::stod(text), std::stod(text.substr(text.find(' ')))};
    }

    /// Of sizes, to a few roundings: the factors are multiplied in another order there.
    template <class Doubles> static double _sumOf(const Doubles& numbers) {
        return std::accumulate(numbers.begin(), numbers.end(), 0.0,
                               [](double sum, double number) { return sum + std::abs(number); });
    }
};

bool hasNumpy() {
    try {
        return outputOf({kPython, "-c",
                         "import importlib.util; print(importlib.util.find_spec('numpy') is not None)"}) == "True\n";
    } catch (const std::runtime_error&) {
        return false;
    }
}

template <class SomeWork> Case makeCase(const std::string& name, double target, const Shape& shape) {
    return {name, target, [shape](unsigned long multiple, unsigned long divisor) {
                Shape resized = shape;
                resized.samples = std::max(shape.samples * multiple / divisor, 20UL);
                return std::make_unique<SomeWork>(resized);
            }};
}

} // namespace

std::vector<Case> columnCases() {
    constexpr double kFloorTarget = 2.0;
    constexpr double kNumpyTarget = 0.7;
    constexpr double kLoadTarget = 0.6;
    const auto shape = [](unsigned long analogs, unsigned long statuses, unsigned long samples, Encoding encoding) {
        return Shape{analogs, statuses, samples, encoding, StatusBits::Seldom, Rates::One};
    };
    const Shape binary = shape(32, 64, 200000, Encoding::Binary);
    const Shape float32 = shape(32, 64, 200000, Encoding::Float32);
    const Shape narrow = shape(3, 0, 1000000, Encoding::Binary);
    const Shape wide = shape(200, 400, 20000, Encoding::Binary);
    std::vector<Case> cases = {
        makeCase<ColumnsWork>("columns/binary/32+64x200000", kFloorTarget, binary),
        makeCase<ColumnsWork>("columns/float32/32+64x200000", kFloorTarget, float32),
        makeCase<ColumnsWork>("columns/binary/8+16x400000", kFloorTarget, shape(8, 16, 400000, Encoding::Binary)),
        makeCase<ColumnsWork>("columns/binary/200+400x20000", kFloorTarget, wide),
        makeCase<ColumnsWork>("columns/binary/3+0x1000000", kFloorTarget, narrow),
        makeCase<ColumnsToLoadWork>("columns-to-load/ascii/32+64x100000", kLoadTarget,
                                    shape(32, 64, 100000, Encoding::Ascii)),
        makeCase<ColumnsToLoadWork>("columns-to-load/ascii/8+16x200000", kLoadTarget,
                                    shape(8, 16, 200000, Encoding::Ascii)),
        makeCase<ColumnsToLoadWork>("columns-to-load/binary/32+64x200000", kLoadTarget, binary),
    };
    if (hasNumpy()) {
        cases.push_back(makeCase<ColumnsToNumpyWork>("columns-to-numpy/binary/32+64x200000", kNumpyTarget, binary));
        cases.push_back(makeCase<ColumnsToNumpyWork>("columns-to-numpy/float32/32+64x200000", kNumpyTarget, float32));
        cases.push_back(makeCase<ColumnsToNumpyWork>("columns-to-numpy/binary/200+400x20000", kNumpyTarget, wide));
        cases.push_back(makeCase<ColumnsToNumpyWork>("columns-to-numpy/binary/3+0x1000000", kNumpyTarget, narrow));
    }
    return cases;
}

} // namespace orvbench
