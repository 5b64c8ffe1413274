#include "fleet/mergeShards.h"

#include "fleet/Shard.h"
#include "fleet/ShardReader.h"
#include "fleet/catalogueVersion.h"
#include "fleet/schema.h"
#include "output/Failure.h"
#include "output/SafeFile.h"
#include "output/json.h"
#include "output/printable.h"

#include <fmt/format.h>

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <sys/stat.h>
#include <system_error>

namespace fs = std::filesystem;

namespace {

/// What to do about a shard that is missing or damaged.
std::string again(const Shard& shard) {
    return "; make it again with orvcomtrade index" +
           (shard.count == 1 ? "" : fmt::format(" --shard {}/{}", shard.number, shard.count));
}

[[noreturn]] void fail(const std::string& sentence) {
    throw Failure(kRecordingProblem, sentence);
}

/// Files of the shards by their numbers. Throws a Failure unless there are all parts of one division.
std::map<std::uint32_t, std::string> shardsIn(const std::string& folder) {
    std::error_code error;
    std::map<std::uint32_t, std::string> files;
    std::optional<std::uint32_t> count;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        const std::optional<Shard> shard = Shard::ofFile(entry->path().filename().string());
        if (!shard) {
            continue;
        }
        if (count.value_or(shard->count) != shard->count) {
            fail(fmt::format("{}: shards of {} and of {}: remove those that no longer count", printable(folder), *count,
                             shard->count));
        }
        count = shard->count;
        files[shard->number] = entry->path().string();
    }
    if (error) {
        fail(fmt::format("{}: cannot be read: {}", printable(folder), error.message()));
    }
    if (!count) {
        fail(fmt::format("{}: no shard in this folder; orvcomtrade index writes them", printable(folder)));
    }
    for (std::uint32_t number = 1; number <= *count; ++number) {
        if (files.count(number) == 0) {
            const Shard shard{number, *count};
            fail(fmt::format("{}/{}: missing{}", printable(folder), shard.fileName(), again(shard)));
        }
    }
    return files;
}

/// A catalogue of several indexes.
class Merge {
public:
    Merge(CatalogueWriter& writer, const std::string& folder) : _writer(writer), _folder(folder) {}

    void operator()() {
        const auto files = shardsIn(_folder);
        for (const auto& [number, path] : files) {
            const Shard shard{number, static_cast<std::uint32_t>(files.size())};
            try {
                _add(path);
            } catch (const DamagedShard& damage) {
                fail(std::string(damage.what()) + again(shard));
            } catch (const Json::exception& problem) {
                fail(fmt::format("{}: damaged: {}{}", printable(path), printable(problem.what()), again(shard)));
            }
        }
    }

private:
    void _add(const std::string& path) {
        ShardReader shard(path);
        const Json header = Json::parse(shard.header());
        const auto root = header.at("root").get<std::string>();
        if (!_root) {
            _root = root;
            if (_writer.hasArchive(root)) {
                fail(fmt::format("{}: the index of {}, which another folder has given already; name only one of them",
                                 printable(_folder), printable(root)));
            }
            _archive = _writer.addArchive(header);
        } else if (*_root != root) {
            fail(fmt::format("{}: of {}, but another shard is of {}", printable(path), printable(root),
                             printable(*_root)));
        }
        while (shard.next()) {
            if (isNestedDeeply(shard.line())) {
                throw DamagedShard(fmt::format("{}: damaged: its values are nested deeply", printable(path)));
            }
            _writer.addRecording(_archive, shard.line());
        }
    }

    CatalogueWriter& _writer;
    const std::string& _folder;
    std::optional<std::string> _root;
    std::int64_t _archive = 0;
};

} // namespace

void refuseToReplaceOther(const std::string& target) {
    struct stat status = {};
    if (stat(target.c_str(), &status) != 0) {
        return;
    }
    if (!S_ISREG(status.st_mode)) { // a pipe would be waited for
        fail(fmt::format("{}: no regular file; not replaced", printable(target)));
    }
    try {
        requireKnownCatalogue(target);
    } catch (const Failure& failure) {
        throw Failure(failure.status, std::string(failure.what()) + "; not replaced");
    }
}

CatalogueCounts mergeShards(const std::vector<std::string>& folders, const std::string& target) {
    refuseToReplaceOther(target);
    for (const std::string& folder : folders) {
        shardsIn(folder); // what is missing is said at once
    }
    SafeFiles files(true);
    const SafeFile& file = files.add(target, true);
    CatalogueCounts counts;
    {
        CatalogueWriter writer(file.temporaryPath(), target);
        for (const std::string& folder : folders) {
            Merge(writer, folder)();
        }
        counts = writer.finish();
    }
    files.publish();
    return counts;
}
