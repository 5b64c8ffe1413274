#include "Comtrade.h"
#include "Enums.h"
#include "cases.h"
#include "floors.h"
#include "inputs.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <stdexcept>

namespace orvbench {

namespace {

using Points = std::vector<Orv::PointF>;

bool samePoints(const Points& left, const Points& right) {
    return left.size() == right.size() &&
           (left.empty() || std::memcmp(left.data(), right.data(), left.size() * sizeof(Orv::PointF)) == 0);
}

enum class Query { EveryAnalogAtDefaultRate, OneAnalogAtPointPerSample, EveryStatus };

class PointsWork : public Work {
public:
    PointsWork(const Shape& shape, Query query) : _query(query) {
        const TemporaryFolder folder;
        if (_recording.load(writeRecording(shape, folder.path()).cfg) != OrvComtradeLib::Enums::Ok) {
            throw std::runtime_error("the recording did not load");
        }
        _end = _recording.dat.samples.back().time;
        _channels = _query == Query::EveryStatus                ? _recording.binaryChannels.size()
                    : _query == Query::EveryAnalogAtDefaultRate ? _recording.analogChannels.size()
                                                                : 1;
        _rate = _query == Query::OneAnalogAtPointPerSample ? static_cast<double>(shape.samples) / _end
                                                           : _recording.analogChannels.front().defaultSampleRate(_end);
        for (std::size_t channel = 0; channel < _channels; ++channel) {
            values += static_cast<double>(_library(channel).size());
        }
    }

    double runLibrary() override {
        return _time([this](std::size_t channel) { return _library(channel); });
    }

    double runFloor() override {
        return _time([this](std::size_t channel) { return _floor(channel); });
    }

    bool agree() override {
        for (std::size_t channel = 0; channel < _channels; ++channel) {
            if (!samePoints(_library(channel), _floor(channel))) {
                return false;
            }
        }
        return true;
    }

private:
    template <class GetPoints> double _time(GetPoints getPoints) const {
        double seconds = 0.0;
        for (std::size_t channel = 0; channel < _channels; ++channel) {
            const double begin = now();
            const Points points = getPoints(channel);
            seconds += now() - begin;
        }
        return seconds;
    }

    Points _library(std::size_t channel) const {
        switch (_query) {
        case Query::EveryAnalogAtDefaultRate:
            return _recording.analogChannels[channel].getPoints(0.0, -1.0, -1.0);
        case Query::OneAnalogAtPointPerSample:
            return _recording.analogChannels[channel].getPoints(0.0, -1.0, _rate);
        default:
            return _recording.binaryChannels[channel].getPoints(0.0, -1.0, -1.0);
        }
    }

    Points _floor(std::size_t channel) const {
        const std::vector<OrvComtradeLib::Sample>& samples = _recording.dat.samples;
        if (_query == Query::EveryStatus) {
            return floors::statusPoints(samples, 0, 0.0, _end); // every view plots status channel 0
        }
        return floors::analogPoints(samples, channel, _recording.analogChannels[channel].skew, 0.0, _end, _rate);
    }

    Query _query;
    OrvComtradeLib::Comtrade _recording;
    double _end = 0.0;
    double _rate = 0.0;
    std::size_t _channels = 0;
};

Case makeCase(const std::string& name, Query query) {
    constexpr double kTarget = 1.1;
    return {name, kTarget, [query](unsigned long multiple, unsigned long divisor) {
                const Shape shape{32, 64, std::max(200000 * multiple / divisor, 20UL)};
                return std::make_unique<PointsWork>(shape, query);
            }};
}

} // namespace

std::vector<Case> pointsCases() {
    return {makeCase("points/every-analog-default-rate/32+64x200000", Query::EveryAnalogAtDefaultRate),
            makeCase("points/one-analog-point-per-sample/32+64x200000", Query::OneAnalogAtPointPerSample),
            makeCase("points/every-status/32+64x200000", Query::EveryStatus)};
}

} // namespace orvbench
