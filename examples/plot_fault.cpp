// Draws a fault: plot_fault FILE START END [CHANNEL...] > fault.svg
//
// The analog channels with these identifiers (all, if none is named), one set of axes per unit, from half the length of
// the window before it to half its length after it; below them the status channels that change, and a line at the
// trigger. The drawing itself is that of the tool's pictures: fill in a Figure, and hand it to writeSvg.

#include "host.h"
#include "toUtf8.h"

#include <OrvComtradePicture/Figure.h>
#include <OrvComtradePicture/svg.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using OrvComtradePicture::Figure;
using OrvComtradePicture::Lane;
using OrvComtradePicture::Point;
using OrvComtradePicture::Range;
using OrvComtradePicture::Strip;

constexpr double kMostPoints = 1e6;

// [trigger]
/// Seconds since midnight in a line like "14/03/2019,06:41:17.322000".
std::optional<double> timeOfDay(const std::string& line) {
    std::istringstream in(line);
    std::string date;
    std::array<char, 2> colons{};
    int hours = 0;
    int minutes = 0;
    double seconds = 0.0;
    std::getline(in, date, ',') >> hours >> colons[0] >> minutes >> colons[1] >> seconds;
    const bool valid = in && hours >= 0 && hours < 24 && minutes >= 0 && minutes < 60 && seconds >= 0 && seconds < 60;
    return valid ? std::optional(hours * 3600.0 + minutes * 60.0 + seconds) : std::nullopt;
}

/// When the recorder was triggered, in seconds after its start. The library keeps neither of the two lines.
std::optional<double> triggerOf(const OrvComtradeLib::Comtrade& recording) {
    const auto& cfg = recording.cfg;
    std::ifstream in(recording.cfgFileName);
    std::string line;
    const std::size_t linesBefore =
        4 + cfg.analogChannelConfigs.size() + cfg.binaryChannelConfigs.size() + cfg.samplingRates.size();
    for (std::size_t i = 0; i < linesBefore; ++i) {
        std::getline(in, line);
    }
    const std::optional<double> start = std::getline(in, line) ? timeOfDay(line) : std::nullopt;
    const std::optional<double> trigger = std::getline(in, line) ? timeOfDay(line) : std::nullopt;
    if (!start || !trigger) {
        return std::nullopt;
    }
    const double seconds = trigger.value() - start.value();
    return seconds < 0.0 ? seconds + 86400.0 : seconds; // past midnight
}
// [/trigger]

// [points]
/// As many points a second as there are samples where they lie closest, so that no peak is missed. A bound keeps the
/// lists small whatever the file says.
double densityOf(const std::vector<OrvComtradeLib::Sample>& samples, Range view) {
    double shortest = view.length();
    for (std::size_t i = 1; i < samples.size(); ++i) {
        const double step = samples[i].time - samples[i - 1].time;
        if (view.holds(samples[i].time) && step > 0.0) {
            shortest = std::min(shortest, step);
        }
    }
    return 1.0 / std::max(shortest, view.length() / kMostPoints);
}

std::vector<Point> pointsOf(const OrvComtradeLib::AnalogChannel& channel, Range view) {
    const auto& samples = channel.samples;
    const auto first = std::find_if(samples.begin(), samples.end(),
                                    [&](const auto& sample) { return view.holds(sample.time + channel.skew); });
    std::vector<Point> points;
    if (first == samples.end()) {
        return points;
    }
    const double density = densityOf(samples, view);
    const double start = first->time + channel.skew; // so that points fall on samples
    // Behind the last sample the value is 0: stay half a step before it, lest rounding leads there.
    const double end = std::min(view.to, samples.back().time + channel.skew - 0.5 / density);
    for (const Orv::PointF& point : channel.getPoints(start, end, density)) {
        const double time = start + static_cast<double>(points.size()) / density; // point.x has single precision
        points.push_back({time, static_cast<double>(point.y)});
    }
    return points;
}
// [/points]

// [thinned]
/// The lowest and the highest point of each column of pixels, where there are more: the drawing looks the same.
std::vector<Point> thinned(const std::vector<Point>& points, Range view) {
    const auto columns = static_cast<double>(OrvComtradePicture::columnsOf(OrvComtradePicture::SvgStyle()));
    if (static_cast<double>(points.size()) <= 2.0 * columns) {
        return points;
    }
    std::vector<Point> kept;
    for (auto begin = points.begin(); begin != points.end();) {
        const auto columnOf = [&](const Point& point) {
            return std::floor((point.time - view.from) / view.length() * columns);
        };
        const auto end = std::find_if(std::next(begin), points.end(),
                                      [&](const Point& point) { return columnOf(point) != columnOf(*begin); });
        const auto lower = [](const Point& one, const Point& other) { return one.value < other.value; };
        const auto [low, high] = std::minmax_element(begin, end, lower);
        kept.push_back(*std::min(low, high)); // in the order of time
        kept.push_back(*std::max(low, high));
        begin = end;
    }
    return kept;
}
// [/thinned]

/// Lowest and highest value; nothing where there is none.
std::optional<Range> extremesOf(const Lane& lane) {
    std::optional<Range> extremes;
    for (const auto& trace : lane.traces) {
        for (const Point& point : trace.points) {
            if (std::isfinite(point.value)) {
                const Range before = extremes.value_or(Range{point.value, point.value});
                extremes = Range{std::min(before.from, point.value), std::max(before.to, point.value)};
            }
        }
    }
    return extremes;
}

std::vector<Lane> lanesOf(const OrvComtradeLib::Comtrade& recording, Range view,
                          const std::vector<std::string>& identifiers) {
    std::vector<Lane> lanes;
    for (std::size_t i = 0; i < recording.analogChannels.size(); ++i) {
        const auto& config = recording.cfg.analogChannelConfigs[i];
        const std::string identifier = host::trimmed(config.channelId);
        if (!identifiers.empty() &&
            std::find(identifiers.begin(), identifiers.end(), identifier) == identifiers.end()) {
            continue;
        }
        const std::string unit = host::baseUnit(config);
        auto lane = std::find_if(lanes.begin(), lanes.end(), [&](const Lane& l) { return l.unit == unit; });
        if (lane == lanes.end()) {
            lane = lanes.insert(lane, Lane());
            lane->unit = unit;
            lane->side = OrvComtradeIntake::Side::Secondary; // as the library gives values
        }
        const std::size_t colour = lane->traces.size(); // phases A, B, C and the residual quantity, in this order
        lane->traces.push_back(
            {i, host::label(config), colour, thinned(pointsOf(recording.analogChannels[i], view), view)});
    }
    for (Lane& lane : lanes) {
        lane.values = OrvComtradePicture::axisAround(extremesOf(lane));
    }
    return lanes;
}

// [strips]
/// When status channel `bit` is 1; nothing where it does not change.
std::vector<OrvComtradePicture::Span> timesOn(const std::vector<OrvComtradeLib::Sample>& samples, std::size_t bit,
                                              Range view) {
    std::vector<OrvComtradePicture::Span> on;
    bool changes = false;
    std::optional<bool> before;
    for (const auto& sample : samples) {
        if (!view.holds(sample.time)) {
            continue;
        }
        const bool state = sample.binaryValues[bit];
        changes = changes || (before && *before != state);
        if (before && *before) {
            on.back().times.to = sample.time;
        }
        if (state && !(before && *before)) {
            on.push_back({{sample.time, sample.time}, false});
        }
        before = state;
    }
    if (!changes) {
        on.clear();
    }
    return on;
}
// [/strips]

std::vector<Strip> stripsOf(const OrvComtradeLib::Comtrade& recording, Range view) {
    std::vector<Strip> strips;
    for (const auto& config : recording.cfg.binaryChannelConfigs) {
        const auto bit = static_cast<std::size_t>(config.index);
        std::vector<OrvComtradePicture::Span> on = timesOn(recording.dat.samples, bit, view);
        if (!on.empty()) {
            strips.push_back({bit, host::label(config), std::move(on)});
        }
    }
    return strips;
}

} // namespace

int main(int argc, char** argv) {
    const std::optional<double> start = argc >= 4 ? host::toNumber(argv[2]) : std::nullopt;
    const std::optional<double> end = argc >= 4 ? host::toNumber(argv[3]) : std::nullopt;
    if (!start || !end) {
        std::cerr << "usage: plot_fault FILE START END [CHANNEL...] > fault.svg (START and END in seconds)\n";
        return 2;
    }
    OrvComtradeLib::Comtrade recording;
    if (!host::loadOrTell(recording, argv[1])) {
        return 1;
    }
    const auto& samples = recording.dat.samples;
    const double margin = (*end - *start) / 2;
    const Range view = samples.empty() ? Range{0, 0}
                                       : Range{std::max(*start - margin, samples.front().time),
                                               std::min(*end + margin, samples.back().time)};
    if (!(view.length() > 0.0) || !std::isfinite(view.length())) {
        std::cerr << host::printable(argv[1]) << ": nothing recorded from START to END\n";
        return 1;
    }
    Figure figure;
    figure.title = host::printable(toUtf8::detectAndConvert(recording.cfg.stationName));
    figure.view = view;
    figure.lanes = lanesOf(recording, view, {argv + 4, argv + argc});
    figure.strips = stripsOf(recording, view);
    const std::optional<double> trigger = triggerOf(recording);
    if (trigger && view.holds(*trigger)) {
        figure.trigger = trigger;
    }
    if (figure.lanes.empty()) {
        std::cerr << host::printable(argv[1]) << ": no analog channel of this name\n";
        return 1;
    }
    std::ios::sync_with_stdio(false);
    writeSvg(figure, {}, [](std::string_view piece) { std::cout << piece; });
    std::cout.flush();
    return std::cout ? 0 : 1;
}
