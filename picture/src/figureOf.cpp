#include "numbers.h"

#include <OrvComtradePicture/Figure.h>
#include <OrvComtradePicture/characters.h>
#include <OrvComtradePicture/families.h>
#include <OrvComtradePicture/survey.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

using OrvComtradeIntake::AnalogInfo;
using OrvComtradeIntake::Columns;
using OrvComtradeIntake::Header;
using OrvComtradeIntake::RateInfo;
using OrvComtradeIntake::Selection;
using OrvComtradeIntake::StatusInfo;

namespace OrvComtradePicture {

namespace {

constexpr std::size_t kMostLanes = 6;      // that nobody asked for
constexpr std::size_t kMostStrips = 32;    // that nobody asked for
constexpr std::size_t kLongestLabel = 120; // cells
constexpr long double kNanosecondsPerSecond = 1e9L;
constexpr double kGreatestValue = 1e300; // greater ones are drawn there: a range between two of them has a length
constexpr std::size_t kStripColumns = 4; // per column of the drawing

std::string shown(const std::string& text) {
    const std::size_t begin = text.find_first_not_of(" \t\r\n");
    const std::size_t end = text.find_last_not_of(" \t\r\n");
    return begin == std::string::npos
               ? ""
               : visible(shortened(std::string_view(text).substr(begin, end + 1 - begin), kLongestLabel));
}

std::string joined(const std::vector<std::string>& parts, const char* separator) {
    std::string text;
    for (const std::string& part : parts) {
        if (!part.empty()) {
            text.append(text.empty() ? "" : separator).append(part);
        }
    }
    return text;
}

std::string counted(std::size_t count, const std::string& thing) {
    return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

std::string seconds(double time) {
    return brief(time) + " s";
}

/// To a thousandth of a length, or some more.
std::string rounded(double number, double length) {
    std::string text = fixed(number, static_cast<int>(std::clamp(std::ceil(3.0 - std::log10(length)), 0.0, 12.0)));
    if (text.find('.') != std::string::npos) {
        text.erase(text.find_last_not_of('0') + 1);
        text.erase(text.back() == '.' ? text.size() - 1 : text.size());
    }
    return text;
}

std::string rateText(double rate) {
    return rate >= 1e6 ? brief(rate / 1e6) + " MHz" : rate >= 1e4 ? brief(rate / 1e3) + " kHz" : brief(rate) + " Hz";
}

double finiteOrNan(double value) {
    return std::isfinite(value) ? std::clamp(value, -kGreatestValue, kGreatestValue)
                                : std::numeric_limits<double>::quiet_NaN();
}

class Drawing {
public:
    Drawing(const Source& source, const Wanted& wanted)
        : _source(source), _header(source.header), _wanted(wanted), _survey(surveyOf(source)) {}

    Figure make() {
        _refuseNothing();
        _chooseView();
        _chooseLanes();
        _read();
        _nameFigure();
        if (_figure.lanes.empty() && _figure.strips.empty()) {
            throw NothingToDraw(_header.status.empty() ? "there is no channel to draw"
                                                       : "no status channel changes, and there is no other to draw");
        }
        _writeNotes();
        return std::move(_figure);
    }

private:
    void _refuseNothing() const {
        if (_survey.samples == 0) {
            throw NothingToDraw("it has no samples");
        }
        if (_header.analog.empty() && _header.status.empty()) {
            throw NothingToDraw("it has no channels");
        }
    }

    std::optional<double> _triggerTime() const {
        if (!_header.start || !_header.trigger) {
            return std::nullopt;
        }
        // As long doubles: the difference of two that far apart is more than 64 bits hold.
        const auto difference = static_cast<long double>(_header.trigger->nanoseconds) -
                                static_cast<long double>(_header.start->nanoseconds);
        return static_cast<double>(difference / kNanosecondsPerSecond);
    }

    /// Where the axis has its zero.
    void _chooseBase(std::optional<double> trigger) {
        _figure.base = _wanted.base;
        _figure.start = _header.start;
        const bool needsTrigger = _wanted.base == TimeBase::Trigger;
        if (needsTrigger && trigger) {
            _figure.zero = *trigger;
            return;
        }
        if (needsTrigger || (_wanted.base == TimeBase::Clock && !_header.start)) {
            _figure.base = TimeBase::Start;
            _figure.notes.push_back(std::string("The recording has no ") + (needsTrigger ? "trigger" : "date") +
                                    ": times are from its first sample.");
        }
        if (_figure.base == TimeBase::Clock && _wanted.utcOffset) {
            constexpr std::int64_t nanosecondsPerMinute = 60000000000;
            _figure.start->nanoseconds -= *_wanted.utcOffset * nanosecondsPerMinute;
            _figure.isUtc = true;
        }
    }

    void _chooseView() {
        const std::optional<double> known = _triggerTime();
        const std::optional<double> trigger = known && _survey.times.holds(*known) ? known : std::nullopt;
        _chooseBase(known);
        Range view = _survey.times;
        if (_wanted.start || _wanted.end) {
            view = {std::max(_wanted.start.value_or(view.from), view.from),
                    std::min(_wanted.end.value_or(view.to), view.to)};
            if (!(view.from <= view.to)) {
                const double zero = _figure.zero;
                throw NothingToDraw("no sample lies in this window; the recording runs from " +
                                    seconds(_survey.times.from - zero) + " to " + seconds(_survey.times.to - zero) +
                                    (_figure.base == TimeBase::Trigger ? ", counted from the trigger" : ""));
            }
        } else {
            view = disturbanceOf(_survey, trigger);
        }
        const double least = std::max({_survey.spacing * 1e-3, 1e-12, 1e-9 * std::abs(view.to)});
        if (view.length() < least) { // a sample alone stands in the middle
            const double half = std::max(_survey.spacing / 2.0, std::max(0.0005, 1e-6 * std::abs(view.to)));
            view = {view.from - half, view.to + half};
        }
        _figure.view = view;
        if (trigger && view.holds(*trigger)) {
            _figure.trigger = trigger;
        }
    }

    double _peakOf(const Family& family) const {
        double peak = 0.0;
        for (const Member& member : family.members) {
            const auto& values = _survey.analog[member.channel].values;
            peak = values ? std::max({peak, -values->from, values->to}) : peak;
        }
        return peak;
    }

    double _jumpOf(const Family& family) const {
        double jump = 0.0;
        for (const Member& member : family.members) {
            jump = std::max(jump, _survey.analog[member.channel].greatestJump);
        }
        return jump;
    }

    bool _varies(const Family& family) const {
        return std::any_of(family.members.begin(), family.members.end(), [this](const Member& member) {
            const auto& values = _survey.analog[member.channel].values;
            return values && values->length() > 0.0;
        });
    }

    double _peakOf(Quantity quantity) const { return _survey.jumps.at(quantity == Quantity::Voltage ? 0 : 1).peak; }

    /// The voltages, or the currents, that may be drawn, those that the disturbance moved most first: those of several
    /// phases, where there are any, and no unused inputs beside used ones.
    std::vector<Family> _candidates(const std::vector<Family>& all, Quantity quantity) const {
        constexpr double unused = 0.002; // of the greatest value: what an open input picks up
        std::vector<Family> candidates;
        std::copy_if(all.begin(), all.end(), std::back_inserter(candidates),
                     [&](const Family& family) { return family.quantity == quantity; });
        const auto keepIf = [&candidates](const auto& condition) {
            const auto end = std::stable_partition(candidates.begin(), candidates.end(), condition);
            if (end != candidates.begin()) {
                candidates.erase(end, candidates.end());
            }
        };
        keepIf([&](const Family& family) { return _varies(family) && _peakOf(family) >= unused * _peakOf(quantity); });
        keepIf([](const Family& family) { return family.hasPhases; });
        std::stable_sort(candidates.begin(), candidates.end(),
                         [this](const Family& one, const Family& other) { return _jumpOf(one) > _jumpOf(other); });
        return candidates;
    }

    /// Voltages and currents in turn, in the order of the recording; without any of them the first channels.
    std::vector<Family> _mostDisturbed(const std::vector<Family>& all) const {
        const std::vector<Family> voltages = _candidates(all, Quantity::Voltage);
        const std::vector<Family> currents = _candidates(all, Quantity::Current);
        std::vector<Family> chosen;
        for (std::size_t i = 0; i < std::max(voltages.size(), currents.size()); ++i) {
            for (const auto* const families : {&voltages, &currents}) {
                if (i < families->size() && chosen.size() < kMostLanes) {
                    chosen.push_back((*families)[i]);
                }
            }
        }
        if (chosen.empty()) {
            chosen.assign(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(std::min(all.size(), kMostLanes)));
        }
        std::sort(chosen.begin(), chosen.end(), [](const Family& one, const Family& other) {
            return one.members.front().channel < other.members.front().channel;
        });
        return chosen;
    }

    std::vector<Family> _familiesOfPicture() const {
        if (_wanted.analog) {
            return familiesOf(_source, *_wanted.analog);
        }
        std::vector<std::size_t> all(_header.analog.size());
        std::iota(all.begin(), all.end(), std::size_t{0});
        return _mostDisturbed(familiesOf(_source, all));
    }

    void _chooseLanes() {
        for (const Family& family : _familiesOfPicture()) {
            Lane lane;
            const std::size_t first = family.members.front().channel;
            const bool isOneComponent =
                std::all_of(family.members.begin(), family.members.end(), [&](const Member& member) {
                    return _header.analog[member.channel].component == _header.analog[first].component;
                });
            lane.title = isOneComponent ? shown(_header.analog[first].component) : "";
            lane.unit = shown(_source.analog[first].unit);
            lane.side = _source.analog[first].side;
            std::size_t others = kPhaseColours;
            for (const Member& member : family.members) {
                const AnalogInfo& info = _header.analog[member.channel];
                Trace trace;
                trace.channel = member.channel;
                trace.name = joined({shown(info.id), isOneComponent ? "" : shown(info.component)}, ", ");
                if (trace.name.empty()) {
                    trace.name = "channel " + std::to_string(member.channel + 1);
                }
                trace.colour = member.phase == Phase::None ? others++ : static_cast<std::size_t>(member.phase) - 1;
                lane.traces.push_back(std::move(trace));
            }
            _figure.lanes.push_back(std::move(lane));
        }
    }

    std::vector<std::size_t> _statusCandidates() const {
        if (_wanted.status) {
            for (const std::size_t channel : *_wanted.status) {
                (void)_header.status.at(channel); // throws
            }
            return *_wanted.status;
        }
        std::vector<std::size_t> channels;
        for (std::size_t i = 0; i < _survey.status.size(); ++i) {
            if (_survey.status[i].changes > 0) {
                channels.push_back(i);
            }
        }
        return channels;
    }

    /// The samples of the view, and of a block at either side of it.
    void _selectSamples(Selection& selection) const {
        const std::vector<BlockPlace>& blocks = _survey.blocks;
        const auto touches = [this](const BlockPlace& block) {
            return block.times.to >= _figure.view.from && block.times.from <= _figure.view.to;
        };
        const auto first = std::find_if(blocks.begin(), blocks.end(), touches);
        const auto last = std::find_if(blocks.rbegin(), blocks.rend(), touches);
        if (first == blocks.end()) {
            return; // between two blocks: all of it
        }
        const auto begin = first == blocks.begin() ? first : std::prev(first);
        const auto behind = static_cast<std::size_t>(blocks.rend() - last) + 1; // of the block behind the last one
        selection.first = begin->first;
        selection.count = behind < blocks.size() ? blocks[behind].first - begin->first : _survey.samples - begin->first;
    }

    void _read() {
        std::vector<Trace*> traces;
        Selection selection;
        selection.allAnalog = false;
        selection.allStatus = false;
        selection.missingAsNan = true;
        for (Lane& lane : _figure.lanes) {
            for (Trace& trace : lane.traces) {
                traces.push_back(&trace);
                selection.analog.push_back(trace.channel);
            }
        }
        selection.status = _statusCandidates();
        _selectSamples(selection);
        const std::size_t columns = std::max<std::size_t>(_wanted.columns, 1);
        std::vector<Envelope> envelopes(traces.size(), Envelope(_figure.view, columns));
        std::vector<StateRaster> rasters(selection.status.size(), StateRaster(_figure.view, columns * kStripColumns));
        std::vector<bool> isInfinite(traces.size());
        std::vector<std::optional<bool>> states(selection.status.size());
        std::vector<double> since(selection.status.size());
        double last = 0.0;
        constexpr std::size_t values = 256UL * 1024; // of a block
        const std::size_t most =
            std::clamp<std::size_t>(values / (traces.size() + selection.status.size() + 1), 1, 4096);
        _source.columns(selection, most, [&](const Columns& block) {
            for (std::size_t i = 0; i < traces.size(); ++i) {
                const double* const column = block.column(i);
                for (std::size_t j = 0; j < block.samples; ++j) {
                    isInfinite[i] = isInfinite[i] || std::isinf(column[j]);
                    envelopes[i].add(block.time[j], finiteOrNan(column[j]));
                }
            }
            for (std::size_t i = 0; i < states.size(); ++i) {
                for (const auto& change : block.states[i]) {
                    const double time = block.time[change.sample - block.first];
                    if (states[i] && *states[i] != change.state) {
                        rasters[i].add({since[i], time}, *states[i]);
                    }
                    if (!states[i] || *states[i] != change.state) {
                        states[i] = change.state;
                        since[i] = time;
                    }
                }
            }
            last = block.samples > 0 ? block.time.back() : last;
            return true;
        });
        for (std::size_t i = 0; i < states.size(); ++i) {
            if (states[i]) {
                rasters[i].add({since[i], std::max(last, since[i])}, *states[i]);
            }
        }
        _takeEnvelopes(envelopes, isInfinite);
        _takeRasters(selection.status, rasters);
    }

    void _takeEnvelopes(const std::vector<Envelope>& envelopes, const std::vector<bool>& isInfinite) {
        std::size_t next = 0;
        std::vector<std::string> infinite;
        std::vector<std::string> empty;
        for (Lane& lane : _figure.lanes) {
            std::optional<Range> values;
            for (Trace& trace : lane.traces) {
                const Envelope& envelope = envelopes[next];
                trace.points = envelope.points();
                if (const auto own = envelope.values()) {
                    values = values ? Range{std::min(values->from, own->from), std::max(values->to, own->to)} : *own;
                } else {
                    empty.push_back(trace.name);
                }
                if (isInfinite[next]) {
                    infinite.push_back(trace.name);
                }
                ++next;
            }
            lane.values = axisAround(values);
        }
        _noteChannels("Without values here: ", empty);
        _noteChannels("Infinite values are not drawn: ", infinite);
    }

    void _noteChannels(const char* sentence, std::vector<std::string> names) {
        constexpr std::size_t most = 6;
        if (names.empty()) {
            return;
        }
        const std::size_t more = names.size() > most ? names.size() - most : 0;
        names.resize(std::min(names.size(), most));
        if (more > 0) {
            names.push_back(std::to_string(more) + " more");
        }
        _figure.notes.push_back(sentence + joined(names, ", ") + ".");
    }

    void _takeRasters(const std::vector<std::size_t>& channels, const std::vector<StateRaster>& rasters) {
        for (std::size_t i = 0; i < channels.size(); ++i) {
            if (!_wanted.status && !rasters[i].changes()) {
                continue;
            }
            ++_changing;
            if (!_wanted.status && _figure.strips.size() == kMostStrips) {
                continue;
            }
            const StatusInfo& info = _header.status[channels[i]];
            _figure.strips.push_back({channels[i], shown(info.id), rasters[i].spans()});
        }
        _nameStrips();
    }

    /// With their components, unless all have the same one.
    void _nameStrips() {
        const auto componentOf = [this](const Strip& strip) -> const std::string& {
            return _header.status[strip.channel].component;
        };
        const std::vector<Strip>& strips = _figure.strips;
        const bool isOne = std::all_of(strips.begin(), strips.end(), [&](const Strip& strip) {
            return componentOf(strip) == componentOf(strips.front());
        });
        for (Strip& strip : _figure.strips) {
            strip.name = joined({strip.name, isOne && strips.size() > 1 ? "" : shown(componentOf(strip))}, ", ");
            strip.name = strip.name.empty() ? "status " + std::to_string(strip.channel + 1) : strip.name;
        }
    }

    void _nameFigure() {
        const std::string station = shown(_header.station);
        const std::string recorder = shown(_header.recorder);
        _figure.title = joined({station, recorder == station ? "" : recorder}, " \xC2\xB7 ");
        const std::string name = shown(_wanted.name);
        if (_figure.title.empty()) {
            _figure.title = name.empty() ? "Recording" : name;
        }
        std::vector<std::string> parts;
        if (_header.start) {
            std::string start = _header.start->text();
            start[start.find('T')] = ' ';
            start.erase(start.find_last_not_of('0') + 1);
            parts.push_back(start.back() == '.' ? start + "0" : start);
        }
        if (!_header.timesAreStamped()) {
            const std::vector<RateInfo> rates = _header.ratesInUse();
            const std::string others = rates.size() > 1 ? " and " + counted(rates.size() - 1, "other rate") : "";
            parts.push_back(rateText(rates.front().rate) + others);
        }
        parts.push_back(name);
        _figure.subtitle = joined(parts, " \xC2\xB7 ");
    }

    void _writeNotes() {
        std::vector<std::string> parts;
        if (_figure.view.from > _survey.times.from || _figure.view.to < _survey.times.to) {
            const double unit = _figure.view.length();
            parts.push_back(rounded(_figure.view.from, unit) + " to " + rounded(_figure.view.to, unit) + " s of " +
                            seconds(_survey.times.to));
        }
        std::size_t drawn = 0;
        for (const Lane& lane : _figure.lanes) {
            drawn += lane.traces.size();
        }
        if (!_wanted.analog && drawn < _header.analog.size()) {
            parts.push_back(std::to_string(drawn) + " of " + counted(_header.analog.size(), "analog channel"));
        }
        if (!_wanted.status && _changing > _figure.strips.size()) {
            parts.push_back("the first " + std::to_string(_figure.strips.size()) + " of " +
                            counted(_changing, "status channel") + " that change");
        }
        if (!parts.empty()) {
            _figure.notes.insert(_figure.notes.begin(), "Drawn: " + joined(parts, "; ") + ".");
        }
    }

    const Source& _source;
    const Header& _header;
    const Wanted& _wanted;
    const Survey _survey;
    Figure _figure;
    std::size_t _changing = 0; ///< status channels that change within the view
};

} // namespace

Range axisAround(std::optional<Range> values) {
    if (!values) {
        return {-1.0, 1.0};
    }
    Range axis = *values;
    const double greatest = std::max(std::abs(axis.from), std::abs(axis.to));
    if (axis.from < 0.0 && axis.to > 0.0 && std::min(-axis.from, axis.to) > 0.6 * greatest) {
        axis = {-greatest, greatest};
    }
    const double least = std::max(greatest * 1e-9, 1e-290); // what is finer is noise of the arithmetic
    const double margin = axis.length() > least ? 0.06 * axis.length() : greatest > 0.0 ? 0.1 * greatest + least : 1.0;
    return {axis.from - margin, axis.to + margin};
}

Figure figureOf(const Source& source, const Wanted& wanted) {
    return Drawing(source, wanted).make();
}

} // namespace OrvComtradePicture
