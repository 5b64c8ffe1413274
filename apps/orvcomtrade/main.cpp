// Host program of the library: shows what recordings hold, checks, exports and repairs them.

#include "commandLine.h"
#include "output/Failure.h"
#include "output/Output.h"
#include "output/printable.h"

#include <csignal>
#include <cstdio>
#include <exception>
#include <fcntl.h>
#include <new>
#include <unistd.h>

namespace {

int complain(const char* sentence, int status) {
    std::fputs("orvcomtrade: ", stderr);
    std::fputs(sentence, stderr);
    std::fputs("\n", stderr);
    return status;
}

/// The number of a standard stream that is closed would go to the next file that is opened, and what is printed would
/// land there. Reading from a descriptor for writing fails, and the other way round.
void occupyStandardStreams() {
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
        if (fcntl(stream, F_GETFD) < 0) {
            open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY); // takes the lowest free number: this one
        }
    }
}

} // namespace

int main(int argc, char** argv) {
    occupyStandardStreams();
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
        return complain(printable(problem.what()).c_str(), kRecordingProblem);
    } catch (...) {
        return complain("unexpected failure", kRecordingProblem);
    }
}
