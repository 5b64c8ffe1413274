#include "axes.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

using OrvComtradeIntake::Instant;

namespace OrvComtradePicture {

namespace {

constexpr std::int64_t kNanoseconds = 1000000000;
constexpr double kSecondsOfDay = 86400.0;

struct TimeUnit {
    const char* name;
    double seconds;
};

TimeUnit timeUnitOf(Range view) {
    if (view.length() < 0.002 && std::abs(view.to) < 0.1) {
        return {"\xC2\xB5s", 1e-6};
    }
    if (view.length() < 2.0 && std::abs(view.to) < 100.0) {
        return {"ms", 1e-3};
    }
    return {"s", 1.0};
}

std::string twoDigits(int number) {
    return {static_cast<char>('0' + number / 10), static_cast<char>('0' + number % 10)};
}

/// "19:05:44.61" of seconds since midnight.
std::string clockText(double seconds, int decimals) {
    const double scale = std::pow(10.0, decimals);
    const double rounded = std::round(std::fmod(seconds, kSecondsOfDay) * scale) / scale; // 59.9999 is no 60
    const double ofDay = rounded >= kSecondsOfDay ? rounded - kSecondsOfDay : rounded;
    const int whole = static_cast<int>(ofDay);
    const std::string rest = fixed(ofDay - whole, decimals).substr(1); // "0.61"
    return twoDigits(whole / 3600) + ":" + twoDigits(whole / 60 % 60) + ":" + twoDigits(whole % 60) + rest;
}

/// Seconds from the midnight before it.
double sinceMidnight(Instant instant) {
    const std::int64_t day = 86400 * kNanoseconds;
    const std::int64_t rest = (instant.nanoseconds % day + day) % day;
    return static_cast<double>(rest) / static_cast<double>(kNanoseconds);
}

Axis clockAxis(const Figure& figure, int most) {
    const double start = sinceMidnight(*figure.start);
    const Ticks ticks = ticksOf({start + figure.view.from, start + figure.view.to}, most);
    Axis axis;
    for (const double place : ticks.places) {
        const double positive = place < 0.0 ? place + kSecondsOfDay : place;
        axis.marks.push_back({place - start, clockText(positive, ticks.decimals)});
    }
    axis.caption =
        "time, " + figure.start->text().substr(0, figure.start->text().find('T')) + (figure.isUtc ? " UTC" : "");
    return axis;
}

} // namespace

Axis timeAxis(const Figure& figure, int most) {
    if (figure.base == TimeBase::Clock && figure.start) {
        return clockAxis(figure, std::max(2, most * 2 / 3)); // their labels are long
    }
    const Range view{figure.view.from - figure.zero, figure.view.to - figure.zero};
    const TimeUnit unit = timeUnitOf(view);
    const Ticks ticks = ticksOf({view.from / unit.seconds, view.to / unit.seconds}, most);
    Axis axis;
    for (const double place : ticks.places) {
        axis.marks.push_back({place * unit.seconds + figure.zero, fixed(place, ticks.decimals)});
    }
    axis.caption = std::string(figure.base == TimeBase::Trigger ? "time from trigger, " : "time, ") + unit.name;
    return axis;
}

Axis valueAxis(const Lane& lane, int most) {
    const Scale scale = scaleOf(lane.values, lane.unit);
    const Ticks ticks = ticksOf({lane.values.from / scale.factor, lane.values.to / scale.factor}, most);
    const bool isLong =
        !ticks.places.empty() && std::max(std::abs(ticks.places.front()), std::abs(ticks.places.back())) >= 1e6;
    Axis axis;
    for (const double place : ticks.places) {
        axis.marks.push_back(
            {place * scale.factor, isLong || ticks.decimals > 6 ? brief(place) : fixed(place, ticks.decimals)});
    }
    const std::string side = OrvComtradeIntake::sideWord(lane.side);
    const std::string unit = scale.prefix + lane.unit;
    axis.caption = unit + (unit.empty() || side.empty() ? "" : " ") + side;
    return axis;
}

std::string triggerLabel(const Figure& figure) {
    if (figure.base == TimeBase::Clock && figure.start) {
        return "trigger " + clockText(sinceMidnight(*figure.start) + *figure.trigger, 3);
    }
    if (figure.base == TimeBase::Trigger) {
        return "trigger";
    }
    const TimeUnit unit = timeUnitOf(figure.view);
    return "trigger " + brief(*figure.trigger / unit.seconds) + " " + unit.name;
}

std::string descriptionOf(const Figure& figure) {
    std::string text = figure.subtitle + ". From " + brief(figure.view.from) + " to " + brief(figure.view.to) + " s.";
    for (const Lane& lane : figure.lanes) {
        const Axis axis = valueAxis(lane, 2);
        text += lane.title.empty() ? " " : " " + lane.title + ": ";
        for (std::size_t i = 0; i < lane.traces.size(); ++i) {
            text += (i == 0 ? "" : ", ") + lane.traces[i].name;
        }
        text += axis.caption.empty() ? "." : " in " + axis.caption + ".";
    }
    for (std::size_t i = 0; i < figure.strips.size(); ++i) {
        text += (i == 0 ? " Status channels: " : ", ") + figure.strips[i].name;
    }
    text += figure.strips.empty() ? "" : ".";
    for (const std::string& note : figure.notes) {
        text += " " + note;
    }
    return text;
}

} // namespace OrvComtradePicture
