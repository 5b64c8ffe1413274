#include "commands/exportTable.h"

#include "input/channelNames.h"
#include "input/samplesAtOnce.h"
#include "output/sideName.h"

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

} // namespace

ExportTable exportTable(const Recording& recording, const std::string& path) {
    ExportTable table{path.substr(path.rfind('/') + 1), recording, {}, {}};
    for (const AnalogValues& channel : recording.analog) {
        table.analog.push_back({channel.name, channel.unit, sideName(channel.side)});
    }
    for (const StatusInfo& channel : recording.header.status) {
        table.status.push_back({statusName(channel), {}, ""});
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
    value["samples"] = header.samples;
    value["columns"] = Json::array({columnValue("time", {"time", "s", ""})});
    for (const Column& column : table.analog) {
        value["columns"].push_back(columnValue("analog", column));
    }
    for (const Column& column : table.status) {
        value["columns"].push_back(columnValue("status", column));
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
    table.source.reader->columns(everything, samplesAtOnce(table.source.header), [&onRow](const Columns& block) {
        for (Row row(block); !row.isEnd(); row.advance()) {
            onRow(row);
        }
        return true;
    });
}
