#include "commands/catalogue.h"

#include "commands/commonFlags.h"
#include "fleet/mergeShards.h"
#include "output/Failure.h"
#include "output/SafeFile.h"
#include "output/StandardOutput.h"
#include "output/json.h"
#include "output/printable.h"
#include "sandbox/confine.h"

#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>

namespace fs = std::filesystem;

namespace {

void print(const CatalogueCounts& counts, const std::string& target, bool isJson) {
    StandardOutput out;
    if (isJson) {
        Json line = recordingLine(target, true);
        line["archives"] = counts.archives;
        line["recordings"] = counts.recordings;
        line["unreadable"] = counts.unreadable;
        line["events"] = counts.events;
        writeLine(line, out);
    } else {
        out.print("{}: {} recordings, {} of them cannot be read; {} events\n", printable(target), counts.recordings,
                  counts.unreadable, counts.events);
    }
    out.flush();
}

class Catalogue : public Command {
public:
    Catalogue() : Command(_describe()) {
        Flag output = outputFlag(_output, "The database to make",
                                 "A catalogue that stands there is replaced, and anything else is not.");
        output.isRequired = true;
        add(std::move(output));
        const std::set<std::string> wanted = {"--json", "--no-sandbox"};
        for (Flag& flag : readingFlags(request, false)) {
            if (wanted.count(flag.longName()) > 0) {
                add(std::move(flag));
            }
        }
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
        print(mergeShards(request.paths, target), target, request.json);
        return 0;
    }

private:
    static Description _describe() {
        return {"catalogue",
                "Make a database of what index wrote down",
                {"An SQLite database of the recordings, channels, events and findings of one or more archives, each "
                 "given by the folder that index wrote to. All its shards must be there. The page on archives has the "
                 "tables, and questions to ask.",
                 "It is made anew in one transaction beside its place, and stands under its name when it is whole: "
                 "where a shard is missing or damaged, or the disk is full, the one that was there is as it was."},
                {{"A catalogue of the recordings that index wrote to a folder",
                  "orvcomtrade catalogue index --output fleet.sqlite"}},
                {"--output FILE FOLDER..."}};
    }

    OutputRequest _output;
};

} // namespace

std::unique_ptr<Command> makeCatalogue() {
    return std::make_unique<Catalogue>();
}
