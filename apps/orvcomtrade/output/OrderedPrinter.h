#pragma once

#include "output/Progress.h"
#include "output/StandardOutput.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

/// Thrown in a job if nothing can be printed any more, to end the job.
struct Stopped {};

/// Prints the output of parallel jobs in the order of their numbers. The job whose turn it is writes directly. The
/// others buffer a limited amount, then wait for their turn.
class OrderedPrinter {
public:
    /// For `count` jobs, of which none begins before the one `window` earlier is printed. A reader who has gone ends
    /// all jobs, unless they do more than print.
    /// `heading` is printed above the first output.
    OrderedPrinter(std::size_t count, std::size_t window, bool endsWithReader, std::string heading, Progress& progress);

    /// Waits until the job may begin. Returns false if it need not begin at all.
    bool admit(std::size_t job);

    /// Standard output of a job. Throws Stopped.
    void write(std::size_t job, std::string_view text);

    /// Ends a job. `notes` go to standard error after its output.
    void finish(std::size_t job, std::string notes, int status);

    /// Ends all jobs because of the exception that is being handled; `rethrow` throws it.
    void giveUp();

    /// Waits for a while, or until all jobs are printed. Returns whether they are, or never will be.
    bool wait(std::chrono::milliseconds time);

    /// Number of jobs printed.
    std::size_t done();

    /// Prints the heading if nothing has been printed.
    void printHeading();

    /// Highest status of the jobs printed.
    int status();

    /// Throws what ended the printing before its time: ReaderGone, a Failure, or what `giveUp` was called for.
    void rethrow();

private:
    struct Slot {
        std::string text;
        std::string notes;
        int status = 0;
        bool finished = false;
    };

    bool _mayWrite(std::size_t job);
    void _print(std::string_view text);
    void _fail();
    void _printFinished();

    const std::size_t _count;
    const std::size_t _window;
    const bool _endsWithReader;
    std::string _heading; ///< empty once it is printed
    Progress& _progress;
    StandardOutput _out;
    std::map<std::size_t, Slot> _slots;
    std::size_t _head = 0; ///< the job whose turn it is
    int _status = 0;
    bool _isHeard = true; ///< somebody may still read what is printed
    std::exception_ptr _failure;
    std::mutex _mutex;
    std::condition_variable _changed;
};
