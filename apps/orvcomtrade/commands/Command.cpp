#include "commands/Command.h"

#include "input/openArchives.h"
#include "input/pathList.h"
#include "output/writeWhole.h"
#include "sandbox/confine.h"

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

Search Command::search() const {
    return {request.followsLinks, request.entersArchives, request.load.archive.memberBytes, outputFolder()};
}

int Command::run() {
    readLists();
    prepare();
    request.selection = collectRecordings(request.paths, search());
    request.selection.single = request.selection.single && request.lists.empty();
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
    const RunOptions options{request.jobs, request.json, !written.empty(), request.quiet, outcomes()};
    return runRecordings(request.selection, options, [this](const Entry& entry, Job& job) { perform(entry, job); });
}
