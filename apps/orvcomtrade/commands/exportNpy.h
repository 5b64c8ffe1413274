#pragma once

#include "commands/exportTable.h"
#include "output/Output.h"

#include <string>

/// Two little-endian arrays: the time and the analog values as float64, of samples x (1 + analog channels), a missing
/// value NaN; the states as uint8, of samples x status channels.
void writeNpyArrays(const ExportTable& table, Output& values, Output& states);

/// What the two arrays hold, as a JSON object on one line.
void writeNpySidecar(const ExportTable& table, const std::string& valuesName, const std::string& statesName,
                     Output& out);
