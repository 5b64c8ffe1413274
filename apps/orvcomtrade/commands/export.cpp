#include "commands/export.h"

#include "commands/exportNpy.h"
#include "commands/exportTable.h"
#include "commands/exportText.h"
#include "commands/loadEntry.h"
#include "commands/outputTarget.h"
#include "output/Failure.h"
#include "output/SafeFile.h"
#include "output/json.h"
#include "output/printable.h"

#include <fmt/format.h>

#include <string>
#include <vector>

namespace {

void writeText(const ExportTable& table, const ExportRequest& wanted, Output& out) {
    if (wanted.format == ExportFormat::Csv) {
        writeCsv(table, wanted.raw, out);
    } else {
        writeJsonLines(table, out);
    }
}

std::string fileName(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

std::vector<std::string> targetsOf(const std::string& base, ExportFormat format) {
    std::vector<std::string> targets = endingsOf(format);
    for (std::string& target : targets) {
        target.insert(0, base);
    }
    return targets;
}

void writeFiles(const ExportTable& table, const ExportRequest& wanted, const std::vector<std::string>& targets,
                SafeFiles& files) {
    if (wanted.format == ExportFormat::Npy) {
        // All three are opened first: a target that exists is reported before anything is written.
        SafeFile& values = files.add(targets[0]);
        SafeFile& states = files.add(targets[1]);
        SafeFile& sidecar = files.add(targets[2]);
        writeNpyArrays(table, values, states);
        writeNpySidecar(table, fileName(targets[0]), fileName(targets[1]), sidecar);
    } else {
        writeText(table, wanted, files.add(targets[0]));
    }
    files.publish();
}

void reportFiles(const Entry& entry, const Request& request, const std::vector<std::string>& targets, Job& out) {
    if (request.json) {
        Json line = recordingLine(entry.path, true);
        setPaths(line, "files", targets);
        writeLine(line, out);
        return;
    }
    for (const std::string& target : targets) {
        out.print("{}: written to {}\n", printable(entry.path), printable(target));
    }
}

std::vector<std::string> fileTargets(const Entry& entry, const Request& request, const ExportRequest& wanted) {
    const std::string extension = endingsOf(wanted.format).front();
    const bool named = isOneFile(request, wanted.output) && wanted.format != ExportFormat::Npy;
    return named ? std::vector<std::string>{wanted.output.target}
                 : targetsOf(targetBase(entry, request, wanted.output, extension), wanted.format);
}

} // namespace

std::vector<std::string> endingsOf(ExportFormat format) {
    switch (format) {
    case ExportFormat::Csv:
        return {".csv"};
    case ExportFormat::JsonLines:
        return {".jsonl"};
    case ExportFormat::Npy:
        break;
    }
    return {".npy", ".status.npy", ".json"};
}

void checkExport(const Request& request, const ExportRequest& wanted) {
    if (!wanted.output.target.empty()) {
        return;
    }
    if (request.several()) {
        throw Failure(kWrongUsage, "several recordings need --output FOLDER");
    }
    if (wanted.format == ExportFormat::Npy) {
        throw Failure(kWrongUsage, "--format npy needs --output: it makes three files");
    }
    if (request.json) {
        throw Failure(kWrongUsage, "--json reports which files were written, and needs --output; the data as JSON "
                                   "lines are --format jsonl");
    }
}

std::vector<std::string> exportTargets(const Request& request, const ExportRequest& wanted) {
    std::vector<std::string> targets;
    for (const Entry& entry : request.selection.entries) {
        if (!wanted.output.target.empty()) {
            targets.push_back(targetBase(entry, request, wanted.output, endingsOf(wanted.format).front()));
        }
    }
    return targets;
}

void exportRecording(const Entry& entry, const Request& request, const ExportRequest& wanted, Job& out) {
    const Recording recording = loadEntry(entry, request, out);
    const ExportTable table = exportTable(recording, entry.path);
    if (wanted.output.target.empty()) {
        writeText(table, wanted, out);
        return;
    }
    const std::vector<std::string> targets = fileTargets(entry, request, wanted);
    for (const std::string& target : targets) {
        refuseToReplace({entry.path, recording.cfgFile, recording.datFile}, target);
    }
    makeFolderOf(targets.front());
    SafeFiles files(wanted.output.replace);
    writeFiles(table, wanted, targets, files);
    reportFiles(entry, request, targets, out);
}
