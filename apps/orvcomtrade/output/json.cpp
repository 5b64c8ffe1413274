#include "output/json.h"

Json recordingLine(const std::string& path, bool ok) {
    Json line;
    line["path"] = path;
    line["ok"] = ok;
    return line;
}

std::string lineText(const Json& value) {
    return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

void writeLine(const Json& value, Output& out) {
    out.write(lineText(value));
    out.put('\n');
}

void openArray(const Json& object, const char* name, Output& out) {
    std::string text = lineText(object);
    text.pop_back(); // the brace
    out.write(text);
    out.print(",\"{}\":[", name);
}

void closeArray(Output& out) {
    out.write("]}\n");
}

Json instantValue(const std::optional<OrvComtradeIntake::Instant>& instant) {
    return instant ? Json(instant->text()) : Json();
}

Json textValue(const std::string& text) {
    return text.empty() ? Json() : Json(text);
}
