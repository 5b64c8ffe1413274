#include "Cfg.h"
#include "Enums.h"
#include "cases.h"
#include "floors.h"
#include "inputs.h"

#include <cmath>
#include <stdexcept>

namespace orvbench {

namespace {

using OrvComtradeLib::AnalogChannelConfig;
using OrvComtradeLib::BinaryChannelConfig;
using OrvComtradeLib::Cfg;

class CfgWork : public Work {
public:
    explicit CfgWork(const Shape& shape) : _shape(shape), _recording(writeConfiguration(shape, _folder.path())) {
        bytes = static_cast<double>(_recording.cfgBytes);
        values = static_cast<double>(7 * shape.analogs + shape.statuses);
    }

    double runLibrary() override {
        Cfg cfg;
        const double begin = now();
        const int result = cfg.load(_recording.cfg);
        const double seconds = now() - begin;
        if (result != OrvComtradeLib::Enums::CfgLoaded) {
            throw std::runtime_error("the configuration did not load");
        }
        return seconds;
    }

    double runFloor() override {
        const double begin = now();
        const std::vector<double> numbers = floors::readNumbers(_recording.cfg, _shape.analogs, _shape.statuses);
        return now() - begin;
    }

    bool agree() override {
        Cfg cfg;
        cfg.load(_recording.cfg);
        const std::vector<double> numbers = floors::readNumbers(_recording.cfg, _shape.analogs, _shape.statuses);
        std::vector<double> expected;
        for (const AnalogChannelConfig& record : cfg.analogChannelConfigs) {
            // The skew is written in whole microseconds.
            const double skew = std::round(record.skew * 1e6);
            expected.insert(expected.end(),
                            {record.a, record.b, skew, record.min, record.max, record.primary, record.secondary});
        }
        for (const BinaryChannelConfig& record : cfg.binaryChannelConfigs) {
            expected.push_back(static_cast<double>(record.normalState));
        }
        return numbers == expected;
    }

private:
    Shape _shape;
    TemporaryFolder _folder;
    Recording _recording;
};

Case makeCase(const std::string& name, unsigned long analogs, unsigned long statuses) {
    constexpr double kTarget = 1.35;
    return {name, kTarget, [=](unsigned long multiple, unsigned long divisor) {
                Shape shape;
                shape.analogs = analogs * multiple / divisor;
                shape.statuses = statuses * multiple / divisor;
                shape.samples = 1000;
                return std::make_unique<CfgWork>(shape);
            }};
}

} // namespace

std::vector<Case> cfgCases() {
    return {makeCase("cfg/10000+0", 10000, 0), makeCase("cfg/5000+5000", 5000, 5000)};
}

} // namespace orvbench
