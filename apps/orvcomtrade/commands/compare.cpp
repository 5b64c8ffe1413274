#include "commands/compare.h"

#include "commands/commonFlags.h"
#include "input/comparison.h"
#include "input/loadRecording.h"
#include "input/openArchives.h"
#include "output/Failure.h"
#include "output/StandardOutput.h"
#include "output/Table.h"
#include "output/counted.h"
#include "output/json.h"
#include "output/printable.h"
#include "output/writeWhole.h"
#include "sandbox/confine.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <exception>
#include <functional>
#include <string>
#include <string_view>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace {

constexpr int kDifferent = 1;

struct CompareRequest {
    Tolerance tolerance;
    bool valuesOnly = false;
};

/// "0.5", or "1%" of the greatest value. Gives what is wrong with it.
std::string setTolerance(const std::string& text, Tolerance& tolerance) {
    const bool isShare = !text.empty() && text.back() == '%';
    const char* const end = text.data() + text.size() - (isShare ? 1 : 0);
    double number = 0.0;
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end || !std::isfinite(number) || number < 0.0) {
        return "a tolerance is a number of 0 or more, or a percentage such as 0.1%, not " + text;
    }
    tolerance = isShare ? Tolerance{0.0, number / 100.0} : Tolerance{number, 0.0};
    return {};
}

std::string valueText(double value) {
    return std::isnan(value) ? "missing" : fmt::format("{:.9g}", value + 0.0); // no negative zero
}

bool isBeyond(const ChannelComparison& channel) {
    return channel.beyond != 0;
}

void printNames(const char* what, const std::vector<std::string>& names, Output& out) {
    for (const std::string& name : names) {
        out.print("{}: {}\n", what, printable(clipped(name)));
    }
}

void printHeader(const std::vector<FieldDifference>& differences, Output& out) {
    if (differences.empty()) {
        return;
    }
    const Table table({{"Header", Table::Align::Left}, {"A", Table::Align::Left}, {"B", Table::Align::Left}});
    const auto forEachRow = [&differences](const std::function<void(const Table::Row&)>& onRow) {
        for (const FieldDifference& difference : differences) {
            onRow({printable(clipped(difference.field)), printable(clipped(difference.left)),
                   printable(clipped(difference.right))});
        }
    };
    writeTable(table, forEachRow, [&out](std::string_view line) { out.write(line); });
    out.put('\n');
}

/// Analog channels that are not the same, and status channels that are not.
void printChannels(const Comparison& comparison, Output& out) {
    using Align = Table::Align;
    const Table table({{"Channel", Align::Left},
                       {"Unit", Align::Left},
                       {"Largest difference", Align::Right},
                       {"at, s", Align::Right},
                       {"Samples beyond", Align::Right},
                       {"First", Align::Right},
                       {"at, s", Align::Right},
                       {"A", Align::Right},
                       {"B", Align::Right}});
    const auto forEachRow = [&comparison](const std::function<void(const Table::Row&)>& onRow) {
        for (const auto* const channels : {&comparison.analog, &comparison.status}) {
            for (const ChannelComparison& channel : *channels) {
                if (channel.first) {
                    onRow({printable(clipped(channel.name)), printable(clipped(channel.unit)),
                           valueText(channel.largest), valueText(channel.largestTime),
                           fmt::format("{}", channel.beyond), fmt::format("{}", channel.first->sample + 1),
                           valueText(channel.first->time), valueText(channel.first->left),
                           valueText(channel.first->right)});
                }
            }
        }
    };
    writeTable(table, forEachRow, [&out](std::string_view line) { out.write(line); });
    out.put('\n');
}

void printText(const Comparison& comparison, bool isEqual, Output& out) {
    printHeader(comparison.header, out);
    printNames("Only in A", comparison.onlyLeft, out);
    printNames("Only in B", comparison.onlyRight, out);
    const auto analog = std::count_if(comparison.analog.begin(), comparison.analog.end(), isBeyond);
    const auto status = std::count_if(comparison.status.begin(), comparison.status.end(), isBeyond);
    if (analog != 0 || status != 0) {
        printChannels(comparison, out);
    }
    if (isEqual) {
        out.print("Equal: {} and {}, {} samples\n", counted(comparison.analog.size(), "analog channel"),
                  counted(comparison.status.size(), "status channel"), comparison.samples);
        return;
    }
    out.print("Different: {}, {} of {} and {} of {}, compared in {} samples\n",
              counted(comparison.header.size(), "header field"), analog,
              counted(comparison.analog.size(), "analog channel"), status,
              counted(comparison.status.size(), "status channel"), comparison.samples);
}

Json valueOf(double value) {
    return std::isnan(value) ? Json(nullptr) : Json(value);
}

Json channelValues(const std::vector<ChannelComparison>& channels, bool haveUnits) {
    Json values = Json::array();
    for (const ChannelComparison& channel : channels) {
        Json value = Json::object();
        value["name"] = channel.name;
        if (haveUnits) {
            value["unit"] = channel.unit;
            value["largest"] = valueOf(channel.largest);
            value["largestTime"] = channel.largestTime;
        }
        value["beyond"] = channel.beyond;
        value["first"] = nullptr;
        if (channel.first) {
            value["first"] = {{"sample", channel.first->sample + 1},
                              {"time", channel.first->time},
                              {"a", valueOf(channel.first->left)},
                              {"b", valueOf(channel.first->right)}};
        }
        values.push_back(std::move(value));
    }
    return values;
}

void printJson(const std::vector<Entry>& entries, const Comparison& comparison, bool isEqual, Output& out) {
    Json line = Json::object();
    setPath(line, "a", entries[0].path);
    setPath(line, "b", entries[1].path);
    line["ok"] = true;
    line["equal"] = isEqual;
    line["samples"] = comparison.samples;
    line["header"] = Json::array();
    for (const FieldDifference& difference : comparison.header) {
        line["header"].push_back({{"field", difference.field}, {"a", difference.left}, {"b", difference.right}});
    }
    line["onlyInA"] = comparison.onlyLeft;
    line["onlyInB"] = comparison.onlyRight;
    line["analog"] = channelValues(comparison.analog, true);
    line["status"] = channelValues(comparison.status, false);
    writeLine(line, out);
}

/// Status 1 says that the recordings differ, so every problem has another one.
[[noreturn]] void refuseComparison(const std::string& sentence) {
    throw Failure(kWrongUsage, sentence);
}

class Compare : public Command {
public:
    Compare() : Command(_describe()) {
        Flag tolerance{"-t,--tolerance", "NUMBER", "How far values may be apart (default: 0)",
                       [this](const std::string& text) { return setTolerance(text, _wanted.tolerance); }};
        add(std::move(tolerance).with("In the base unit of each channel; with a percent sign (0.1%), relative to the "
                                      "greatest value of the channel in A."));
        add(switchFlag("--values-only", "Ignore the headers: only channels and samples decide", _wanted.valuesOnly)
                .with("Differences of the headers are still printed."));
        add(forceFlag(request));
        add(readingFlags(request));
    }

    int run() override {
        try {
            return _compare();
        } catch (const std::exception& problem) {
            refuseComparison(problem.what());
        }
    }

private:
    int _compare() {
        _collect();
        const std::vector<Entry>& entries = request.selection.entries;
        const Recording left = _load(entries[0]);
        const Recording right = _load(entries[1]);
        const Comparison comparison = compareRecordings(left, right, _wanted.tolerance);
        const bool isEqual = comparison.areValuesEqual() && left.header.samples == right.header.samples &&
                             (_wanted.valuesOnly || comparison.header.empty());
        StandardOutput out;
        if (request.json) {
            printJson(entries, comparison, isEqual, out);
        } else {
            printText(comparison, isEqual, out);
        }
        out.flush();
        return isEqual ? 0 : kDifferent;
    }

    void _collect() {
        readLists();
        if (request.paths.size() != 2) {
            throw WrongWords("compare takes two recordings", "compare");
        }
        request.selection.entries.clear();
        for (const std::string& path : request.paths) { // each by itself: the same recording may be named twice
            EntryList one = collectRecordings({path}, search());
            request.selection.notes.insert(request.selection.notes.end(), one.notes.begin(), one.notes.end());
            if (one.entries.size() != 1) {
                refuseComparison(fmt::format("{}: {} recordings; compare takes one on each side", printable(path),
                                             one.entries.size()));
            }
            request.selection.entries.push_back(std::move(one.entries.front()));
        }
        if (!request.unconfined) {
            confine(request.selection, {});
        }
        openArchives(request.selection, request.load.archive);
        if (request.selection.entries.size() != 2) {
            refuseComparison("compare takes two recordings; name one in the archive");
        }
    }

    Recording _load(const Entry& entry) const {
        if (!entry.problem.empty()) {
            refuseComparison(entry.problem);
        }
        Recording recording = loadRecording(entry, request.load);
        if (!recording.objection.empty()) {
            writeWhole(STDERR_FILENO, "orvcomtrade: " + recording.objection + "\n");
        }
        return recording;
    }

    static Description _describe() {
        return {"compare",
                "Print where two recordings differ: header, channels, samples",
                {"Channels are paired by identifier, phase and component. Values are compared sample by sample, in "
                 "base units and on the side that is recorded or asked for. Each channel that differs is printed with "
                 "the largest difference and the first sample beyond the tolerance. A value that is missing in only "
                 "one recording is beyond any tolerance.",
                 "The exit status is 0 if they are equal, 1 if they differ, and 2 if they cannot be compared."},
                {{"Whether a copy still has the values of its original",
                  "orvcomtrade compare --values-only recordings/feeder_earth_fault.cfg feeder_earth_fault.cfg"}},
                {"A B"}};
    }

    CompareRequest _wanted;
};

} // namespace

std::unique_ptr<Command> makeCompare() {
    return std::make_unique<Compare>();
}
