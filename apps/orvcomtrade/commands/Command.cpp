#include "commands/Command.h"

#include "output/writeWhole.h"
#include "sandbox/confine.h"

#include <iterator>
#include <unistd.h>

void Command::add(std::vector<Flag> flags) {
    std::move(flags.begin(), flags.end(), std::back_inserter(_flags));
}

int Command::run() {
    prepare();
    request.selection = collectRecordings(request.paths, request.followsLinks, outputFolder());
    for (const std::string& note : request.selection.notes) {
        if (!request.quiet) {
            writeWhole(STDERR_FILENO, "orvcomtrade: " + note + "\n");
        }
    }
    const std::vector<std::string> written = targets();
    if (!request.unconfined) {
        confine(request.selection, written);
    }
    const RunOptions options{request.jobs, request.json, !written.empty(), request.quiet, outcomes()};
    return runRecordings(request.selection, options, [this](const Entry& entry, Job& job) { perform(entry, job); });
}
