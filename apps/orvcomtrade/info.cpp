#include "info.h"

#include "Table.h"
#include "json.h"
#include "loadRecording.h"
#include "printable.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

using namespace OrvComtradeLib;
using OrvComtradeIntake::AnalogOrigin;
using OrvComtradeIntake::PreparedRecording;

namespace {

constexpr double kMicrosecondsPerSecond = 1000000.0;

std::string number(double value) {
    return fmt::format("{:.9g}", value);
}

const char* typeName(Enums::DataFileType type) {
    switch (type) {
    case Enums::Ascii:
        return "ASCII";
    case Enums::Binary:
        return "BINARY";
    case Enums::Binary32:
        return "BINARY32";
    case Enums::Float32:
        return "FLOAT32";
    }
    return "unknown";
}

/// As the device wrote them, whatever the library is given.
std::string typeName(const Recording& recording) {
    return recording.options.asIs ? typeName(recording.comtrade.cfg.dataFileType) : recording.prepared.dataType;
}

struct Rate {
    double rate;
    std::uint64_t lastSample;
};

/// With the numbers of the last samples as the standard counts them. A prepared pair has the number of samples of each
/// rate instead, as the library takes them, and only the last is the total.
std::vector<Rate> ratesOf(const Recording& recording) {
    const Cfg& cfg = recording.comtrade.cfg;
    const std::uint64_t total = recording.comtrade.dat.samples.size();
    const std::size_t count = cfg.samplingRates.size();
    std::vector<Rate> rates;
    std::uint64_t last = 0;
    for (const SamplingRate& entry : cfg.samplingRates) {
        const auto end = static_cast<std::uint64_t>(entry.endSample);
        const bool isLength = !recording.options.asIs && cfg.samplingRateKnown && rates.size() + 1 < count;
        last = isLength ? std::min(last + end, total) : end;
        rates.push_back({entry.rate, last});
    }
    return rates;
}

std::string ratesText(const Recording& recording) {
    if (!recording.comtrade.cfg.samplingRateKnown) {
        return "not fixed, the data file gives the times";
    }
    const std::vector<Rate> rates = ratesOf(recording);
    std::string text;
    for (const Rate& entry : rates) {
        if (!text.empty()) {
            text += ", then ";
        }
        text += number(entry.rate) + " Hz";
        if (rates.size() > 1) {
            text += fmt::format(" to sample {}", entry.lastSample);
        }
    }
    return text;
}

std::uint64_t samplesDeclared(const Recording& recording) {
    return recording.options.asIs ? recording.comtrade.cfg.lastSampleNumber : recording.prepared.samplesDeclared;
}

std::string samplesText(const Recording& recording) {
    const std::size_t read = recording.comtrade.dat.samples.size();
    const std::uint64_t declared = samplesDeclared(recording);
    return read == declared ? fmt::format("{}", read) : fmt::format("{} of {} declared", read, declared);
}

/// Side and ratio as the channel's line declares them, whatever side its values were brought to.
AnalogOrigin originOf(const Recording& recording, const AnalogChannelConfig& channel) {
    if (!recording.options.asIs) {
        return recording.prepared.analog.at(static_cast<std::size_t>(channel.index));
    }
    AnalogOrigin origin;
    origin.unit = channel.unit;
    origin.side = channel.secondaryValues ? OrvComtradeIntake::Side::Secondary : OrvComtradeIntake::Side::Primary;
    origin.primary = channel.primary;
    origin.secondary = channel.secondary;
    return origin;
}

/// Side that a, b and unit stand for; of a recording as it is, the declared one.
const char* tableSide(const Recording& recording, const AnalogChannelConfig& channel) {
    return recording.options.asIs ? sideName(originOf(recording, channel).side)
                                  : sideName(recording, static_cast<std::size_t>(channel.index));
}

std::string ratioText(const AnalogOrigin& origin) {
    return number(origin.primary) + "/" + number(origin.secondary);
}

std::string clockText(const std::optional<OrvComtradeIntake::Instant>& instant) {
    return instant ? instant->text() : "not given";
}

/// What only the intake keeps.
void printTimes(const PreparedRecording& prepared, Output& out) {
    out.print("Start           {}\n", clockText(prepared.start));
    out.print("Trigger         {}\n", clockText(prepared.trigger));
    if (!prepared.timeCode.empty()) {
        out.print("Time code       {}\n", printable(prepared.timeCode));
    }
}

void printSummary(const Recording& recording, Output& out) {
    const Cfg& cfg = recording.comtrade.cfg;
    out.print("Station         {}\n", printable(stationText(cfg.stationName)));
    out.print("Recorder        {}\n", printable(stationText(cfg.recorderId)));
    out.print("Revision        {}\n", cfg.revisionYear);
    out.print("Data type       {}\n", typeName(recording));
    if (!recording.options.asIs) {
        printTimes(recording.prepared, out);
    }
    out.print("Sampling rate   {}\n", ratesText(recording));
    out.print("Line frequency  {} Hz\n", number(cfg.lineFrequency));
    out.print("Duration        {} s\n", number(recording.comtrade.duration));
    out.print("Samples         {}\n", samplesText(recording));
}

void printAnalogChannels(const Recording& recording, Output& out) {
    const auto& channels = recording.comtrade.cfg.analogChannelConfigs;
    out.print("\nAnalog channels: {}\n", channels.size());
    if (channels.empty()) {
        return;
    }
    using Align = Table::Align;
    Table table({{"No", Align::Right},
                 {"Name", Align::Left},
                 {"Unit", Align::Left},
                 {"a", Align::Right},
                 {"b", Align::Right},
                 {"Skew, us", Align::Right},
                 {"Side", Align::Left},
                 {"Ratio", Align::Right}});
    for (const AnalogChannelConfig& channel : channels) {
        table.addRow({fmt::format("{}", channel.index + 1), printable(channel.name()), printable(channel.unit),
                      number(channel.a), number(channel.b), number(channel.skew * kMicrosecondsPerSecond),
                      tableSide(recording, channel), ratioText(originOf(recording, channel))});
    }
    out.write(table.text());
}

void printStatusChannels(const Cfg& cfg, Output& out) {
    out.print("\nStatus channels: {}\n", cfg.binaryChannelConfigs.size());
    if (cfg.binaryChannelConfigs.empty()) {
        return;
    }
    Table table({{"No", Table::Align::Right}, {"Name", Table::Align::Left}, {"Normal", Table::Align::Right}});
    for (const BinaryChannelConfig& channel : cfg.binaryChannelConfigs) {
        table.addRow(
            {fmt::format("{}", channel.index + 1), printable(channel.name()), fmt::format("{}", channel.normalState)});
    }
    out.write(table.text());
}

Json channelValue(const BaseChannelConfig& channel) {
    Json value;
    value["number"] = channel.index + 1;
    value["name"] = channel.name();
    value["id"] = channel.channelId;
    value["phase"] = channel.phase;
    value["component"] = channel.circuitComponent;
    return value;
}

Json analogValue(const Recording& recording, const AnalogChannelConfig& channel) {
    const AnalogOrigin origin = originOf(recording, channel);
    Json value = channelValue(channel);
    value["unit"] = channel.unit;
    value["side"] = tableSide(recording, channel);
    value["a"] = channel.a;
    value["b"] = channel.b;
    value["skew"] = channel.skew;
    value["min"] = channel.min;
    value["max"] = channel.max;
    value["recordedUnit"] = origin.unit;
    value["recordedSide"] = sideName(origin.side);
    value["primary"] = origin.primary;
    value["secondary"] = origin.secondary;
    return value;
}

Json statusValue(const BinaryChannelConfig& channel) {
    Json value = channelValue(channel);
    value["normal"] = channel.normalState;
    return value;
}

Json ratesValue(const Recording& recording) {
    Json rates = Json::array();
    for (const Rate& entry : ratesOf(recording)) {
        rates.push_back({{"rate", entry.rate}, {"endSample", entry.lastSample}});
    }
    return rates;
}

void addIntakeValues(const PreparedRecording& prepared, Json& line) {
    line["encoding"] = prepared.encoding;
    line["start"] = instantValue(prepared.start);
    line["trigger"] = instantValue(prepared.trigger);
    line["timeCode"] = textValue(prepared.timeCode);
    line["localCode"] = textValue(prepared.localCode);
    line["timeQuality"] = textValue(prepared.timeQuality);
    line["leapSecond"] = textValue(prepared.leapSecond);
    line["findings"] = prepared.findings.size();
}

Json infoLine(const Entry& entry, const Recording& recording) {
    const Cfg& cfg = recording.comtrade.cfg;
    Json line = recordingLine(entry.path, true);
    line["station"] = stationText(cfg.stationName);
    line["recorder"] = stationText(cfg.recorderId);
    line["revision"] = cfg.revisionYear;
    line["dataType"] = typeName(recording);
    line["samplingRateKnown"] = cfg.samplingRateKnown;
    line["samplingRates"] = ratesValue(recording);
    line["lineFrequency"] = cfg.lineFrequency;
    line["duration"] = recording.comtrade.duration;
    line["samples"] = recording.comtrade.dat.samples.size();
    line["samplesDeclared"] = samplesDeclared(recording);
    if (!recording.options.asIs) {
        addIntakeValues(recording.prepared, line);
    }
    line["analog"] = Json::array();
    for (const AnalogChannelConfig& channel : cfg.analogChannelConfigs) {
        line["analog"].push_back(analogValue(recording, channel));
    }
    line["status"] = Json::array();
    for (const BinaryChannelConfig& channel : cfg.binaryChannelConfigs) {
        line["status"].push_back(statusValue(channel));
    }
    return line;
}

} // namespace

void printInfo(const Entry& entry, const Request& request, Job& out) {
    Recording recording;
    loadRecording(recording, entry.path, request.load);
    if (request.json) {
        writeLine(infoLine(entry, recording), out);
        return;
    }
    if (request.several()) {
        out.print("Recording       {}\n", printable(entry.path));
    }
    printSummary(recording, out);
    printAnalogChannels(recording, out);
    printStatusChannels(recording.comtrade.cfg, out);
    if (request.several()) {
        out.put('\n');
    }
}
