#include <OrvComtradePicture/survey.h>

#include <algorithm>
#include <cmath>
#include <limits>

using OrvComtradeIntake::Columns;
using OrvComtradeIntake::Header;
using OrvComtradeIntake::Selection;

namespace OrvComtradePicture {

namespace {

constexpr std::size_t kMostSteps = 32768;
constexpr std::size_t kMostTimes = 17; // of the changes of a status channel: one more than what counts
constexpr double kUsualCycle = 0.02;

/// Jumps by time; steps are doubled when there are too many.
class JumpProfile {
public:
    explicit JumpProfile(double step) : _jumps{step, {}, 0.0} {}

    void add(double time, double jump) {
        if (!(time >= 0.0)) {
            return;
        }
        while (time / _jumps.step >= static_cast<double>(kMostSteps)) {
            _double();
        }
        const auto number = static_cast<std::size_t>(time / _jumps.step + 1e-6); // 1.5 / 0.02 is a little below 75
        if (number >= _jumps.jumps.size()) {
            _jumps.jumps.resize(number + 1);
        }
        _jumps.jumps[number] = std::max(_jumps.jumps[number], jump);
    }

    Survey::Jumps take(double peak) {
        _jumps.peak = peak;
        return std::move(_jumps);
    }

private:
    void _double() {
        std::vector<double>& jumps = _jumps.jumps;
        for (std::size_t i = 0; i < jumps.size(); ++i) {
            jumps[i / 2] = i % 2 == 0 ? jumps[i] : std::max(jumps[i / 2], jumps[i]);
        }
        jumps.resize((jumps.size() + 1) / 2);
        _jumps.step *= 2.0;
    }

    Survey::Jumps _jumps;
};

/// Peaks of a channel, cycle by cycle.
struct Peaks {
    Range now{std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};
    std::optional<Range> before;
};

class Surveyor {
public:
    explicit Surveyor(const Source& source)
        : _peaks(source.analog.size()), _voltages(_cycleOf(source.header)), _currents(_cycleOf(source.header)) {
        _survey.cycle = _cycleOf(source.header);
        _survey.analog.resize(source.header.analog.size());
        _survey.status.resize(source.header.status.size());
        _states.resize(source.header.status.size());
        for (const ValuesOf& values : source.analog) {
            _quantities.push_back(quantityOf(values.unit));
        }
    }

    bool take(const Columns& block) {
        if (block.samples == 0) {
            return true;
        }
        _takeTimes(block);
        _takeCycles(block);
        _takeStates(block);
        return true;
    }

    Survey finish() {
        // The last cycle is rarely whole, and its peaks may be missing.
        _endCycle(_survey.times.to - _cycleBegin >= 0.9 * _survey.cycle);
        std::array<double, 2> peaks = {};
        for (std::size_t i = 0; i < _quantities.size(); ++i) {
            const auto& values = _survey.analog[i].values;
            if (_quantities[i] != Quantity::Other && values) {
                double& peak = peaks.at(_quantities[i] == Quantity::Voltage ? 0 : 1);
                peak = std::max({peak, -values->from, values->to});
            }
        }
        _survey.jumps = {_voltages.take(peaks[0]), _currents.take(peaks[1])};
        if (_survey.samples > 1) {
            _survey.spacing = _survey.times.length() / static_cast<double>(_survey.samples - 1);
        }
        return std::move(_survey);
    }

private:
    static double _cycleOf(const Header& header) {
        const double cycle = 1.0 / header.lineFrequency;
        return cycle > 0.001 && cycle < 1.0 ? cycle : kUsualCycle;
    }

    void _takeTimes(const Columns& block) {
        const auto [first, last] = std::minmax_element(block.time.begin(), block.time.end());
        const Range times{*first, *last};
        _survey.blocks.push_back({block.first, times});
        _survey.times = _survey.samples == 0
                            ? times
                            : Range{std::min(_survey.times.from, times.from), std::max(_survey.times.to, times.to)};
        _survey.samples += block.samples;
    }

    /// Cycle by cycle, within each channel by channel.
    void _takeCycles(const Columns& block) {
        for (std::size_t begin = 0; begin < block.samples;) {
            if (block.time[begin] >= _cycleEnd || block.time[begin] < _cycleBegin) {
                _endCycle(true);
                _cycleBegin = block.time[begin];
                _cycleEnd = _cycleBegin + _survey.cycle * (1.0 - 1e-9); // 0.06 + 0.02 is more than 0.08
            }
            std::size_t end = begin + 1;
            while (end < block.samples && block.time[end] < _cycleEnd && block.time[end] >= _cycleBegin) {
                ++end;
            }
            for (std::size_t i = 0; i < _peaks.size(); ++i) {
                _takeValues(block.column(i) + begin, block.column(i) + end, _peaks[i].now);
            }
            begin = end;
        }
    }

    static void _takeValues(const double* begin, const double* end, Range& values) {
        for (const double* value = begin; value != end; ++value) {
            if (std::isfinite(*value)) {
                values = {std::min(values.from, *value), std::max(values.to, *value)};
            }
        }
    }

    void _endCycle(bool isWhole) {
        for (std::size_t i = 0; i < _peaks.size(); ++i) {
            Peaks& peaks = _peaks[i];
            if (peaks.now.from > peaks.now.to) {
                continue; // no value
            }
            AnalogSurvey& survey = _survey.analog[i];
            survey.values = survey.values ? Range{std::min(survey.values->from, peaks.now.from),
                                                  std::max(survey.values->to, peaks.now.to)}
                                          : peaks.now;
            if (peaks.before && isWhole) {
                const double jump =
                    std::max(std::abs(peaks.now.from - peaks.before->from), std::abs(peaks.now.to - peaks.before->to));
                survey.greatestJump = std::max(survey.greatestJump, jump);
                if (_quantities[i] != Quantity::Other) {
                    (_quantities[i] == Quantity::Voltage ? _voltages : _currents)
                        .add(_cycleBegin - _survey.times.from, jump);
                }
            }
            peaks = {Peaks().now, peaks.now};
        }
    }

    void _takeStates(const Columns& block) {
        for (std::size_t i = 0; i < block.states.size(); ++i) {
            for (const auto& change : block.states[i]) {
                if (_states[i] && *_states[i] != change.state) {
                    StatusSurvey& survey = _survey.status[i];
                    ++survey.changes;
                    if (survey.times.size() < kMostTimes) {
                        survey.times.push_back(block.time[change.sample - block.first]);
                    }
                }
                _states[i] = change.state;
            }
        }
    }

    Survey _survey;
    std::vector<Peaks> _peaks;
    std::vector<Quantity> _quantities;
    std::vector<std::optional<bool>> _states;
    JumpProfile _voltages;
    JumpProfile _currents;
    double _cycleBegin = std::numeric_limits<double>::infinity();
    double _cycleEnd = -std::numeric_limits<double>::infinity();
};

struct Event {
    double time = 0.0;
    double weight = 0.0; ///< share of the greatest value; 0 of a change
};

constexpr double kJump = 0.1;
constexpr std::size_t kChatter = 16; // changes of a status channel that is no witness

std::vector<Event> eventsOf(const Survey& survey) {
    std::vector<Event> events;
    for (const Survey::Jumps& kind : survey.jumps) {
        for (std::size_t i = 0; i < kind.jumps.size(); ++i) {
            if (kind.jumps[i] > kJump * kind.peak) {
                events.push_back({survey.times.from + static_cast<double>(i) * kind.step, kind.jumps[i] / kind.peak});
            }
        }
    }
    for (const StatusSurvey& status : survey.status) {
        if (status.changes <= kChatter) {
            for (const double time : status.times) {
                events.push_back({time, 0.0});
            }
        }
    }
    std::sort(events.begin(), events.end(), [](const Event& one, const Event& other) { return one.time < other.time; });
    return events;
}

double markOf(const std::vector<Event>& events, std::optional<double> trigger, double cycle) {
    const auto isNear = [&](const Event& event) { return std::abs(event.time - *trigger) <= 5.0 * cycle; };
    if (trigger && std::any_of(events.begin(), events.end(), isNear)) {
        return *trigger;
    }
    // The first of those that are as great: of changes alone the first one.
    return std::max_element(events.begin(), events.end(),
                            [](const Event& one, const Event& other) { return one.weight < other.weight; })
        ->time;
}

} // namespace

Survey surveyOf(const Source& source) {
    constexpr std::size_t values = 256UL * 1024; // of a block
    const std::size_t channels = source.header.analog.size() + source.header.status.size() + 1;
    Selection everything;
    everything.missingAsNan = true;
    Surveyor surveyor(source);
    source.columns(everything, std::clamp<std::size_t>(values / channels, 1, 4096),
                   [&surveyor](const Columns& block) { return surveyor.take(block); });
    return surveyor.finish();
}

Range disturbanceOf(const Survey& survey, std::optional<double> trigger) {
    const std::vector<Event> events = eventsOf(survey);
    const double cycle = std::max(survey.cycle, 8.0 * survey.spacing);
    if (events.empty() && (!trigger || *trigger < survey.times.from + cycle)) { // no device triggers there
        return survey.times;
    }
    const double mark = events.empty() ? *trigger : markOf(events, trigger, cycle);
    Range view = events.empty() ? Range{mark - cycle, mark + 9.0 * cycle} : Range{mark, mark};
    for (const Event& event : events) {
        if (event.time >= mark - 15.0 * cycle && event.time <= mark + 30.0 * cycle) {
            view = {std::min(view.from, event.time), std::max(view.to, event.time)};
        }
    }
    view = {std::max(view.from - 4.0 * cycle, survey.times.from), std::min(view.to + 6.0 * cycle, survey.times.to)};
    return view.length() * 1.25 < survey.times.length() ? view : survey.times;
}

} // namespace OrvComtradePicture
