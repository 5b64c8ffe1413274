#include "commands/cut.h"

#include "commands/commonFlags.h"
#include "commands/loadEntry.h"
#include "commands/outputTarget.h"
#include "commands/writeRecording.h"
#include "commands/writtenFiles.h"
#include "input/Window.h"
#include "input/chooseChannels.h"
#include "output/Failure.h"
#include "output/SafeFile.h"
#include "output/counted.h"
#include "output/json.h"
#include "output/printable.h"

#include <OrvComtradeIntake/Opened.h>
#include <fmt/format.h>

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

using OrvComtradeIntake::DataType;
using OrvComtradeIntake::Form;
using OrvComtradeIntake::Losses;
using OrvComtradeIntake::Side;

namespace {

using Revision = std::optional<int>;
using Type = std::optional<DataType>;

const std::map<std::string, Revision> kRevisions = {{"1991", 1991}, {"1999", 1999}, {"2013", 2013}};
const std::map<std::string, Type> kTypes = {{"ascii", DataType::Ascii},
                                            {"binary", DataType::Binary},
                                            {"binary32", DataType::Binary32},
                                            {"float32", DataType::Float32}};

struct CutRequest {
    OutputRequest output;
    WindowRequest window;
    ChannelWishes channels;
    Form form;
};

bool hasExtension(const std::string& path, const char* extension) {
    return std::filesystem::path(path).extension() == extension;
}

Form formOf(const Recording& recording, const Window& window, const CutRequest& wanted) {
    if (window.count == 0 && recording.header.samples != 0) {
        refuseEmptyWindow(recording);
    }
    const ChosenChannels channels = chooseChannels(recording, wanted.channels);
    Form form = wanted.form;
    form.selection.allAnalog = false;
    form.selection.allStatus = false;
    form.selection.analog = channels.analog;
    form.selection.status = channels.status;
    form.selection.first = window.first;
    form.selection.count = window.count;
    return form;
}

/// By a sample or a millisecond, as dates are rounded.
bool holdsTrigger(const Recording& recording, const Window& window) {
    constexpr double slack = 0.001;
    if (!recording.header.start || !recording.header.trigger) {
        return true;
    }
    const double trigger = triggerTime(recording);
    return trigger >= window.start - slack && trigger <= window.end + slack;
}

WrittenRecording write(const Recording& recording, const std::string& base, const Form& form, bool replace) {
    try {
        return writeRecording(*recording.reader->opened(), base, form, replace);
    } catch (const std::invalid_argument& problem) { // BINARY32 in 1999, say
        throw Failure(kWrongUsage, problem.what());
    }
}

/// What the form could not hold as it was recorded.
void noteLosses(const Entry& entry, const Recording& recording, const Form& form, const Losses& losses, Job& out) {
    for (const std::string& what : droppedWords(losses)) {
        out.note(fmt::format("{}: revision {} has no place for {}", shownPath(entry.path),
                             form.revision.value_or(recording.header.revision), what));
    }
    if (!losses.rounded.empty()) {
        out.note(fmt::format("{}: values of {} of {} are rounded to what {} holds", shownPath(entry.path),
                             losses.rounded.size(), counted(form.selection.analog.size(), "analog channel"),
                             typeWord(form.dataType.value_or(recording.header.dataType))));
    }
}

/// The numbers from 1 that channels have in what was written.
std::vector<std::size_t> numbersOf(std::vector<std::size_t> positions) {
    for (std::size_t& position : positions) {
        ++position;
    }
    return positions;
}

void report(const Entry& entry, const Request& request, const Window& window, const Form& form,
            const WrittenRecording& written, Job& out) {
    if (request.json) {
        Json line = recordingLine(entry.path, true);
        line["firstSample"] = window.first + 1;
        line["samples"] = window.count;
        line["analog"] = form.selection.analog.size();
        line["status"] = form.selection.status.size();
        line["rounded"] = numbersOf(written.losses.rounded);
        line["dropped"] = droppedWords(written.losses);
        setPaths(line, "files", written.files);
        writeLine(line, out);
        return;
    }
    if (request.quiet) {
        return;
    }
    out.print("{}: samples {} to {} of {} analog and {} status channel{} written to {}\n", shownPath(entry.path),
              window.first + 1, window.first + window.count, form.selection.analog.size(), form.selection.status.size(),
              form.selection.status.size() == 1 ? "" : "s", printable(written.files.back()));
}

class Cut : public Command {
public:
    Cut() : Command(_describe()) {
        Flag output =
            outputFlag(_wanted.output, "File, or folder (for several recordings: always)",
                       "A file that ends in .cff holds all; otherwise there are a .cfg and a .dat, and, where "
                       "the recording has them, a .hdr and a .inf. In a folder the files have the names of "
                       "the recordings.");
        output.isRequired = true;
        add(std::move(output));
        add(channelFlags(_wanted.channels));
        add(windowFlags(_wanted.window));
        add(choiceFlag("--revision", "YEAR", "Revision of the standard: 1991, 1999 or 2013 (default: as recorded)",
                       kRevisions, _wanted.form.revision));
        add(choiceFlag("--type", "TYPE", "Type of the data: ascii, binary, binary32 or float32 (default: as recorded)",
                       kTypes, _wanted.form.dataType)
                .with("Values stay as recorded, to the last bit, if the type can hold them; otherwise they are scaled "
                      "to its range and rounded, and a note says so."));
        add(switchFlag("--cff", "Write one .cff with everything into the folder, not pairs", _wanted.form.combined));
        add(forceFlags(request, _wanted.output));
        add(readingFlags(request, false));
    }

protected:
    void prepare() override {
        checkWindow(_wanted.window);
        if (request.load.intake.side != Side::Recorded) {
            throw Failure(kWrongUsage, "cut takes no --side: each channel keeps its side");
        }
        _wanted.form.combined = _wanted.form.combined || hasExtension(_wanted.output.target, ".cff");
    }

    std::string outputFolder() const override { return _wanted.output.target; }

    std::vector<std::string> targets() override {
        refuseSharedTargets(request.selection, {".cfg", ".dat", ".cff"});
        std::vector<std::string> targets;
        for (const Entry& entry : request.selection.entries) {
            targets.push_back(_targetOf(entry));
        }
        return targets;
    }

    std::vector<std::string> outcomes() const override { return {"written", "skipped", "failed"}; }

    void perform(const Entry& entry, Job& out) override {
        const std::string base = _targetOf(entry);
        if (isLeftOut(entry, request, _wanted.output, base + (_wanted.form.combined ? ".cff" : ".cfg"), out)) {
            return;
        }
        const Recording recording = loadEntry(entry, request, out);
        naming(entry, [&] {
            const Window window = windowOf(recording, _wanted.window);
            const Form form = formOf(recording, window, _wanted);
            makeFolderOf(base);
            const WrittenRecording written = write(recording, base, form, _wanted.output.replaces());
            reportMissingTexts(*recording.reader->opened(), out);
            if (!holdsTrigger(recording, window)) {
                out.note(shownPath(entry.path) + ": the trigger lies outside the window; its date is kept");
            }
            noteLosses(entry, recording, form, written.losses, out);
            report(entry, request, window, form, written, out);
            return 0;
        });
    }

private:
    std::string _targetOf(const Entry& entry) const {
        const char* const ending = _wanted.form.combined                         ? ".cff"
                                   : hasExtension(_wanted.output.target, ".dat") ? ".dat"
                                                                                 : ".cfg";
        return targetBase(entry, request, _wanted.output, ending);
    }

    static Description _describe() {
        return {"cut",
                "Write some channels and a window of each recording as a recording of its own",
                {"The new recording has the form of the standard. Values and states stay as recorded. The start "
                 "becomes the date of the first sample, to the last digit that dates of the recording have. The "
                 "trigger keeps its date, even outside the window, which a note then reports. End samples count from "
                 "the new beginning, and channels are numbered again from 1."},
                {{"The currents and the trip from 50 ms before the trigger to 200 ms after it, in one file",
                  "orvcomtrade cut feeder_earth_fault.cfg --channel 'I*,Trip' --start=-0.05 --end 0.2 --time trigger "
                  "--output fault.cff"}},
                {"--output FILE PATH", "--output FOLDER PATH..."}};
    }

    CutRequest _wanted;
};

} // namespace

std::unique_ptr<Command> makeCut() {
    return std::make_unique<Cut>();
}
