#include "commands/list.h"

#include "commands/commonFlags.h"
#include "input/chooseChannels.h"
#include "input/clockTimeIn.h"
#include "input/loadRecording.h"
#include "input/namePattern.h"
#include "output/Failure.h"
#include "output/StandardOutput.h"
#include "output/clockTime.h"
#include "output/csv.h"
#include "output/json.h"
#include "output/printable.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

using OrvComtradeIntake::Header;
using OrvComtradeIntake::Instant;
using OrvComtradeIntake::RateInfo;

namespace {

// A line is printed when its recording has been read: nobody waits for the widest of all.
constexpr std::string_view kTitles =
    "Start                       Duration, s  Rates, Hz     Analog  Status  Verdict     "
    "Station                   Recorder              Recording\n";
constexpr std::string_view kListTitles =
    "path,station,recorder,start,trigger,duration_s,samples,rates_hz,analog,status,"
    "revision,data_type,verdict\n";

struct ListRequest {
    std::vector<std::string> stations;
    std::vector<std::string> channels;
    std::optional<Instant> after;
    std::optional<Instant> before;
    bool csv = false;
};

/// Rates that differ from the one before; none where the times are in the data.
std::vector<double> ratesOf(const Header& header) {
    std::vector<double> rates;
    for (const RateInfo& rate : header.rates) {
        if (rate.rate > 0.0 && (rates.empty() || rates.back() != rate.rate)) {
            rates.push_back(rate.rate);
        }
    }
    return rates;
}

std::string shortRates(const Header& header) {
    constexpr std::size_t most = 2;
    const std::vector<double> rates = ratesOf(header);
    return rates.size() > most ? fmt::format("{} rates", rates.size()) : fmt::format("{:.6g}", fmt::join(rates, "/"));
}

/// A text of the table, which has a dash where there is none.
std::string orDash(const std::string& text) {
    return text.empty() ? "-" : text;
}

std::string startText(const Header& header) {
    constexpr std::size_t length = 26; // to the microsecond
    return header.start ? header.start->text().substr(0, length) : "-";
}

bool isWanted(const Header& header, const ListRequest& wanted) {
    const auto isOfStation = [&header](const std::string& pattern) {
        const bool isPart = pattern.find_first_of("*?") == std::string::npos;
        return isLike(header.station, isPart ? "*" + pattern + "*" : pattern);
    };
    const auto hasChannel = [&header](const std::string& pattern) { return hasChannelLike(header, pattern); };
    const bool isInTime = (!wanted.after || (header.start && header.start->nanoseconds >= wanted.after->nanoseconds)) &&
                          (!wanted.before || (header.start && header.start->nanoseconds < wanted.before->nanoseconds));
    return isInTime &&
           (wanted.stations.empty() || std::any_of(wanted.stations.begin(), wanted.stations.end(), isOfStation)) &&
           (wanted.channels.empty() || std::any_of(wanted.channels.begin(), wanted.channels.end(), hasChannel));
}

std::string clockTextOrNone(const std::optional<Instant>& instant) {
    return instant ? clockText(*instant) : "";
}

/// As it is said of a recording that can be read, or not.
struct Row {
    const Entry& entry;
    const Header& header;
    std::string verdict;
    std::optional<double> duration; ///< seconds; none where it can't be read
};

void printText(const Row& row, Output& out) {
    const Header& header = row.header;
    out.print("{:<26}  {:>11}  {:<12}  {:>6}  {:>6}  {:<10}  {:<24}  {:<20}  {}\n", startText(header),
              row.duration ? fmt::format("{:.6g}", *row.duration) : "-",
              row.duration ? orDash(shortRates(header)) : "-", header.analog.size(), header.status.size(), row.verdict,
              orDash(printable(clipped(header.station))), orDash(printable(clipped(header.recorder))),
              printable(row.entry.path));
}

void printCsv(const Row& row, Output& out) {
    const Header& header = row.header;
    out.print("{},{},{},{},{},", csvField(row.entry.path), csvField(header.station), csvField(header.recorder),
              clockTextOrNone(header.start), clockTextOrNone(header.trigger));
    if (row.duration) {
        out.number(*row.duration);
        out.print(",{},{},{},{},{},{}", header.samples, fmt::join(ratesOf(header), " "), header.analog.size(),
                  header.status.size(), header.revision, typeWord(header.dataType));
    } else {
        out.write(",,,,,,");
    }
    out.print(",{}\n", row.verdict);
}

void printJson(const Row& row, const Recording& recording, Output& out) {
    const Header& header = row.header;
    Json line = recordingLine(row.entry.path, row.duration.has_value());
    line["verdict"] = row.verdict;
    if (!row.duration) {
        line["error"] = recording.problem;
        writeLine(line, out);
        return;
    }
    line["station"] = header.station;
    line["recorder"] = header.recorder;
    line["start"] = instantValue(header.start);
    line["trigger"] = instantValue(header.trigger);
    line["duration"] = *row.duration;
    line["samples"] = header.samples;
    line["rates"] = ratesOf(header);
    line["analog"] = header.analog.size();
    line["status"] = header.status.size();
    line["revision"] = header.revision;
    line["dataType"] = typeWord(header.dataType);
    writeLine(line, out);
}

class List : public Command {
public:
    List() : Command(_describe()) {
        add(textsFlag("--station", "PATTERN", "Only recordings of stations with this name", _wanted.stations)
                .with("Part of the name in any case, or a pattern with * and ?. Repeat it for more stations."));
        add(textsFlag("-c,--channel", "PATTERN", "Only recordings that have a channel of this name", _wanted.channels)
                .with("A name or identifier in any case, or a pattern with * and ?. Repeat it for more channels."));
        add(_dateFlag("--after", "Only recordings that start then or later", _wanted.after));
        add(_dateFlag("--before", "Only recordings that start earlier", _wanted.before));
        add(switchFlag("--csv", "Print CSV, with every number in full", _wanted.csv).without({"--json"}));
        add(forceFlag(request));
        add(readingFlags(request, false));
    }

    int run() override {
        if (!request.json) {
            StandardOutput out;
            out.write(_wanted.csv ? kListTitles : kTitles);
            out.flush();
        }
        return Command::run();
    }

protected:
    void perform(const Entry& entry, Job& out) override {
        const Recording recording = openRecording(entry, request.load);
        if (!recording.noneNote.empty() && entry.isMet) {
            throw NotARecording(recording.problem, recording.noneNote);
        }
        if (!isWanted(recording.header, _wanted)) {
            return;
        }
        Row row{entry, recording.header, recording.reader->verdict().name, std::nullopt};
        if (recording.problem.empty()) {
            row.duration = recording.reader->duration();
        } else {
            out.note(recording.problem);
            out.setStatus(kRecordingProblem);
        }
        if (request.json) {
            printJson(row, recording, out);
        } else if (_wanted.csv) {
            printCsv(row, out);
        } else {
            printText(row, out);
        }
    }

private:
    static Flag _dateFlag(std::string name, std::string summary, std::optional<Instant>& instant) {
        Flag flag{std::move(name), "DATE", std::move(summary), [&instant](const std::string& text) {
                      instant = clockTimeIn(text);
                      return instant ? "" : "a date is 2021-11-02, or 2021-11-02T19:05:44.61, not " + text;
                  }};
        return std::move(flag).with("By the recorder's clock: 2021-11-02, 2021-11-02T19:05 or 2021-11-02T19:05:44.61.");
    }

    static Description _describe() {
        return {"list",
                "Print a line for each recording: start, duration, channels, verdict, station",
                {"Each line is printed as soon as its recording and those before it are read, so a folder of any size "
                 "can be listed. A dash means that something is not known, such as the rate where the times are in the "
                 "data. The verdict is that of check. A recording that cannot be read has a line as well."},
                {{"The recordings of a station in one month",
                  "orvcomtrade list . --station Ozernaya --after 2019-03-01 --before 2019-04-01"},
                 {"Everything as a table for a spreadsheet", "orvcomtrade list --csv . > recordings.csv"}}};
    }

    ListRequest _wanted;
};

} // namespace

std::unique_ptr<Command> makeList() {
    return std::make_unique<List>();
}
