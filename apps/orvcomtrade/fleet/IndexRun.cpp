#include "fleet/IndexRun.h"

#include "fleet/shardLines.h"
#include "output/Failure.h"
#include "output/printable.h"

#include <fmt/format.h>

#include <algorithm>
#include <atomic>
#include <exception>
#include <memory>
#include <mutex>
#include <sys/stat.h>
#include <thread>
#include <utility>

namespace {

constexpr std::size_t kBatch = 512; // recordings in memory at a time

/// Calls for every number below `count`, on several threads. Throws what one of the calls threw.
void forEachAtOnce(std::size_t count, std::size_t jobs, const std::function<void(std::size_t)>& work) {
    std::atomic<std::size_t> next = 0;
    std::exception_ptr failure;
    std::mutex mutex;
    const auto run = [&] {
        try {
            for (std::size_t number = next++; number < count; number = next++) {
                work(number);
            }
        } catch (...) {
            const std::lock_guard<std::mutex> lock(mutex);
            failure = std::current_exception();
        }
    };
    std::vector<std::thread> threads;
    while (threads.size() + 1 < std::min(jobs, count)) {
        try {
            threads.emplace_back(run);
        } catch (const std::exception&) { // the system's limit: this thread does the rest
            break;
        }
    }
    run();
    for (std::thread& thread : threads) {
        thread.join();
    }
    if (failure) {
        std::rethrow_exception(failure);
    }
}

bool isThere(const std::string& path) {
    struct stat status = {};
    return stat(path.c_str(), &status) == 0;
}

class IndexRun {
public:
    /// `old` is the file that stands there, or null.
    IndexRun(const IndexOptions& options, ShardReader* old)
        : _options(options), _old(old),
          _writer(options.folder + "/" + options.shard.fileName(), shardHeader(options.shard, options.root), old),
          _hasOld(old != nullptr && old->next()) {}

    IndexCounts operator()() {
        WalkOptions walk;
        walk.followsLinks = _options.followsLinks;
        walk.entersArchives = _options.entersArchives;
        walk.limits = _options.archive;
        walk.isWanted = [this](const std::string& path) {
            _isEmpty = false;
            return _options.shard.holds(path);
        };
        walk.onRecording = [this](FoundRecording found) { _take(std::move(found)); };
        walk.onNote = _options.onNote;
        walkRecordings(walk);
        if (_isEmpty) {
            throw Failure(kRecordingProblem, fmt::format("{}: no recording in this folder", printable(_options.root)));
        }
        while (_hasOld) {
            _drop();
        }
        _flush();
        _writer.finish();
        return _counts;
    }

private:
    /// A recording, or a line of the old file that goes.
    struct Item {
        FoundRecording found;
        std::string head;
        std::string old; ///< line of the same path in the old file, or empty
        bool stays = false;
        bool isDropped = false;
        IndexLine made = {};
    };

    void _take(FoundRecording found) {
        Item item;
        item.head = lineHead(found);
        while (_hasOld && !_isLine(item.head)) {
            const std::string path = pathOfLine(_old->line());
            if (path == found.path) {
                break;
            }
            if (!isBeforeInWalk(path, found.path)) {
                _push(std::move(item), std::move(found));
                return;
            }
            _drop();
        }
        if (_hasOld) {
            item.old = _old->line();
            item.stays = _isLine(item.head + std::string(kReadableMember));
            _hasOld = _old->next();
        }
        _push(std::move(item), std::move(found));
    }

    bool _isLine(const std::string& begin) const { return _old->line().substr(0, begin.size()) == begin; }

    void _drop() {
        Item item;
        item.isDropped = true;
        _batch.push_back(std::move(item));
        _hasOld = _old->next();
        _flushIfFull();
    }

    void _push(Item item, FoundRecording found) {
        item.found = std::move(found);
        _batch.push_back(std::move(item));
        _flushIfFull();
    }

    void _flushIfFull() {
        if (_batch.size() >= kBatch) {
            _flush();
        }
    }

    /// Reads what is new, then writes in the order of the walk.
    void _flush() {
        std::vector<Item*> unread;
        for (Item& item : _batch) {
            if (!item.stays && !item.isDropped) {
                unread.push_back(&item);
            }
        }
        forEachAtOnce(unread.size(), _options.jobs, [&](std::size_t i) {
            unread[i]->made = indexLine(unread[i]->found, unread[i]->head, _options.intake);
        });
        for (const Item& item : _batch) {
            _write(item);
        }
        _batch.clear();
    }

    void _write(const Item& item) {
        if (item.isDropped) {
            _writer.drop();
            return;
        }
        if (!item.stays && item.made.text.empty()) {
            _options.onNote(item.made.note);
            if (!item.old.empty()) {
                _writer.drop();
            }
            return;
        }
        ++_counts.recordings;
        _counts.unchanged += item.stays ? 1 : 0;
        _counts.unreadable += item.stays || item.made.isReadable ? 0 : 1;
        if (item.found.files.empty()) {
            ++_counts.unsearched;
            _options.onNote(item.found.problem);
        }
        if (item.stays || item.made.text == item.old) {
            _writer.keep(item.old);
            return;
        }
        if (!item.old.empty()) {
            _writer.drop();
        }
        _writer.add(item.made.text);
    }

    const IndexOptions& _options;
    ShardReader* const _old;
    ShardWriter _writer;
    bool _hasOld;
    bool _isEmpty = true;
    std::vector<Item> _batch;
    IndexCounts _counts;
};

std::unique_ptr<ShardReader> oldShard(const IndexOptions& options) {
    const std::string path = options.folder + "/" + options.shard.fileName();
    return isThere(path) ? std::make_unique<ShardReader>(path) : nullptr;
}

} // namespace

IndexCounts indexArchive(const IndexOptions& options) {
    try {
        const std::unique_ptr<ShardReader> old = oldShard(options);
        return IndexRun(options, old.get())();
    } catch (const DamagedShard& damage) {
        options.onNote(fmt::format("{}; made again", damage.what()));
    }
    return IndexRun(options, nullptr)();
}
