#include "cases.h"

#include <fmt/core.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orvbench {

namespace {

constexpr double kMega = 1e6;

struct Measurement {
    double seconds = 0.0;
    double peakBytes = 0.0; ///< above what the process held before
};

double residentBytes() {
    std::ifstream statm("/proc/self/statm");
    double total = 0.0;
    double resident = 0.0;
    statm >> total >> resident;
    return resident * static_cast<double>(sysconf(_SC_PAGESIZE));
}

double peakResidentBytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) * 1024.0;
}

/// What `run` gives in a process of its own: each starts from the same heap, and leaves nothing behind on it.
template <class Run> auto inChild(Run run) {
    using Result = decltype(run());
    int ends[2];
    if (pipe(ends) != 0) {
        throw std::runtime_error("no pipe");
    }
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child < 0) {
        throw std::runtime_error("no child process");
    }
    if (child == 0) {
        try {
            const Result result = run();
            const bool written = write(ends[1], &result, sizeof result) == static_cast<ssize_t>(sizeof result);
            _exit(written ? 0 : 1);
        } catch (const std::exception&) {
            _exit(1);
        }
    }
    close(ends[1]);
    Result result{};
    const ssize_t length = read(ends[0], &result, sizeof result);
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    if (length != static_cast<ssize_t>(sizeof result) || status != 0) {
        throw std::runtime_error("a measurement failed");
    }
    return result;
}

Measurement measure(Work& work, double (Work::*operation)()) {
    return inChild([&] {
        const double before = residentBytes();
        Measurement result;
        result.seconds = (work.*operation)();
        result.peakBytes = work.peakBytes > 0.0 ? work.peakBytes : peakResidentBytes() - before;
        return result;
    });
}

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

struct Medians {
    double library = 0.0;
    double floor = 0.0;
    double peakBytes = 0.0;
};

/// Library and floor in turn, each pair in the other order than the one before. Short ones are run more often: the
/// machine may be slower for a moment that is longer than a few of them.
Medians alternate(Work& work, int repetitions) {
    constexpr double enoughSeconds = 2.0;
    constexpr int mostTimes = 5; // as often as is asked for
    std::vector<double> library;
    std::vector<double> floor;
    std::vector<double> peak;
    double seconds = 0.0;
    const auto runLibrary = [&] {
        const Measurement result = measure(work, &Work::runLibrary);
        library.push_back(result.seconds);
        peak.push_back(result.peakBytes);
    };
    for (int i = 0; i < repetitions || (seconds < enoughSeconds && i < mostTimes * repetitions); ++i) {
        if (i % 2 == 0) {
            runLibrary();
        }
        floor.push_back(measure(work, &Work::runFloor).seconds);
        if (i % 2 != 0) {
            runLibrary();
        }
        seconds += library.back() + floor.back();
    }
    return {median(library), median(floor), median(peak)};
}

bool isWanted(const Case& entry, const TableOptions& options) {
    return options.shapes.empty() ||
           std::any_of(options.shapes.begin(), options.shapes.end(),
                       [&](const std::string& part) { return entry.name.find(part) != std::string::npos; });
}

/// Those that keep a recording in memory come last: the others must start from a small process.
std::vector<Case> wantedCases(const TableOptions& options) {
    std::vector<Case> wanted;
    for (const auto& group :
         {loadCases(), cfgCases(), columnCases(), toolCases(), pageCases(), pointsCases(), intakeCases()}) {
        std::copy_if(group.begin(), group.end(), std::back_inserter(wanted),
                     [&](const Case& entry) { return isWanted(entry, options); });
    }
    if (wanted.empty()) {
        throw std::invalid_argument("no shape of that name");
    }
    return wanted;
}

std::unique_ptr<Work> makeChecked(const Case& entry, unsigned long multiple, unsigned long divisor) {
    std::unique_ptr<Work> work = entry.make(multiple, divisor);
    if (!inChild([&] { return work->agree(); })) {
        throw std::runtime_error("library and floor differ: " + entry.name);
    }
    return work;
}

std::string number(double value, int digits) {
    return value > 0.0 ? fmt::format("{:.{}f}", value, digits) : "-";
}

} // namespace

void printTable(const TableOptions& options) {
    const std::vector<Case> cases = wantedCases(options);
    fmt::print("Medians of {} runs each or more, library and floor in turn, CPU time; peak memory by ru_maxrss.\n\n",
               options.repetitions);
    fmt::print("{:<48} {:>10} {:>10} {:>6} {:>6} {:>8} {:>10} {:>8} {:>8} {:>8} {:>6}\n", "shape", "library ms",
               "floor ms", "ratio", "target", "MB/s", "Mvalues/s", "peak MB", "data MB", "file MB", "memory");
    for (const Case& entry : cases) {
        const std::unique_ptr<Work> work = makeChecked(entry, 1, options.divisor);
        const Medians result = alternate(*work, options.repetitions);
        const bool memory = work->structures > 0.0;
        const double memoryRatio = memory ? (result.peakBytes - work->fileCopy) / work->structures : 0.0;
        fmt::print("{:<48} {:>10} {:>10} {:>6} {:>6} {:>8} {:>10} {:>8} {:>8} {:>8} {:>6}\n", entry.name,
                   number(result.library * 1e3, 2), number(result.floor * 1e3, 2),
                   number(result.library / result.floor, 2), number(entry.target, 2),
                   number(work->bytes / result.library / kMega, 0), number(work->values / result.library / kMega, 1),
                   number(result.peakBytes / kMega, 1), number(work->structures / kMega, 1),
                   number(work->fileCopy / kMega, 1), number(memoryRatio, 3));
        std::fflush(stdout);
    }
    fmt::print("\ndata: the samples with all they own; file: what may be in memory beside them (ASCII);\n"
               "memory: (peak - file) / data.\n");
}

void printScaling(const TableOptions& options) {
    constexpr unsigned long kMultiples[] = {1, 2, 4, 8};
    const std::vector<Case> cases = wantedCases(options);
    fmt::print("Milliseconds of the library at 1, 2, 4 and 8 times the size, and the growth at each doubling.\n\n");
    for (const Case& entry : cases) {
        fmt::print("{:<48}", entry.name);
        double previous = 0.0;
        for (const unsigned long multiple : kMultiples) {
            const std::unique_ptr<Work> work = makeChecked(entry, multiple, options.divisor);
            const double seconds = alternate(*work, options.repetitions).library;
            fmt::print(" {:>9}", number(seconds * 1e3, 2));
            if (previous > 0.0) {
                fmt::print(" (x{:.2f})", seconds / previous);
            }
            previous = seconds;
            std::fflush(stdout);
        }
        fmt::print("\n");
    }
}

} // namespace orvbench
