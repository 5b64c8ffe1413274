#include "input/standardInput.h"

#include "output/Failure.h"
#include "output/printable.h"

#include <fmt/format.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <unistd.h>

std::string standardInput(std::uint64_t most) {
    constexpr std::size_t pieceLength = 64UL * 1024;
    std::array<char, pieceLength> piece{};
    std::string bytes;
    for (;;) {
        const ssize_t count = read(STDIN_FILENO, piece.data(), piece.size());
        if (count < 0 && errno != EINTR) {
            throw Failure(kRecordingProblem, fmt::format("{}: {}", kStandardInput, std::strerror(errno)));
        }
        if (count == 0) {
            return bytes;
        }
        bytes.append(piece.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
        if (bytes.size() > most) {
            throw Failure(
                kRecordingProblem,
                fmt::format("{0}: more than {1} bytes; --limit member-bytes=NUMBER allows more", kStandardInput, most));
        }
    }
}
