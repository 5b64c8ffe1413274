#pragma once

#include "Request.h"
#include "runRecordings.h"

enum class ExportFormat { Csv, JsonLines, Npy };

struct ExportRequest {
    ExportFormat format = ExportFormat::Csv;
    OutputRequest output;
};

/// Throws a Failure for what can't be done: several recordings, or binary data, to standard output.
void checkExport(const Request& request, const ExportRequest& wanted);

/// Writes every sample of a recording.
void exportRecording(const Entry& entry, const Request& request, const ExportRequest& wanted, Job& out);
