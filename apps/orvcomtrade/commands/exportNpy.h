#pragma once

#include "commands/exportTable.h"
#include "output/Output.h"

#include <string>
#include <vector>

/// Writes two little-endian arrays. `values` has the time and the analog values as float64, samples x (1 + analog
/// channels), with NaN for missing values. `states` has the states as uint8, samples x status channels.
void writeNpyArrays(const ExportTable& table, Output& values, Output& states);

/// A file that a sidecar describes.
struct NamedFile {
    const char* member; ///< of the sidecar that has its name
    std::string name;
};

/// Writes what the files hold, as a JSON object on one line.
void writeSidecar(const ExportTable& table, const std::vector<NamedFile>& files, Output& out);
