#include "commands/events.h"

#include "commands/commonFlags.h"
#include "commands/loadEntry.h"
#include "input/channelNames.h"
#include "input/eventsOf.h"
#include "output/Table.h"
#include "output/TimeScale.h"
#include "output/clockTime.h"
#include "output/json.h"
#include "output/printable.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

using OrvComtradeIntake::Instant;

namespace {

bool hasEvents(const Recording& recording) {
    bool has = false;
    forEachEvent(recording, [&has](const Event& /*event*/) {
        has = true;
        return false;
    });
    return has;
}

/// Of the status channels, as they are printed with each event.
std::vector<std::string> namesIn(const Recording& recording) {
    std::vector<std::string> names;
    for (const OrvComtradeIntake::StatusInfo& channel : recording.header.status) {
        names.push_back(clipped(statusName(channel)));
    }
    return names;
}

/// By the clock that the scale has, else by the recorder's.
std::string clockOf(const Recording& recording, const TimeScale& scale, const Event& event) {
    if (scale.isClock()) {
        return scale.text(event.time);
    }
    const std::optional<Instant> instant = instantOf(recording, event);
    return instant ? clockText(*instant) : std::string();
}

void printTable(const Recording& recording, const TimeScale& scale, Output& out) {
    using Align = Table::Align;
    const Table table({{"Time, s", Align::Right},
                       {"Date and time", Align::Left},
                       {"No", Align::Right},
                       {"Channel", Align::Left},
                       {"From", Align::Right},
                       {"To", Align::Right}});
    std::vector<std::string> names = namesIn(recording);
    std::transform(names.begin(), names.end(), names.begin(), printable);
    const auto forEachRow = [&](const std::function<void(const Table::Row&)>& onRow) {
        forEachEvent(recording, [&](const Event& event) {
            onRow({fmt::format("{}", scale.shown(event.time)), clockOf(recording, scale, event),
                   fmt::format("{}", event.channel + 1), names[event.channel], event.state ? "0" : "1",
                   event.state ? "1" : "0"});
            return true;
        });
    };
    writeTable(table, forEachRow, [&out](std::string_view line) { out.write(line); });
}

Json eventValue(const Recording& recording, const TimeScale& scale, const std::vector<std::string>& names,
                const Event& event) {
    Json value = Json::object();
    value["time"] = scale.shown(event.time);
    value["clock"] = scale.isClock() ? textValue(scale.text(event.time)) : instantValue(instantOf(recording, event));
    value["number"] = event.channel + 1;
    value["channel"] = names[event.channel];
    value["from"] = event.state ? 0 : 1;
    value["to"] = event.state ? 1 : 0;
    return value;
}

void writeEvents(const Recording& recording, const TimeScale& scale, Output& out) {
    const std::vector<std::string> names = namesIn(recording);
    const char* separator = "";
    forEachEvent(recording, [&](const Event& event) {
        out.write(separator);
        separator = ",";
        out.write(lineText(eventValue(recording, scale, names, event)));
        return true;
    });
}

/// Event by event: there may be more than fit as one value. Where the data can't be read to their end, the line ends
/// all the same, and that which says so is one of its own.
void printLine(const Entry& entry, const Recording& recording, const TimeScale& scale, Output& out) {
    Json line = recordingLine(entry.path, true);
    line["start"] = instantValue(recording.header.start);
    line["timeCode"] = textValue(recording.header.timeCode);
    openArray(line, "events", out);
    try {
        writeEvents(recording, scale, out);
    } catch (const Stopped&) { // nobody reads
        throw;
    } catch (...) {
        closeArray(out);
        throw;
    }
    closeArray(out);
}

void printEvents(const Entry& entry, const Request& request, TimeBase base, Job& out) {
    const Recording recording = loadEntry(entry, request, out);
    const TimeScale scale(recording.header, base, entry.path);
    if (request.json) {
        printLine(entry, recording, scale, out);
        return;
    }
    if (request.several()) {
        out.print("# {}\n", shownPath(entry.path));
    }
    if (hasEvents(recording)) {
        printTable(recording, scale, out);
    } else {
        out.write("No status channel changes.\n");
    }
}

class Events : public Command {
public:
    Events() : Command(_describe()) {
        add(timeFlag(_base).with("Seconds count from the first sample or from the trigger. Date and time are by the "
                                 "recorder's clock; absolute has its offset from UTC, utc is in UTC."));
        add(forceFlag(request));
        add(readingFlags(request));
    }

protected:
    void perform(const Entry& entry, Job& out) override { printEvents(entry, request, _base, out); }

private:
    static Description _describe() {
        return {"events",
                "Print the changes of the status channels of each recording",
                {"One line for each change of a status channel: its time in seconds; its date and time by the "
                 "recorder's clock, if the recording has the time of its start (up to the year 2262); the channel; the "
                 "states before and after."},
                {{"What happened", "orvcomtrade events feeder_earth_fault.cfg"},
                 {"The same, counted from the trigger", "orvcomtrade events feeder_earth_fault.cfg --time trigger"}}};
    }

    TimeBase _base = TimeBase::Relative;
};

} // namespace

std::unique_ptr<Command> makeEvents() {
    return std::make_unique<Events>();
}
