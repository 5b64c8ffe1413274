#include "torture/Tally.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace orvtest {

namespace {

constexpr std::array<const char*, kEnds> kEndNames = {"same", "reported", "written", "silent", "ABORTED",
                                                      "HUNG", "WRONG",    "UNTOLD",  "LEFT"};

} // namespace

bool Sampling::takes(std::uint64_t number, std::uint64_t count) const {
    if (number <= first || count <= first + more) {
        return true;
    }
    const std::uint64_t stride = (count - first + more - 1) / std::max<std::uint64_t>(more, 1);
    return more > 0 && (number - first) % stride == 0;
}

TortureOptions TortureOptions::of(int argc, char** argv, const char* usage, std::size_t wordCount) {
    TortureOptions options;
    const auto fail = [usage] {
        std::fprintf(
            stderr,
            "usage: %s [--sample FIRST,MORE] [--chains N] [--jobs N] [--scenario PART] [--call KIND] [--number N]\n",
            usage);
        std::exit(2);
    };
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        if (word.substr(0, 2) != "--") {
            options.words.push_back(word);
            continue;
        }
        if (++i == argc) {
            fail();
        }
        const std::string value = argv[i];
        try {
            if (word == "--sample") {
                options.sampling.first = std::stoull(value);
                options.sampling.more = std::stoull(value.substr(value.find(',') + 1));
            } else if (word == "--chains") {
                options.chains = std::stoull(value);
            } else if (word == "--jobs") {
                options.jobs = static_cast<unsigned int>(std::stoul(value));
            } else if (word == "--scenario") {
                options.scenario = value;
            } else if (word == "--call") {
                options.call = value;
            } else if (word == "--number") {
                options.number = std::stoull(value);
            } else {
                fail();
            }
        } catch (const std::logic_error&) {
            fail();
        }
    }
    if (options.words.size() != wordCount || options.jobs == 0) {
        fail();
    }
    return options;
}

Tally::Tally(std::vector<std::string> scenarios) : _scenarios(std::move(scenarios)) {
    if (_scenarios.size() > kMostScenarios) {
        throw std::length_error("more scenarios than the table has rows");
    }
}

void Tally::add(std::size_t scenario, const Plan& plan, End end, const std::string& detail) {
    const auto call = static_cast<std::size_t>(plan.call);
    const std::uint64_t known = _table->ends[scenario][call][static_cast<std::size_t>(end)]++;
    if (isFault(end) && known < kMostTold) {
        const std::string text = std::string(kEndNames.at(static_cast<std::size_t>(end))) + ": " +
                                 _scenarios[scenario] + ", " + infoOf(plan.call).name + " " +
                                 std::to_string(plan.number) + (plan.isLasting ? " and all later: " : ": ") + detail +
                                 "\n";
        std::fputs(text.c_str(), stderr);
    }
}

bool Tally::print() const {
    std::array<std::uint64_t, kEnds> sums = {};
    std::printf("%-34s %-10s %8s", "scenario", "fails", "runs");
    for (const char* const name : kEndNames) {
        std::printf(" %8s", name);
    }
    std::printf("\n");
    const auto printRow = [](const char* scenario, const char* call, const auto& ends) {
        std::uint64_t runs = 0;
        for (const auto& end : ends) {
            runs += end;
        }
        if (runs == 0) {
            return;
        }
        std::printf("%-34s %-10s %8llu", scenario, call, static_cast<unsigned long long>(runs));
        for (const auto& end : ends) {
            std::printf(" %8llu", static_cast<unsigned long long>(end));
        }
        std::printf("\n");
    };
    for (std::size_t scenario = 0; scenario < _scenarios.size(); ++scenario) {
        for (std::size_t call = 0; call < kCalls; ++call) {
            const auto& ends = _table->ends[scenario][call];
            printRow(_scenarios[scenario].c_str(), infoOf(static_cast<Call>(call)).name, ends);
            for (std::size_t end = 0; end < kEnds; ++end) {
                sums[end] += ends[end];
            }
        }
    }
    printRow("all", "", sums);
    std::uint64_t faults = 0;
    for (auto end = static_cast<std::size_t>(End::Aborted); end < kEnds; ++end) {
        faults += sums[end];
    }
    return faults == 0 && sums[static_cast<std::size_t>(End::Reported)] > 0;
}

std::vector<Plan> plansFor(const Calls& undisturbed, const TortureOptions& options, unsigned int worker,
                           Chains& chains) {
    std::vector<Plan> plans;
    std::uint64_t turn = 0;
    for (std::size_t i = 0; i < kCalls; ++i) {
        const auto call = static_cast<Call>(i);
        const std::uint64_t count = options.takes(call) ? undisturbed.made[i].load() : 0;
        for (std::uint64_t number = 1; number <= count; ++number) {
            const bool isKnown = options.chains != 0 && number <= kMostChains &&
                                 ++chains[undisturbed.chains[i][number - 1] + i] > options.chains;
            const bool isTaken =
                options.number == 0 ? !isKnown && options.sampling.takes(number, count) : number == options.number;
            if (isTaken && turn++ % options.jobs == worker) {
                plans.push_back({call, number, false});
                plans.push_back({call, number, true});
            }
        }
    }
    return plans;
}

bool runWorkers(unsigned int count, const std::function<void(unsigned int worker)>& work) {
    std::fflush(nullptr);
    for (unsigned int worker = 0; worker < count; ++worker) {
        if (fork() == 0) {
            try {
                work(worker);
            } catch (const std::exception& problem) {
                std::fprintf(stderr, "%s\n", problem.what());
                _exit(1);
            }
            std::fflush(nullptr);
            _exit(0);
        }
    }
    bool isGood = true;
    for (unsigned int worker = 0; worker < count; ++worker) {
        int status = 0;
        isGood = wait(&status) > 0 && status == 0 && isGood;
    }
    return isGood;
}

} // namespace orvtest
