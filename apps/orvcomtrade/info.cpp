#include "info.h"

#include "Table.h"
#include "json.h"
#include "loadRecording.h"
#include "printable.h"

#include <fmt/format.h>

#include <cstddef>
#include <cstdint>
#include <string>

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

std::string ratesText(const Cfg& cfg) {
    if (!cfg.samplingRateKnown) {
        return "not fixed, the data file gives the times";
    }
    std::string text;
    for (const SamplingRate& entry : cfg.samplingRates) {
        if (!text.empty()) {
            text += ", then ";
        }
        text += number(entry.rate) + " Hz";
        if (cfg.samplingRates.size() > 1) {
            text += fmt::format(" to sample {}", entry.endSample);
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

void printSummary(const Recording& recording, Output& out) {
    const Cfg& cfg = recording.comtrade.cfg;
    out.print("Station         {}\n", printable(stationText(cfg.stationName)));
    out.print("Recorder        {}\n", printable(stationText(cfg.recorderId)));
    out.print("Revision        {}\n", cfg.revisionYear);
    out.print("Data type       {}\n", typeName(recording));
    out.print("Sampling rate   {}\n", ratesText(cfg));
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

Json analogValue(const Recording& recording, const AnalogChannelConfig& channel) {
    const AnalogOrigin origin = originOf(recording, channel);
    Json value;
    value["number"] = channel.index + 1;
    value["name"] = channel.name();
    value["id"] = channel.channelId;
    value["phase"] = channel.phase;
    value["component"] = channel.circuitComponent;
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
    Json value;
    value["number"] = channel.index + 1;
    value["name"] = channel.name();
    value["id"] = channel.channelId;
    value["phase"] = channel.phase;
    value["component"] = channel.circuitComponent;
    value["normal"] = channel.normalState;
    return value;
}

Json ratesValue(const Cfg& cfg) {
    Json rates = Json::array();
    for (const SamplingRate& entry : cfg.samplingRates) {
        rates.push_back({{"rate", entry.rate}, {"endSample", entry.endSample}});
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
    line["samplingRates"] = ratesValue(cfg);
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
