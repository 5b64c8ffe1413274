#include "commands/exportTable.h"

#include "commands/SkewAlignment.h"
#include "commands/channelValue.h"
#include "input/channelNames.h"
#include "input/samplesAtOnce.h"
#include "output/sideName.h"

#include <fmt/format.h>

#include <map>
#include <numeric>
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
        only = fmt::format("{} ({})", name, known[only]);
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
    setTimes(value, header);
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
        value["columns"].push_back(
            columnValue("status", table.status[i], statusChannelValue(table.source.header.status[i], i)));
    }
    return value;
}

void forEachBlock(const ExportTable& table, const std::function<void(const Columns&)>& onBlock) {
    OrvComtradeIntake::Selection everything;
    everything.missingAsNan = true;
    SkewAlignment skew(table.source.header);
    table.source.reader->columns(everything, samplesAtOnce(table.source.header), [&](const Columns& read) {
        onBlock(table.keepsSkew ? read : skew.aligned(read));
        return true;
    });
}

void forEachRow(const ExportTable& table, const std::function<void(const Row&)>& onRow) {
    forEachBlock(table, [&onRow](const Columns& block) {
        for (Row row(block); !row.isEnd(); row.advance()) {
            onRow(row);
        }
    });
}

StateRows::StateRows(const Columns& block, const StateForm& form) : _form(form) {
    std::vector<std::size_t> ends(block.samples + 1); // of the changes of each row, once they are counted
    for (const std::vector<StateChange>& changes : block.states) {
        for (const StateChange& change : changes) {
            ++ends[static_cast<std::size_t>(change.sample - block.first) + 1];
        }
        _row += form.none;
    }
    std::partial_sum(ends.begin(), ends.end(), ends.begin());
    _changes.resize(ends.back());
    for (std::size_t channel = 0; channel < block.states.size(); ++channel) {
        for (const StateChange& change : block.states[channel]) {
            const auto row = static_cast<std::size_t>(change.sample - block.first);
            _changes[ends[row]++] = {static_cast<std::uint32_t>(row), static_cast<std::uint32_t>(channel),
                                     change.state};
        }
    }
}

std::string_view StateRows::next() {
    for (; _next < _changes.size() && _changes[_next].row == _rowNumber; ++_next) {
        const Change& change = _changes[_next];
        _row[change.channel * _form.none.size() + _form.position] =
            change.state ? _form.one : _form.none[_form.position];
    }
    ++_rowNumber;
    return _row;
}
