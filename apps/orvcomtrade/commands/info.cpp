#include "commands/info.h"

#include "commands/commonFlags.h"
#include "commands/loadEntry.h"
#include "input/channelNames.h"
#include "output/Failure.h"
#include "output/Table.h"
#include "output/findingText.h"
#include "output/json.h"
#include "output/printable.h"
#include "output/sideName.h"

#include <fmt/format.h>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

using OrvComtradeIntake::AnalogInfo;
using OrvComtradeIntake::Finding;
using OrvComtradeIntake::Header;
using OrvComtradeIntake::RateInfo;
using OrvComtradeIntake::Side;
using OrvComtradeIntake::StatusInfo;

namespace {

constexpr double kSecondsPerMicrosecond = 0.000001;

std::string number(double value) {
    return fmt::format("{:.9g}", value + 0.0); // no negative zero
}

std::string ratesText(const Header& header) {
    if (header.timesAreStamped()) {
        return "not fixed, the data file gives the times";
    }
    std::string text;
    for (const RateInfo& entry : header.rates) {
        if (!text.empty()) {
            text += ", then ";
        }
        text += number(entry.rate) + " Hz";
        if (header.rates.size() > 1) {
            text += fmt::format(" to sample {}", entry.endSample);
        }
    }
    return text;
}

std::string samplesText(const Header& header) {
    return header.samples == header.samplesDeclared
               ? fmt::format("{}", header.samples)
               : fmt::format("{} of {} declared", header.samples, header.samplesDeclared);
}

std::string ratioText(const AnalogInfo& channel) {
    return number(channel.primary) + "/" + number(channel.secondary);
}

std::string clockText(const std::optional<OrvComtradeIntake::Instant>& instant) {
    return instant ? instant->text() : "unknown";
}

void printSummary(const Recording& recording, Output& out) {
    const Header& header = recording.header;
    out.print("Station         {}\n", printable(header.station));
    out.print("Recorder        {}\n", printable(header.recorder));
    out.print("Revision        {}\n", header.revision);
    out.print("Data type       {}\n", typeWord(header.dataType));
    out.print("Start           {}\n", clockText(header.start));
    out.print("Trigger         {}\n", clockText(header.trigger));
    if (!header.timeCode.empty()) {
        out.print("Time code       {}\n", printable(header.timeCode));
    }
    out.print("Sampling rate   {}\n", ratesText(header));
    out.print("Line frequency  {} Hz\n", number(header.lineFrequency));
    out.print("Duration        {} s\n", number(recording.reader->duration()));
    out.print("Samples         {}\n", samplesText(header));
}

/// With a column for the side of the values that other commands give, where the user asks for one.
void printAnalogChannels(const Recording& recording, bool hasSideOfValues, Output& out) {
    const std::vector<AnalogInfo>& channels = recording.header.analog;
    out.print("\nAnalog channels: {}\n", channels.size());
    if (channels.empty()) {
        return;
    }
    using Align = Table::Align;
    std::vector<Table::Column> columns = {{"No", Align::Right},  {"Name", Align::Left},  {"Unit", Align::Left},
                                          {"a", Align::Right},   {"b", Align::Right},    {"Skew, us", Align::Right},
                                          {"Side", Align::Left}, {"Ratio", Align::Right}};
    if (hasSideOfValues) {
        columns.push_back({"Values on", Align::Left});
    }
    const auto forEachRow = [&](const std::function<void(const Table::Row&)>& onRow) {
        for (std::size_t i = 0; i < channels.size(); ++i) {
            const AnalogInfo& channel = channels[i];
            Table::Row row = {fmt::format("{}", i + 1),
                              printable(clipped(analogName(channel, channel.unit))),
                              printable(clipped(channel.unit)),
                              number(channel.a),
                              number(channel.b),
                              number(channel.skew),
                              sideName(channel.side),
                              ratioText(channel)};
            if (hasSideOfValues) {
                row.emplace_back(sideName(recording.analog.at(i).side));
            }
            onRow(row);
        }
    };
    writeTable(Table(columns), forEachRow, [&out](std::string_view line) { out.write(line); });
}

void printStatusChannels(const std::vector<StatusInfo>& channels, Output& out) {
    out.print("\nStatus channels: {}\n", channels.size());
    if (channels.empty()) {
        return;
    }
    const Table table({{"No", Table::Align::Right}, {"Name", Table::Align::Left}, {"Normal", Table::Align::Right}});
    const auto forEachRow = [&channels](const std::function<void(const Table::Row&)>& onRow) {
        for (std::size_t i = 0; i < channels.size(); ++i) {
            onRow({fmt::format("{}", i + 1), printable(clipped(statusName(channels[i]))),
                   fmt::format("{}", channels[i].normalState)});
        }
    };
    writeTable(table, forEachRow, [&out](std::string_view line) { out.write(line); });
}

template <class Info> Json channelValue(std::size_t position, const std::string& name, const Info& channel) {
    Json value = Json::object();
    value["number"] = position + 1;
    value["name"] = name;
    value["id"] = channel.id;
    value["phase"] = channel.phase;
    value["component"] = channel.component;
    return value;
}

Json analogValue(const Recording& recording, std::size_t position) {
    const AnalogInfo& channel = recording.header.analog[position];
    const AnalogValues& values = recording.analog.at(position);
    Json value = channelValue(position, analogName(channel, channel.unit), channel);
    value["unit"] = channel.unit;
    value["side"] = sideName(channel.side);
    value["a"] = channel.a;
    value["b"] = channel.b;
    value["skew"] = channel.skew * kSecondsPerMicrosecond;
    value["min"] = channel.min;
    value["max"] = channel.max;
    value["primary"] = channel.primary;
    value["secondary"] = channel.secondary;
    value["valueUnit"] = values.unit;
    value["valueSide"] = sideName(values.side);
    return value;
}

Json analogValues(const Recording& recording) {
    Json values = Json::array();
    for (std::size_t i = 0; i < recording.header.analog.size(); ++i) {
        values.push_back(analogValue(recording, i));
    }
    return values;
}

Json statusValues(const std::vector<StatusInfo>& channels) {
    Json values = Json::array();
    for (std::size_t i = 0; i < channels.size(); ++i) {
        Json value = channelValue(i, statusName(channels[i]), channels[i]);
        value["normal"] = channels[i].normalState;
        values.push_back(value);
    }
    return values;
}

Json ratesValue(const Header& header) {
    Json rates = Json::array();
    for (const RateInfo& entry : header.rates) {
        rates.push_back({{"rate", entry.rate}, {"endSample", entry.endSample}});
    }
    return rates;
}

/// Throws a Failure where the values could not be read to the end, so that the count would be another.
Json countOf(const std::vector<Finding>* findings) {
    if (findings == nullptr) {
        return {};
    }
    for (const Finding& finding : *findings) {
        if (finding.code == "unreadable" || finding.code == "file-changed") {
            throw Failure(kRecordingProblem, placeText(finding.place) + ": " + findingSentence(finding));
        }
    }
    return findings->size();
}

Json infoLine(const Entry& entry, const Recording& recording) {
    const Header& header = recording.header;
    Json line = recordingLine(entry.path, true);
    line["station"] = header.station;
    line["recorder"] = header.recorder;
    line["revision"] = header.revision;
    line["dataType"] = typeWord(header.dataType);
    line["samplingRateKnown"] = !header.timesAreStamped();
    line["samplingRates"] = ratesValue(header);
    line["lineFrequency"] = header.lineFrequency;
    line["duration"] = recording.reader->duration();
    line["samples"] = header.samples;
    line["samplesDeclared"] = header.samplesDeclared;
    line["encoding"] = textValue(header.encoding);
    line["start"] = instantValue(header.start);
    line["trigger"] = instantValue(header.trigger);
    line["timeCode"] = textValue(header.timeCode);
    line["localCode"] = textValue(header.localCode);
    line["timeQuality"] = textValue(header.timeQuality);
    line["leapSecond"] = textValue(header.leapSecond);
    line["findings"] = countOf(recording.reader->findings());
    line["analog"] = analogValues(recording);
    line["status"] = statusValues(header.status);
    return line;
}

void printInfo(const Entry& entry, const Request& request, Job& out) {
    const Recording recording = loadEntry(entry, request, out);
    if (request.json) {
        writeLine(infoLine(entry, recording), out);
        return;
    }
    if (request.several()) {
        out.print("Recording       {}\n", printable(entry.path));
    }
    printSummary(recording, out);
    printAnalogChannels(recording, request.load.intake.side != Side::Recorded, out);
    printStatusChannels(recording.header.status, out);
    if (request.several()) {
        out.put('\n');
    }
}

class Info : public Command {
public:
    Info() : Command(describe()) {
        add(readingFlags(request));
        add(forceFlag(request));
    }

protected:
    void perform(const Entry& entry, Job& out) override { printInfo(entry, request, out); }

private:
    static Description describe() {
        return {"info",
                "Print what each recording is and which channels it has",
                {"Station, recorder, revision, data type, times of the first sample and of the trigger, sampling "
                 "rates, duration, number of samples, and tables of the analog and status channels. Units, factors, "
                 "sides and ratios are those that the file records. With --side a further column shows the side of the "
                 "values that other commands give."},
                {{"What a recording holds", "orvcomtrade info feeder_earth_fault.cfg"}}};
    }
};

} // namespace

std::unique_ptr<Command> makeInfo() {
    return std::make_unique<Info>();
}
