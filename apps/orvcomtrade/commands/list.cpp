#include "commands/list.h"

#include "commands/commonFlags.h"
#include "commands/filterFlags.h"
#include "input/RecordingRow.h"
#include "input/loadRecording.h"
#include "output/Failure.h"
#include "output/StandardOutput.h"
#include "output/clockTime.h"
#include "output/csv.h"
#include "output/json.h"
#include "output/printable.h"
#include "output/writeWhole.h"
#include "sandbox/confine.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

using OrvComtradeIntake::Instant;

namespace {

// A line is printed when its recording has been read: nobody waits for the widest of all.
constexpr std::string_view kTitles =
    "Start                       Duration, s  Rates, Hz     Analog  Status  Verdict     "
    "Station                   Recorder              Recording\n";
constexpr std::string_view kListTitles =
    "path,station,recorder,start,trigger,duration_s,samples,rates_hz,analog,status,"
    "revision,data_type,verdict\n";

std::string shortRates(const std::vector<double>& rates) {
    constexpr std::size_t most = 2;
    return rates.size() > most ? fmt::format("{} rates", rates.size()) : fmt::format("{:.6g}", fmt::join(rates, "/"));
}

/// A text of the table, which has a dash where there is none.
std::string orDash(const std::string& text) {
    return text.empty() ? "-" : text;
}

std::string startText(const std::optional<Instant>& start) {
    constexpr std::size_t length = 26; // to the microsecond
    return start ? start->text().substr(0, length) : "-";
}

std::string clockTextOrNone(const std::optional<Instant>& instant) {
    return instant ? clockText(*instant) : "";
}

void printText(const RecordingRow& row, Output& out) {
    out.print("{:<26}  {:>11}  {:<12}  {:>6}  {:>6}  {:<10}  {:<24}  {:<20}  {}\n", startText(row.start),
              row.duration ? fmt::format("{:.6g}", *row.duration) : "-",
              row.duration ? orDash(shortRates(row.rates)) : "-", row.analog, row.status, row.verdict,
              orDash(printable(clipped(row.station))), orDash(printable(clipped(row.recorder))), shownPath(row.path));
}

void printCsv(const RecordingRow& row, Output& out) {
    out.print("{},{},{},{},{},", csvField(row.path), csvField(row.station), csvField(row.recorder),
              clockTextOrNone(row.start), clockTextOrNone(row.trigger));
    if (row.duration) {
        out.number(*row.duration);
        out.print(",{},{},{},{},{},{}", row.samples, fmt::join(row.rates, " "), row.analog, row.status, row.revision,
                  row.dataType);
    } else {
        out.write(",,,,,,");
    }
    out.print(",{}\n", row.verdict);
}

void printJson(const RecordingRow& row, Output& out) {
    Json line = recordingLine(row.path, row.duration.has_value());
    if (!row.verdict.empty()) {
        line["verdict"] = row.verdict;
    }
    if (!row.duration) {
        line["error"] = row.problem;
        writeLine(line, out);
        return;
    }
    line["station"] = row.station;
    line["recorder"] = row.recorder;
    line["start"] = instantValue(row.start);
    line["trigger"] = instantValue(row.trigger);
    line["duration"] = *row.duration;
    line["samples"] = row.samples;
    line["rates"] = row.rates;
    line["analog"] = row.analog;
    line["status"] = row.status;
    line["revision"] = row.revision;
    line["dataType"] = row.dataType;
    writeLine(line, out);
}

class List : public Command {
public:
    List() : Command(_describe()) {
        add(filterFlags(request));
        add(switchFlag("--csv", "Print CSV, with every number in full", _csv).without({"--json"}));
        add(forceFlag(request));
        add(readingFlags(request, false));
    }

    int run() override {
        readLists();
        request.lists.clear();
        const std::vector<std::string> catalogues = takeCatalogues();
        if (request.paths.empty() && !request.unconfined) {
            confine(_readable(catalogues), {});
        }
        int status = 0;
        for (const std::string& catalogue : catalogues) {
            status = std::max(status, _listCatalogue(catalogue));
        }
        return request.paths.empty() && !catalogues.empty() ? status : std::max(status, Command::run());
    }

protected:
    /// Once, before the first line.
    std::string heading() const override {
        if (request.json || _hasTitles) {
            return {};
        }
        return std::string(_csv ? kListTitles : kTitles);
    }

    void perform(const Entry& entry, Job& out) override {
        const Recording recording = openRecording(entry, request.load);
        if (!recording.noneNote.empty() && entry.isMet) {
            throw NotARecording(recording.problem, recording.noneNote);
        }
        if (!request.wanted.filter.isWanted(recording.header)) {
            return;
        }
        const RecordingRow row = rowOf(entry.path, recording);
        if (!row.problem.empty()) {
            out.note(row.problem);
            out.setStatus(kRecordingProblem);
        }
        _print(row, out);
    }

private:
    static EntryList _readable(const std::vector<std::string>& catalogues) {
        EntryList readable;
        for (const std::string& catalogue : catalogues) {
            readable.entries.push_back({catalogue, {}});
        }
        return readable;
    }

    /// As `perform` would, of every recording, but without a look at one of them. Gives the exit status. Of a damaged
    /// catalogue, what comes before the damage is printed.
    int _listCatalogue(const std::string& path) {
        StandardOutput out;
        try {
            return _printCatalogue(path, out);
        } catch (const Failure&) {
            out.flush();
            throw;
        }
    }

    int _printCatalogue(const std::string& path, Output& out) {
        int status = 0;
        CatalogueReader reader(path, request.wanted);
        bool isThere = reader.next();
        out.write(heading()); // not above the sentence on a catalogue of which nothing can be read
        _hasTitles = true;
        for (; isThere; isThere = reader.next()) {
            const RecordingRow& row = reader.row();
            if (!row.verdict.empty() || request.json) {
                _print(row, out);
            }
            if (!row.problem.empty()) {
                status = kRecordingProblem;
                out.flush();
                _report(row);
            }
        }
        out.flush();
        return status;
    }

    /// What could not be looked at has no other line.
    void _report(const RecordingRow& row) const {
        const bool isLine = row.verdict.empty() && !request.json;
        if (isLine || !request.quiet) {
            writeWhole(STDERR_FILENO, "orvcomtrade: " + row.problem + "\n");
        }
    }

    void _print(const RecordingRow& row, Output& out) const {
        if (request.json) {
            printJson(row, out);
        } else if (_csv) {
            printCsv(row, out);
        } else {
            printText(row, out);
        }
    }

    static Description _describe() {
        return {
            "list",
            "Print a line for each recording: start, duration, channels, verdict, station",
            {"Each line is printed as soon as its recording and those before it are read, so a folder of any size "
             "can be listed. A dash means that something is not known, such as the rate where the times are in the "
             "data. The verdict is that of check. A recording that cannot be read has a line as well.",
             "The path may be a catalogue, the database that catalogue makes from an index. The same is then printed "
             "for its recordings, in the order of their paths, and no recording is read."},
            {{"The recordings of a station in one month",
              "orvcomtrade list . --station Ozernaya --after 2019-03-01 --before 2019-04-01"},
             {"Everything as a table for a spreadsheet", "orvcomtrade list --csv . > recordings.csv"}}};
    }

    bool _csv = false;
    bool _hasTitles = false;
};

} // namespace

std::unique_ptr<Command> makeList() {
    return std::make_unique<List>();
}
