#include "commands/points.h"

#include "Comtrade.h"
#include "commands/loadEntry.h"
#include "input/channelNames.h"
#include "input/findChannel.h"
#include "output/Failure.h"
#include "output/csv.h"
#include "output/json.h"
#include "output/printable.h"
#include "output/sideName.h"

#include <fmt/format.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

using OrvComtradeIntake::Columns;
using OrvComtradeIntake::MissingRun;
using OrvComtradeIntake::StateChange;
using OrvComtradeLib::Comtrade;

namespace {

constexpr double kMostPoints = 10000000.0; // a slip of --rate shall not fill the memory

void checkPointCount(const PointsRequest& wanted, double lastSampleTime) {
    const double count = (wanted.end.value_or(lastSampleTime) - wanted.start) * wanted.rate.value_or(0.0);
    if (count > kMostPoints) {
        throw Failure(
            kWrongUsage,
            fmt::format("this range at this --rate has {:.3g} points; at most {:.0f} are printed", count, kMostPoints));
    }
}

std::vector<Orv::PointF> analogPoints(const Comtrade& recording, std::size_t position, const PointsRequest& wanted) {
    checkPointCount(wanted, recording.dat.lastSampleTime);
    if (!wanted.end && wanted.start >= recording.dat.lastSampleTime) {
        return {}; // a range of negative length at the library's default rate runs backwards
    }
    return recording.analogChannels[position].getPoints(wanted.start, wanted.end.value_or(-1.0),
                                                        wanted.rate.value_or(-1.0));
}

/// The library's status views plot channel 0 by contract, hence the steps of any other are taken from its changes: the
/// state at the start, each change, the state at the end.
std::vector<Orv::PointF> statusPoints(const Columns& columns, const PointsRequest& wanted) {
    if (columns.time.empty() || columns.time.back() < wanted.start) {
        return {};
    }
    const double end = wanted.end.value_or(columns.time.back());
    const std::vector<StateChange>& changes = columns.states.at(0);
    std::vector<Orv::PointF> points;
    const auto append = [&points](double time, bool state) {
        points.push_back({static_cast<float>(time), state ? 1.0F : 0.0F});
    };
    const auto timeOf = [&columns](const StateChange& change) { return columns.time.at(change.sample); };
    bool state = changes.at(0).state;
    double lastTime = wanted.start;
    std::size_t next = 1;
    for (; next < changes.size() && timeOf(changes[next]) <= wanted.start; ++next) {
        state = changes[next].state;
    }
    append(wanted.start, state);
    for (; next < changes.size() && timeOf(changes[next]) <= end; ++next) {
        state = changes[next].state;
        lastTime = timeOf(changes[next]);
        append(lastTime, state);
    }
    if (end > lastTime) {
        append(end, state);
    }
    return points;
}

/// A stretch of time, without its ends, in which a channel's points would rest on a missing value.
struct Gap {
    float begin;
    float end;
};

std::vector<Gap> gapsOf(const Recording& recording, std::size_t channel) {
    constexpr float kForever = std::numeric_limits<float>::infinity();
    OrvComtradeIntake::Selection one;
    one.allAnalog = false;
    one.allStatus = false;
    one.analog = {channel};
    const Columns columns = recording.reader->columns(one);
    const double skew = recording.reader->comtrade().analogChannels.at(channel).skew;
    const auto timeOf = [&columns, skew](std::uint64_t sample) {
        return static_cast<float>(columns.time.at(sample) + skew);
    };
    std::vector<Gap> gaps;
    for (const MissingRun& run : columns.missing) {
        const std::uint64_t behind = run.sample + run.count;
        gaps.push_back({run.sample == 0 ? -kForever : timeOf(run.sample - 1),
                        behind >= columns.samples ? kForever : timeOf(behind)});
    }
    return gaps;
}

/// Points without a value get NaN for it.
void blankGaps(const std::vector<Gap>& gaps, std::vector<Orv::PointF>& points) {
    auto gap = gaps.begin();
    for (Orv::PointF& point : points) {
        while (gap != gaps.end() && gap->end <= point.x) {
            ++gap;
        }
        if (gap != gaps.end() && gap->begin < point.x) {
            point.y = std::numeric_limits<float>::quiet_NaN();
        }
    }
}

/// What of a recording is printed.
struct Plot {
    Json channel;
    std::vector<Orv::PointF> points;
};

Plot analogPlot(const Recording& recording, const PointsRequest& wanted) {
    const std::size_t position = findAnalogChannel(recording, wanted.channel);
    const AnalogValues& values = recording.analog.at(position);
    Plot plot{{{"kind", "analog"},
               {"number", position + 1},
               {"name", values.name},
               {"unit", values.unit},
               {"side", sideName(values.side)}},
              analogPoints(recording.reader->comtrade(), position, wanted)};
    blankGaps(gapsOf(recording, position), plot.points);
    return plot;
}

Plot statusPlot(const Recording& recording, const PointsRequest& wanted) {
    const std::size_t position = findStatusChannel(recording, wanted.channel);
    OrvComtradeIntake::Selection one;
    one.allAnalog = false;
    one.allStatus = false;
    one.status = {position};
    return {{{"kind", "status"}, {"number", position + 1}, {"name", statusName(recording.header.status.at(position))}},
            statusPoints(recording.reader->columns(one), wanted)};
}

/// Of several recordings, the one is named that does not have what is wanted.
Plot plotOf(const Entry& entry, const Request& request, const Recording& recording, const PointsRequest& wanted) {
    try {
        return wanted.status ? statusPlot(recording, wanted) : analogPlot(recording, wanted);
    } catch (const Failure& failure) {
        if (!request.several()) {
            throw;
        }
        throw Failure(failure.status, printable(entry.path) + ": " + failure.what());
    }
}

void writeCsvPoints(const std::vector<Orv::PointF>& points, Output& out) {
    out.write("time_s,value\n");
    for (const Orv::PointF& point : points) {
        out.number(point.x);
        out.put(',');
        if (!std::isnan(point.y)) {
            out.number(point.y);
        }
        out.put('\n');
    }
}

/// Written by hand, for single-precision numbers in their shortest form.
void writeJsonPoints(const Entry& entry, const Plot& plot, Output& out) {
    Json line = recordingLine(entry.path, true);
    line["channel"] = plot.channel;
    openArray(line, "points", out);
    const char* separator = "";
    for (const Orv::PointF& point : plot.points) {
        out.write(separator);
        separator = ",";
        out.put('[');
        writeNumber(point.x, out);
        out.put(',');
        writeNumber(point.y, out);
        out.put(']');
    }
    closeArray(out);
}

} // namespace

void checkRange(const PointsRequest& wanted) {
    if (!std::isfinite(wanted.start)) {
        throw Failure(kWrongUsage, "--start must be a finite number of seconds");
    }
    if (wanted.end && !(std::isfinite(*wanted.end) && *wanted.end >= 0.0)) {
        throw Failure(kWrongUsage, "--end must be a finite number of seconds, not below 0");
    }
    if (wanted.end && *wanted.end <= wanted.start) {
        throw Failure(kWrongUsage,
                      fmt::format("--end ({} s) must lie behind --start ({} s)", *wanted.end, wanted.start));
    }
    if (wanted.rate && !(std::isfinite(*wanted.rate) && *wanted.rate > 0.0)) {
        throw Failure(kWrongUsage, "--rate must be a finite number of points per second, above 0");
    }
}

void printPoints(const Entry& entry, const Request& request, const PointsRequest& wanted, Job& out) {
    const Recording recording = loadEntry(entry, request, out);
    const Plot plot = plotOf(entry, request, recording, wanted);
    if (request.json) {
        writeJsonPoints(entry, plot, out);
        return;
    }
    if (request.several()) {
        out.print("# recording,{}\n", csvField(entry.path));
    }
    writeCsvPoints(plot.points, out);
    if (plot.points.empty()) {
        out.note(request.several() ? printable(entry.path) + ": no sample lies in this range"
                                   : "no sample lies in this range");
    }
}
