#include "commands/exportText.h"

#include <cmath>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

using OrvComtradeIntake::AnalogInfo;
using OrvComtradeIntake::Header;
using OrvComtradeIntake::Instant;
using OrvComtradeIntake::RateInfo;

namespace {

void writeHeaderLine(const char* name, const std::string& value, const CsvStyle& style, Output& out) {
    out.print("# {}{}{}\n", name, style.separator, csvField(value, style));
}

/// One field for the time, then one for each channel: of an analog one by its position, of a status one an empty one.
void writeAnalogFields(const ExportTable& table, const char* name, const std::function<std::string(std::size_t)>& field,
                       const CsvStyle& style, Output& out) {
    out.write(name);
    for (std::size_t i = 0; i < table.analog.size(); ++i) {
        out.put(style.separator);
        out.write(csvField(field(i), style));
    }
    out.write(std::string(table.status.size(), style.separator));
    out.put('\n');
}

std::string instantText(const std::optional<Instant>& instant) {
    return instant ? instant->text() : "";
}

std::string ratesText(const Header& header) {
    std::string text;
    for (const RateInfo& rate : header.rates) {
        text += fmt::format("{}{} Hz to sample {}", text.empty() ? "" : "; ", rate.rate, rate.endSample);
    }
    return text;
}

/// All that the line of names does not say.
void writeComments(const ExportTable& table, const CsvStyle& style, Output& out) {
    const Header& header = table.source.header;
    writeHeaderLine("recording", table.recording, style, out);
    writeHeaderLine("station", header.station, style, out);
    writeHeaderLine("recorder", header.recorder, style, out);
    writeHeaderLine("start", instantText(header.start), style, out);
    writeHeaderLine("trigger", instantText(header.trigger), style, out);
    writeHeaderLine("time code", header.timeCode, style, out);
    writeHeaderLine("sampling rates", ratesText(header), style, out);
    writeHeaderLine("line frequency", fmt::format("{}", header.lineFrequency), style, out);
    writeHeaderLine("skew", table.keepsSkew ? "keep" : "apply", style, out);
    const auto write = [&](const char* name, const std::function<std::string(const AnalogInfo&)>& field) {
        writeAnalogFields(
            table, name, [&](std::size_t i) { return field(header.analog[i]); }, style, out);
    };
    write("# ids: ", [](const AnalogInfo& channel) { return channel.id; });
    write("# phases: ", [](const AnalogInfo& channel) { return channel.phase; });
    write("# components: ", [](const AnalogInfo& channel) { return channel.component; });
    writeAnalogFields(
        table, "# units: s", [&](std::size_t i) { return table.analog[i].unit; }, style, out);
    writeAnalogFields(
        table, "# sides: ", [&](std::size_t i) { return std::string(table.analog[i].side); }, style, out);
    write("# ratios: ",
          [](const AnalogInfo& channel) { return fmt::format("{}/{}", channel.primary, channel.secondary); });
    write("# a: ", [](const AnalogInfo& channel) { return fmt::format("{}", channel.a); });
    write("# b: ", [](const AnalogInfo& channel) { return fmt::format("{}", channel.b); });
    write("# skews (us): ", [](const AnalogInfo& channel) { return fmt::format("{}", channel.skew); });
}

void writeNames(const ExportTable& table, const CsvStyle& style, Output& out) {
    out.write("time");
    for (const std::vector<Column>* const columns : {&table.analog, &table.status}) {
        for (const Column& column : *columns) {
            out.put(style.separator);
            out.write(csvField(column.name, style));
        }
    }
    out.put('\n');
}

/// "\"IA\":", as it stands before each value.
std::vector<std::string> keysOf(const std::vector<Column>& columns) {
    std::vector<std::string> keys;
    keys.reserve(columns.size());
    for (const Column& column : columns) {
        keys.push_back("," + lineText(Json(column.name)) + ":");
    }
    return keys;
}

} // namespace

void writeCsv(const ExportTable& table, bool hasComments, const CsvStyle& style, Output& out) {
    beginCsv(style, out);
    if (hasComments) {
        writeComments(table, style, out);
    }
    writeNames(table, style, out);
    forEachRow(table, [&table, &style, &out](const Row& row) {
        if (table.scale.isClock()) {
            out.write(table.scale.text(row.time()));
        } else {
            writeCsvTime(table.scale.shown(row.time()), style, out);
        }
        for (std::size_t i = 0; i < table.analog.size(); ++i) {
            out.put(style.separator);
            if (!std::isnan(row.analog(i))) {
                writeCsvValue(row.analog(i), style, out);
            }
        }
        for (std::size_t i = 0; i < table.status.size(); ++i) {
            out.put(style.separator);
            out.put(row.status(i) ? '1' : '0');
        }
        out.put('\n');
    });
}

void writeJsonLines(const ExportTable& table, bool hasComments, Output& out) {
    if (hasComments) {
        writeLine(tableValue(table), out);
    }
    const std::vector<std::string> analog = keysOf(table.analog);
    const std::vector<std::string> status = keysOf(table.status);
    forEachRow(table, [&](const Row& row) {
        out.write("{\"time\":");
        if (table.scale.isClock()) {
            out.print("\"{}\"", table.scale.text(row.time()));
        } else {
            writeNumber(table.scale.shown(row.time()), out);
        }
        for (std::size_t i = 0; i < analog.size(); ++i) {
            out.write(analog[i]);
            writeNumber(row.analog(i), out);
        }
        for (std::size_t i = 0; i < status.size(); ++i) {
            out.write(status[i]);
            out.put(row.status(i) ? '1' : '0');
        }
        out.write("}\n");
    });
}
