#pragma once

#include "commands/exportTable.h"
#include "output/Output.h"
#include "output/csv.h"

/// Writes a line of names, then a line for each sample. A missing value is empty. With comments, lines that begin with
/// # come first and hold the header.
void writeCsv(const ExportTable& table, bool hasComments, const CsvStyle& style, Output& out);

/// Writes an object for each sample: its time, and each channel by its name. A missing value is null. With comments, an
/// object with the header comes first.
void writeJsonLines(const ExportTable& table, bool hasComments, Output& out);
