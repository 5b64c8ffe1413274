#pragma once

#include "output/Output.h"

#include <OrvComtradeIntake/Instant.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// With --json every command prints JSON lines: one object for each recording, in the order of the recordings. Begin an
/// object as `Json::object()`: a null that becomes one where memory runs out can't be destroyed.
using Json = nlohmann::ordered_json;

/// The object that the line of every recording begins as: "path" and "ok".
Json recordingLine(const std::string& path, bool ok);

/// Sets a member to a path. If the path is not UTF-8, also sets the member whose name has "Bytes" appended to the bytes
/// of the path, percent-encoded (RFC 3986).
void setPath(Json& object, const std::string& member, const std::string& path);

/// The same for an array of paths. All of them are percent-encoded if one is not UTF-8.
void setPaths(Json& object, const std::string& member, const std::vector<std::string>& paths);

/// A value as one line of text. Bytes that are not UTF-8 become U+FFFD; invisible characters are escaped (\u202E).
std::string lineText(const Json& value);

/// Whether brackets are nested deeper than in anything that this program writes. Check text of unknown origin with it
/// before parsing: the parser copies and destroys nested values by recursion, which can exhaust the stack.
bool isNestedDeeply(std::string_view text);

/// The number, or null if JSON cannot express it.
template <class Number> void writeNumber(Number value, Output& out) {
    if (std::isfinite(value)) {
        out.number(value);
    } else {
        out.write("null");
    }
}

void writeLine(const Json& value, Output& out);

/// Writes the object without its end, and the beginning of a last member: an array whose values the caller writes.
void openArray(const Json& object, const char* name, Output& out);

/// Ends that array, the object and the line.
void closeArray(Output& out);

/// "2026-11-21T12:34:56.123456789", or null.
Json instantValue(const std::optional<OrvComtradeIntake::Instant>& instant);

/// The text, or null if it is empty.
Json textValue(const std::string& text);
