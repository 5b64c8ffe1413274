#include "intake/comparison.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace orvtest {

using OrvComtradeIntake::AnalogInfo;
using OrvComtradeIntake::Columns;
using OrvComtradeIntake::Header;
using OrvComtradeIntake::MissingRun;
using OrvComtradeIntake::RateInfo;
using OrvComtradeIntake::Selection;
using OrvComtradeIntake::Side;
using OrvComtradeIntake::StateChange;
using OrvComtradeIntake::StatusInfo;
using OrvComtradeLib::Comtrade;

namespace {

/// The first difference of those that are looked at, in turn.
class Difference {
public:
    bool isFound() const { return !_text.empty(); }
    const std::string& text() const { return _text; }

    void compare(const std::string& place, const std::string& found, const std::string& expected) {
        require(found == expected, place, "'" + found + "', not '" + expected + "'");
    }

    void compare(const std::string& place, std::uint64_t found, std::uint64_t expected) {
        require(found == expected, place, std::to_string(found) + ", not " + std::to_string(expected));
    }

    void compare(const std::string& place, double found, double expected) {
        const bool isSame = found <= expected && found >= expected; // 0 and -0 are
        require(isSame, place, std::to_string(found) + ", not " + std::to_string(expected));
    }

    void require(bool holds, const std::string& place, const std::string& what) {
        if (!isFound() && !holds) {
            _text = place;
            _text += ": ";
            _text += what;
        }
    }

private:
    std::string _text;
};

std::string trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \t");
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::string numbered(const char* what, std::size_t index) {
    return what + (" " + std::to_string(index));
}

bool isNear(long double found, long double expected, long double tolerance) {
    return std::fabs(found - expected) <= tolerance;
}

/// One rounding to a double.
bool isRounded(double found, long double expected) {
    return isNear(static_cast<long double>(found), expected, kHalfUlp * std::fabs(expected) + 0x1p-1074L);
}

} // namespace

slow::Side slowSide(Side side) {
    return side == Side::Recorded  ? slow::Side::Unknown
           : side == Side::Primary ? slow::Side::Primary
                                   : slow::Side::Secondary;
}

bool same(double left, double right) {
    std::uint64_t leftBits = 0;
    std::uint64_t rightBits = 0;
    std::memcpy(&leftBits, &left, sizeof left);
    std::memcpy(&rightBits, &right, sizeof right);
    return leftBits == rightBits || (std::isnan(left) && std::isnan(right));
}

std::string textOf(const std::optional<std::int64_t>& nanoseconds) {
    return nanoseconds ? std::to_string(*nanoseconds) : "none";
}

std::string textOf(const std::optional<OrvComtradeIntake::Instant>& instant) {
    return instant ? std::to_string(instant->nanoseconds) : "none";
}

std::string missingText(const slow::Recording& recording) {
    std::vector<MissingRun> runs;
    for (std::size_t channel = 0; channel < recording.analog.size(); ++channel) {
        bool wasMissing = false;
        for (std::size_t i = 0; i < recording.samples.size(); ++i) {
            const bool isMissing = recording.samples[i].missing[channel];
            if (isMissing && !wasMissing) {
                runs.push_back({channel, i, 0});
            }
            if (isMissing) {
                ++runs.back().count;
            }
            wasMissing = isMissing;
        }
    }
    return missingText(runs);
}

std::string missingText(const std::vector<MissingRun>& missing) {
    std::string text;
    for (const MissingRun& run : missing) {
        text += std::to_string(run.channel) + ":" + std::to_string(run.sample) + "+" + std::to_string(run.count) + " ";
    }
    return text;
}

namespace {

void compareTexts(Difference& difference, const std::string& place, const OrvComtradeLib::BaseChannelConfig& found,
                  const std::string& id, const std::string& phase, const std::string& component) {
    difference.compare(place + " id", trimmed(found.channelId), id);
    difference.compare(place + " phase", trimmed(found.phase), phase);
    difference.compare(place + " component", trimmed(found.circuitComponent), component);
}

/// The unit is the base unit, or one with a prefix that the library multiplies in.
void compareUnit(Difference& difference, const std::string& place, const OrvComtradeLib::AnalogChannelConfig& found,
                 const slow::AnalogChannel& expected) {
    const std::string unit = trimmed(found.unit);
    const bool isBase = unit == expected.baseUnit && same(found.unitMultiplier, 1.0);
    const bool isWritten = unit == expected.unitAsWritten && isRounded(found.unitMultiplier, expected.prefix);
    difference.require(isBase || isWritten, place,
                       "unit '" + unit + "', factor " + std::to_string(found.unitMultiplier));
}

} // namespace

std::string firstTextDifference(const Comtrade& loaded, const slow::Recording& expected) {
    Difference difference;
    difference.compare("station", trimmed(loaded.cfg.stationName), expected.station);
    difference.compare("recorder", trimmed(loaded.cfg.recorderId), expected.recorder);
    difference.compare("analog channels", loaded.analogChannels.size(), expected.analog.size());
    difference.compare("status channels", loaded.binaryChannels.size(), expected.status.size());
    for (std::size_t i = 0; !difference.isFound() && i < expected.analog.size(); ++i) {
        const OrvComtradeLib::AnalogChannelConfig& found = loaded.cfg.analogChannelConfigs.at(i);
        const slow::AnalogChannel& right = expected.analog[i];
        const std::string place = numbered("analog channel", i);
        compareTexts(difference, place, found, right.id, right.phase, right.component);
        compareUnit(difference, place, found, right);
        difference.require(isNear(static_cast<long double>(found.skew), right.skew, 1e-18L), place, "skew");
    }
    for (std::size_t i = 0; !difference.isFound() && i < expected.status.size(); ++i) {
        const OrvComtradeLib::BinaryChannelConfig& found = loaded.cfg.binaryChannelConfigs.at(i);
        const slow::StatusChannel& right = expected.status[i];
        const std::string place = numbered("status channel", i);
        compareTexts(difference, place, found, right.id, right.phase, right.component);
        difference.compare(place + " normal state", std::to_string(found.normalState),
                           std::to_string(right.normalState));
    }
    return difference.text();
}

namespace {

/// What differs in a sample, in words; so made for the one that does.
template <class Number>
std::string wordsOf(std::size_t sample, const std::string& what, Number found, Number expected) {
    return "sample " + std::to_string(sample) + ", " + what + ": " + std::to_string(found) + ", not " +
           std::to_string(expected);
}

std::string valueDifference(const OrvComtradeLib::Sample& found, std::size_t index, const slow::Recording& expected,
                            Side side, int halfUlps) {
    const slow::Sample& right = expected.samples[index];
    const auto time = static_cast<long double>(found.time);
    if (!isNear(time, right.time, 1e-12L * std::fabs(right.time))) {
        return wordsOf(index, "time", time, right.time);
    }
    for (std::size_t channel = 0; channel < expected.analog.size(); ++channel) {
        const slow::Value value = slow::valueOf(expected.analog[channel], right.raw[channel], slowSide(side));
        const auto number = static_cast<long double>(found.analogValues.at(channel));
        if (!right.missing[channel] && !isNear(number, value.value, halfUlps * kHalfUlp * value.terms)) {
            return wordsOf(index, numbered("channel", channel), number, value.value);
        }
    }
    return found.binaryValues == right.status ? "" : numbered("states of sample", index);
}

} // namespace

std::string firstValueDifference(const Comtrade& loaded, const slow::Recording& expected, Side side, int halfUlps) {
    Difference difference;
    difference.compare("samples", loaded.dat.samples.size(), expected.samples.size());
    std::string text = difference.text();
    for (std::size_t i = 0; text.empty() && i < expected.samples.size(); ++i) {
        text = valueDifference(loaded.dat.samples[i], i, expected, side, halfUlps);
    }
    return text;
}

namespace {

void compareAnalog(Difference& difference, const std::string& place, const AnalogInfo& found,
                   const slow::AnalogChannel& expected) {
    difference.compare(place + " id", found.id, expected.id);
    difference.compare(place + " phase", found.phase, expected.phase);
    difference.compare(place + " component", found.component, expected.component);
    difference.compare(place + " unit", found.unit, expected.unitAsWritten);
    difference.require(isRounded(found.a, expected.a), place + " a", std::to_string(found.a));
    difference.require(isRounded(found.b, expected.b), place + " b", std::to_string(found.b));
    difference.require(isNear(static_cast<long double>(found.skew), expected.skew * 1e6L,
                              2 * kHalfUlp * std::fabs(expected.skew * 1e6L)),
                       place + " skew", std::to_string(found.skew));
    difference.require(isRounded(found.primary, expected.primary), place + " primary", std::to_string(found.primary));
    difference.require(isRounded(found.secondary, expected.secondary), place + " secondary",
                       std::to_string(found.secondary));
    difference.require(slowSide(found.side) == expected.side, place, "side");
}

void compareRates(Difference& difference, const Header& header, const slow::Recording& expected) {
    difference.compare("rates", header.rates.size(), expected.rates.size());
    for (std::size_t i = 0; !difference.isFound() && i < expected.rates.size(); ++i) {
        const std::string place = numbered("rate", i);
        difference.require(isRounded(header.rates[i].rate, expected.rates[i].rate), place,
                           std::to_string(header.rates[i].rate));
        difference.compare(place + " end", header.rates[i].endSample, expected.rates[i].end);
    }
}

} // namespace

std::string firstHeaderDifference(const Header& header, const slow::Recording& expected) {
    Difference difference;
    difference.compare("station", header.station, expected.station);
    difference.compare("recorder", header.recorder, expected.recorder);
    difference.compare("analog channels", header.analog.size(), expected.analog.size());
    difference.compare("status channels", header.status.size(), expected.status.size());
    for (std::size_t i = 0; !difference.isFound() && i < expected.analog.size(); ++i) {
        compareAnalog(difference, numbered("analog channel", i), header.analog[i], expected.analog[i]);
    }
    for (std::size_t i = 0; !difference.isFound() && i < expected.status.size(); ++i) {
        const StatusInfo& found = header.status[i];
        const slow::StatusChannel& right = expected.status[i];
        const std::string place = numbered("status channel", i);
        difference.compare(place + " id", found.id, right.id);
        difference.compare(place + " phase", found.phase, right.phase);
        difference.compare(place + " component", found.component, right.component);
        difference.compare(place + " normal state", std::to_string(found.normalState),
                           std::to_string(right.normalState));
    }
    difference.require(isRounded(header.lineFrequency, expected.lineFrequency), "line frequency",
                       std::to_string(header.lineFrequency));
    compareRates(difference, header, expected);
    difference.compare("start", textOf(header.start), textOf(expected.start));
    difference.compare("trigger", textOf(header.trigger), textOf(expected.trigger));
    difference.compare("type", static_cast<std::uint64_t>(header.dataType),
                       static_cast<std::uint64_t>(expected.coding));
    difference.require(isRounded(header.timeMultiplier, expected.timeMultiplier), "time multiplier",
                       std::to_string(header.timeMultiplier));
    difference.compare("samples declared", header.samplesDeclared, expected.samplesDeclared);
    difference.compare("samples", header.samples, expected.samples.size());
    return difference.text();
}

namespace {

/// The same, or a power of ten apart: raw values that are no integers of a few digits were written as such.
bool isSameFactor(double found, double expected) {
    const double power = std::round(std::log10(std::fabs(found / expected)));
    return std::fabs(found - expected) == 0.0 || std::fabs(found / expected / std::pow(10.0, power) - 1.0) < 1e-14;
}

void compareAnalog(Difference& difference, const std::string& place, const AnalogInfo& found,
                   const AnalogInfo& expected, bool isOfOldLines) {
    difference.compare(place + " id", found.id, expected.id);
    difference.compare(place + " phase", found.phase, expected.phase);
    difference.compare(place + " component", found.component, expected.component);
    difference.compare(place + " unit", found.unit, expected.unit);
    difference.require(isSameFactor(found.a, expected.a), place + " a", std::to_string(found.a));
    difference.compare(place + " b", found.b, expected.b);
    difference.compare(place + " skew", found.skew, expected.skew);
    if (isOfOldLines || expected.side == Side::Recorded) { // newer lines always declare one
        return;
    }
    difference.compare(place + " primary", found.primary, expected.primary);
    difference.compare(place + " secondary", found.secondary, expected.secondary);
    difference.require(found.side == expected.side, place, "side");
}

void compareStatus(Difference& difference, const std::string& place, const StatusInfo& found,
                   const StatusInfo& expected, bool isOfOldLines) {
    difference.compare(place + " id", found.id, expected.id);
    if (!isOfOldLines) { // which have no place for them
        difference.compare(place + " phase", found.phase, expected.phase);
        difference.compare(place + " component", found.component, expected.component);
    }
    difference.compare(place + " normal state", std::to_string(found.normalState),
                       std::to_string(expected.normalState));
}

/// A code that was not recorded may be written as the standard's default.
void compareCode(Difference& difference, const std::string& place, const std::string& found,
                 const std::string& expected, bool hasCodes) {
    difference.require(expected.empty() || found == (hasCodes ? expected : ""), place, found);
}

/// The rates at which the samples that there are were taken: the last one goes on to their end, whatever was declared.
std::vector<RateInfo> ratesOfSamples(const Header& header) {
    if (header.timesAreStamped()) {
        return {{0.0, header.samples}};
    }
    std::vector<RateInfo> rates;
    std::uint64_t begin = 0;
    for (const RateInfo& rate : header.rates) {
        const bool isLast = &rate == &header.rates.back();
        const std::uint64_t end = isLast ? header.samples : std::min(rate.endSample, header.samples);
        if (end > begin) {
            rates.push_back({rate.rate, end});
            begin = end;
        }
    }
    return rates;
}

} // namespace

std::string firstDifference(const Header& found, const Header& expected) {
    const bool isOld = found.revision < 1999;
    const bool hasCodes = found.revision >= 2013;
    Difference difference;
    difference.compare("station", found.station, expected.station);
    difference.compare("recorder", found.recorder, expected.recorder);
    difference.compare("analog channels", found.analog.size(), expected.analog.size());
    difference.compare("status channels", found.status.size(), expected.status.size());
    for (std::size_t i = 0; !difference.isFound() && i < expected.analog.size(); ++i) {
        compareAnalog(difference, numbered("analog channel", i), found.analog[i], expected.analog[i], isOld);
    }
    for (std::size_t i = 0; !difference.isFound() && i < expected.status.size(); ++i) {
        compareStatus(difference, numbered("status channel", i), found.status[i], expected.status[i], isOld);
    }
    const std::vector<RateInfo> rates = ratesOfSamples(found);
    const std::vector<RateInfo> right = ratesOfSamples(expected);
    difference.compare("rates", rates.size(), right.size());
    for (std::size_t i = 0; !difference.isFound() && i < right.size(); ++i) {
        difference.compare(numbered("rate", i), rates[i].rate, right[i].rate);
        difference.compare(numbered("end of rate", i), rates[i].endSample, right[i].endSample);
    }
    difference.compare("line frequency", found.lineFrequency, expected.lineFrequency);
    difference.compare("start", textOf(found.start), textOf(expected.start));
    difference.compare("trigger", textOf(found.trigger), textOf(expected.trigger));
    compareCode(difference, "time code", found.timeCode, expected.timeCode, hasCodes);
    compareCode(difference, "local code", found.localCode, expected.localCode, hasCodes);
    compareCode(difference, "time quality", found.timeQuality, expected.timeQuality, hasCodes);
    compareCode(difference, "leap second", found.leapSecond, expected.leapSecond, hasCodes);
    difference.compare("header text", found.hdr, expected.hdr);
    difference.compare("information text", found.inf, expected.inf);
    difference.compare("samples", found.samples, expected.samples);
    return difference.text();
}

namespace {

std::vector<std::size_t> channelsOf(bool all, const std::vector<std::size_t>& chosen, std::size_t count) {
    if (!all) {
        return chosen;
    }
    std::vector<std::size_t> channels(count);
    for (std::size_t i = 0; i < count; ++i) {
        channels[i] = i;
    }
    return channels;
}

/// Sample `i` of the columns of these channels.
std::string columnDifference(const Columns& columns, std::size_t i, const OrvComtradeLib::Sample& sample,
                             const std::vector<std::size_t>& analog) {
    if (!same(columns.time[i], sample.time)) {
        return wordsOf(i, "time", columns.time[i], sample.time);
    }
    for (std::size_t column = 0; column < analog.size(); ++column) {
        const double found = columns.column(column)[i];
        const double expected = sample.analogValues.at(analog[column]);
        if (!same(found, expected)) {
            return wordsOf(i, numbered("column", column), found, expected);
        }
    }
    return "";
}

std::string stateDifference(const Columns& columns, std::size_t column, const Comtrade& loaded, std::size_t channel) {
    const std::vector<bool> states = statesOf(columns, column);
    for (std::size_t i = 0; i < states.size(); ++i) {
        if (states[i] != loaded.dat.samples[columns.first + i].binaryValues.at(channel)) {
            return numbered("states of column", column) + numbered(", sample", i);
        }
    }
    return "";
}

} // namespace

std::vector<bool> statesOf(const Columns& columns, std::size_t status) {
    std::vector<bool> states(columns.samples);
    for (const StateChange& change : columns.states.at(status)) {
        std::fill(states.begin() + static_cast<std::ptrdiff_t>(change.sample - columns.first), states.end(),
                  change.state);
    }
    return states;
}

std::string firstDifference(const Columns& columns, const Comtrade& loaded, const Selection& selection) {
    const std::vector<std::size_t> analog =
        channelsOf(selection.allAnalog, selection.analog, loaded.analogChannels.size());
    const std::vector<std::size_t> status =
        channelsOf(selection.allStatus, selection.status, loaded.binaryChannels.size());
    const std::uint64_t present = loaded.dat.samples.size();
    const std::uint64_t first = std::min(selection.first, present);
    const std::uint64_t count = std::min(selection.count, present - first);
    Difference difference;
    difference.compare("samples", columns.samples, count);
    difference.compare("first sample", count == 0 ? first : columns.first, first);
    difference.compare("times", columns.time.size(), count);
    difference.compare("values", columns.analog.size(), count * analog.size());
    difference.compare("factors", columns.a.size(), analog.size());
    difference.compare("offsets", columns.b.size(), analog.size());
    difference.compare("status columns", columns.states.size(), status.size());
    std::string text = difference.text();
    for (std::size_t i = 0; text.empty() && i < count; ++i) {
        text = columnDifference(columns, i, loaded.dat.samples[first + i], analog);
    }
    for (std::size_t column = 0; text.empty() && column < status.size(); ++column) {
        text = stateDifference(columns, column, loaded, status[column]);
    }
    return text;
}

std::string firstDifference(const Columns& found, const Columns& expected) {
    Difference difference;
    difference.compare("first sample", found.first, expected.first);
    difference.compare("samples", found.samples, expected.samples);
    difference.compare("values", found.analog.size(), expected.analog.size());
    difference.compare("status columns", found.states.size(), expected.states.size());
    difference.compare("missing values", missingText(found.missing), missingText(expected.missing));
    std::string text = difference.text();
    for (std::size_t i = 0; text.empty() && i < expected.time.size(); ++i) {
        text = same(found.time.at(i), expected.time[i]) ? "" : wordsOf(i, "time", found.time[i], expected.time[i]);
    }
    for (std::size_t i = 0; text.empty() && i < expected.analog.size(); ++i) {
        text =
            same(found.analog[i], expected.analog[i]) ? "" : wordsOf(i, "value", found.analog[i], expected.analog[i]);
    }
    for (std::size_t i = 0; text.empty() && i < expected.states.size(); ++i) {
        text = statesOf(found, i) == statesOf(expected, i) ? "" : numbered("states of column", i);
    }
    return text;
}

namespace {

std::string sampleDifference(std::size_t index, const OrvComtradeLib::Sample& found,
                             const OrvComtradeLib::Sample& expected) {
    if (!same(found.time, expected.time)) {
        return wordsOf(index, "time", found.time, expected.time);
    }
    for (std::size_t channel = 0; channel < expected.analogValues.size(); ++channel) {
        const double value = found.analogValues.at(channel);
        if (!same(value, expected.analogValues[channel])) {
            return wordsOf(index, numbered("channel", channel), value, expected.analogValues[channel]);
        }
    }
    return found.binaryValues == expected.binaryValues ? "" : numbered("states of sample", index);
}

} // namespace

std::string firstDifference(const Comtrade& found, const Comtrade& expected) {
    Difference difference;
    difference.compare("samples", found.dat.samples.size(), expected.dat.samples.size());
    std::string text = difference.text();
    for (std::size_t i = 0; text.empty() && i < expected.dat.samples.size(); ++i) {
        text = sampleDifference(i, found.dat.samples[i], expected.dat.samples[i]);
    }
    return text;
}

} // namespace orvtest
