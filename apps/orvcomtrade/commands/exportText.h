#pragma once

#include "commands/exportTable.h"
#include "output/Output.h"
#include "output/csv.h"

/// A line of names, then a line for each sample; a missing value is empty. With comments, lines that begin with # and
/// have the rest come first.
void writeCsv(const ExportTable& table, bool hasComments, const CsvStyle& style, Output& out);

/// An object for each sample: its time, and each channel by its name; a missing value is null. With comments, an object
/// that says all of the recording comes first.
void writeJsonLines(const ExportTable& table, bool hasComments, Output& out);
