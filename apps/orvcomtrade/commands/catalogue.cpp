#include "commands/catalogue.h"

#include "commands/commonFlags.h"
#include "commands/fleetCounts.h"
#include "fleet/mergeShards.h"
#include "output/Failure.h"
#include "output/SafeFile.h"
#include "sandbox/confine.h"

#include <fmt/format.h>

#include <cstdlib>
#include <filesystem>
#include <string>

namespace fs = std::filesystem;

namespace {

class Catalogue : public Command {
public:
    Catalogue() : Command(_describe()) {
        Flag output =
            outputFlag(_output, "The database to make", "An existing catalogue is replaced; any other file is not.");
        output.isRequired = true;
        add(std::move(output));
        add(readingFlags(request, {"--json", "--no-sandbox"}));
    }

    int run() override {
        const std::string& target = _output.target;
        makeFolderOf(target);
        const fs::path folder = fs::path(target).parent_path();
        // Where SQLite sorts what memory does not hold: a place that is writable, and large enough.
        setenv("SQLITE_TMPDIR", folder.empty() ? "." : folder.c_str(), 1); // NOLINT(concurrency-mt-unsafe): one thread
        if (!request.unconfined) {
            EntryList readable;
            for (const std::string& index : request.paths) {
                readable.entries.push_back({index + "/.", {}, {}, false});
            }
            confine(readable, {target});
        }
        const CatalogueCounts counts = mergeShards(request.paths, target);
        printFleetCounts(target,
                         fmt::format("{} recordings, {} of them cannot be read; {} events", counts.recordings,
                                     counts.unreadable, counts.events),
                         {{"archives", counts.archives},
                          {"recordings", counts.recordings},
                          {"unreadable", counts.unreadable},
                          {"events", counts.events}},
                         request.json);
        return 0;
    }

private:
    static Description _describe() {
        return {
            "catalogue",
            "Make a database from what index wrote",
            {"An SQLite database of the recordings, channels, events and findings of one or more archives. Each is "
             "given by the folder that index wrote to, with all its shards. The page on archives describes the "
             "tables and has sample queries.",
             "The database is built next to its place in one transaction, and takes its name when it is complete. "
             "If a shard is missing or damaged, or the disk is full, the old catalogue stays as it was."},
            {{"A catalogue of the recordings that index wrote to a folder",
              "orvcomtrade catalogue index --output fleet.sqlite"},
             {"What a station recorded in one month, at once however many recordings there are",
              "orvcomtrade list fleet.sqlite --station Ozernaya --after 2019-03-01 --before 2019-04-01"},
             {"A site of these recordings", "orvcomtrade report fleet.sqlite --station Ozernaya --output ozernaya"}},
            {"--output FILE FOLDER..."}};
    }

    OutputRequest _output;
};

} // namespace

std::unique_ptr<Command> makeCatalogue() {
    return std::make_unique<Catalogue>();
}
