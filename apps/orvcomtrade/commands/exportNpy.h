#pragma once

#include "commands/exportTable.h"
#include "output/Output.h"

#include <string>
#include <vector>

/// Two little-endian arrays: the time and the analog values as float64, of samples x (1 + analog channels), a missing
/// value NaN; the states as uint8, of samples x status channels.
void writeNpyArrays(const ExportTable& table, Output& values, Output& states);

/// A file that a sidecar belongs to.
struct NamedFile {
    const char* member; ///< of the sidecar that has its name
    std::string name;
};

/// What the files hold, as a JSON object on one line.
void writeSidecar(const ExportTable& table, const std::vector<NamedFile>& files, Output& out);
