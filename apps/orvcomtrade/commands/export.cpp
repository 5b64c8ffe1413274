#include "commands/export.h"

#include "commands/commonFlags.h"
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

#include <map>
#include <string>
#include <vector>

namespace {

enum class ExportFormat { Csv, JsonLines, Npy };

const std::map<std::string, ExportFormat> kFormats = {
    {"csv", ExportFormat::Csv}, {"jsonl", ExportFormat::JsonLines}, {"npy", ExportFormat::Npy}};

struct ExportRequest {
    ExportFormat format = ExportFormat::Csv;
    OutputRequest output;
    bool raw = false; ///< texts of CSV as they are, also where a spreadsheet takes them for formulas
};

/// What the names of a recording's files end in, the one last without which the others mean nothing.
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

/// Throws a Failure for what can't be done: several recordings, or binary data, to standard output.
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

/// What will be written of each recording, without extensions; none where it is standard output.
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

class Export : public Command {
public:
    Export() : Command(describe()) {
        add(choiceFlag("-f,--format", "FORMAT", "csv (default), jsonl, or npy with a JSON sidecar", kFormats,
                       _wanted.format));
        add(outputFlag(_wanted.output, "File, or folder (for several: always); default standard output",
                       "For one recording that is named by a file it is a file, or a folder that exists or that ends "
                       "in a slash; in every other case it is a folder, which is made if it is not there. Recordings "
                       "found in a folder keep their place in it; several folders keep their names as well. Several "
                       "recordings, and npy, need it."));
        add(switchFlag("--raw", "Write texts as they are into CSV, also where a spreadsheet takes them for formulas",
                       _wanted.raw)
                .with("Without it a text that begins with = + - @, a tab or a carriage return gets an apostrophe."));
        add(forceFlag(request, _wanted.output));
        add(readingFlags(request));
    }

protected:
    std::vector<std::string> targets() override {
        checkExport(request, _wanted);
        refuseSharedTargets(request.selection, endingsOf(_wanted.format));
        return exportTargets(request, _wanted);
    }

    void perform(const Entry& entry, Job& out) override { exportRecording(entry, request, _wanted, out); }

private:
    static Description describe() {
        return {"export",
                "Write every sample of each recording",
                {"csv: lines that begin with # give the recording, its station, recorder, start, trigger and time "
                 "code, and, field by field as in the lines below them, units and sides. Then follow a line of names "
                 "and a line for each sample: its time in seconds, the analog values, the states as 0 and 1. A missing "
                 "value is an empty field.",
                 "jsonl: a JSON object that gives the same, then a JSON array for each sample. A missing value, or one "
                 "that is not finite, is null.",
                 "npy: three files: an array of double-precision numbers, a row for each sample, with the time and the "
                 "analog values, NaN where one is missing (.npy); an array of bytes with the states (.status.npy); and "
                 "a JSON object with the rest (.json).",
                 "Numbers are in the shortest form that reads back as the same number."},
                {{"All samples of all recordings, with primary values",
                  "orvcomtrade export recordings --side primary --output tables"}}};
    }

    ExportRequest _wanted;
};

} // namespace

std::unique_ptr<Command> makeExport() {
    return std::make_unique<Export>();
}
