#include "commands/events.h"

#include "commands/loadEntry.h"
#include "input/channelNames.h"
#include "output/Table.h"
#include "output/clockTime.h"
#include "output/json.h"
#include "output/printable.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

using OrvComtradeIntake::Columns;
using OrvComtradeIntake::Instant;
using OrvComtradeIntake::StateChange;

namespace {

/// One status channel that changes.
struct Event {
    std::uint64_t sample; ///< 0-based first one with the new state
    std::size_t channel;
    bool state;  ///< new
    double time; ///< seconds
};

bool isBefore(const Event& left, const Event& right) {
    return left.sample != right.sample ? left.sample < right.sample : left.channel < right.channel;
}

/// In the order of time.
std::vector<Event> eventsOf(const Recording& recording) {
    OrvComtradeIntake::Selection states;
    states.allAnalog = false;
    const Columns columns = recording.reader->columns(states);
    std::vector<Event> events;
    for (std::size_t channel = 0; channel < columns.states.size(); ++channel) {
        const std::vector<StateChange>& changes = columns.states[channel];
        for (std::size_t i = 1; i < changes.size(); ++i) {
            events.push_back({changes[i].sample, channel, changes[i].state, columns.time.at(changes[i].sample)});
        }
    }
    std::sort(events.begin(), events.end(), isBefore);
    return events;
}

std::string nameOf(const Recording& recording, const Event& event) {
    return statusName(recording.header.status.at(event.channel));
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
        table.addRow({fmt::format("{}", event.time), clockCell(recording.header.start, event.time),
                      fmt::format("{}", event.channel + 1), printable(nameOf(recording, event)),
                      event.state ? "0" : "1", event.state ? "1" : "0"});
    }
    out.write(table.text());
}

Json eventValue(const Recording& recording, const Event& event) {
    const std::optional<Instant>& start = recording.header.start;
    Json value;
    value["time"] = event.time;
    value["clock"] = start ? instantValue(instantAfter(*start, event.time)) : Json();
    value["number"] = event.channel + 1;
    value["channel"] = nameOf(recording, event);
    value["from"] = event.state ? 0 : 1;
    value["to"] = event.state ? 1 : 0;
    return value;
}

/// Event by event: there may be more than fit as one value.
void printLine(const Entry& entry, const Recording& recording, const std::vector<Event>& events, Output& out) {
    Json line = recordingLine(entry.path, true);
    line["start"] = instantValue(recording.header.start);
    line["timeCode"] = textValue(recording.header.timeCode);
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
    const Recording recording = loadEntry(entry, request, out);
    const std::vector<Event> events = eventsOf(recording);
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
