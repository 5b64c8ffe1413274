#pragma once

#include "commands/exportTable.h"
#include "output/Output.h"

/// Lines of "# name,value", a line of titles, and a line for each sample. A missing value is an empty field. Texts that
/// a spreadsheet would take for formulas are protected unless `raw`.
void writeCsv(const ExportTable& table, bool raw, Output& out);

/// An object that names the columns, then an array for each sample. A missing value is null.
void writeJsonLines(const ExportTable& table, Output& out);
