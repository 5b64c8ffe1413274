#include "events.h"

#include "Table.h"
#include "clockTime.h"
#include "json.h"
#include "loadRecording.h"
#include "printable.h"

#include <fmt/format.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

using namespace OrvComtradeLib;
using OrvComtradeIntake::Instant;

namespace {

/// One status channel that changes.
struct Event {
    double time; ///< seconds
    std::size_t channel;
    bool state; ///< new
};

/// Read from the samples: the library's status views plot channel 0 by contract.
std::vector<Event> eventsOf(const Comtrade& recording) {
    const std::vector<Sample>& samples = recording.dat.samples;
    std::vector<Event> events;
    for (std::size_t i = 1; i < samples.size(); ++i) {
        const std::vector<bool>& before = samples[i - 1].binaryValues;
        const std::vector<bool>& now = samples[i].binaryValues;
        if (now == before) {
            continue;
        }
        for (std::size_t channel = 0; channel < now.size(); ++channel) {
            if (now[channel] != before.at(channel)) {
                events.push_back({samples[i].time, channel, now[channel]});
            }
        }
    }
    return events;
}

std::string clockCell(const std::optional<Instant>& start, double time) {
    return start ? clockText(instantAfter(*start, time)) : std::string();
}

void printTable(const Recording& recording, const std::vector<Event>& events, Output& out) {
    using Align = Table::Align;
    Table table({{"Time, s", Align::Right},
                 {"Date and time", Align::Left},
                 {"No", Align::Right},
                 {"Channel", Align::Left},
                 {"From", Align::Right},
                 {"To", Align::Right}});
    for (const Event& event : events) {
        table.addRow({fmt::format("{}", event.time), clockCell(recording.prepared.start, event.time),
                      fmt::format("{}", event.channel + 1),
                      printable(recording.comtrade.cfg.binaryChannelConfigs.at(event.channel).name()),
                      event.state ? "0" : "1", event.state ? "1" : "0"});
    }
    out.write(table.text());
}

Json eventValue(const Recording& recording, const Event& event) {
    Json value;
    value["time"] = event.time;
    value["clock"] =
        recording.prepared.start ? instantValue(instantAfter(*recording.prepared.start, event.time)) : Json();
    value["number"] = event.channel + 1;
    value["channel"] = recording.comtrade.cfg.binaryChannelConfigs.at(event.channel).name();
    value["from"] = event.state ? 0 : 1;
    value["to"] = event.state ? 1 : 0;
    return value;
}

/// Event by event: there may be more than fit as one value.
void printLine(const Entry& entry, const Recording& recording, const std::vector<Event>& events, Output& out) {
    Json line = recordingLine(entry.path, true);
    line["start"] = instantValue(recording.prepared.start);
    line["timeCode"] = textValue(recording.prepared.timeCode);
    openArray(line, "events", out);
    const char* separator = "";
    for (const Event& event : events) {
        out.write(separator);
        separator = ",";
        out.write(lineText(eventValue(recording, event)));
    }
    closeArray(out);
}

} // namespace

void printEvents(const Entry& entry, const Request& request, Job& out) {
    Recording recording;
    loadRecording(recording, entry.path, request.load);
    const std::vector<Event> events = eventsOf(recording.comtrade);
    if (request.json) {
        printLine(entry, recording, events, out);
        return;
    }
    if (request.several()) {
        out.print("# {}\n", printable(entry.path));
    }
    if (events.empty()) {
        out.write("No status channel changes.\n");
    } else {
        printTable(recording, events, out);
    }
}
