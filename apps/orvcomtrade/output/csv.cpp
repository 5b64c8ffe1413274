#include "output/csv.h"

#include "output/printable.h"

#include <string_view>

namespace {

/// By its first character; a tab and a carriage return, which some take for no beginning, count as well.
bool isFormula(const std::string& text) {
    return !text.empty() && std::string_view("=+-@\t\r").find(text.front()) != std::string_view::npos;
}

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

} // namespace

std::string csvField(const std::string& text, bool raw) {
    return quoted((isFormula(text) && !raw ? "'" : "") + printable(text));
}
