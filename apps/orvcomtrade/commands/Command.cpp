#include "commands/Command.h"

#include "input/loadRecording.h"
#include "input/openArchives.h"
#include "input/pathList.h"
#include "output/Failure.h"
#include "output/printable.h"
#include "output/writeWhole.h"
#include "sandbox/confine.h"

#include <algorithm>
#include <iterator>
#include <unistd.h>

void Command::add(std::vector<Flag> flags) {
    std::move(flags.begin(), flags.end(), std::back_inserter(_flags));
}

void Command::readLists() {
    for (const std::string& list : request.lists) {
        const std::vector<std::string> paths = pathList(list, request.listsHaveNuls);
        request.paths.insert(request.paths.end(), paths.begin(), paths.end());
    }
}

std::vector<std::string> Command::takeCatalogues() {
    const auto others = std::stable_partition(request.paths.begin(), request.paths.end(), isCatalogue);
    std::vector<std::string> catalogues(request.paths.begin(), others);
    request.paths.erase(request.paths.begin(), others);
    if (!request.takesCatalogues && !catalogues.empty()) {
        throw Failure(kWrongUsage,
                      printable(catalogues.front()) + ": this is a catalogue; only list, report and view take one");
    }
    if (catalogues.empty() && !request.wanted.root.empty()) {
        throw Failure(kWrongUsage, "--root is for a catalogue, and none is named");
    }
    return catalogues;
}

void Command::_collect() {
    const std::vector<std::string> catalogues = takeCatalogues();
    const bool isOne = catalogues.size() + request.paths.size() == 1;
    EntryList& selection = request.selection;
    selection = collectRecordings(request.paths, search());
    selection.single = selection.single && request.lists.empty() && catalogues.empty();
    for (const std::string& catalogue : catalogues) {
        EntryList found = recordingsInCatalogue(catalogue, request.wanted, isOne);
        std::move(found.entries.begin(), found.entries.end(), std::back_inserter(selection.entries));
        std::move(found.notes.begin(), found.notes.end(), std::back_inserter(selection.notes));
    }
}

bool Command::isWanted(const Entry& entry) const {
    const RecordingFilter& filter = request.wanted.filter;
    return entry.isChosen || filter.isEmpty() || filter.isWanted(openRecording(entry, request.load).header);
}

Search Command::search() const {
    return {request.followsLinks, request.entersArchives, request.load.archive.memberBytes, outputFolder()};
}

int Command::run() {
    readLists();
    prepare();
    _collect();
    for (const std::string& note : request.selection.notes) {
        if (!request.quiet) {
            writeWhole(STDERR_FILENO, "orvcomtrade: " + note + "\n");
        }
    }
    const std::vector<std::string> written = targets();
    openOutputs();
    if (!request.unconfined) {
        confine(request.selection, written);
    }
    openArchives(request.selection, request.load.archive);
    targets(); // of what came out of the archives
    const RunOptions options{request.jobs, request.json, !written.empty(), request.quiet, outcomes(), heading()};
    return runRecordings(request.selection, options, [this](const Entry& entry, Job& job) { perform(entry, job); });
}
