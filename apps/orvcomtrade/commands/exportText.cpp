#include "commands/exportText.h"

#include "output/printable.h"

#include <cmath>
#include <optional>
#include <string>
#include <string_view>

using OrvComtradeIntake::Header;
using OrvComtradeIntake::Instant;

namespace {

/// A field of a CSV line (RFC 4180).
std::string quoted(const std::string& text) {
    if (text.find_first_of(",\"") == std::string::npos) {
        return text;
    }
    std::string result = "\"";
    for (const char character : text) {
        result += character == '"' ? "\"\"" : std::string(1, character);
    }
    return result + '"';
}

void writeHeaderLine(const char* name, const std::string& value, Output& out) {
    out.print("# {}:{}{}\n", name, value.empty() ? "" : " ", printable(value));
}

/// One field for the time, then one for each channel.
template <class Field> void writeFields(const ExportTable& table, const char* time, Field field, Output& out) {
    out.write(time);
    for (const Column& column : table.analog) {
        out.print(",{}", quoted(printable(field(column))));
    }
    for (const Column& column : table.status) {
        out.print(",{}", quoted(printable(field(column))));
    }
    out.put('\n');
}

std::string instantText(const std::optional<Instant>& instant) {
    return instant ? instant->text() : "";
}

void writeHeader(const ExportTable& table, Output& out) {
    const Header& header = table.source.header;
    writeHeaderLine("recording", table.recording, out);
    writeHeaderLine("station", header.station, out);
    writeHeaderLine("recorder", header.recorder, out);
    writeHeaderLine("start", instantText(header.start), out);
    writeHeaderLine("trigger", instantText(header.trigger), out);
    writeHeaderLine("time code", header.timeCode, out);
    writeFields(
        table, "# units: s", [](const Column& column) { return column.unit; }, out);
    writeFields(
        table, "# sides: ", [](const Column& column) { return std::string(column.side); }, out);
    writeFields(
        table, "time", [](const Column& column) { return column.name; }, out);
}

/// How the two formats differ in a sample's line.
struct LineForm {
    std::string_view begin;
    std::string_view end;
    std::string_view missing;
    bool hasInfinity; ///< a number may be "inf"
};

constexpr LineForm kCsvLine = {"", "\n", "", true};
constexpr LineForm kJsonLine = {"[", "]\n", "null", false};

void writeValue(double value, const LineForm& form, Output& out) {
    out.put(',');
    if (std::isnan(value) || (std::isinf(value) && !form.hasInfinity)) {
        out.write(form.missing);
    } else {
        out.number(value);
    }
}

void writeSamples(const ExportTable& table, const LineForm& form, Output& out) {
    forEachRow(table, [&table, &form, &out](const Row& row) {
        out.write(form.begin);
        out.number(row.time());
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

void writeCsv(const ExportTable& table, Output& out) {
    writeHeader(table, out);
    writeSamples(table, kCsvLine, out);
}

void writeJsonLines(const ExportTable& table, Output& out) {
    writeLine(tableValue(table), out);
    writeSamples(table, kJsonLine, out);
}
