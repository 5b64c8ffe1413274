#include "commands/report.h"

#include "commands/SiteRecord.h"
#include "commands/commonFlags.h"
#include "commands/filterFlags.h"
#include "commands/outputTarget.h"
#include "input/channelNames.h"
#include "input/intakeRecording.h"
#include "input/verdictOn.h"
#include "output/Failure.h"
#include "output/SafeFile.h"
#include "output/clockTime.h"
#include "output/json.h"
#include "output/pageFile.h"
#include "output/printable.h"

#include <OrvComtradePage/Index.h>
#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <mutex>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace fs = std::filesystem;
using OrvComtradeIntake::Opened;
using OrvComtradePage::IndexRow;

namespace {

constexpr const char* kIndex = "index.html";
constexpr const char* kRecord = "report.json";
constexpr const char* kPages = "pages"; // below the folder of the site: no page can be named like the list
constexpr std::size_t kOperatedNamed = 4;

/// Lists of a folder are as many steps up as the link is deep.
std::string indexLinkFrom(const std::string& link) {
    std::string up;
    for (std::ptrdiff_t i = std::count(link.begin(), link.end(), '/'); i > 0; --i) {
        up += "../";
    }
    return up + kIndex;
}

IndexRow rowOf(const Entry& entry, const Opened& opened, const OrvComtradePage::PageSummary& summary) {
    const OrvComtradeIntake::Header& header = opened.header();
    const Verdict verdict = verdictOn(entry.path, opened.readable(), opened.findings());
    IndexRow row;
    row.start = header.start ? clockText(*header.start) : "";
    row.station = printable(header.station);
    row.recorder = printable(header.recorder);
    row.duration = summary.lastTime;
    row.analog = header.analog.size();
    row.status = header.status.size();
    row.operatedCount = summary.operated.size();
    for (std::size_t i = 0; i < std::min(summary.operated.size(), kOperatedNamed); ++i) {
        const OrvComtradeIntake::StatusInfo& channel = header.status.at(summary.operated[i]);
        row.operated.push_back(clipped(printable(channel.id.empty() ? statusName(channel) : channel.id)));
    }
    row.verdict = verdict.name;
    row.sentence = verdict.words;
    row.picture = OrvComtradePage::pictureOf(summary);
    return row;
}

class Report : public Command {
public:
    Report() : Command(_describe()) {
        Flag output = outputFlag(_output, "Folder of the site, created if needed",
                                 "The list is its index.html; the pages are in its folder pages, in the places of "
                                 "their recordings. A folder that already holds a site is brought up to date. If it "
                                 "lies in a folder that is searched, it is left out of the search.");
        output.isRequired = true;
        output.value = "FOLDER";
        add(std::move(output));
        add(switchFlag("--all", "Make every page again, not only those of recordings that have changed", _all));
        add(fullBytesFlag(_page.fullBytes));
        add(filterFlags(request));
        add(forceFlag(request, _output));
        add(readingFlags(request, false));
    }

    int run() override {
        const int status = Command::run();
        _finish();
        return status;
    }

protected:
    void prepare() override { _page.side = request.load.intake.side; }

    std::string outputFolder() const override { return _output.target; }

    std::vector<std::string> targets() override {
        refuseSharedTargets(request.selection, {".html"});
        const std::string index = _inSite(kIndex);
        std::error_code error;
        if (!_output.replaces() && fs::exists(index, error) && !fs::exists(_inSite(kRecord), error)) {
            throw Failure(kRecordingProblem,
                          printable(index) + ": exists already, and report did not write it; --force replaces it");
        }
        makeFolderOf(index);
        if (!_all) {
            _before = SiteRecord::read(_inSite(kRecord), _options());
        }
        _rows.resize(request.selection.entries.size());
        return {index};
    }

    void perform(const Entry& entry, Job& out) override {
        IndexRow& row = _rows.at(static_cast<std::size_t>(&entry - request.selection.entries.data()));
        if (!isWanted(entry)) {
            return;
        }
        row.file = printable(entry.target);
        try {
            _perform(entry, row, out);
        } catch (const NotARecording&) {
            row.file.clear();
            throw;
        } catch (const Failure& failure) {
            row.error = failure.what();
            throw;
        }
    }

private:
    static Description _describe() {
        return {"report",
                "Write a site for a folder: a list of its recordings, and a page for each",
                {"The list can be sorted and searched. It shows for each recording when it began, station, recorder, "
                 "duration, channels, the status channels that changed, the verdict of check, and a small picture of "
                 "its first currents. Its pages are those of view. The site consists of files and needs no server: a "
                 "browser shows them from a disk.",
                 "A recording that cannot be read has a row that says why, and the exit status is 1. Run again, the "
                 "command makes only the pages of recordings that have changed; report.json in the folder of the site "
                 "records what each page was made of.",
                 "The path may be a catalogue: the site then has those of its recordings that the filters select."},
                {{"A site of all recordings of a folder", "orvcomtrade report recordings --output site"}},
                {"--output FOLDER PATH..."}};
    }

    std::string _inSite(const std::string& name) const { return (fs::path(_output.target) / name).string(); }

    /// What the pages depend on beside the recordings.
    std::string _options() const {
        return fmt::format("{} {} {}", request.load.intake.encoding, _page.fullBytes, static_cast<int>(_page.side)) +
               (request.load.intake.acceptsAnyNumbers ? " force" : "");
    }

    void _perform(const Entry& entry, IndexRow& row, Job& out) {
        const std::string link = (fs::path(kPages) / (entry.target + ".html")).string();
        const std::string target = _inSite(link);
        const SitePage* const before = _before.current(entry.path);
        std::error_code error;
        if (before != nullptr && fs::exists(target, error)) {
            row = before->row;
            _remember(entry.path, *before);
            _say(entry, target, false, out);
            return;
        }
        const Readable readable = openReadable(entry, request.load.intake);
        const Opened& opened = readable.opened;
        if (!readable.objection.empty()) {
            out.note(readable.objection);
        }
        SitePage page;
        page.sources = sourcesOf(opened.cfgFile(), opened.datFile()); // before the data are read
        refuseToReplace({entry.path, opened.cfgFile(), opened.datFile()}, target);
        makeFolderOf(target);
        SafeFiles files(true);
        OrvComtradePage::PageOptions options = _page;
        options.verdict = verdictOn(entry.path, opened.readable(), opened.findings()).words;
        options.indexLink = indexLinkFrom(link);
        const OrvComtradePage::PageSummary summary =
            writePageOf(entry.path, opened, std::move(options), files.add(target));
        files.publish();
        const std::string name = row.file;
        row = rowOf(entry, opened, summary);
        row.file = name;
        row.link = link;
        page.row = row;
        _remember(entry.path, std::move(page));
        _say(entry, target, true, out);
    }

    void _remember(const std::string& path, SitePage page) {
        const std::lock_guard<std::mutex> lock(_mutex);
        _after.add(path, std::move(page));
    }

    void _say(const Entry& entry, const std::string& target, bool isNew, Job& out) const {
        if (request.json) {
            Json line = recordingLine(entry.path, true);
            setPaths(line, "files", {target});
            line["new"] = isNew;
            writeLine(line, out);
        } else if (!request.quiet) {
            out.print("{}: {} {}\n", shownPath(entry.path), isNew ? "written to" : "unchanged,", printable(target));
        }
    }

    /// The list, of whatever became of the recordings.
    void _finish() {
        const std::vector<Entry>& entries = request.selection.entries;
        std::vector<IndexRow> rows;
        for (std::size_t i = 0; i < _rows.size(); ++i) {
            IndexRow& row = _rows[i];
            if (!entries[i].problem.empty()) {
                row.file = printable(entries[i].path);
                row.error = entries[i].problem;
            }
            if (!row.file.empty()) {
                rows.push_back(std::move(row));
            }
        }
        SafeFiles files(true);
        SafeFile& record = files.add(_inSite(kRecord));
        record.write(_after.text(_options()));
        SafeFile& index = files.add(_inSite(kIndex));
        OrvComtradePage::writeIndex("Recordings", rows, [&index](std::string_view text) { index.write(text); });
        files.publish();
    }

    OutputRequest _output;
    OrvComtradePage::PageOptions _page;
    bool _all = false;
    SiteRecord _before;
    SiteRecord _after;
    std::vector<IndexRow> _rows; ///< one for each entry; without a name: left out
    std::mutex _mutex;
};

} // namespace

std::unique_ptr<Command> makeReport() {
    return std::make_unique<Report>();
}
