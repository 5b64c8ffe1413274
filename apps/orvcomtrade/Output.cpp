#include "Output.h"

#include "Failure.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace {

constexpr std::size_t kPieceLength = 64UL * 1024;

} // namespace

void Output::write(std::string_view text) {
    _pending.append(text.data(), text.data() + text.size());
    _flushIfFull();
}

void Output::flush() {
    const bool written =
        std::fwrite(_pending.data(), 1, _pending.size(), stdout) == _pending.size() && std::fflush(stdout) == 0;
    if (!written) {
        if (errno == EPIPE) {
            throw ReaderGone();
        }
        throw Failure(kRecordingProblem, fmt::format("cannot write the output: {}", std::strerror(errno)));
    }
    _pending.clear();
}

void Output::_flushIfFull() {
    if (_pending.size() >= kPieceLength) {
        flush();
    }
}
