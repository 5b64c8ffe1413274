#include "commands/exportText.h"

#include "output/csv.h"

#include <cmath>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

using OrvComtradeIntake::Header;
using OrvComtradeIntake::Instant;

namespace {

void writeHeaderLine(const char* name, const std::string& value, bool raw, Output& out) {
    out.print("# {},{}\n", name, csvField(value, raw));
}

/// One field for the time, then one for each channel.
template <class Field>
void writeFields(const ExportTable& table, const char* time, Field field, bool raw, Output& out) {
    out.write(time);
    for (const std::vector<Column>* const columns : {&table.analog, &table.status}) {
        for (const Column& column : *columns) {
            out.print(",{}", csvField(field(column), raw));
        }
    }
    out.put('\n');
}

std::string instantText(const std::optional<Instant>& instant) {
    return instant ? instant->text() : "";
}

void writeHeader(const ExportTable& table, bool raw, Output& out) {
    const Header& header = table.source.header;
    writeHeaderLine("recording", table.recording, raw, out);
    writeHeaderLine("station", header.station, raw, out);
    writeHeaderLine("recorder", header.recorder, raw, out);
    writeHeaderLine("start", instantText(header.start), raw, out);
    writeHeaderLine("trigger", instantText(header.trigger), raw, out);
    writeHeaderLine("time code", header.timeCode, raw, out);
    writeFields(
        table, "# units: s", [](const Column& column) { return column.unit; }, raw, out);
    writeFields(
        table, "# sides: ", [](const Column& column) { return std::string(column.side); }, raw, out);
    writeFields(
        table, "time", [](const Column& column) { return column.name; }, raw, out);
}

/// How the two formats differ in a sample's line.
struct LineForm {
    std::string_view begin;
    std::string_view end;
    std::string_view missing;
    void (*writeNumber)(double value, Output& out);
};

constexpr LineForm kCsvLine = {"", "\n", "", [](double value, Output& out) { out.number(value); }};
constexpr LineForm kJsonLine = {"[", "]\n", "null", writeNumber<double>};

void writeValue(double value, const LineForm& form, Output& out) {
    out.put(',');
    if (std::isnan(value)) {
        out.write(form.missing);
    } else {
        form.writeNumber(value, out);
    }
}

void writeSamples(const ExportTable& table, const LineForm& form, Output& out) {
    forEachRow(table, [&table, &form, &out](const Row& row) {
        out.write(form.begin);
        form.writeNumber(row.time(), out);
        for (std::size_t i = 0; i < table.analog.size(); ++i) {
            writeValue(row.analog(i), form, out);
        }
        for (std::size_t i = 0; i < table.status.size(); ++i) {
            out.put(',');
            out.put(row.status(i) ? '1' : '0');
        }
        out.write(form.end);
    });
}

} // namespace

void writeCsv(const ExportTable& table, bool raw, Output& out) {
    writeHeader(table, raw, out);
    writeSamples(table, kCsvLine, out);
}

void writeJsonLines(const ExportTable& table, Output& out) {
    writeLine(tableValue(table), out);
    writeSamples(table, kJsonLine, out);
}
