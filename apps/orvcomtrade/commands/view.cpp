#include "commands/view.h"

#include "commands/commonFlags.h"
#include "commands/filterFlags.h"
#include "commands/outputTarget.h"
#include "commands/writtenFiles.h"
#include "input/intakeRecording.h"
#include "input/verdictOn.h"
#include "output/Failure.h"
#include "output/SafeFile.h"
#include "output/pageFile.h"
#include "output/writeWhole.h"
#include "sandbox/Opener.h"

#include <algorithm>
#include <mutex>
#include <optional>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

constexpr const char* kExtension = ".html";
constexpr const char* kSkipped = "skipped";
constexpr std::size_t kMostOpened = 8;

std::string targetOf(const Entry& entry, const Request& request, const OutputRequest& output) {
    return isOneFile(request, output) ? output.target : targetBase(entry, request, output, kExtension) + kExtension;
}

void writeFile(const Entry& entry, const OrvComtradeIntake::Opened& opened, const std::string& target, bool replace,
               OrvComtradePage::PageOptions options) {
    refuseToReplace({entry.path, opened.cfgFile(), opened.datFile()}, target);
    makeFolderOf(target);
    SafeFiles files(replace);
    options.verdict = verdictOn(entry.path, opened.readable(), opened.findings()).words;
    writePageOf(entry.path, opened, std::move(options), files.add(target));
    files.publish();
}

class View : public Command {
public:
    View() : Command(_describe()) {
        Flag output = outputFlag(_output, "File, or folder (for several: always)",
                                 "For one recording named by a file it is a file, or a folder that exists or ends in a "
                                 "slash. Otherwise it is a folder, which is created if needed. Recordings found in a "
                                 "folder keep their place in it; with several folders, their names are kept as well.");
        output.isRequired = true;
        add(std::move(output));
        add(switchFlag("--open", "Show the pages once they are written", _opens)
                .with("Of many pages the first 8 are shown. xdg-open shows them; it is started by a process that reads "
                      "no recording."));
        add(fullBytesFlag(_options.fullBytes));
        add(filterFlags(request));
        add(forceFlags(request, _output));
        add(readingFlags(request, false));
    }

    int run() override {
        const int status = Command::run();
        if (_opens && !_written.empty()) {
            std::sort(_written.begin(), _written.end());
            _written.resize(std::min(_written.size(), kMostOpened));
            const std::string problem = _opener.open(_written);
            if (!problem.empty()) {
                writeWhole(STDERR_FILENO, "orvcomtrade: " + problem + "\n");
            }
        }
        return status;
    }

protected:
    void prepare() override {
        _options.side = request.load.intake.side;
        if (_opens) {
            _opener.begin();
        }
    }

    std::vector<std::string> targets() override {
        refuseSharedTargets(request.selection, {kExtension});
        std::vector<std::string> targets;
        for (const Entry& entry : request.selection.entries) {
            targets.push_back(targetOf(entry, request, _output));
        }
        return targets;
    }

    std::vector<std::string> outcomes() const override { return {"written", kSkipped, "failed"}; }

    void perform(const Entry& entry, Job& out) override {
        const std::string target = targetOf(entry, request, _output);
        if (!isWanted(entry)) {
            out.setOutcome(kSkipped);
            return;
        }
        if (isLeftOut(entry, request, _output, target, out)) {
            return;
        }
        const Readable readable = openReadable(entry, request.load.intake);
        if (!readable.objection.empty()) {
            out.note(readable.objection);
        }
        OrvComtradePage::PageOptions options = _options;
        options.threads = request.jobs / request.selection.entries.size(); // those that no other recording uses
        writeFile(entry, readable.opened, target, _output.replaces(), std::move(options));
        reportWritten(entry, request, {target}, std::nullopt, out);
        const std::lock_guard<std::mutex> lock(_mutex);
        _written.push_back(target);
    }

private:
    static Description _describe() {
        return {"view",
                "Write each recording as an interactive page for a browser",
                {"A page is one HTML file. It holds the header, the findings and every sample of the recording as "
                 "recorded, and it needs no server, no connection and no other file: it loads nothing from anywhere. "
                 "Any browser since Chromium 80, Firefox 113 and Safari 16.4 shows it.",
                 "It has stacked traces with linked zoom, two cursors that snap to changes of states, values as "
                 "recorded, primary and secondary, RMS, phasors and harmonics of the cycle before a cursor, and the "
                 "samples of a range as CSV. Press ? for its keys. Status channels that never change are folded. The "
                 "address keeps the view, so that a link leads to it.",
                 "The path may be a catalogue: pages are then made of those of its recordings that the filters select.",
                 "Values are exact, and so are times. RMS, phasors and harmonics are those of the last cycle of the "
                 "nominal frequency; where there is none, the page says why."},
                {{"A page of one recording", "orvcomtrade view recordings/feeder_earth_fault.cfg --output feeder.html"},
                 {"Pages of all recordings of a folder", "orvcomtrade view recordings --output pages"}},
                {"--output FILE PATH..."}};
    }

    OutputRequest _output;
    OrvComtradePage::PageOptions _options;
    bool _opens = false;
    Opener _opener;
    std::mutex _mutex;
    std::vector<std::string> _written;
};

} // namespace

std::unique_ptr<Command> makeView() {
    return std::make_unique<View>();
}
