#include "input/Window.h"

#include "input/samplesAtOnce.h"
#include "output/Failure.h"
#include "output/clockTime.h"

#include <fmt/format.h>

#include <cmath>
#include <limits>

using OrvComtradeIntake::Columns;

namespace {

constexpr double kSlack = 0.001; // of the step from one sample to the next

bool isWhole(const WindowRequest& wanted) {
    return !wanted.start && !wanted.end;
}

/// Collects the samples of a window as they go by.
class WindowFinder {
public:
    WindowFinder(double start, double end) : _start(start), _end(end) {}

    void add(std::uint64_t sample, double time) {
        const double step = sample == 0 ? 0.0 : std::fabs(time - _before) * kSlack;
        _before = time;
        if (time < _start - step || time > _end + step) {
            return;
        }
        if (_window.count == 0) {
            _window.first = sample;
            _window.start = time;
        }
        _window.count = sample - _window.first + 1;
        _window.end = time;
    }

    const Window& window() const { return _window; }

private:
    double _start;
    double _end;
    double _before = 0.0;
    Window _window;
};

} // namespace

void checkWindow(const WindowRequest& wanted) {
    for (const auto& [instant, name] : {std::pair(wanted.start, "--start"), std::pair(wanted.end, "--end")}) {
        if (instant && !std::isfinite(*instant)) {
            throw Failure(kWrongUsage, std::string(name) + " must be a finite number of seconds");
        }
    }
    if (wanted.start && wanted.end && *wanted.end < *wanted.start) {
        throw Failure(kWrongUsage, "--end must not lie before --start");
    }
}

double triggerTime(const Recording& recording) {
    const auto& start = recording.header.start;
    const auto& trigger = recording.header.trigger;
    if (!start || !trigger) {
        throw Failure(kRecordingProblem, "the recording does not have the times of both its start and its trigger");
    }
    return (static_cast<double>(trigger->nanoseconds) - static_cast<double>(start->nanoseconds)) /
           kNanosecondsPerSecond;
}

Window windowOf(const Recording& recording, const WindowRequest& wanted) {
    const double origin = wanted.fromTrigger ? triggerTime(recording) : 0.0;
    constexpr double unlimited = std::numeric_limits<double>::infinity();
    WindowFinder finder(wanted.start ? *wanted.start + origin : -unlimited,
                        wanted.end ? *wanted.end + origin : unlimited);
    if (isWhole(wanted)) {
        return {0, recording.header.samples, 0.0, recording.reader->duration()};
    }
    OrvComtradeIntake::Selection times;
    times.allAnalog = false;
    times.allStatus = false;
    recording.reader->columns(times, samplesAtOnce(recording.header), [&](const Columns& block) {
        for (std::size_t i = 0; i < block.samples; ++i) {
            finder.add(block.first + i, block.time[i]);
        }
        return true;
    });
    return finder.window();
}

std::string emptyWindowText(const Recording& recording) {
    return fmt::format("no sample lies in this window; the recording lasts {:.9g} s", recording.reader->duration());
}

void refuseEmptyWindow(const Recording& recording) {
    throw Failure(kRecordingProblem, emptyWindowText(recording));
}
