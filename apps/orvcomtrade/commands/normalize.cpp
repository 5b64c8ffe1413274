#include "commands/normalize.h"

#include "commands/commonFlags.h"
#include "commands/outputTarget.h"
#include "commands/writeRecording.h"
#include "commands/writtenFiles.h"
#include "input/intakeRecording.h"
#include "input/verdictOn.h"
#include "output/Failure.h"
#include "output/SafeFile.h"
#include "output/printable.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <string>
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
    const Readable readable = openReadable(entry, request.load.intake);
    const Opened& opened = readable.opened;
    if (!readable.objection.empty()) {
        out.note(readable.objection);
    }
    makeFolderOf(base);
    std::vector<std::string> targets = writeRecording(opened, base, wanted.form, wanted.output.replaces()).files;
    reportMissingTexts(opened, out);
    std::reverse(targets.begin(), targets.end()); // the configuration first
    reportWritten(entry, request, targets, hasRepairs(opened), out);
}

class Normalize : public Command {
public:
    Normalize() : Command(_describe()) {
        Flag output =
            outputFlag(_wanted.output, "Folder, created if needed",
                       "Recordings found in a folder keep their place in it; with several folders, their names are "
                       "kept as well. If it lies in a folder that is searched, it is left out of the search.");
        output.isRequired = true;
        output.value = "FOLDER";
        add(std::move(output));
        add(choiceFlag("--for", "READER", "Reader of the files: standard (default), or library for the library alone",
                       kReaders, _wanted.form.reader)
                .with("standard is any program that follows the standard. library is a program that uses the library "
                      "alone: its values are in base units and of the side that --side chooses, an option that the "
                      "standard form does not take."));
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
    static Description _describe() {
        return {"normalize",
                "Write each recording as a clean pair of .cfg and .dat into a folder",
                {"The files follow the standard and keep the units, sides and ratios of the recording. The texts of "
                 "its header file and information file are written next to them as .hdr and .inf."},
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
