#include "commands/index.h"

#include "commands/commonFlags.h"
#include "commands/fleetCounts.h"
#include "fleet/IndexRun.h"
#include "output/Failure.h"
#include "output/SafeFile.h"
#include "output/printable.h"
#include "output/writeWhole.h"
#include "sandbox/confine.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

std::string absolutePath(const std::string& path) {
    std::error_code error;
    const fs::path canonical = fs::weakly_canonical(fs::absolute(path), error);
    if (error) {
        throw Failure(kRecordingProblem, fmt::format("{}: {}", printable(path), error.message()));
    }
    std::string text = canonical.string();
    while (text.size() > 1 && text.back() == '/') {
        text.pop_back();
    }
    return text;
}

void enterFolder(const std::string& folder) {
    if (chdir(folder.c_str()) != 0) {
        throw Failure(kRecordingProblem,
                      fmt::format("{}: cannot be searched: {}", printable(folder), std::strerror(errno)));
    }
}

/// What the walk may open; with links that lead anywhere that can't be known before.
EntryList readable(bool followsLinks) {
    EntryList selection;
    selection.entries.push_back({followsLinks ? "/." : "./.", {}, {}, false});
    return selection;
}

class Index : public Command {
public:
    Index() : Command(_describe()) {
        Flag shard{"--shard", "K/N", "Only the K-th of N parts of the archive (default: 1/1)",
                   [this](const std::string& text) {
                       const std::optional<Shard> part = Shard::of(text);
                       _shard = part.value_or(_shard);
                       return part ? std::string() : "a shard is K/N with K from 1 to N, not " + text;
                   }};
        add(std::move(shard).with(
            "A recording belongs to the part that the hash of its path below the folder gives. The parts can be worked "
            "on one after another, at the same time, or on many machines."));
        Flag output =
            outputFlag(_output, "Folder for the index file", "It is named after the part: shard-0001-of-0001.jsonl.");
        output.isRequired = true;
        output.value = "FOLDER";
        add(std::move(output));
        add(readingFlags(request, {"--jobs", "--json", "--archives", "--follow-links", "--no-sandbox"}));
    }

    int run() override {
        if (request.paths.size() != 1) {
            throw WrongWords("index takes one folder", "index");
        }
        IndexOptions options;
        options.shard = _shard;
        options.folder = absolutePath(_output.target);
        options.root = absolutePath(request.paths.front());
        options.jobs = request.jobs;
        options.followsLinks = request.followsLinks;
        options.entersArchives = request.entersArchives;
        options.archive = request.load.archive;
        options.intake = request.load.intake;
        options.onNote = [](const std::string& note) { writeWhole(STDERR_FILENO, "orvcomtrade: " + note + "\n"); };
        const std::string target = options.folder + "/" + _shard.fileName();
        makeFolderOf(target);
        enterFolder(options.root);
        if (!request.unconfined) {
            confine(readable(request.followsLinks), {target});
        }
        const IndexCounts counts = indexArchive(options);
        printFleetCounts(
            (fs::path(_output.target) / _shard.fileName()).string(),
            fmt::format("{} recordings, {} of them unchanged, {} cannot be read", counts.recordings, counts.unchanged,
                        counts.unreadable),
            {{"recordings", counts.recordings}, {"unchanged", counts.unchanged}, {"unreadable", counts.unreadable}},
            request.json);
        return counts.unsearched > 0 ? kRecordingProblem : 0;
    }

private:
    static Description _describe() {
        return {"index",
                "Index each recording of an archive, reading only what is new",
                {"One line of JSON for each recording below the folder: its files with sizes and times, header, "
                 "channels, events, a summary of the findings, a digest of the configuration. A recording that cannot "
                 "be read has a line with the reason, and is not a failure. A recording whose line was written by this "
                 "version of the program is not read again if its files still have the same sizes and times. "
                 "Recordings that could not be read are tried again. With --archives the recordings in .zip files have "
                 "lines too, and nothing is unpacked from a file that has not changed.",
                 "The same archive gives the same bytes. The file is replaced as a whole, and stays untouched if "
                 "nothing is new. Memory does not grow with the number of recordings. The exit status is 1 if a folder "
                 "may not be searched. If a folder fails for another reason, or there is no recording at all, the file "
                 "stays as it was."},
                {{"An index of an archive, from which catalogue makes a database",
                  "orvcomtrade index recordings --output index"},
                 {"The second of four parts", "orvcomtrade index recordings --shard 2/4 --output shards"}},
                {"--output FOLDER FOLDER"}};
    }

    Shard _shard;
    OutputRequest _output;
};

} // namespace

std::unique_ptr<Command> makeIndex() {
    return std::make_unique<Index>();
}
