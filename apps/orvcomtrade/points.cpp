#include "points.h"

#include "Comtrade.h"
#include "Failure.h"
#include "findChannel.h"
#include "loadRecording.h"

#include <fmt/format.h>

#include <cmath>
#include <cstddef>
#include <cstdio>
#include <vector>

using namespace OrvComtradeLib;

namespace {

constexpr double kMostPoints = 10000000.0; // a slip of --rate shall not fill the memory

void checkRange(const PointsRequest& request) {
    if (!std::isfinite(request.start)) {
        throw Failure(kWrongUsage, "--start must be a finite number of seconds");
    }
    if (request.end && !(std::isfinite(*request.end) && *request.end >= 0.0)) {
        throw Failure(kWrongUsage, "--end must be a finite number of seconds, not below 0");
    }
    if (request.end && *request.end <= request.start) {
        throw Failure(kWrongUsage,
                      fmt::format("--end ({} s) must lie behind --start ({} s)", *request.end, request.start));
    }
    if (request.rate && !(std::isfinite(*request.rate) && *request.rate > 0.0)) {
        throw Failure(kWrongUsage, "--rate must be a finite number of points per second, above 0");
    }
}

void checkPointCount(const PointsRequest& request, double lastSampleTime) {
    const double count = (request.end.value_or(lastSampleTime) - request.start) * request.rate.value_or(0.0);
    if (count > kMostPoints) {
        throw Failure(
            kWrongUsage,
            fmt::format("this range at this --rate has {:.3g} points; at most {:.0f} are printed", count, kMostPoints));
    }
}

std::vector<Orv::PointF> analogPoints(const Comtrade& recording, const PointsRequest& request) {
    const std::size_t position =
        findChannel(channelNames(recording.cfg.analogChannelConfigs), request.channel, "analog");
    checkPointCount(request, recording.dat.lastSampleTime);
    if (!request.end && request.start >= recording.dat.lastSampleTime) {
        return {}; // a range of negative length at the library's default rate runs backwards
    }
    return recording.analogChannels[position].getPoints(request.start, request.end.value_or(-1.0),
                                                        request.rate.value_or(-1.0));
}

/// The library's status views plot channel 0 by contract, hence the steps of any other are taken from the samples: the
/// state at the start, each change, the state at the end.
std::vector<Orv::PointF> statusPoints(const Comtrade& recording, const PointsRequest& request) {
    const std::size_t bit = findChannel(channelNames(recording.cfg.binaryChannelConfigs), request.channel, "status");
    const std::vector<Sample>& samples = recording.dat.samples;
    if (samples.empty() || samples.back().time < request.start) {
        return {};
    }
    const double end = request.end.value_or(samples.back().time);
    std::vector<Orv::PointF> points;
    const auto append = [&points](double time, bool state) {
        points.push_back({static_cast<float>(time), state ? 1.0F : 0.0F});
    };
    bool state = samples.front().binaryValues.at(bit);
    bool started = false;
    double lastTime = request.start;
    for (const Sample& sample : samples) {
        if (sample.time > end) {
            break;
        }
        const bool current = sample.binaryValues.at(bit);
        if (sample.time > request.start) {
            if (!started) {
                append(request.start, state);
                started = true;
            }
            if (current != state) {
                append(sample.time, current);
                lastTime = sample.time;
            }
        }
        state = current;
    }
    if (!started) {
        append(request.start, state);
    }
    if (end > lastTime) {
        append(end, state);
    }
    return points;
}

} // namespace

void printPoints(const PointsRequest& request, Output& out) {
    checkRange(request);
    Comtrade recording;
    loadRecording(recording, request.path);
    const std::vector<Orv::PointF> points =
        request.status ? statusPoints(recording, request) : analogPoints(recording, request);
    out.write("time_s,value\n");
    for (const Orv::PointF& point : points) {
        out.print("{},{}\n", point.x, point.y);
    }
    if (points.empty()) {
        std::fputs("orvcomtrade: no sample lies in this range\n", stderr);
    }
}
