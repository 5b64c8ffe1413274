#include "exportText.h"

#include "printable.h"

#include <cmath>
#include <string>
#include <string_view>

using namespace OrvComtradeLib;

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

void writeHeader(const ExportTable& table, Output& out) {
    const auto& prepared = table.source.prepared;
    const Cfg& cfg = table.source.comtrade.cfg;
    writeHeaderLine("recording", table.recording, out);
    writeHeaderLine("station", stationText(cfg.stationName), out);
    writeHeaderLine("recorder", stationText(cfg.recorderId), out);
    writeHeaderLine("start", prepared.start ? prepared.start->text() : "", out);
    writeHeaderLine("trigger", prepared.trigger ? prepared.trigger->text() : "", out);
    writeHeaderLine("time code", prepared.timeCode, out);
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
    bool tellsInfinity; ///< a number may be "inf"
};

constexpr LineForm kCsvLine = {"", "\n", "", true};
constexpr LineForm kJsonLine = {"[", "]\n", "null", false};

void writeValue(double value, bool isMissing, const LineForm& form, Output& out) {
    out.put(',');
    if (isMissing || std::isnan(value) || (std::isinf(value) && !form.tellsInfinity)) {
        out.write(form.missing);
    } else {
        out.number(value);
    }
}

void writeSamples(const ExportTable& table, const LineForm& form, Output& out) {
    MissingValues missing(table.source);
    for (const Sample& sample : table.source.comtrade.dat.samples) {
        out.write(form.begin);
        out.number(sample.time);
        for (std::size_t i = 0; i < sample.analogValues.size(); ++i) {
            writeValue(sample.analogValues[i], missing.any() && missing.contains(i, sample.index), form, out);
        }
        for (const bool state : sample.binaryValues) {
            out.put(',');
            out.put(state ? '1' : '0');
        }
        out.write(form.end);
    }
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
