// Host program of the library: shows what recordings hold, checks, exports and mends them.

#include "Failure.h"
#include "Output.h"
#include "commandLine.h"

#include <csignal>
#include <cstdio>
#include <exception>
#include <new>

namespace {

int complain(const char* sentence, int status) {
    std::fputs("orvcomtrade: ", stderr);
    std::fputs(sentence, stderr);
    std::fputs("\n", stderr);
    return status;
}

} // namespace

int main(int argc, char** argv) {
    std::signal(SIGPIPE, SIG_IGN); // a reader that has gone, and a file that may not grow, show as failed writes
    std::signal(SIGXFSZ, SIG_IGN);
    try {
        return readCommandLine(argc, argv)();
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
