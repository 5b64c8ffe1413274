#include "output/StandardOutput.h"

#include "output/Failure.h"
#include "output/writeWhole.h"

#include <cerrno>
#include <cstring>
#include <unistd.h>

void StandardOutput::send(std::string_view piece) {
    if (writeWhole(STDOUT_FILENO, piece)) {
        return;
    }
    if (errno == EPIPE) {
        throw ReaderGone();
    }
    throw Failure(kRecordingProblem, fmt::format("cannot write the output: {}", std::strerror(errno)));
}
