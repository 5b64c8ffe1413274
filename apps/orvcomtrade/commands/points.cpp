#include "commands/points.h"

#include "Comtrade.h"
#include "commands/commonFlags.h"
#include "commands/loadEntry.h"
#include "commands/noteSides.h"
#include "input/Window.h"
#include "input/channelNames.h"
#include "input/findChannel.h"
#include "input/samplesAtOnce.h"
#include "input/skewSeconds.h"
#include "output/Failure.h"
#include "output/TimeScale.h"
#include "output/counted.h"
#include "output/csv.h"
#include "output/json.h"
#include "output/printable.h"
#include "output/sideName.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

using OrvComtradeIntake::Columns;
using OrvComtradeIntake::MissingRun;
using OrvComtradeIntake::StateChange;
using OrvComtradeLib::Comtrade;

namespace {

constexpr double kForever = std::numeric_limits<double>::infinity();
constexpr double kNothing = std::numeric_limits<double>::quiet_NaN();
constexpr double kSameInstant = 1e-9;    // seconds: no recorder distinguishes instants that are closer
constexpr double kMostPoints = 10000000; // a slip of --rate shall not run for hours
constexpr std::size_t kMostBuckets = 1000000;

struct PointsRequest {
    std::vector<std::string> channels;
    std::optional<double> start; ///< seconds; none means the first sample
    std::optional<double> end;   ///< seconds; none means the last sample
    std::optional<double> rate;  ///< points per second; none means the samples
    std::size_t buckets = 0;     ///< of an envelope; 0: none is asked for
    bool status = false;         ///< status channels alone
    bool keepsSkew = false;      ///< times are those of the samples
    TimeBase base = TimeBase::Relative;
    CsvStyle style;
};

/// Both ends belong to it.
struct Times {
    double start;
    double end;

    bool holds(double time) const { return time >= start - kSameInstant && time <= end + kSameInstant; }
    bool isEmpty() const { return end < start - kSameInstant; }
};

/// What of one channel is printed.
struct Curve {
    Channel channel;
    double skew = 0.0;         ///< seconds that its samples lie behind their times
    Times window = {0.0, 0.0}; ///< within the samples
};

/// Takes a point, or of an envelope a bucket; the value is NaN where there is none.
using OnPoint = std::function<void(double time, double value)>;
using OnBucket = std::function<void(double time, double least, double most)>;

OrvComtradeIntake::Selection selectionOf(const Channel& channel) {
    OrvComtradeIntake::Selection one;
    one.allAnalog = false;
    one.allStatus = false;
    one.missingAsNan = true;
    (channel.isStatus ? one.status : one.analog).push_back(channel.position);
    return one;
}

Curve curveOf(const Recording& recording, const Channel& channel, const PointsRequest& wanted, double zero) {
    Curve curve;
    curve.channel = channel;
    if (!channel.isStatus && !wanted.keepsSkew) {
        curve.skew = skewSeconds(recording.header.analog.at(channel.position));
    }
    const double last = recording.reader->duration() + curve.skew;
    curve.window.start = wanted.start ? std::max(*wanted.start + zero, curve.skew) : curve.skew;
    curve.window.end = wanted.end ? std::min(*wanted.end + zero, last) : last;
    if (recording.header.samples == 0) {
        curve.window.end = -kForever;
    }
    return curve;
}

void forEachSample(const Recording& recording, const Curve& curve, const OnPoint& onPoint) {
    recording.reader->columns(selectionOf(curve.channel), samplesAtOnce(recording.header), [&](const Columns& block) {
        for (std::size_t i = 0; i < block.samples; ++i) {
            const double time = curve.skew == 0.0 ? block.time[i] : roundedTime(block.time[i] + curve.skew);
            if (curve.window.holds(time)) {
                onPoint(time, block.column(0)[i]);
            }
        }
        return true;
    });
}

/// A stretch of time, without its ends, in which a channel's points would rest on a missing value.
struct Gap {
    double begin;
    double end;
};

std::vector<Gap> gapsOf(const Recording& recording, const Curve& curve) {
    const std::vector<OrvComtradeLib::Sample>& samples = recording.reader->comtrade().dat.samples;
    const auto timeOf = [&](std::uint64_t sample) { return samples.at(sample).time + curve.skew; };
    std::vector<Gap> gaps;
    recording.reader->columns(selectionOf(curve.channel), samplesAtOnce(recording.header), [&](const Columns& block) {
        for (const MissingRun& run : block.missing) { // one that goes on in the next block makes two gaps that overlap
            const std::uint64_t behind = run.sample + run.count;
            gaps.push_back({run.sample == 0 ? -kForever : timeOf(run.sample - 1),
                            behind >= samples.size() ? kForever : timeOf(behind)});
        }
        return true;
    });
    return gaps;
}

/// What the library's points have of a value, in the shortest digits that single precision needs.
double inSingle(double value) {
    const std::string digits = fmt::format("{}", static_cast<float>(value));
    double shortest = value;
    std::from_chars(digits.data(), digits.data() + digits.size(), shortest);
    return shortest;
}

/// Values between the samples, by the library's interpolation, and those of the samples where an instant is one.
class Resampled {
public:
    Resampled(const Recording& recording, const Curve& curve)
        : _comtrade(recording.reader->comtrade()), _curve(curve), _gaps(gapsOf(recording, curve)), _gap(_gaps.begin()) {
    }

    /// Of instants that grow, within the samples.
    double valueAt(double time) {
        while (_gap != _gaps.end() && _gap->end <= time + kSameInstant) {
            ++_gap;
        }
        if (_gap != _gaps.end() && _gap->begin < time - kSameInstant) {
            return kNothing;
        }
        const auto& samples = _comtrade.dat.samples;
        const double instant = time - _curve.skew;
        while (_sample + 1 < samples.size() && samples[_sample].time < instant - kSameInstant) {
            ++_sample;
        }
        if (std::fabs(samples[_sample].time - instant) <= kSameInstant) {
            return inSingle(samples[_sample].analogValues.at(_curve.channel.position));
        }
        const OrvComtradeLib::AnalogChannel& channel = _comtrade.analogChannels.at(_curve.channel.position);
        return inSingle(channel.getValue(instant + channel.skew, _hint));
    }

private:
    const Comtrade& _comtrade;
    const Curve& _curve;
    const std::vector<Gap> _gaps;
    std::vector<Gap>::const_iterator _gap;
    std::size_t _sample = 0;
    unsigned int _hint = 0; ///< where the library's search goes on
};

/// Throws a Failure for more points than are printed.
void refuseTooMany(const Curve& curve, double rate) {
    const double count = (curve.window.end - curve.window.start) * rate;
    if (count > kMostPoints) {
        throw Failure(
            kWrongUsage,
            fmt::format("this range at this --rate has {:.3g} points; at most {:.0f} are printed", count, kMostPoints));
    }
}

/// From `from` in even steps, as far as there are values.
void forEachResampled(const Recording& recording, const Curve& curve, double from, double rate,
                      const OnPoint& onPoint) {
    Resampled values(recording, curve);
    const double first = std::max(0.0, std::ceil((curve.window.start - kSameInstant - from) * rate));
    for (std::uint64_t step = 0;; ++step) {
        const double time = roundedTime(from + (first + static_cast<double>(step)) / rate);
        if (time > curve.window.end + kSameInstant) {
            return;
        }
        onPoint(time, values.valueAt(time));
    }
}

/// The least and the greatest value in each of so many equal parts of the window; parts without a value are left out.
class Envelope {
public:
    Envelope(const Times& window, std::size_t buckets, OnBucket onBucket)
        : _window(window), _buckets(buckets), _onBucket(std::move(onBucket)) {}

    void add(double time, double value) {
        const double length = _window.end - _window.start;
        const double part = length > 0.0 ? (time - _window.start) / length * static_cast<double>(_buckets) : 0.0;
        const auto bucket = std::clamp<double>(std::floor(part + kSameInstant), 0.0, static_cast<double>(_buckets - 1));
        if (bucket > _bucket) { // where times step back a bucket goes on
            end();
            _bucket = bucket;
        }
        if (!std::isnan(value)) {
            _least = std::isnan(_least) ? value : std::min(_least, value);
            _most = std::isnan(_most) ? value : std::max(_most, value);
        }
    }

    void end() {
        if (!std::isnan(_least)) {
            const double length = (_window.end - _window.start) / static_cast<double>(_buckets);
            _onBucket(roundedTime(_window.start + _bucket * length), _least, _most);
        }
        _least = kNothing;
        _most = kNothing;
    }

private:
    const Times _window;
    const std::size_t _buckets;
    const OnBucket _onBucket;
    double _bucket = 0.0;
    double _least = kNothing;
    double _most = kNothing;
};

/// The state at the beginning of the window, each change in it, and the state at its end.
void forEachStep(const Recording& recording, const Curve& curve, const OnPoint& onPoint) {
    std::optional<bool> state;
    std::optional<double> printed; // time of the last one
    const auto print = [&](double time) {
        onPoint(time, *state ? 1.0 : 0.0);
        printed = time;
    };
    recording.reader->columns(selectionOf(curve.channel), samplesAtOnce(recording.header), [&](const Columns& block) {
        for (const StateChange& change : block.states.at(0)) {
            const double time = block.time.at(static_cast<std::size_t>(change.sample - block.first));
            if (state == change.state) {
                continue; // a block begins
            }
            if (state && !printed && time > curve.window.start + kSameInstant) {
                print(curve.window.start);
            }
            if (time > curve.window.end + kSameInstant) {
                return false;
            }
            const bool isChange = state.has_value();
            state = change.state;
            if (isChange && time > curve.window.start + kSameInstant) {
                print(time);
            }
        }
        return true;
    });
    if (state && !printed) {
        print(curve.window.start);
    }
    if (printed && *printed < curve.window.end - kSameInstant) {
        print(curve.window.end);
    }
}

Json channelValue(const Recording& recording, const Channel& channel) {
    Json value = Json::object();
    value["kind"] = channel.isStatus ? "status" : "analog";
    value["number"] = channel.position + 1;
    if (channel.isStatus) {
        value["name"] = statusName(recording.header.status.at(channel.position));
        return value;
    }
    const AnalogValues& values = recording.analog.at(channel.position);
    value["name"] = values.name;
    value["unit"] = values.unit;
    value["side"] = sideName(values.side);
    return value;
}

std::string curveName(const Recording& recording, const Channel& channel) {
    return channel.isStatus ? statusName(recording.header.status.at(channel.position))
                            : recording.analog.at(channel.position).name;
}

/// Prints the curves of one recording, point by point.
class Printer {
public:
    Printer(const Entry& entry, const Recording& recording, const Request& request, const PointsRequest& wanted,
            Job& out)
        : _entry(entry), _recording(recording), _request(request), _wanted(wanted), _out(out),
          _scale(recording.header, wanted.base, entry.path),
          _channels(findChannels(recording, wanted.channels, wanted.status ? ChannelKind::Status : ChannelKind::Any)) {}

    void print() {
        std::vector<Curve> curves;
        for (const Channel& channel : _channels) {
            curves.push_back(curveOf(_recording, channel, _wanted, _scale.zero()));
            if (_wanted.rate && !channel.isStatus) {
                refuseTooMany(curves.back(), *_wanted.rate);
            }
        }
        _begin();
        const char* separator = "";
        for (const Curve& curve : curves) {
            _printCurve(curve, separator);
            separator = ",";
        }
        if (_request.json) {
            closeArray(_out);
        }
    }

private:
    bool _hasBuckets(const Channel& channel) const { return _wanted.buckets > 0 && !channel.isStatus; }

    void _begin() {
        if (_request.json) {
            openArray(recordingLine(_entry.path, true), "curves", _out);
            return;
        }
        if (!_request.several()) {
            beginCsv(_wanted.style, _out);
        } else {
            _out.print("# recording{}{}\n", _wanted.style.separator, csvField(_entry.path, _wanted.style));
        }
        const bool hasBuckets = std::any_of(_channels.begin(), _channels.end(),
                                            [this](const Channel& channel) { return _hasBuckets(channel); });
        const char separator = _wanted.style.separator;
        const std::string channel = _channels.size() > 1 ? std::string("channel") + separator : "";
        const std::string values = hasBuckets ? std::string("min") + separator + "max" : "value";
        _out.print("{}{}{}{}\n", channel, _scale.isClock() ? "time" : "time_s", separator, values);
    }

    void _printCurve(const Curve& curve, const char* separator) {
        _points = 0;
        _missing = 0;
        _name = csvField(curveName(_recording, curve.channel), _wanted.style) + _wanted.style.separator;
        if (_request.json) {
            Json value = Json::object();
            value["channel"] = channelValue(_recording, curve.channel);
            _out.write(separator);
            openArray(value, "points", _out);
        }
        if (!curve.window.isEmpty()) {
            _printPoints(curve);
        }
        if (_request.json) {
            _out.print("],\"missing\":{}}}", _missing);
        }
        _report(curve);
    }

    void _printPoints(const Curve& curve) {
        const OnPoint onPoint = [this](double time, double value) { _print(time, {value}); };
        if (curve.channel.isStatus) {
            forEachStep(_recording, curve, onPoint);
        } else if (_wanted.rate) {
            const double from = _wanted.start ? *_wanted.start + _scale.zero() : 0.0;
            forEachResampled(_recording, curve, from, *_wanted.rate, onPoint);
        } else if (_wanted.buckets > 0) {
            Envelope envelope(curve.window, _wanted.buckets, [this](double time, double least, double most) {
                _print(time, {least, most});
            });
            forEachSample(_recording, curve, [&envelope](double time, double value) { envelope.add(time, value); });
            envelope.end();
        } else {
            forEachSample(_recording, curve, onPoint);
        }
    }

    void _print(double time, std::initializer_list<double> values) {
        ++_points;
        _missing += std::isnan(*values.begin()) ? 1U : 0U;
        if (_request.json) {
            _printJson(time, values);
        } else {
            _printCsv(time, values);
        }
    }

    void _printJson(double time, std::initializer_list<double> values) {
        _out.write(_points > 1 ? ",[" : "[");
        if (_scale.isClock()) {
            _out.print("\"{}\"", _scale.text(time));
        } else {
            writeNumber(_scale.shown(time), _out);
        }
        for (const double value : values) {
            _out.put(',');
            writeNumber(value, _out);
        }
        _out.put(']');
    }

    void _printCsv(double time, std::initializer_list<double> values) {
        if (_channels.size() > 1) {
            _out.write(_name);
        }
        if (_scale.isClock()) {
            _out.write(_scale.text(time));
        } else {
            writeCsvTime(_scale.shown(time), _wanted.style, _out);
        }
        for (const double value : values) {
            _out.put(_wanted.style.separator);
            if (!std::isnan(value)) {
                writeCsvValue(value, _wanted.style, _out);
            }
        }
        _out.put('\n');
    }

    /// What was done, on standard error.
    void _report(const Curve& curve) {
        const std::string name = printable(curveName(_recording, curve.channel));
        const std::string whose = _request.several() ? shownPath(_entry.path) + ": " + name : name;
        if (_points == 0) {
            _out.note(whose + ": " + emptyWindowText(_recording));
            return;
        }
        const std::string what = curve.channel.isStatus ? counted(_points, "state")
                                 : _wanted.rate
                                     ? fmt::format("{}, {} a second", counted(_points, "point"), *_wanted.rate)
                                     : counted(_points, _wanted.buckets > 0 ? "part" : "sample");
        std::string values;
        if (!curve.channel.isStatus) {
            const AnalogValues& analog = _recording.analog.at(curve.channel.position);
            values = fmt::format(", {} without a value, {}, {}", _missing == 0 ? "none" : fmt::format("{}", _missing),
                                 sideName(analog.side), analog.unit.empty() ? "no unit" : printable(analog.unit));
        }
        _out.note(fmt::format("{}: {}: {} to {}{}{}", whose, what, _scale.text(roundedTime(curve.window.start)),
                              _scale.text(roundedTime(curve.window.end)), _scale.isClock() ? "" : " s", values));
        const double least = 2 * _recording.header.lineFrequency;
        if (!curve.channel.isStatus && _wanted.rate && *_wanted.rate < least) {
            _out.note(fmt::format("{}: --rate {} is below twice the line frequency of {} Hz: oscillations look "
                                  "different or vanish; --envelope keeps their size",
                                  whose, *_wanted.rate, _recording.header.lineFrequency));
        }
    }

    const Entry& _entry;
    const Recording& _recording;
    const Request& _request;
    const PointsRequest& _wanted;
    Job& _out;
    const TimeScale _scale;
    const std::vector<Channel> _channels;
    std::string _name; ///< of the curve, as CSV has it before each point
    std::uint64_t _points = 0;
    std::uint64_t _missing = 0;
};

/// Throws a Failure for an invalid range or rate.
void checkRange(const PointsRequest& wanted) {
    const auto isNoTime = [](const std::optional<double>& time) { return time && !std::isfinite(*time); };
    if (isNoTime(wanted.start)) {
        throw Failure(kWrongUsage, "--start must be a finite number of seconds");
    }
    if (isNoTime(wanted.end)) {
        throw Failure(kWrongUsage, "--end must be a finite number of seconds");
    }
    if (wanted.start && wanted.end && *wanted.end < *wanted.start) {
        throw Failure(kWrongUsage, fmt::format("--end ({} s) lies before --start ({} s)", *wanted.end, *wanted.start));
    }
    if (wanted.rate && !(std::isfinite(*wanted.rate) && *wanted.rate > 0.0)) {
        throw Failure(kWrongUsage, "--rate must be a finite number of points per second, above 0");
    }
}

/// Of several recordings, the one is named that does not have what is wanted.
void printPoints(const Entry& entry, const Request& request, const PointsRequest& wanted, Job& out) {
    const Recording recording = loadEntry(entry, request, out);
    noteSides(recording, entry, request, out);
    try {
        Printer(entry, recording, request, wanted, out).print();
    } catch (const Failure& failure) {
        if (!request.several() || failure.status != kWrongUsage) {
            throw;
        }
        throw Failure(failure.status, shownPath(entry.path) + ": " + failure.what());
    }
}

class Points : public Command {
public:
    Points() : Command(_describe()) {
        add(textsFlag("-c,--channel", "CHANNEL", "A channel (may be given again; default: the last word)",
                      _wanted.channels)
                .of(ValueKind::Channel)
                .with("For several channels, or several recordings."));
        add(numberFlag("-s,--start", "SECONDS", "First instant (default: the first sample)", _wanted.start)
                .with("It counts from the trigger with --time trigger, otherwise from the first sample. It belongs to "
                      "the range."));
        add(numberFlag("-e,--end", "SECONDS", "Last instant (default: the last sample)", _wanted.end)
                .with("It also belongs to the range."));
        add(numberFlag("--rate", "NUMBER", "Points per second, interpolated (default: the samples)", _wanted.rate)
                .with("Points lie on straight lines between the samples, as in the library. At most 10000000 points "
                      "are printed."));
        add(countFlag("--envelope", "Least and greatest value in each of NUMBER parts of the range", 1, kMostBuckets,
                      _wanted.buckets)
                .with("Each line has the start of its part. It keeps the size of oscillations, however few the parts.")
                .without({"--rate"}));
        add(switchFlag("--status", "Look for CHANNEL only among the status channels", _wanted.status)
                .with("For numbers of status channels, and for names that analog channels also have."));
        add(timeFlag(_wanted.base));
        add(skewFlag(_wanted.keepsSkew, "apply (default): each value at its own instant; keep: at that of the sample"));
        add(csvFlags(_wanted.style));
        add(forceFlag(request));
        add(readingFlags(request));
    }

protected:
    void prepare() override {
        if (_wanted.channels.empty()) {
            _takeChannelFromPaths();
        }
        checkRange(_wanted);
    }

    void perform(const Entry& entry, Job& out) override { printPoints(entry, request, _wanted, out); }

private:
    static Description _describe() {
        return {
            "points",
            "Print the values of a channel as CSV",
            {"First the line time_s,value, then a line for each sample. For several channels, each line begins with "
             "the name of the channel. Times are in seconds. Values are in base units: V and A, even if the file has "
             "kV and kA. A missing value, and a point that would depend on one, is an empty field. There is no "
             "line before the first sample or after the last one. A status channel has its state at the start of "
             "the range, each change, and its state at the end, as 0 and 1. What was printed (range, number of "
             "points, missing values, side, unit) is reported on the standard error output.",
             "CHANNEL is the first of these that fits: the number of an analog channel, from 1; a name as info "
             "prints it; an identifier in the file; one of these names in another case; a pattern for several "
             "channels, with * for any characters and ? for one; a list of these with commas. Analog channels come "
             "before status channels. It is the last word of the line unless it is given as an option."},
            {{"The residual current around the fault, as a file for a spreadsheet",
              "orvcomtrade points feeder_earth_fault.cfg 3I0 --start 0.05 --end 0.25 > 3I0.csv"},
             {"When the protection tripped, counted from the trigger",
              "orvcomtrade points feeder_earth_fault.cfg Trip --time trigger"},
             {"How large the currents are, in 20 parts of the recording",
              "orvcomtrade points feeder_earth_fault.cfg 'I?' --envelope 20"}},
            {"PATH CHANNEL", "PATH... --channel CHANNEL"}};
    }

    void _takeChannelFromPaths() {
        if (request.paths.size() < 2) {
            throw WrongWords("CHANNEL is required", "points");
        }
        _wanted.channels.push_back(std::move(request.paths.back()));
        request.paths.pop_back();
    }

    PointsRequest _wanted;
};

} // namespace

std::unique_ptr<Command> makePoints() {
    return std::make_unique<Points>();
}
