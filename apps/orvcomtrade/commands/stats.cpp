#include "commands/stats.h"

#include "commands/commonFlags.h"
#include "commands/loadEntry.h"
#include "input/ChannelStatistics.h"
#include "input/Window.h"
#include "input/channelNames.h"
#include "input/chooseChannels.h"
#include "input/samplesAtOnce.h"
#include "output/Failure.h"
#include "output/StandardOutput.h"
#include "output/Table.h"
#include "output/csv.h"
#include "output/json.h"
#include "output/printable.h"
#include "output/sideName.h"

#include <fmt/format.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

using OrvComtradeIntake::Columns;
using OrvComtradeIntake::MissingRun;
using OrvComtradeIntake::StateChange;

namespace {

constexpr std::string_view kStatsTitles =
    "recording,window_start_s,window_end_s,kind,number,name,unit,side,samples,missing,min,max,peak,peak_time_s,rms,"
    "mean,changes,final\n";

struct StatsRequest {
    WindowRequest window;
    ChannelWishes channels;
    bool csv = false;
};

struct StatusStatistics {
    std::uint64_t changes = 0;
    bool state = false; ///< of the last sample
};

/// What there is to print of a recording.
struct Statistics {
    const Recording& recording;
    Window window;
    ChosenChannels channels;
    std::vector<ChannelStatistics> analog; ///< one per chosen channel
    std::vector<StatusStatistics> status;  ///< likewise
};

void addAnalog(const Columns& block, std::vector<ChannelStatistics>& all) {
    std::size_t next = 0; // of the runs of missing values, which are by column
    for (std::size_t column = 0; column < all.size(); ++column) {
        std::size_t row = 0;
        const auto addUpTo = [&](std::size_t end) {
            for (; row < end; ++row) {
                all[column].add(block.column(column)[row], block.time[row]);
            }
        };
        for (; next < block.missing.size() && block.missing[next].channel == column; ++next) {
            const MissingRun& run = block.missing[next];
            addUpTo(static_cast<std::size_t>(run.sample - block.first));
            for (std::uint64_t i = 0; i < run.count; ++i, ++row) {
                all[column].addMissing();
            }
        }
        addUpTo(block.samples);
    }
}

void addStatus(const Columns& block, bool isFirst, std::vector<StatusStatistics>& all) {
    for (std::size_t column = 0; column < all.size(); ++column) {
        for (const StateChange& change : block.states[column]) {
            const bool isBegin = isFirst && change.sample == block.first;
            all[column].changes += !isBegin && change.state != all[column].state ? 1U : 0U;
            all[column].state = change.state;
        }
    }
}

Statistics statisticsOf(const Recording& recording, const StatsRequest& wanted) {
    Statistics statistics{
        recording, windowOf(recording, wanted.window), chooseChannels(recording, wanted.channels), {}, {}};
    if (statistics.window.count == 0) {
        refuseEmptyWindow(recording);
    }
    statistics.analog.resize(statistics.channels.analog.size());
    statistics.status.resize(statistics.channels.status.size());
    OrvComtradeIntake::Selection selection;
    selection.allAnalog = false;
    selection.allStatus = false;
    selection.analog = statistics.channels.analog;
    selection.status = statistics.channels.status;
    selection.first = statistics.window.first;
    selection.count = statistics.window.count;
    bool isFirst = true;
    recording.reader->columns(selection, samplesAtOnce(recording.header), [&](const Columns& block) {
        addAnalog(block, statistics.analog);
        addStatus(block, isFirst, statistics.status);
        isFirst = false;
        return true;
    });
    return statistics;
}

std::string statText(double value) {
    return fmt::format("{:.6g}", value + 0.0); // no negative zero
}

/// Nothing where there is no value.
std::string statText(const ChannelStatistics& statistics, double value) {
    return statistics.samples() == 0 ? "-" : statText(value);
}

void printAnalog(const Statistics& all, Output& out) {
    using Align = Table::Align;
    const Table table({{"No", Align::Right},
                       {"Name", Align::Left},
                       {"Unit", Align::Left},
                       {"Side", Align::Left},
                       {"Min", Align::Right},
                       {"Max", Align::Right},
                       {"Peak", Align::Right},
                       {"at, s", Align::Right},
                       {"RMS", Align::Right},
                       {"Mean", Align::Right},
                       {"Samples", Align::Right},
                       {"Missing", Align::Right}});
    const auto forEachRow = [&all](const std::function<void(const Table::Row&)>& onRow) {
        for (std::size_t i = 0; i < all.analog.size(); ++i) {
            const ChannelStatistics& one = all.analog[i];
            const AnalogValues& values = all.recording.analog.at(all.channels.analog[i]);
            onRow({fmt::format("{}", all.channels.analog[i] + 1), printable(clipped(values.name)),
                   printable(clipped(values.unit)), sideName(values.side), statText(one, one.min()),
                   statText(one, one.max()), statText(one, one.peak()), statText(one, one.peakTime()),
                   statText(one, one.rms()), statText(one, one.mean()), fmt::format("{}", one.samples()),
                   fmt::format("{}", one.missing())});
        }
    };
    writeTable(table, forEachRow, [&out](std::string_view line) { out.write(line); });
}

void printStatus(const Statistics& all, Output& out) {
    using Align = Table::Align;
    const Table table(
        {{"No", Align::Right}, {"Name", Align::Left}, {"Changes", Align::Right}, {"Final", Align::Right}});
    const auto forEachRow = [&all](const std::function<void(const Table::Row&)>& onRow) {
        for (std::size_t i = 0; i < all.status.size(); ++i) {
            const std::size_t channel = all.channels.status[i];
            onRow({fmt::format("{}", channel + 1), printable(clipped(statusName(all.recording.header.status[channel]))),
                   fmt::format("{}", all.status[i].changes), all.status[i].state ? "1" : "0"});
        }
    };
    writeTable(table, forEachRow, [&out](std::string_view line) { out.write(line); });
}

void printText(const Statistics& all, Output& out) {
    const Window& window = all.window;
    out.print("Window  {} s to {} s, samples {} to {} ({})\n", statText(window.start), statText(window.end),
              window.first + 1, window.first + window.count, window.count);
    if (!all.analog.empty()) {
        out.write("\nAnalog channels\n");
        printAnalog(all, out);
    }
    if (!all.status.empty()) {
        out.write("\nStatus channels\n");
        printStatus(all, out);
    }
}

void printCsv(const Entry& entry, const Statistics& all, Output& out) {
    const auto begin = [&](const char* kind, std::size_t channel, const std::string& name) {
        out.print("{},", csvField(entry.path));
        out.number(all.window.start);
        out.put(',');
        out.number(all.window.end);
        out.print(",{},{},{},", kind, channel + 1, csvField(name));
    };
    for (std::size_t i = 0; i < all.analog.size(); ++i) {
        const ChannelStatistics& one = all.analog[i];
        const AnalogValues& values = all.recording.analog.at(all.channels.analog[i]);
        begin("analog", all.channels.analog[i], values.name);
        out.print("{},{},{},{}", csvField(values.unit), sideName(values.side), one.samples(), one.missing());
        for (const double value : {one.min(), one.max(), one.peak(), one.peakTime(), one.rms(), one.mean()}) {
            out.put(',');
            if (one.samples() != 0) {
                out.number(value);
            }
        }
        out.write(",,\n");
    }
    for (std::size_t i = 0; i < all.status.size(); ++i) {
        begin("status", all.channels.status[i], statusName(all.recording.header.status[all.channels.status[i]]));
        out.print(",,{},0,,,,,,,{},{}\n", all.window.count, all.status[i].changes, all.status[i].state ? 1 : 0);
    }
}

Json analogValue(const Statistics& all, std::size_t i) {
    const ChannelStatistics& one = all.analog[i];
    const AnalogValues& values = all.recording.analog.at(all.channels.analog[i]);
    const auto known = [&one](double value) { return one.samples() == 0 ? Json(nullptr) : Json(value); };
    Json value = Json::object();
    value["number"] = all.channels.analog[i] + 1;
    value["name"] = values.name;
    value["unit"] = values.unit;
    value["side"] = sideName(values.side);
    value["samples"] = one.samples();
    value["missing"] = one.missing();
    value["min"] = known(one.min());
    value["max"] = known(one.max());
    value["peak"] = known(one.peak());
    value["peakTime"] = known(one.peakTime());
    value["rms"] = known(one.rms());
    value["mean"] = known(one.mean());
    return value;
}

void printJson(const Entry& entry, const Statistics& all, Output& out) {
    Json line = recordingLine(entry.path, true);
    line["window"] = {{"start", all.window.start},
                      {"end", all.window.end},
                      {"firstSample", all.window.first + 1},
                      {"samples", all.window.count}};
    line["analog"] = Json::array();
    for (std::size_t i = 0; i < all.analog.size(); ++i) {
        line["analog"].push_back(analogValue(all, i));
    }
    line["status"] = Json::array();
    for (std::size_t i = 0; i < all.status.size(); ++i) {
        const std::size_t channel = all.channels.status[i];
        line["status"].push_back({{"number", channel + 1},
                                  {"name", statusName(all.recording.header.status[channel])},
                                  {"changes", all.status[i].changes},
                                  {"final", all.status[i].state ? 1 : 0}});
    }
    writeLine(line, out);
}

class Stats : public Command {
public:
    Stats() : Command(_describe()) {
        add(channelFlags(_wanted.channels));
        add(windowFlags(_wanted.window));
        add(switchFlag("--csv", "Print CSV, with every number in full", _wanted.csv).without({"--json"}));
        add(forceFlag(request));
        add(readingFlags(request));
    }

    int run() override {
        if (_wanted.csv) {
            StandardOutput out;
            out.write(kStatsTitles);
            out.flush();
        }
        return Command::run();
    }

protected:
    void prepare() override { checkWindow(_wanted.window); }

    void perform(const Entry& entry, Job& out) override {
        const Recording recording = loadEntry(entry, request, out);
        const Statistics statistics = naming(entry, [&] { return statisticsOf(recording, _wanted); });
        if (request.json) {
            printJson(entry, statistics, out);
            return;
        }
        if (_wanted.csv) {
            printCsv(entry, statistics, out);
            return;
        }
        if (request.several()) {
            out.print("# {}\n", shownPath(entry.path));
        }
        printText(statistics, out);
        if (request.several()) {
            out.put('\n');
        }
    }

private:
    static Description _describe() {
        return {
            "stats",
            "Print minimum, maximum, peak, RMS and mean of each analog channel, and the changes of each status channel",
            {"The figures cover all samples, or those of a window. Both ends belong to the window. Values are in "
             "base units, on the side that is printed. The peak is the value of the greatest size, with its sign, and "
             "the time of the first sample that has it. Of n values x, the RMS is sqrt(sum(x^2) / n) and the mean is "
             "sum(x) / n: each sample counts once, a direct component is part of the RMS, and missing values are left "
             "out. Choose a window of whole periods, at one sampling rate, to get what a meter shows.",
             "Of a status channel, the changes within the window are counted; its final state is that of the last "
             "sample."},
            {{"The currents over the ten periods after the trigger",
              "orvcomtrade stats feeder_earth_fault.cfg --channel 'I*' --time trigger --start 0 --end 0.199"}}};
    }

    StatsRequest _wanted;
};

} // namespace

std::unique_ptr<Command> makeStats() {
    return std::make_unique<Stats>();
}
