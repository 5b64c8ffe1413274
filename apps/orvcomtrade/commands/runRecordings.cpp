#include "commands/runRecordings.h"

#include "output/Failure.h"
#include "output/json.h"
#include "output/printable.h"
#include "output/writeWhole.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <new>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

constexpr std::chrono::milliseconds kTick(100);
constexpr std::size_t kWindowPerThread = 16; // recordings finished, but not yet printed

class Run {
public:
    Run(const Selection& selection, const RunOptions& options, const std::function<void(const Entry&, Job&)>& work)
        : _selection(selection), _options(options), _work(work), _progress(selection.entries.size()),
          _threads(std::min(options.jobs, selection.entries.size())),
          _printer(selection.entries.size(), _threads * kWindowPerThread, !options.writesFiles, _progress) {}

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
        try {
            _printer.rethrow();
        } catch (const ReaderGone&) {
            return _printer.status();
        }
        return _leftOut > 0 && _leftOut == _selection.entries.size() ? _reportNothing() : _printer.status();
    }

private:
    static int _reportNothing() {
        writeWhole(STDERR_FILENO, "orvcomtrade: no recording found\n");
        return kRecordingProblem;
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
            Job job(_printer, number);
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
            _fail(entry, job, printable(entry.path) + ": out of memory", kRecordingProblem);
        } catch (const std::exception& problem) {
            _fail(entry, job, printable(entry.path + ": " + problem.what()), kRecordingProblem);
        }
        job.flush();
    }

    void _fail(const Entry& entry, Job& job, const std::string& sentence, int status) {
        job.setStatus(_selection.single ? status : kRecordingProblem);
        if (!_options.json) {
            job.note(sentence);
            return;
        }
        Json line = recordingLine(entry.path, false);
        line["error"] = sentence;
        writeLine(line, job);
    }

    const Selection& _selection;
    const RunOptions& _options;
    const std::function<void(const Entry&, Job&)>& _work;
    Progress _progress;
    const std::size_t _threads;
    OrderedPrinter _printer;
    std::atomic<std::size_t> _next = 0;
    std::atomic<std::size_t> _leftOut = 0;
};

} // namespace

void Job::note(const std::string& sentence) {
    _notes += "orvcomtrade: " + sentence + "\n";
}

int runRecordings(const Selection& selection, const RunOptions& options,
                  const std::function<void(const Entry&, Job&)>& work) {
    return Run(selection, options, work)();
}
