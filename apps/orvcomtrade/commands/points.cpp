#include "commands/points.h"

#include "Comtrade.h"
#include "commands/commonFlags.h"
#include "commands/loadEntry.h"
#include "input/channelNames.h"
#include "input/findChannel.h"
#include "input/samplesAtOnce.h"
#include "output/Failure.h"
#include "output/csv.h"
#include "output/json.h"
#include "output/printable.h"
#include "output/sideName.h"

#include <fmt/format.h>

#include <cerrno>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>
#include <optional>
#include <string>
#include <vector>

using OrvComtradeIntake::Columns;
using OrvComtradeIntake::MissingRun;
using OrvComtradeIntake::StateChange;
using OrvComtradeLib::Comtrade;

namespace {

/// What the command line asks of one channel.
struct PointsRequest {
    std::string channel;
    std::optional<double> from; ///< seconds; none means 0
    std::optional<double> end;  ///< seconds; none means the last sample
    std::optional<double> rate; ///< points per second; none means about 1000 points in all
    bool status = false;        ///< a status channel
    double start = 0.0;         ///< `from`
};

constexpr double kMostPoints = 10000000.0; // a slip of --rate shall not fill the memory

/// Throws a Failure for more points than are printed. Nobody chooses the library's default rate, and where the data say
/// that they last for years it gives more.
void checkPointCount(const PointsRequest& wanted, double duration, double rate) {
    const double count = duration * rate;
    if (!(count > kMostPoints)) {
        return;
    }
    const char* const atRate = wanted.rate ? "this --rate" : "the rate that is used without --rate";
    throw Failure(kWrongUsage, fmt::format("this range at {} has {:.3g} points; at most {:.0f} are printed", atRate,
                                           count, kMostPoints));
}

std::vector<Orv::PointF> analogPoints(const Comtrade& recording, std::size_t position, const PointsRequest& wanted) {
    const double duration = wanted.end.value_or(recording.dat.lastSampleTime) - wanted.start;
    if (!wanted.end && duration <= 0.0) {
        return {}; // a range of negative length at the library's default rate runs backwards
    }
    const OrvComtradeLib::AnalogChannel& channel = recording.analogChannels[position];
    checkPointCount(wanted, duration, wanted.rate ? *wanted.rate : channel.defaultSampleRate(duration));
    errno = 0;
    std::vector<Orv::PointF> points =
        channel.getPoints(wanted.start, wanted.end.value_or(-1.0), wanted.rate.value_or(-1.0));
    if (points.empty() && errno == ENOMEM) {
        throw std::bad_alloc(); // the library gives no points then
    }
    return points;
}

/// The library's status views plot channel 0 by contract, hence the steps of any other are taken from its changes: the
/// state at the start, each change, the state at the end.
class StatusPoints {
public:
    explicit StatusPoints(const PointsRequest& wanted) : _wanted(wanted) {}

    /// Blocks come in order, the one channel in each. False when no more are needed.
    bool add(const Columns& block) {
        for (const StateChange& change : block.states.at(0)) {
            const double time = block.time.at(static_cast<std::size_t>(change.sample - block.first));
            if (_isKnown && change.state == _state) {
                continue; // a block begins
            }
            if (_isKnown && (time > _wanted.start || !_points.empty())) {
                _begin();
                if (time > _wanted.end.value_or(time)) {
                    return false;
                }
                _append(time, change.state);
            }
            _state = change.state;
            _isKnown = true;
        }
        _last = block.samples == 0 ? _last : block.time.back();
        return true;
    }

    std::vector<Orv::PointF> take() {
        const double end = _wanted.end.value_or(_last);
        if (!_isKnown || (_points.empty() && _last < _wanted.start)) {
            return {};
        }
        _begin();
        if (end > _lastTime) {
            _append(end, _state);
        }
        return std::move(_points);
    }

private:
    void _begin() {
        if (_points.empty()) {
            _append(_wanted.start, _state);
        }
    }

    void _append(double time, bool state) {
        _points.push_back({static_cast<float>(time), state ? 1.0F : 0.0F});
        _lastTime = time;
    }

    const PointsRequest& _wanted;
    std::vector<Orv::PointF> _points;
    bool _isKnown = false; ///< the state is that of the sample before
    bool _state = false;
    double _last = 0.0;     ///< of the samples
    double _lastTime = 0.0; ///< of the points
};

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
    const Comtrade& comtrade = recording.reader->comtrade();
    const std::vector<OrvComtradeLib::Sample>& samples = comtrade.dat.samples;
    const double skew = comtrade.analogChannels.at(channel).skew;
    const auto timeOf = [&samples, skew](std::uint64_t sample) {
        return static_cast<float>(samples.at(sample).time + skew);
    };
    std::vector<Gap> gaps;
    recording.reader->columns(one, samplesAtOnce(recording.header), [&](const Columns& block) {
        for (const MissingRun& run : block.missing) { // one that goes on in the next block makes two gaps that overlap
            const std::uint64_t behind = run.sample + run.count;
            gaps.push_back({run.sample == 0 ? -kForever : timeOf(run.sample - 1),
                            behind >= samples.size() ? kForever : timeOf(behind)});
        }
        return true;
    });
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
    Json channel = Json::object();
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
    StatusPoints points(wanted);
    recording.reader->columns(one, samplesAtOnce(recording.header),
                              [&points](const Columns& block) { return points.add(block); });
    return {{{"kind", "status"}, {"number", position + 1}, {"name", statusName(recording.header.status.at(position))}},
            points.take()};
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

/// Throws a Failure for an invalid range or rate.
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

class Points : public Command {
public:
    Points() : Command(describe()) {
        add(textFlag("-c,--channel", "CHANNEL", "The channel (default: the last word)", _wanted.channel)
                .of(ValueKind::Channel)
                .with("For several recordings, say."));
        add(numberFlag("-s,--start", "SECONDS", "First instant in seconds (default 0)", _wanted.from));
        add(numberFlag("-e,--end", "SECONDS", "Last instant in seconds (default: the last sample)", _wanted.end)
                .with("It lies behind the first one."));
        add(numberFlag("--rate", "NUMBER", "Points per second (default: about 1000 points in all)", _wanted.rate)
                .with("At most 10000000 points are printed."));
        add(switchFlag("--status", "Take a status channel and print its steps", _wanted.status)
                .with("Its state at the start, each change, and its state at the end, as 0 and 1.")
                .without({"--rate"}));
        add(forceFlag(request));
        add(readingFlags(request));
    }

protected:
    void prepare() override {
        if (_wanted.channel.empty()) {
            _takeChannelFromPaths();
        }
        _wanted.start = _wanted.from.value_or(0.0);
        checkRange(_wanted);
    }

    void perform(const Entry& entry, Job& out) override { printPoints(entry, request, _wanted, out); }

private:
    static Description describe() {
        return {"points",
                "Print the plot points of one channel as CSV",
                {"The line time_s,value, then a line for each point. Times are seconds. Values are in base units: V "
                 "and A, also where the file says kV and kA. A point that would rest on a missing value has an empty "
                 "one. Where no sample lies in the range, the first line is all there is, and a note goes to the "
                 "standard error output.",
                 "CHANNEL is the first of these that fits: the number of the channel, from 1; its name as info prints "
                 "it; its identifier in the file. It is the last word of the line unless it is given as an option."},
                {{"The residual current around the fault, 1000 points per second, as a file for a spreadsheet",
                  "orvcomtrade points feeder_earth_fault.cfg 3I0 --start 0.05 --end 0.25 --rate 1000 > 3I0.csv"},
                 {"When the protection tripped", "orvcomtrade points feeder_earth_fault.cfg Trip --status"}},
                {"PATH CHANNEL", "PATH... --channel CHANNEL"}};
    }

    void _takeChannelFromPaths() {
        if (request.paths.size() < 2) {
            throw WrongWords("CHANNEL is required");
        }
        _wanted.channel = std::move(request.paths.back());
        request.paths.pop_back();
    }

    PointsRequest _wanted;
};

} // namespace

std::unique_ptr<Command> makePoints() {
    return std::make_unique<Points>();
}
