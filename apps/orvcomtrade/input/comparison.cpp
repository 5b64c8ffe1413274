#include "input/comparison.h"

#include "input/channelNames.h"
#include "input/samplesAtOnce.h"
#include "output/sideName.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <string>
#include <tuple>
#include <utility>

using OrvComtradeIntake::AnalogInfo;
using OrvComtradeIntake::Columns;
using OrvComtradeIntake::Header;
using OrvComtradeIntake::Instant;
using OrvComtradeIntake::RateInfo;
using OrvComtradeIntake::Selection;
using OrvComtradeIntake::StatusInfo;

namespace {

// Of each recording. Lines of text are read from the first one on for every such part, so it is a large one.
constexpr std::uint64_t kValuesAtOnce = 8UL * 1024 * 1024;

/// Channels of one kind that go together, and those that have no counterpart.
struct Pairs {
    std::vector<std::size_t> left;
    std::vector<std::size_t> right;
};

std::string comparedName(const AnalogInfo& channel) {
    return analogName(channel, channel.unit);
}

std::string comparedName(const StatusInfo& channel) {
    return statusName(channel);
}

/// What makes channels counterparts. Not the unit: volts may be compared with kilovolts.
using Key = std::tuple<std::string, std::string, std::string>;

template <class Info> Key keyOf(const Info& channel) {
    return {channel.id, channel.phase, channel.component};
}

template <class Info> Pairs pairsOf(const std::vector<Info>& left, const std::vector<Info>& right, Comparison& result) {
    std::map<Key, std::vector<std::size_t>> places; // in the right one, the last first
    for (std::size_t i = right.size(); i > 0; --i) {
        places[keyOf(right[i - 1])].push_back(i - 1);
    }
    Pairs pairs;
    std::vector<bool> isTaken(right.size());
    for (std::size_t i = 0; i < left.size(); ++i) {
        std::vector<std::size_t>& free = places[keyOf(left[i])];
        if (free.empty()) {
            result.onlyLeft.push_back(comparedName(left[i]));
            continue;
        }
        pairs.left.push_back(i);
        pairs.right.push_back(free.back());
        isTaken[free.back()] = true;
        free.pop_back();
    }
    for (std::size_t i = 0; i < right.size(); ++i) {
        if (!isTaken[i]) {
            result.onlyRight.push_back(comparedName(right[i]));
        }
    }
    return pairs;
}

// --- Headers --------------------------------------------------------------------------------------------------------

std::string textOf(const std::string& text) {
    return text;
}

std::string textOf(double number) {
    return fmt::format("{}", number);
}

std::string textOf(const std::optional<Instant>& instant) {
    return instant ? instant->text() : "";
}

std::string textOf(const std::vector<RateInfo>& rates) {
    constexpr std::size_t most = 3;
    std::string text;
    for (std::size_t i = 0; i < std::min(rates.size(), most); ++i) {
        text += fmt::format("{}{} Hz to {}", i == 0 ? "" : ", ", rates[i].rate, rates[i].endSample);
    }
    return rates.size() > most ? fmt::format("{} and {} more", text, rates.size() - most) : text;
}

bool areEqual(const std::vector<RateInfo>& left, const std::vector<RateInfo>& right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](const RateInfo& one, const RateInfo& other) {
                          return one.rate == other.rate && one.endSample == other.endSample;
                      });
}

template <class Value> bool areEqual(const Value& left, const Value& right) {
    return left == right;
}

class HeaderComparison {
public:
    explicit HeaderComparison(std::vector<FieldDifference>& differences) : _differences(differences) {}

    template <class Value> void add(const std::string& field, const Value& left, const Value& right) {
        if (!areEqual(left, right)) {
            _differences.push_back({field, textOf(left), textOf(right)});
        }
    }

private:
    std::vector<FieldDifference>& _differences;
};

void compareHeaders(const Recording& left, const Recording& right, const Pairs& analog, const Pairs& status,
                    std::vector<FieldDifference>& differences) {
    HeaderComparison compare(differences);
    const Header& one = left.header;
    const Header& other = right.header;
    compare.add("station", one.station, other.station);
    compare.add("recorder", one.recorder, other.recorder);
    compare.add("revision", static_cast<double>(one.revision), static_cast<double>(other.revision));
    compare.add<std::string>("data type", typeWord(one.dataType), typeWord(other.dataType));
    compare.add("start", one.start, other.start);
    compare.add("trigger", one.trigger, other.trigger);
    compare.add("time code", one.timeCode, other.timeCode);
    compare.add("line frequency", one.lineFrequency, other.lineFrequency);
    compare.add("samples", static_cast<double>(one.samples), static_cast<double>(other.samples));
    compare.add("sampling rates", one.ratesInUse(), other.ratesInUse());
    for (std::size_t i = 0; i < analog.left.size(); ++i) {
        const AnalogInfo& channel = one.analog[analog.left[i]];
        const AnalogInfo& counterpart = other.analog[analog.right[i]];
        const std::string name = comparedName(channel);
        compare.add(name + ": unit", channel.unit, counterpart.unit);
        compare.add(name + ": skew", channel.skew, counterpart.skew);
        compare.add(name + ": primary", channel.primary, counterpart.primary);
        compare.add(name + ": secondary", channel.secondary, counterpart.secondary);
        compare.add<std::string>(name + ": side", sideName(channel.side), sideName(counterpart.side));
    }
    for (std::size_t i = 0; i < status.left.size(); ++i) {
        const StatusInfo& channel = one.status[status.left[i]];
        compare.add(comparedName(channel) + ": normal state", static_cast<double>(channel.normalState),
                    static_cast<double>(other.status[status.right[i]].normalState));
    }
}

// --- Samples --------------------------------------------------------------------------------------------------------

Selection selectionOf(const std::vector<std::size_t>& analog, const std::vector<std::size_t>& status) {
    Selection selection;
    selection.allAnalog = false;
    selection.allStatus = false;
    selection.analog = analog;
    selection.status = status;
    selection.missingAsNan = true;
    return selection;
}

void note(ChannelComparison& channel, const SampleDifference& difference) {
    ++channel.beyond;
    if (!channel.first) {
        channel.first = difference;
    }
}

/// Compares blocks of the same samples.
class SampleComparison {
public:
    SampleComparison(Comparison& result, std::vector<double> tolerances)
        : _result(result), _tolerances(std::move(tolerances)) {}

    void add(const Columns& left, const Columns& right) {
        const std::size_t samples = std::min(left.samples, right.samples);
        for (std::size_t column = 0; column < _result.analog.size(); ++column) {
            for (std::size_t i = 0; i < samples; ++i) {
                _addValue(column, {left.first + i, left.time[i], left.column(column)[i], right.column(column)[i]});
            }
        }
        for (std::size_t column = 0; column < _result.status.size(); ++column) {
            _addStates(left, right, column, samples);
        }
        _result.samples += samples;
    }

private:
    void _addValue(std::size_t column, const SampleDifference& pair) {
        ChannelComparison& channel = _result.analog[column];
        const bool isMissingLeft = std::isnan(pair.left);
        const bool isMissingRight = std::isnan(pair.right);
        if (isMissingLeft || isMissingRight || pair.left == pair.right) {
            if (isMissingLeft != isMissingRight) {
                note(channel, pair);
            }
            return;
        }
        const double difference = std::fabs(pair.left - pair.right);
        if (difference > channel.largest) {
            channel.largest = difference;
            channel.largestTime = pair.time;
        }
        if (difference > _tolerances[column]) {
            note(channel, pair);
        }
    }

    void _addStates(const Columns& left, const Columns& right, std::size_t column, std::size_t samples) {
        auto one = left.states[column].begin();
        auto other = right.states[column].begin();
        bool leftState = false;
        bool rightState = false;
        for (std::size_t i = 0; i < samples; ++i) {
            const std::uint64_t sample = left.first + i;
            if (one != left.states[column].end() && one->sample == sample) {
                leftState = (one++)->state;
            }
            if (other != right.states[column].end() && other->sample == sample) {
                rightState = (other++)->state;
            }
            if (leftState != rightState) {
                ChannelComparison& channel = _result.status[column];
                channel.largestTime = channel.largest == 0.0 ? left.time[i] : channel.largestTime;
                channel.largest = 1.0;
                note(channel, {sample, left.time[i], leftState ? 1.0 : 0.0, rightState ? 1.0 : 0.0});
            }
        }
    }

    Comparison& _result;
    std::vector<double> _tolerances;
};

/// The greatest size of a value by channel.
std::vector<double> greatestOf(const Recording& recording, const std::vector<std::size_t>& analog) {
    std::vector<double> greatest(analog.size());
    recording.reader->columns(selectionOf(analog, {}), samplesAtOnce(recording.header), [&](const Columns& block) {
        for (std::size_t column = 0; column < analog.size(); ++column) {
            for (std::size_t i = 0; i < block.samples; ++i) {
                const double size = std::fabs(block.column(column)[i]);
                greatest[column] = size > greatest[column] ? size : greatest[column];
            }
        }
        return true;
    });
    return greatest;
}

std::vector<double> tolerancesFor(const Recording& left, const Pairs& analog, const Tolerance& tolerance) {
    std::vector<double> tolerances(analog.left.size(), tolerance.absolute);
    if (tolerance.relative > 0.0) {
        const std::vector<double> greatest = greatestOf(left, analog.left);
        for (std::size_t i = 0; i < greatest.size(); ++i) {
            tolerances[i] += tolerance.relative * greatest[i];
        }
    }
    return tolerances;
}

} // namespace

bool Comparison::areValuesEqual() const {
    const auto isEqual = [](const ChannelComparison& channel) { return channel.beyond == 0; };
    return onlyLeft.empty() && onlyRight.empty() && std::all_of(analog.begin(), analog.end(), isEqual) &&
           std::all_of(status.begin(), status.end(), isEqual);
}

Comparison compareRecordings(const Recording& left, const Recording& right, const Tolerance& tolerance) {
    Comparison result;
    const Pairs analog = pairsOf(left.header.analog, right.header.analog, result);
    const Pairs status = pairsOf(left.header.status, right.header.status, result);
    compareHeaders(left, right, analog, status, result.header);
    for (const std::size_t channel : analog.left) {
        result.analog.push_back({comparedName(left.header.analog[channel]), left.analog.at(channel).unit});
    }
    for (const std::size_t channel : status.left) {
        result.status.push_back({comparedName(left.header.status[channel]), ""});
    }
    SampleComparison compare(result, tolerancesFor(left, analog, tolerance));
    Selection ofLeft = selectionOf(analog.left, status.left);
    Selection ofRight = selectionOf(analog.right, status.right);
    const std::uint64_t common = std::min(left.header.samples, right.header.samples);
    ofLeft.count = std::max<std::uint64_t>(kValuesAtOnce / (analog.left.size() + status.left.size() + 1), 1);
    ofRight.count = ofLeft.count;
    while (ofLeft.first < common) {
        compare.add(left.reader->columns(ofLeft), right.reader->columns(ofRight));
        ofLeft.first += ofLeft.count;
        ofRight.first = ofLeft.first;
    }
    return result;
}
