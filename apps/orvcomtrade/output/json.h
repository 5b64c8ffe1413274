#pragma once

#include "output/Output.h"

#include <OrvComtradeIntake/Instant.h>
#include <nlohmann/json.hpp>

#include <optional>
#include <string>

/// With --json every command prints JSON lines: one object for each recording, in the order of the recordings.
using Json = nlohmann::ordered_json;

/// The object that the line of every recording begins as: "path" and "ok".
Json recordingLine(const std::string& path, bool ok);

/// As one line of text; bytes that are no UTF-8 become U+FFFD.
std::string lineText(const Json& value);

void writeLine(const Json& value, Output& out);

/// Writes the object without its end, and the beginning of a last member, an array whose values the caller writes.
void openArray(const Json& object, const char* name, Output& out);

/// Ends that array, the object and the line.
void closeArray(Output& out);

/// "2026-11-21T12:34:56.123456789", or null.
Json instantValue(const std::optional<OrvComtradeIntake::Instant>& instant);

/// The text, or null if it is empty.
Json textValue(const std::string& text);
