#pragma once

#include "Output.h"
#include "exportTable.h"

#include <string>

/// The time and the analog values as one little-endian float64 array of samples x (1 + analog channels); a missing
/// value is NaN.
void writeNpyValues(const ExportTable& table, Output& out);

/// The states as one uint8 array of samples x status channels.
void writeNpyStates(const ExportTable& table, Output& out);

/// What the two arrays hold, as a JSON object on one line.
void writeNpySidecar(const ExportTable& table, const std::string& valuesName, const std::string& statesName,
                     Output& out);
