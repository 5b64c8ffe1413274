#include "commands/exportTable.h"

#include "commands/SkewAlignment.h"
#include "commands/channelValue.h"
#include "input/channelNames.h"
#include "input/samplesAtOnce.h"
#include "output/sideName.h"

#include <fmt/format.h>

#include <map>
#include <utility>

using OrvComtradeIntake::Columns;
using OrvComtradeIntake::Header;
using OrvComtradeIntake::StateChange;
using OrvComtradeIntake::StatusInfo;

namespace {

Json columnValue(const char* kind, const Column& column) {
    Json value = Json::object();
    value["kind"] = kind;
    value["name"] = column.name;
    value["unit"] = textValue(column.unit);
    value["side"] = textValue(column.side);
    return value;
}

/// The column, and its channel as it is recorded.
Json columnValue(const char* kind, const Column& column, Json channel) {
    Json value = columnValue(kind, column);
    value["channel"] = std::move(channel);
    return value;
}

/// A name that repeats gets its number behind it: a table has no two columns of one name.
std::string onlyName(const std::string& name, std::map<std::string, int>& known) {
    std::string only = name;
    while (++known[only] > 1) {
        only = name + fmt::format(" ({})", known[only]);
    }
    return only;
}

} // namespace

ExportTable exportTable(const Recording& recording, const std::string& path, const TableRequest& wanted) {
    ExportTable table{path.substr(path.rfind('/') + 1),
                      recording,
                      {},
                      {},
                      TimeScale(recording.header, wanted.base, path),
                      wanted.keepsSkew};
    std::map<std::string, int> known = {{"time", 1}};
    for (const AnalogValues& channel : recording.analog) {
        table.analog.push_back({onlyName(channel.name, known), channel.unit, sideName(channel.side)});
    }
    for (const StatusInfo& channel : recording.header.status) {
        table.status.push_back({onlyName(statusName(channel), known), {}, ""});
    }
    return table;
}

Json tableValue(const ExportTable& table) {
    const Header& header = table.source.header;
    Json value = Json::object();
    setPath(value, "recording", table.recording);
    value["station"] = header.station;
    value["recorder"] = header.recorder;
    value["start"] = instantValue(header.start);
    value["trigger"] = instantValue(header.trigger);
    value["timeCode"] = textValue(header.timeCode);
    value["localCode"] = textValue(header.localCode);
    value["timeQuality"] = textValue(header.timeQuality);
    value["leapSecond"] = textValue(header.leapSecond);
    value["revision"] = header.revision;
    value["lineFrequency"] = header.lineFrequency;
    value["samplingRates"] = ratesValue(header);
    value["skew"] = table.keepsSkew ? "keep" : "apply";
    value["samples"] = header.samples;
    value["columns"] = Json::array({columnValue("time", {"time", "s", ""})});
    for (std::size_t i = 0; i < table.analog.size(); ++i) {
        value["columns"].push_back(columnValue("analog", table.analog[i], analogChannelValue(table.source, i)));
    }
    for (std::size_t i = 0; i < table.status.size(); ++i) {
        value["columns"].push_back(columnValue("status", table.status[i], statusChannelValue(table.source, i)));
    }
    return value;
}

Row::Row(const Columns& columns) : _columns(columns), _change(columns.states.size()) {}

void Row::advance() {
    const std::uint64_t sample = _columns.first + ++_index;
    for (std::size_t channel = 0; channel < _change.size(); ++channel) {
        const std::vector<StateChange>& changes = _columns.states[channel];
        const std::size_t next = _change[channel] + 1;
        _change[channel] = next < changes.size() && changes[next].sample == sample ? next : _change[channel];
    }
}

void forEachRow(const ExportTable& table, const std::function<void(const Row&)>& onRow) {
    OrvComtradeIntake::Selection everything;
    everything.missingAsNan = true;
    SkewAlignment skew(table.source.header);
    table.source.reader->columns(everything, samplesAtOnce(table.source.header), [&](const Columns& read) {
        const Columns& block = table.keepsSkew ? read : skew.aligned(read);
        for (Row row(block); !row.isEnd(); row.advance()) {
            onRow(row);
        }
        return true;
    });
}
