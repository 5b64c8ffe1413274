#pragma once

#include "torture/failingCalls.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <new>
#include <string>
#include <sys/mman.h>
#include <unordered_map>
#include <vector>

namespace orvtest {

/// How a run with a failing call ends. Those from `Aborted` on are faults.
enum class End : std::uint32_t {
    Same,       ///< as without a failure
    Reported,   ///< as documented: the cause is named, nothing has come into being
    Written,    ///< the same, but only what is said of a file that is complete got lost
    Silent,     ///< the same, but standard error is what can't be written
    Aborted,    ///< by a signal
    Hung,       ///< never
    Wrong,      ///< another result, without a word
    Unreported, ///< a failure that is not reported, or for which something else is blamed
    LeftBehind, ///< files, descriptors or memory
    Count
};

constexpr std::size_t kEnds = static_cast<std::size_t>(End::Count);
constexpr bool isFault(End end) {
    return end >= End::Aborted;
}

/// An object in memory that processes share, once they are forked.
template <class Value> class Shared {
public:
    Shared() : _value(new (_map()) Value()) {}
    ~Shared() { munmap(_value, sizeof(Value)); }
    Shared(const Shared&) = delete;
    Shared& operator=(const Shared&) = delete;

    Value& operator*() const { return *_value; }
    Value* operator->() const { return _value; }

private:
    static void* _map() {
        void* const memory = mmap(nullptr, sizeof(Value), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        if (memory == MAP_FAILED) {
            std::abort();
        }
        return memory;
    }

    Value* _value;
};

/// Which of the n-th calls fail: all, or few and then a sample that is the same each time.
struct Sampling {
    std::uint64_t first = UINT64_MAX; ///< all up to that
    std::uint64_t more = 0;           ///< about so many beyond

    bool takes(std::uint64_t number, std::uint64_t count) const;
};

/// Counts chains of calls, over all that one process runs: all scenarios of the tool, one of the intake.
using Chains = std::unordered_map<std::uint64_t, std::uint64_t>;

/// The command line of both programs, without the words that are theirs.
struct TortureOptions {
    Sampling sampling;
    std::uint64_t chains = 0; ///< calls of the same kind by the same chain of callers that fail; all if it is 0
    unsigned int jobs = 1;
    std::string scenario;     ///< substring, or empty: all
    std::string call;         ///< likewise
    std::uint64_t number = 0; ///< only this one, if it is not 0
    std::vector<std::string> words;

    /// Ends the program where it can't be understood.
    static TortureOptions of(int argc, char** argv, const char* usage, std::size_t wordCount);

    bool takes(const std::string& scenarioName) const { return scenarioName.find(scenario) != std::string::npos; }
    bool takes(Call kind) const { return std::string(infoOf(kind).name).find(call) != std::string::npos; }
};

/// Counts ends by scenario and call, for processes that work side by side.
class Tally {
public:
    explicit Tally(std::vector<std::string> scenarios);

    void add(std::size_t scenario, const Plan& plan, End end, const std::string& detail);

    /// Prints the table; whether there was no fault.
    bool print() const;

private:
    static constexpr std::size_t kMostScenarios = 200;
    static constexpr std::uint64_t kMostTold = 5; ///< faults that are shown of a scenario and call

    struct Table {
        std::atomic<std::uint64_t> ends[kMostScenarios][kCalls][kEnds];
    };

    std::vector<std::string> _scenarios;
    Shared<Table> _table;
};

/// The plans that a scenario is run by, of those that fall to one of the workers.
std::vector<Plan> plansFor(const Calls& undisturbed, const TortureOptions& options, unsigned int worker,
                           Chains& chains);

/// Does the work in so many processes, by their numbers; whether none threw.
bool runWorkers(unsigned int count, const std::function<void(unsigned int worker)>& work);

/// Runs the scenarios that the options take, side by side, and prints how the runs ended. Gives the program's exit
/// status.
template <class Torture, class Scenario>
int runTorture(const TortureOptions& options, const std::vector<Scenario>& scenarios) {
    std::vector<std::string> names;
    names.reserve(scenarios.size());
    for (const Scenario& scenario : scenarios) {
        names.push_back(scenario.name);
    }
    Tally tally(names);
    const Torture torture{options, scenarios, tally};
    const bool isGood = runWorkers(options.jobs, [&](unsigned int worker) {
        Chains chains;
        for (std::size_t i = 0; i < scenarios.size(); ++i) {
            if (options.takes(scenarios[i].name)) {
                torture.run(i, worker, chains);
            }
        }
    });
    return tally.print() && isGood ? 0 : 1;
}

} // namespace orvtest
