#include "cases.h"
#include "inputs.h"

#include <OrvComtradeIntake/Intake.h>
#include <OrvComtradePage/Page.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace orvbench {

namespace {

/// A page of a recording on a disk by one thread, against its columns. The page goes nowhere.
class PageWork : public Work {
private:
    TemporaryFolder _folder; // before what is written into it

public:
    explicit PageWork(const Shape& shape)
        : _recording(writeRecording(shape, _folder.path())), _values(shape.analogs * shape.samples) {
        bytes = static_cast<double>(_recording.datBytes);
        values = static_cast<double>(_values);
    }

    double runLibrary() override {
        const double begin = now();
        _writtenBytes();
        return now() - begin;
    }

    double runFloor() override {
        const double begin = now();
        _columns();
        return now() - begin;
    }

    bool agree() override { return _writtenBytes() > 0 && _columns().analog.size() == _values; }

private:
    std::size_t _writtenBytes() const {
        std::size_t written = 0;
        const auto opened = OrvComtradeIntake::open(_recording.cfg);
        OrvComtradePage::writePage(opened, {}, [&written](std::string_view text) { written += text.size(); });
        return written;
    }

    OrvComtradeIntake::Columns _columns() const { return OrvComtradeIntake::open(_recording.cfg).columns(); }

    Recording _recording;
    std::size_t _values;
};

Case makeCase(const std::string& name, double target, const Shape& shape) {
    return {name, target, [shape](unsigned long multiple, unsigned long divisor) {
                Shape resized = shape;
                resized.samples = std::max(shape.samples * multiple / divisor, 20UL);
                return std::make_unique<PageWork>(resized);
            }};
}

} // namespace

std::vector<Case> pageCases() {
    constexpr double target = 6.0;
    constexpr double none = 0.0;
    const auto seldom = StatusBits::Seldom;
    return {
        makeCase("page/binary/32+64x200000", target, {32, 64, 200000, Encoding::Binary, seldom, Rates::One}),
        makeCase("page/binary/32+64x37500", target, {32, 64, 37500, Encoding::Binary, seldom, Rates::One}),
        makeCase("page/binary32/32+64x100000", none, {32, 64, 100000, Encoding::Binary32, seldom, Rates::One}),
        makeCase("page/float32/32+64x100000", none, {32, 64, 100000, Encoding::Float32, seldom, Rates::One}),
    };
}

} // namespace orvbench
