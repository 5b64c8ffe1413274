#include "commands/runRecordings.h"

#include "output/Failure.h"
#include "output/json.h"
#include "output/printable.h"
#include "output/writeWhole.h"

#include <fmt/format.h>

#include <algorithm>
#include <atomic>
#include <exception>
#include <map>
#include <mutex>
#include <new>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

constexpr std::chrono::milliseconds kTick(100);
constexpr std::size_t kWindowPerThread = 16; // recordings finished, but not yet printed

class Run {
public:
    Run(const EntryList& selection, const RunOptions& options, const std::function<void(const Entry&, Job&)>& work)
        : _selection(selection), _options(options), _work(work), _progress(selection.entries.size(), !options.quiet),
          _threads(std::min(options.jobs, selection.entries.size())),
          _printer(selection.entries.size(), _threads * kWindowPerThread, !options.writesFiles, options.heading,
                   _progress) {}

    int operator()() {
        std::vector<std::thread> threads = _startThreads();
        if (threads.empty()) {
            _runThread();
        }
        while (!_printer.wait(kTick)) {
            _progress.show(_printer.done());
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        const bool hasNone = _leftOut > 0 && _leftOut == _selection.entries.size();
        if (!hasNone && _printer.status() == 0) {
            _printer.printHeading();
        }
        try {
            _printer.rethrow();
        } catch (const ReaderGone&) {
            return _printer.status();
        }
        if (!_printSummary()) {
            return kRecordingProblem;
        }
        return hasNone ? _reportNothing() : _printer.status();
    }

private:
    static int _reportNothing() {
        writeWhole(STDERR_FILENO, "orvcomtrade: no recording found\n");
        return kRecordingProblem;
    }

    /// "47 recordings: 5 clean, 42 with warnings", where there are several. Whether it could be written.
    bool _printSummary() {
        if (_options.outcomes.empty() || _options.quiet || _selection.single) {
            return true;
        }
        const std::size_t all = _selection.entries.size() - _leftOut - _emptyFolders;
        if (all == 0) {
            return true;
        }
        Json line = Json::object();
        line["recordings"] = all;
        std::string text = fmt::format("{} recording{}", all, all == 1 ? "" : "s");
        for (const std::string& outcome : _options.outcomes) {
            const char* const separator = &outcome == &_options.outcomes.front() ? ":" : ",";
            text += fmt::format("{} {} {}", separator, _counts[outcome], outcome);
            line[outcome] = _counts[outcome];
        }
        return writeWhole(STDERR_FILENO, (_options.json ? lineText(line) : text) + "\n");
    }

    void _count(const std::string& outcome) {
        if (_options.outcomes.empty()) {
            return;
        }
        const std::lock_guard<std::mutex> lock(_countsMutex);
        ++_counts[outcome.empty() ? _options.outcomes.front() : outcome];
    }

    /// As many as the system gives.
    std::vector<std::thread> _startThreads() {
        std::vector<std::thread> threads;
        threads.reserve(_threads);
        while (threads.size() < _threads) {
            try {
                threads.emplace_back([this] { _runThread(); });
            } catch (const std::exception&) { // the system's limit, or lack of memory
                break;
            }
        }
        return threads;
    }

    /// What a thread lets out would end the program at once.
    void _runThread() {
        try {
            _takeTurns();
        } catch (...) {
            _printer.giveUp();
        }
    }

    void _takeTurns() {
        for (std::size_t number = _next++; number < _selection.entries.size(); number = _next++) {
            if (!_printer.admit(number)) {
                return;
            }
            Job job(_printer, number, _options.quiet);
            try {
                _perform(_selection.entries[number], job);
            } catch (const Stopped&) {
                return;
            }
            _printer.finish(number, job.notes(), job.status());
        }
    }

    void _perform(const Entry& entry, Job& job) {
        try {
            if (!entry.problem.empty()) {
                throw Failure(kRecordingProblem, entry.problem);
            }
            _work(entry, job);
            _count(job.outcome());
        } catch (const NotARecording& failure) {
            if (entry.isMet) {
                job.note(failure.note);
                ++_leftOut;
            } else {
                _fail(entry, job, failure.what(), failure.status);
            }
        } catch (const Failure& failure) {
            _fail(entry, job, failure.what(), failure.status);
        } catch (const std::bad_alloc&) {
            _fail(entry, job, shownPath(entry.path) + ": out of memory", kRecordingProblem);
        } catch (const std::exception& problem) {
            _fail(entry, job, shownPath(entry.path) + ": " + printable(problem.what()), kRecordingProblem);
        }
        job.flush();
    }

    void _fail(const Entry& entry, Job& job, const std::string& sentence, int status) {
        job.setStatus(_selection.single ? status : kRecordingProblem);
        if (entry.isEmptyFolder) {
            ++_emptyFolders;
        } else {
            _count(_options.outcomes.empty() ? std::string() : _options.outcomes.back());
        }
        if (!_options.json) {
            job.complain(sentence);
            return;
        }
        Json line = recordingLine(entry.path, false);
        line["error"] = sentence;
        writeLine(line, job);
    }

    const EntryList& _selection;
    const RunOptions& _options;
    const std::function<void(const Entry&, Job&)>& _work;
    Progress _progress;
    const std::size_t _threads;
    OrderedPrinter _printer;
    std::atomic<std::size_t> _next = 0;
    std::atomic<std::size_t> _leftOut = 0;
    std::atomic<std::size_t> _emptyFolders = 0;
    std::map<std::string, std::size_t> _counts; ///< by outcome
    std::mutex _countsMutex;
};

} // namespace

void Job::note(const std::string& sentence) {
    if (!_isQuiet) {
        complain(sentence);
    }
}

void Job::complain(const std::string& sentence) {
    _notes += "orvcomtrade: " + sentence + "\n";
}

int runRecordings(const EntryList& selection, const RunOptions& options,
                  const std::function<void(const Entry&, Job&)>& work) {
    return Run(selection, options, work)();
}
