#include "exportTable.h"

#include "Failure.h"

using namespace OrvComtradeLib;

namespace {

Json columnValue(const char* kind, const Column& column) {
    Json value;
    value["kind"] = kind;
    value["name"] = column.name;
    value["unit"] = textValue(column.unit);
    value["side"] = textValue(column.side);
    return value;
}

} // namespace

ExportTable exportTable(const Recording& recording, const std::string& path) {
    ExportTable table{path.substr(path.rfind('/') + 1), recording, {}, {}};
    const Cfg& cfg = recording.comtrade.cfg;
    for (std::size_t i = 0; i < cfg.analogChannelConfigs.size(); ++i) {
        const AnalogChannelConfig& channel = cfg.analogChannelConfigs[i];
        table.analog.push_back({channel.name(), channel.unit, sideName(recording, i)});
    }
    for (const BinaryChannelConfig& channel : cfg.binaryChannelConfigs) {
        table.status.push_back({channel.name(), {}, ""});
    }
    return table;
}

Json tableValue(const ExportTable& table) {
    const auto& prepared = table.source.prepared;
    const Cfg& cfg = table.source.comtrade.cfg;
    Json value;
    value["recording"] = table.recording;
    value["station"] = stationText(cfg.stationName);
    value["recorder"] = stationText(cfg.recorderId);
    value["start"] = instantValue(prepared.start);
    value["trigger"] = instantValue(prepared.trigger);
    value["timeCode"] = textValue(prepared.timeCode);
    value["samples"] = table.source.comtrade.dat.samples.size();
    value["columns"] = Json::array({columnValue("time", {"time", "s", ""})});
    for (const Column& column : table.analog) {
        value["columns"].push_back(columnValue("analog", column));
    }
    for (const Column& column : table.status) {
        value["columns"].push_back(columnValue("status", column));
    }
    return value;
}

MissingValues::MissingValues(const Recording& recording)
    : _runs(recording.prepared.missing), _next(recording.comtrade.cfg.analogChannelConfigs.size(), _runs.size()) {
    for (std::size_t i = _runs.size(); i > 0; --i) {
        _next.at(_runs[i - 1].channel) = i - 1;
    }
}

bool MissingValues::contains(std::size_t channel, std::size_t sample) {
    std::size_t& next = _next[channel];
    while (next < _runs.size() && _runs[next].channel == channel && _runs[next].sample + _runs[next].count <= sample) {
        ++next;
    }
    return next < _runs.size() && _runs[next].channel == channel && _runs[next].sample <= sample;
}
