// Host program of the library: shows what a recording holds and prints a channel's plot points.

#include "Failure.h"
#include "Output.h"
#include "info.h"
#include "points.h"
#include "printable.h"

#include <CLI/CLI.hpp>

#include <csignal>
#include <cstdio>
#include <exception>
#include <new>
#include <sstream>
#include <string>

namespace {

constexpr const char* kPathHelp = "Any file of the recording: .cfg, .dat or .cff";

/// Reads the arguments and does what they ask. Every ending but a good one is an exception.
void run(int argc, char** argv, Output& out) {
    CLI::App app("Shows COMTRADE disturbance recordings (IEEE C37.111).", "orvcomtrade");
    app.set_version_flag("--version", "orvcomtrade " ORVCOMTRADE_VERSION, "Print the version and exit");
    app.footer("Exit status: 0 good, 1 the recording cannot be read, 2 wrong usage.");
    app.require_subcommand(1);

    std::string infoPath;
    CLI::App* const info = app.add_subcommand("info", "Print what the recording is and which channels it has");
    info->add_option("PATH", infoPath, kPathHelp)->required();

    PointsRequest request;
    CLI::App* const points = app.add_subcommand("points", "Print the plot points of one channel as CSV");
    points->footer("Values are secondary ones in base units (V and A, also where the file says kV and kA).");
    points->add_option("PATH", request.path, kPathHelp)->required();
    points
        ->add_option("CHANNEL", request.channel,
                     "Number from 1, name as info prints it, or channel identifier (in this order)")
        ->required();
    points->add_option("--start", request.start, "First instant in seconds (default 0)");
    points->add_option("--end", request.end, "Last instant in seconds (default: the last sample)");
    CLI::Option* const rate =
        points->add_option("--rate", request.rate, "Points per second (default: about 1000 points in all)");
    points->add_flag("--status", request.status, "Take a status channel and print its steps")->excludes(rate);

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& outcome) {
        if (outcome.get_exit_code() != static_cast<int>(CLI::ExitCodes::Success)) {
            throw Failure(kWrongUsage, printable(outcome.what()) + "\nTry orvcomtrade --help.");
        }
        std::ostringstream text;
        app.exit(outcome, text, text); // help or version
        out.write(text.str());
        out.flush();
        return;
    }
    if (*info) {
        printInfo(infoPath, out);
    } else {
        printPoints(request, out);
    }
    out.flush();
}

int complain(const char* sentence, int status) {
    std::fputs("orvcomtrade: ", stderr);
    std::fputs(sentence, stderr);
    std::fputs("\n", stderr);
    return status;
}

} // namespace

int main(int argc, char** argv) {
    std::signal(SIGPIPE, SIG_IGN); // a reader that has gone shows as a failed write
    try {
        Output out;
        run(argc, argv, out);
        return 0;
    } catch (const ReaderGone&) {
        return 0;
    } catch (const Failure& failure) {
        return complain(failure.what(), failure.status);
    } catch (const std::bad_alloc&) {
        return complain("out of memory", kRecordingProblem);
    } catch (const std::exception& problem) {
        return complain(problem.what(), kRecordingProblem);
    } catch (...) {
        return complain("unexpected failure", kRecordingProblem);
    }
}
