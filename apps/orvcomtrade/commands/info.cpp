#include "commands/info.h"

#include "commands/channelValue.h"
#include "commands/commonFlags.h"
#include "commands/loadEntry.h"
#include "input/channelNames.h"
#include "input/problemIn.h"
#include "output/Failure.h"
#include "output/Table.h"
#include "output/json.h"
#include "output/printable.h"
#include "output/sideName.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <map>
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

std::string number(double value) {
    return fmt::format("{:.9g}", value + 0.0); // no negative zero
}

constexpr std::size_t kRatesShown = 6;

std::string longRates(const Header& header) {
    if (header.timesAreStamped()) {
        return "not fixed, the data file gives the times";
    }
    std::string text;
    const std::vector<RateInfo> rates = header.ratesInUse();
    const std::size_t count = rates.size();
    for (std::size_t i = 0; i < count; ++i) {
        if (i == kRatesShown && count > kRatesShown + 1) {
            return text + fmt::format(", then {} more rates to sample {}", count - i, rates.back().endSample);
        }
        const RateInfo& entry = rates[i];
        if (!text.empty()) {
            text += ", then ";
        }
        text += number(entry.rate) + " Hz";
        if (count > 1) {
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

std::string knownInstant(const std::optional<OrvComtradeIntake::Instant>& instant) {
    return instant ? instant->text() : "unknown";
}

/// What the code of the clock's quality means (IEEE C37.111-2013, 7.4.12, after C37.118).
std::string timeQualityText(const std::string& code) {
    static const std::map<std::string, const char*> meanings = {{"0", "locked"},
                                                                {"1", "within 1 ns"},
                                                                {"2", "within 10 ns"},
                                                                {"3", "within 100 ns"},
                                                                {"4", "within 1 us"},
                                                                {"5", "within 10 us"},
                                                                {"6", "within 100 us"},
                                                                {"7", "within 1 ms"},
                                                                {"8", "within 10 ms"},
                                                                {"9", "within 100 ms"},
                                                                {"A", "within 1 s"},
                                                                {"B", "within 10 s"},
                                                                {"F", "failed, times are not reliable"}};
    std::string upper = code;
    std::transform(upper.begin(), upper.end(), upper.begin(), [](char digit) {
        return digit >= 'a' && digit <= 'f' ? static_cast<char>(digit - 'a' + 'A') : digit;
    });
    const auto meaning = meanings.find(upper);
    return printable(code) + (meaning == meanings.end() ? "" : fmt::format(" (clock {})", meaning->second));
}

/// IEEE C37.111-2013, 7.4.12.
std::string leapSecondText(const std::string& code) {
    static const std::map<std::string, const char*> meanings = {
        {"1", "added in this recording"}, {"2", "left out in this recording"}, {"3", "not known to the clock"}};
    const auto meaning = meanings.find(code);
    return printable(code) + (meaning == meanings.end() ? "" : fmt::format(" ({})", meaning->second));
}

void printSummary(const Recording& recording, Output& out) {
    const Header& header = recording.header;
    out.print("Station         {}\n", printable(header.station));
    out.print("Recorder        {}\n", printable(header.recorder));
    out.print("Revision        {}\n", header.revision);
    out.print("Data type       {}\n", typeWord(header.dataType));
    out.print("Start           {}\n", knownInstant(header.start));
    out.print("Trigger         {}\n", knownInstant(header.trigger));
    if (!header.timeCode.empty()) {
        out.print("Time code       {}\n", printable(header.timeCode));
    }
    if (!header.timeQuality.empty()) {
        out.print("Time quality    {}\n", timeQualityText(header.timeQuality));
    }
    if (!header.leapSecond.empty() && header.leapSecond != "0") {
        out.print("Leap second     {}\n", leapSecondText(header.leapSecond));
    }
    out.print("Sampling rate   {}\n", longRates(header));
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

/// A text that comes with the recording, line by line.
void printSideText(const char* title, const std::string& text, Output& out) {
    if (text.empty()) {
        return;
    }
    out.print("\n{}\n", title);
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        const std::size_t length = end - begin - (end > begin && text[end - 1] == '\r' ? 1 : 0);
        out.print("  {}\n", printable(text.substr(begin, length)));
        begin = end + 1;
    }
}

Json analogValues(const Recording& recording) {
    Json values = Json::array();
    for (std::size_t i = 0; i < recording.header.analog.size(); ++i) {
        values.push_back(analogChannelValue(recording, i));
    }
    return values;
}

Json statusValues(const Recording& recording) {
    Json values = Json::array();
    for (std::size_t i = 0; i < recording.header.status.size(); ++i) {
        values.push_back(statusChannelValue(recording.header.status[i], i));
    }
    return values;
}

/// Throws a Failure where the values could not be read to the end, so that the count would be another.
Json countOf(const std::vector<Finding>* findings) {
    if (findings == nullptr) {
        return {};
    }
    if (const std::string problem = interruptionIn(*findings); !problem.empty()) {
        throw Failure(kRecordingProblem, problem);
    }
    return findings->size();
}

/// Without `hasFindings` no look at every value is taken to count them.
Json infoLine(const Entry& entry, const Recording& recording, bool hasFindings) {
    const Header& header = recording.header;
    Json line = recordingLine(entry.path, true);
    setRecorded(line, header, recording.reader->duration());
    line["findings"] = hasFindings ? countOf(recording.reader->findings()) : Json();
    line["hdr"] = textValue(header.hdr);
    line["inf"] = textValue(header.inf);
    line["analog"] = analogValues(recording);
    line["status"] = statusValues(recording);
    return line;
}

/// What --get may ask for: the members of the object of --json.
const std::vector<std::string> kFields = {
    "path",          "station",       "recorder", "revision",  "dataType",        "samplingRateKnown",
    "samplingRates", "lineFrequency", "duration", "samples",   "samplesDeclared", "encoding",
    "start",         "trigger",       "timeCode", "localCode", "timeQuality",     "leapSecond",
    "findings",      "hdr",           "inf",      "analog",    "status"};

bool isFindings(const std::vector<std::string>& fields) {
    return std::find(fields.begin(), fields.end(), "findings") != fields.end();
}

/// A text as it is, what is not known as nothing, the rest as JSON.
std::string fieldText(const Json& value) {
    if (value.is_null()) {
        return {};
    }
    return value.is_string() ? printable(value.get<std::string>()) : lineText(value);
}

/// On a line, tabs between them.
void printFields(const Json& line, const std::vector<std::string>& fields, Output& out) {
    for (const std::string& field : fields) {
        out.write(&field == &fields.front() ? "" : "\t");
        out.write(fieldText(line.at(field)));
    }
    out.put('\n');
}

void printInfo(const Entry& entry, const Request& request, const std::vector<std::string>& fields, Job& out) {
    const Recording recording = loadEntry(entry, request, out);
    if (request.json) {
        writeLine(infoLine(entry, recording, true), out);
        return;
    }
    if (!fields.empty()) {
        printFields(infoLine(entry, recording, isFindings(fields)), fields, out);
        return;
    }
    if (request.several()) {
        out.print("Recording       {}\n", shownPath(entry.path));
    }
    printSummary(recording, out);
    printAnalogChannels(recording, request.load.intake.side != Side::Recorded, out);
    printStatusChannels(recording.header.status, out);
    printSideText("Header file (.hdr)", recording.header.hdr, out);
    printSideText("Information file (.inf)", recording.header.inf, out);
    if (request.several()) {
        out.put('\n');
    }
}

class Info : public Command {
public:
    Info() : Command(_describe()) {
        Flag get{"--get", "FIELD", "Print only this (may be given again)", [this](const std::string& field) {
                     _fields.push_back(field);
                     const bool isKnown = std::find(kFields.begin(), kFields.end(), field) != kFields.end();
                     return isKnown ? std::string() : problemOfChoice(field, kFields);
                 }};
        get.repeats = true;
        add(std::move(get)
                .of(ValueKind::Choice, kFields)
                .with("FIELD is a member of the object that --json prints. Each recording is one line; several fields "
                      "have tabs between them."));
        add(forceFlag(request));
        add(readingFlags(request));
    }

protected:
    void perform(const Entry& entry, Job& out) override { printInfo(entry, request, _fields, out); }

private:
    static Description _describe() {
        return {"info",
                "Print what each recording is and which channels it has",
                {"Station, recorder, revision, data type, times of the first sample and of the trigger, sampling "
                 "rates, duration, number of samples, and tables of the analog and status channels. Units, factors, "
                 "sides and ratios are those in the file. With --side, another column shows the side of the values "
                 "that other commands print."},
                {{"What a recording holds", "orvcomtrade info feeder_earth_fault.cfg"},
                 {"From which station each recording is", "orvcomtrade info recordings --get path --get station"}}};
    }

    std::vector<std::string> _fields;
};

} // namespace

std::unique_ptr<Command> makeInfo() {
    return std::make_unique<Info>();
}
