/// Benchmarks of the library against their floors: a table of medians, or Google Benchmark with its own options.

#include "cases.h"

#include <CLI/CLI.hpp>
#include <benchmark/benchmark.h>

#include <cstdio>
#include <exception>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using orvbench::Case;
using orvbench::Work;

/// Google Benchmark comes back to a function several times; the inputs of the last case stay until the next one.
Work& workOf(const Case& entry, unsigned long divisor) {
    static std::string name;
    static std::unique_ptr<Work> work;
    if (name != entry.name) {
        work.reset();
        work = entry.make(1, divisor);
        name = entry.name;
        if (!work->agree()) {
            throw std::runtime_error("library and floor differ: " + name);
        }
    }
    return *work;
}

void run(benchmark::State& state, const Case& entry, unsigned long divisor, double (Work::*operation)()) {
    Work& work = workOf(entry, divisor);
    while (state.KeepRunning()) {
        state.SetIterationTime((work.*operation)());
    }
    const auto rate = benchmark::Counter::kIsIterationInvariantRate;
    state.counters["bytes/s"] = benchmark::Counter(work.bytes, rate);
    state.counters["values/s"] = benchmark::Counter(work.values, rate);
}

void registerCases(unsigned long divisor) {
    for (const auto& group :
         {orvbench::loadCases(), orvbench::cfgCases(), orvbench::columnCases(), orvbench::toolCases(),
          orvbench::pageCases(), orvbench::pointsCases(), orvbench::intakeCases()}) {
        for (const Case& entry : group) {
            const auto add = [&](const char* who, double (Work::*operation)()) {
                benchmark::RegisterBenchmark((entry.name + who).c_str(),
                                             [=](benchmark::State& state) { run(state, entry, divisor, operation); })
                    ->UseManualTime()
                    ->Unit(benchmark::kMillisecond);
            };
            add("/library", &Work::runLibrary);
            add("/floor", &Work::runFloor);
        }
    }
}

int runMain(int argc, char** argv) {
    CLI::App app("Benchmarks of the library against their floors");
    app.allow_extras();
    orvbench::TableOptions options;
    bool table = false;
    bool scaling = false;
    app.add_flag("--table", table, "Measure library and floor in turn and print the table");
    app.add_flag("--scaling", scaling, "Print how the library's time grows at 1, 2, 4 and 8 times the size");
    app.add_option("--shape", options.shapes, "Only shapes whose name contains this (table and scaling)");
    app.add_option("--repetitions", options.repetitions, "Runs of each")->check(CLI::PositiveNumber);
    app.add_option("--divide", options.divisor, "Inputs smaller by this factor")->check(CLI::PositiveNumber);
    CLI11_PARSE(app, argc, argv);

    if (table) {
        orvbench::printTable(options);
    }
    if (scaling) {
        orvbench::printScaling(options);
    }
    if (table || scaling) {
        return 0;
    }
    std::vector<std::string> rest = app.remaining();
    rest.insert(rest.begin(), argv[0]);
    std::vector<char*> arguments;
    arguments.reserve(rest.size());
    for (std::string& argument : rest) {
        arguments.push_back(argument.data());
    }
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) {
        return 1;
    }
    registerCases(options.divisor);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    try {
        return runMain(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "orvcomtrade_bench: %s\n", error.what());
        return 1;
    }
}
