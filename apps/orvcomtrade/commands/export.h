#pragma once

#include "commands/Request.h"
#include "commands/runRecordings.h"

#include <string>
#include <vector>

enum class ExportFormat { Csv, JsonLines, Npy };

struct ExportRequest {
    ExportFormat format = ExportFormat::Csv;
    OutputRequest output;
    bool raw = false; ///< texts of CSV as they are, also where a spreadsheet takes them for formulas
};

/// What the names of a recording's files end in, the one last without which the others mean nothing.
std::vector<std::string> endingsOf(ExportFormat format);

/// Throws a Failure for what can't be done: several recordings, or binary data, to standard output.
void checkExport(const Request& request, const ExportRequest& wanted);

/// What will be written of each recording, without extensions; none where it is standard output.
std::vector<std::string> exportTargets(const Request& request, const ExportRequest& wanted);

/// Writes every sample of a recording.
void exportRecording(const Entry& entry, const Request& request, const ExportRequest& wanted, Job& out);
