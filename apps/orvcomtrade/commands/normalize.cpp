#include "commands/normalize.h"

#include "commands/commonFlags.h"
#include "commands/outputTarget.h"
#include "commands/writtenFiles.h"
#include "input/intakeRecording.h"
#include "input/verdictOn.h"
#include "output/Failure.h"
#include "output/SafeFile.h"
#include "output/findingText.h"
#include "output/printable.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

using OrvComtradeIntake::Opened;
using OrvComtradeIntake::Reader;
using OrvComtradeIntake::Side;

namespace {

const std::map<std::string, Reader> kReaders = {{"standard", Reader::Standard}, {"library", Reader::Library}};

struct NormalizeRequest {
    OutputRequest output;
    OrvComtradeIntake::Form form;
};

bool hasRepairs(const Opened& opened) {
    return std::any_of(opened.findings().begin(), opened.findings().end(), isRepaired);
}

/// The extensions of the files that are written, the configuration last: without it the others mean nothing. The
/// standard takes a configuration alone, the library does not.
std::vector<std::string> extensionsOf(const Opened& opened, Reader reader) {
    std::vector<std::string> extensions;
    if (!opened.header().hdr.empty()) {
        extensions.emplace_back(".hdr");
    }
    if (!opened.header().inf.empty()) {
        extensions.emplace_back(".inf");
    }
    if (!opened.datFile().empty() || reader == Reader::Library) {
        extensions.emplace_back(".dat");
    }
    extensions.emplace_back(".cfg");
    return extensions;
}

OrvComtradeIntake::Sink sinkOf(Output* file) {
    return [file](std::string_view bytes) {
        if (file != nullptr) {
            file->write(bytes);
        }
    };
}

/// What the recording may have been read from; extensions in lower case, as those of the files that are written.
std::vector<std::string> originalsOf(const Opened& opened) {
    const std::filesystem::path configuration = opened.cfgFile();
    return {opened.cfgFile(), opened.datFile(), std::filesystem::path(configuration).replace_extension(".hdr").string(),
            std::filesystem::path(configuration).replace_extension(".inf").string()};
}

std::vector<std::string> writeFiles(const Opened& opened, const std::string& base, const NormalizeRequest& wanted) {
    const std::vector<std::string> extensions = extensionsOf(opened, wanted.form.reader);
    for (const std::string& extension : extensions) {
        refuseToReplace(originalsOf(opened), base + extension);
    }
    SafeFiles files(wanted.output.replaces());
    Output* data = nullptr;
    Output* configuration = nullptr;
    for (const std::string& extension : extensions) {
        SafeFile& file = files.add(base + extension);
        if (extension == ".hdr") {
            file.write(opened.header().hdr);
        } else if (extension == ".inf") {
            file.write(opened.header().inf);
        } else {
            (extension == ".dat" ? data : configuration) = &file;
        }
    }
    opened.write(sinkOf(configuration), sinkOf(data), wanted.form);
    files.publish();
    return files.targets();
}

/// A header or information file that can't be read is not written either.
void reportMissingTexts(const Opened& opened, Job& out) {
    for (const OrvComtradeIntake::Finding& finding : opened.findings()) {
        const std::string& file = finding.place.file;
        const bool isError = finding.severity == OrvComtradeIntake::Severity::Error;
        if (isError && file != opened.cfgFile() && file != opened.datFile()) {
            out.note(placeText(finding.place) + ": not written: " + findingSentence(finding));
            out.setStatus(kRecordingProblem);
        }
    }
}

/// Without extension.
std::string targetOf(const Entry& entry, const NormalizeRequest& wanted) {
    return (std::filesystem::path(wanted.output.target) / entry.target).string();
}

/// Throws a Failure for what can't be done: values of one side in the standard's form, which keeps that of each
/// channel.
void checkNormalize(const Request& request, const NormalizeRequest& wanted) {
    if (wanted.form.reader == Reader::Standard && request.load.intake.side != Side::Recorded) {
        throw Failure(kWrongUsage, "--side needs --for library: in the standard's form each channel keeps its side");
    }
}

/// What will be written of each recording, without extensions.
std::vector<std::string> normalizeTargets(const Request& request, const NormalizeRequest& wanted) {
    std::vector<std::string> targets;
    for (const Entry& entry : request.selection.entries) {
        targets.push_back(targetOf(entry, wanted));
    }
    return targets;
}

void normalizeRecording(const Entry& entry, const Request& request, const NormalizeRequest& wanted, Job& out) {
    const std::string base = targetOf(entry, wanted);
    if (isLeftOut(entry, request, wanted.output, base + ".cfg", out)) {
        return;
    }
    const Readable readable = openReadable(entry.path, request.load.intake);
    const Opened& opened = readable.opened;
    if (!readable.objection.empty()) {
        out.note(readable.objection);
    }
    makeFolderOf(base);
    std::vector<std::string> targets = writeFiles(opened, base, wanted);
    reportMissingTexts(opened, out);
    std::reverse(targets.begin(), targets.end()); // the configuration first
    reportWritten(entry, request, targets, hasRepairs(opened), out);
}

class Normalize : public Command {
public:
    Normalize() : Command(describe()) {
        Flag output = outputFlag(_wanted.output, "Folder, made if it is not there",
                                 "Recordings found in a folder keep their place in it; several folders keep their "
                                 "names as well. It is left out of the search where it lies in a folder that is "
                                 "searched.");
        output.isRequired = true;
        add(std::move(output));
        add(choiceFlag("--for", "READER", "Who is to read it: standard (default), or library for the library alone",
                       kReaders, _wanted.form.reader)
                .with("standard is whoever follows the standard; library is a program that uses the library alone: "
                      "values are in base units and of the side that --side chooses, an option that the standard's "
                      "form does not take."));
        add(forceFlags(request, _wanted.output));
        add(readingFlags(request, false));
    }

protected:
    void prepare() override { checkNormalize(request, _wanted); }

    std::string outputFolder() const override { return _wanted.output.target; }

    std::vector<std::string> targets() override {
        refuseSharedTargets(request.selection, {".cfg", ".dat"});
        return normalizeTargets(request, _wanted);
    }

    std::vector<std::string> outcomes() const override { return {"written", "skipped", "failed"}; }

    void perform(const Entry& entry, Job& out) override { normalizeRecording(entry, request, _wanted, out); }

private:
    static Description describe() {
        return {"normalize",
                "Write each recording as a clean pair of .cfg and .dat into a folder",
                {"The files are as the standard asks for: with the units, sides and ratios of the recording. The texts "
                 "of its header and its information file are written beside them as .hdr and .inf."},
                {{"Copies of a folder's recordings that every program reads",
                  "orvcomtrade normalize recordings --output clean"}},
                {"--output FOLDER PATH..."}};
    }

    NormalizeRequest _wanted;
};

} // namespace

std::unique_ptr<Command> makeNormalize() {
    return std::make_unique<Normalize>();
}
