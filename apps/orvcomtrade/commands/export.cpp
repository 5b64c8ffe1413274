#include "commands/export.h"

#include "commands/commonFlags.h"
#include "commands/exportNpy.h"
#include "commands/exportTable.h"
#include "commands/exportText.h"
#include "commands/loadEntry.h"
#include "commands/noteSides.h"
#include "commands/outputTarget.h"
#include "commands/writtenFiles.h"
#include "output/Failure.h"
#include "output/SafeFile.h"
#include "output/StreamFile.h"
#include "output/printable.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace {

enum class ExportFormat { Csv, JsonLines, Npy };

const std::map<std::string, ExportFormat> kExportFormats = {
    {"csv", ExportFormat::Csv}, {"jsonl", ExportFormat::JsonLines}, {"npy", ExportFormat::Npy}};

struct ExportRequest {
    ExportFormat format = ExportFormat::Csv;
    OutputRequest output;
    TableRequest table;
    CsvStyle style;
    bool hasComments = false; ///< what the sidecar has stands before the samples
    bool hasSidecar = false;  ///< beside CSV and JSON lines too
};

/// What the names of a recording's files end in, the one last without which the others mean nothing.
std::vector<std::string> endingsOf(const ExportRequest& wanted) {
    if (wanted.format == ExportFormat::Npy) {
        return {".npy", ".status.npy", ".json"};
    }
    std::vector<std::string> endings = {wanted.format == ExportFormat::Csv ? ".csv" : ".jsonl"};
    if (wanted.hasSidecar) {
        endings.emplace_back(".json");
    }
    return endings;
}

/// By the extension of one file, else CSV.
ExportFormat formatOf(const std::string& target) {
    const std::size_t dot = target.rfind('.');
    const std::string extension = dot == std::string::npos ? "" : target.substr(dot + 1);
    const auto format = kExportFormats.find(extension == "ndjson" ? "jsonl" : extension);
    return format == kExportFormats.end() ? ExportFormat::Csv : format->second;
}

void writeText(const ExportTable& table, const ExportRequest& wanted, Output& out) {
    if (wanted.format == ExportFormat::Csv) {
        writeCsv(table, wanted.hasComments, wanted.style, out);
    } else {
        writeJsonLines(table, wanted.hasComments, out);
    }
}

std::string fileName(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

void writeFiles(const ExportTable& table, const ExportRequest& wanted, const std::vector<std::string>& targets,
                SafeFiles& files) {
    // All are opened first: a target that exists is reported before anything is written.
    std::vector<SafeFile*> opened;
    opened.reserve(targets.size());
    for (const std::string& target : targets) {
        opened.push_back(&files.add(target));
    }
    if (wanted.format == ExportFormat::Npy) {
        writeNpyArrays(table, *opened[0], *opened[1]);
        writeSidecar(table, {{"values", fileName(targets[0])}, {"states", fileName(targets[1])}}, *opened[2]);
    } else {
        writeText(table, wanted, *opened[0]);
        if (wanted.hasSidecar) {
            writeSidecar(table, {{"table", fileName(targets[0])}}, *opened[1]);
        }
    }
    files.publish();
}

/// One file that is named keeps its name, whatever its extension; those beside it get theirs.
std::vector<std::string> fileTargets(const Entry& entry, const Request& request, const ExportRequest& wanted) {
    std::vector<std::string> targets = endingsOf(wanted);
    const std::string base = targetBase(entry, request, wanted.output, targets.front());
    for (std::string& target : targets) {
        target.insert(0, base);
    }
    if (isOneFile(request, wanted.output) && wanted.format != ExportFormat::Npy) {
        targets.front() = wanted.output.target;
    }
    return targets;
}

/// Throws a Failure for what can't be done: several recordings, or more than one file, to standard output or a pipe.
void checkExport(const Request& request, const ExportRequest& wanted) {
    const bool isOneStream = wanted.output.target.empty() || isStream(wanted.output.target);
    if (wanted.format == ExportFormat::Npy && wanted.table.base != TimeBase::Relative &&
        wanted.table.base != TimeBase::Trigger) {
        throw Failure(kWrongUsage, "--format npy holds only numbers: it needs --time relative or trigger");
    }
    if (!isOneStream) {
        return;
    }
    if (request.several()) {
        throw Failure(kWrongUsage, "a folder, or several recordings, need --output FOLDER");
    }
    if (wanted.format == ExportFormat::Npy) {
        throw Failure(kWrongUsage, "--format npy needs --output: it makes three files");
    }
    if (wanted.hasSidecar) {
        throw Failure(kWrongUsage, "--sidecar needs --output: it makes two files");
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
            targets.push_back(targetBase(entry, request, wanted.output, endingsOf(wanted).front()));
        }
    }
    return targets;
}

/// Where values stand at the times of the samples though they were taken later.
void noteSkew(const Recording& recording, const Entry& entry, Job& out) {
    const auto skewed = std::count_if(recording.header.analog.begin(), recording.header.analog.end(),
                                      [](const auto& channel) { return channel.skew != 0.0; });
    if (skewed > 0) {
        out.note(fmt::format("{}: {} of {} analog channels have a skew, which is not applied; --skew apply does that",
                             shownPath(entry.path), skewed, recording.header.analog.size()));
    }
}

/// To `stream` where the output is one.
void exportRecording(const Entry& entry, const Request& request, const ExportRequest& wanted, StreamFile* stream,
                     Job& out) {
    const bool isOneStream = wanted.output.target.empty() || stream != nullptr;
    const std::vector<std::string> targets =
        isOneStream ? std::vector<std::string>() : fileTargets(entry, request, wanted);
    if (!isOneStream && isLeftOut(entry, request, wanted.output, targets.back(), out)) {
        return;
    }
    const Recording recording = loadEntry(entry, request, out);
    noteSides(recording, entry, request, out);
    const ExportTable table = exportTable(recording, entry.path, wanted.table);
    if (wanted.table.keepsSkew) {
        noteSkew(recording, entry, out);
    }
    if (wanted.output.target.empty()) {
        writeText(table, wanted, out);
        return;
    }
    if (stream != nullptr) {
        writeText(table, wanted, *stream);
        stream->flush();
        return;
    }
    for (const std::string& target : targets) {
        refuseToReplace({entry.path, recording.cfgFile, recording.datFile}, target);
    }
    makeFolderOf(targets.front());
    SafeFiles files(wanted.output.replaces());
    writeFiles(table, wanted, targets, files);
    reportWritten(entry, request, targets, std::nullopt, out);
}

class Export : public Command {
public:
    Export() : Command(_describe()) {
        Flag format = choiceFlag("-f,--format", "FORMAT", "csv, jsonl or npy (default: by the extension of the output)",
                                 kExportFormats, _wanted.format);
        format.take = [this, take = format.take](const std::string& text) {
            _hasFormat = true;
            return take(text);
        };
        add(std::move(format).with("csv, unless an extension says otherwise."));
        add(outputFlag(
            _wanted.output, "File, or folder (for several: always); default: standard output",
            "For one recording named by a file it is a file, or a folder that exists or ends in a slash. Otherwise it "
            "is a folder, which is created if needed. Recordings found in a folder keep their place in it; with "
            "several folders, their names are kept as well. Several recordings, and npy, need it."));
        add(switchFlag("--comments", "Write everything else that is recorded before the samples", _wanted.hasComments)
                .with("As lines that begin with # in CSV, as an object in JSON lines."));
        add(switchFlag("--sidecar", "Write everything else that is recorded to a .json next to the file",
                       _wanted.hasSidecar)
                .with("Station, times, time codes, rates; of each channel id, phase, component, unit, side, factors, "
                      "skew, range, ratio. npy always has it."));
        add(timeFlag(_wanted.table.base));
        add(skewFlag(_wanted.table.keepsSkew,
                     "keep (default): values as sampled; apply: those at the times of the samples"));
        add(csvFlags(_wanted.style));
        add(forceFlags(request, _wanted.output));
        add(readingFlags(request));
    }

protected:
    std::vector<std::string> targets() override {
        if (!_hasFormat && request.selection.single) {
            _wanted.format = formatOf(_wanted.output.target);
        }
        checkExport(request, _wanted);
        refuseSharedTargets(request.selection, endingsOf(_wanted));
        return isStream(_wanted.output.target) ? std::vector<std::string>() : exportTargets(request, _wanted);
    }

    void openOutputs() override {
        if (isStream(_wanted.output.target)) {
            _stream = std::make_unique<StreamFile>(_wanted.output.target);
        }
    }

    std::vector<std::string> outcomes() const override { return {"written", "skipped", "failed"}; }

    void perform(const Entry& entry, Job& out) override {
        exportRecording(entry, request, _wanted, _stream.get(), out);
    }

private:
    static Description _describe() {
        return {
            "export",
            "Write every sample of each recording",
            {"csv: a line of names, then a line for each sample: its time in seconds, the analog values, the states as "
             "0 and 1. A missing value is an empty field.",
             "jsonl: a JSON object for each sample, with time and each channel by its name. A missing value, or one "
             "that is not finite, is null.",
             "npy: three files. The .npy is an array of double-precision numbers: a row for each sample, with the time "
             "and the analog values, NaN where one is missing. The .status.npy is an array of bytes with the states. "
             "The .json has the rest, as an object.",
             "Numbers are in the shortest form that reads back as the same number."},
            {{"All samples of all recordings, with primary values",
              "orvcomtrade export recordings --side primary --output tables"},
             {"Into a pipe, with the time in UTC", "orvcomtrade export transformer_inrush.cfg --time utc | head -n 3"},
             {"For Excel where the decimal sign is a comma",
              "orvcomtrade export feeder_earth_fault.cfg --excel --output feeder.csv"}}};
    }

    bool _hasFormat = false;
    std::unique_ptr<StreamFile> _stream;

    ExportRequest _wanted;
};

} // namespace

std::unique_ptr<Command> makeExport() {
    return std::make_unique<Export>();
}
