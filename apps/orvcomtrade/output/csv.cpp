#include "output/csv.h"

#include "output/printable.h"

#include <algorithm>
#include <string_view>

namespace {

/// By its first character; a tab and a carriage return, which some take for no beginning, count as well.
bool isFormula(const std::string& text) {
    return !text.empty() && std::string_view("=+-@\t\r").find(text.front()) != std::string_view::npos;
}

std::string inQuotes(const std::string& text, char separator) {
    if (text.find(separator) == std::string::npos && text.find('"') == std::string::npos) {
        return text;
    }
    std::string result = "\"";
    for (const char character : text) {
        result += character == '"' ? "\"\"" : std::string(1, character);
    }
    return result + '"';
}

void writeWithPoint(std::string number, char point, Output& out) {
    std::replace(number.begin(), number.end(), '.', point);
    out.write(number);
}

} // namespace

std::string csvField(const std::string& text, const CsvStyle& style) {
    std::string field = isFormula(text) && !style.raw ? "'" : "";
    field += printable(text);
    return inQuotes(field, style.separator);
}

void writeCsvTime(double time, const CsvStyle& style, Output& out) {
    if (style.point == '.') {
        out.number(time);
    } else {
        writeWithPoint(fmt::format("{}", time), style.point, out);
    }
}

void writeCsvValue(double value, const CsvStyle& style, Output& out) {
    if (style.digits == 0) {
        writeCsvTime(value, style, out);
    } else {
        writeWithPoint(fmt::format("{:.{}g}", value + 0.0, style.digits), style.point, out);
    }
}

void beginCsv(const CsvStyle& style, Output& out) {
    out.write(style.mark ? "\xEF\xBB\xBF" : "");
}
