// Host program of the library: shows what recordings hold, checks, exports and repairs them.

#include "commandLine.h"
#include "output/Failure.h"
#include "output/Output.h"
#include "output/TemporaryName.h"
#include "output/printable.h"
#include "output/writeWhole.h"

#include <csignal>
#include <cstdlib>
#include <exception>
#include <fcntl.h>
#include <new>
#include <unistd.h>

namespace {

/// Takes no memory: there may be none.
int complain(const char* sentence, int status) {
    for (const char* const part : {"orvcomtrade: ", sentence, "\n"}) {
        writeWhole(STDERR_FILENO, part);
    }
    return status;
}

constexpr const char* kOutOfMemory = "out of memory";

/// Memory may run out where no exception may pass: before `main`, as static data are made, and in destructors that take
/// memory, such as that of a JSON value.
[[noreturn]] void endWithoutMemory() {
    try {
        throw;
    } catch (const std::bad_alloc&) {
        TemporaryName::removeAll();
        _exit(complain(kOutOfMemory, kRecordingProblem));
    } catch (...) {
        std::abort();
    }
}

/// Before the constructor of any static data.
[[gnu::constructor(101)]] void expectLackOfMemory() {
    std::set_terminate(endWithoutMemory);
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
        return complain(kOutOfMemory, kRecordingProblem);
    } catch (const std::exception& problem) {
        return complain(printable(problem.what()).c_str(), kRecordingProblem);
    } catch (...) {
        return complain("unexpected failure", kRecordingProblem);
    }
}
